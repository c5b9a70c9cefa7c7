#include "presentation/widgets/tray_icon.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QScreen>
#include <QString>
#include <QTextDocument>
#include <QWheelEvent>

#include "presentation/widgets/space_pictures.h"

namespace tallowin {

TrayIcon::TrayIcon(StatusControls& controls) : controls_(controls) {
  QObject::connect(this, &QSystemTrayIcon::activated, this, [this](ActivationReason reason) { activated(reason); });
}

void TrayIcon::show(const StatusItem& item) {
  scrollSwitches_ = item.scrollSwitches;
  QIcon icon;
  for (const auto& picture : statusPictures(item)) {
    icon.addPixmap(QPixmap::fromImage(picture));
  }
  setIcon(icon);
  setToolTip(Qt::convertFromPlainText(QString::fromStdString(item.toolTip)));  // else names could be markup
  setVisible(true);
}

bool TrayIcon::event(QEvent* event) {
  if (event->type() == QEvent::Wheel) {
    const auto turn = static_cast<const QWheelEvent*>(event)->angleDelta();
    controls_.turnWheel(turn.y() != 0 ? turn.y() : turn.x(), scrollSwitches_);
    return true;
  }
  return QSystemTrayIcon::event(event);
}

void TrayIcon::activated(ActivationReason reason) {
  if (reason == MiddleClick) {
    controls_.goBack();
  } else if (reason == Trigger || reason == Context) {
    openMenu();
  }
}

/// Beside the icon, away from the panel's edge of the screen.
void TrayIcon::openMenu() {
  const auto icon = geometry();
  const auto* const screen = QGuiApplication::screenAt(icon.center());
  if (!icon.isValid() || screen == nullptr) {
    controls_.menu().openAt(QCursor::pos());
    return;
  }
  const bool isBelow = icon.center().y() > screen->geometry().center().y();
  controls_.menu().openAt(isBelow ? icon.topLeft() : icon.bottomLeft() + QPoint(0, 1));
}

}  // namespace tallowin
