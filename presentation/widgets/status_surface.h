#pragma once

#include <QTimer>
#include <memory>
#include <optional>

#include "platform/pinned.h"
#include "presentation/model/status_item.h"
#include "presentation/widgets/instance.h"
#include "presentation/widgets/status_controls.h"
#include "presentation/widgets/status_notifier.h"
#include "presentation/widgets/tray_icon.h"

namespace tallowin {

/// The status item, shown by a panel that speaks D-Bus where there is one, else by one that embeds windows, and handed
/// over whenever panels come and go. Main thread only.
class StatusSurface : Pinned {
 public:
  explicit StatusSurface(Instance& instance);

  void show(const StatusItem& item);

 private:
  void panelChanged(bool hasPanel);

  StatusControls controls_;
  std::optional<StatusItem> item_;
  std::unique_ptr<TrayIcon> tray_;
  QTimer alone_;  ///< runs while a panel that has gone may come back
  std::optional<StatusNotifier> notifier_;
};

}  // namespace tallowin
