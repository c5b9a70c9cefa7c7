#include "app/main/machine_facts.h"

#include "app/main/lazy_dbus.h"
#include "platform/xdg/xdg_environment.h"

namespace tallowin {

namespace {

SetUpCheck busCheck(const BusFacts& bus) {
  if (!bus.answers) {
    return {"D-Bus", false, "There is no message bus of yours, so no notifications, and no calls by other programs.",
            "Install dbus-user-session, or start the desktop by dbus-run-session."};
  }
  return {"D-Bus", true,
          bus.hasProgram ? "Other programs reach Tallowin on the message bus." : "The message bus answers."};
}

SetUpCheck notificationsCheck(const BusFacts& bus) {
  if (!bus.hasNotifications) {
    return {"Notifications", false, "Nothing shows notifications here; messages go to the log only.",
            "Start a notification service, such as dunst."};
  }
  return {"Notifications", true, "Messages and questions are shown as notifications."};
}

SetUpCheck autostartCheck() {
  if (const auto place = autostartPlace(processAutostartFolders())) {
    return {"Autostart", true,
            "Desktops that start programs when you log in start Tallowin, by " + place->string() + "."};
  }
  return {
      "Autostart", true, "Nothing starts Tallowin when you log in, unless your window manager does.",
      "To have it started, write \"exec tallowin\", or what it calls that, into your window manager's configuration."};
}

}  // namespace

std::vector<SetUpCheck> MachineFacts::checks() {
  auto checks = desktop_.checks();
  const auto* const module = loadDBusModule();
  const auto bus = module != nullptr ? module->busFacts() : BusFacts();
  checks.push_back(busCheck(bus));
  if (bus.answers) {
    checks.push_back(notificationsCheck(bus));
  }
  checks.push_back(autostartCheck());
  return checks;
}

}  // namespace tallowin
