#pragma once

#include <QDBusConnection>
#include <functional>

#include "platform/pinned.h"
#include "presentation/widgets/bus_object.h"
#include "presentation/widgets/menu_layout.h"
#include "presentation/widgets/status_menu.h"

namespace tallowin {

/// The status item's menu for panels that show it themselves: com.canonical.dbusmenu at `path`. Main thread only.
class BusMenu : Pinned {
 public:
  static constexpr auto path = "/MenuBar";

  BusMenu(const QDBusConnection& bus, StatusMenu& menu);

 private:
  [[nodiscard]] BusInterface interface();
  void refresh(const std::function<void(bool isNew)>& done);
  void happened(int id, const QString& event);

  void getLayout(const QDBusMessage& call);
  void getGroupProperties(const QDBusMessage& call);
  void getProperty(const QDBusMessage& call);
  void event(const QDBusMessage& call);
  void eventGroup(const QDBusMessage& call);
  void aboutToShow(const QDBusMessage& call);
  void aboutToShowGroup(const QDBusMessage& call);

  StatusMenu& menu_;
  MenuLayout layout_;
  BusObject object_;
};

}  // namespace tallowin
