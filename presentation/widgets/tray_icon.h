#pragma once

#include <QSystemTrayIcon>

#include "platform/pinned.h"
#include "presentation/model/status_item.h"
#include "presentation/widgets/status_controls.h"

namespace tallowin {

/// The status item in panels that embed windows (XEmbed). Main thread only.
class TrayIcon : public QSystemTrayIcon, Pinned {
 public:
  explicit TrayIcon(StatusControls& controls);

  void show(const StatusItem& item);

 protected:
  bool event(QEvent* event) override;

 private:
  void activated(ActivationReason reason);
  void openMenu();

  StatusControls& controls_;
  bool scrollSwitches_ = false;
};

}  // namespace tallowin
