#include "presentation/widgets/status_surface.h"

#include <QDBusConnection>
#include <QObject>
#include <chrono>

namespace tallowin {

StatusSurface::StatusSurface(Instance& instance) : controls_(instance) {
  using namespace std::chrono_literals;
  alone_.setSingleShot(true);
  alone_.setInterval(2s);
  QObject::connect(&alone_, &QTimer::timeout, &alone_, [this] {
    tray_ = std::make_unique<TrayIcon>(controls_);
    tray_->show(*item_);
  });
}

void StatusSurface::show(const StatusItem& item) {
  item_ = item;
  if (!notifier_) {
    notifier_.emplace(QDBusConnection::sessionBus(), controls_, [this](bool hasPanel) { panelChanged(hasPanel); });
  }
  notifier_->show(item);
  if (tray_) {
    tray_->show(item);
  }
}

void StatusSurface::panelChanged(bool hasPanel) {
  if (hasPanel) {
    alone_.stop();
    tray_.reset();
  } else if (!tray_) {
    alone_.start();
  }
}

}  // namespace tallowin
