#include "commands/dbus/desktop_object.h"

#include <algorithm>

#include "core/space_state.h"

namespace tallowin {

namespace {

constexpr auto objectPath = "/com/quorvex/Tallowin";

void addTo(std::vector<ServiceDescription::Interface>& interfaces, const DesktopMethod& method) {
  auto interface = std::ranges::find(interfaces, method.interface, &ServiceDescription::Interface::name);
  if (interface == interfaces.end()) {
    interface = interfaces.insert(interfaces.end(), {method.interface, {}, {}});
  }
  interface->methods.push_back(method.declared);
}

}  // namespace

DesktopObject::DesktopObject(const ProgramServices& services, SpaceChanges& changes, CommandsUnderWay& underWay,
                             const ScriptingBridge& bridge, const OpenURL& openURL,
                             const CommandChannel::Handler& request)
    : services_(services),
      spaceChanges_(changes),
      underWay_(underWay),
      bridge_(bridge),
      methods_(desktopMethods(bridge, openURL, request, services.folders.home.string())),
      properties_{{{"Spaces", "aa{sv}", &DesktopObject::spaces},
                   {"Current", "(xs)", &DesktopObject::current},
                   {"Names", "as", &DesktopObject::names}}} {}

void DesktopObject::offer() {
  changes_ = spaceChanges_.observe([this] { tellChanges(); });
  offered_ = services_.desktopService.offer(
      description(),
      {[this](const std::string& interface, const std::string& method, const PropertyList& arguments,
              const DesktopService::Reply& reply) { run(methods_, interface, method, arguments, reply); },
       [this](const std::string& /*interface*/, const std::string& property) { return value(property); },
       [this](std::function<void()> work) { underWay_.whenSettled(std::move(work)); }});
}

ServiceDescription DesktopObject::description() const {
  ServiceDescription description{commandInterface, objectPath, {}};
  for (const auto& method : methods_) {
    addTo(description.interfaces, method);
  }
  for (const auto& property : properties_) {
    description.interfaces.front().properties.push_back({property.name, property.type});
  }
  return description;
}

/// The record that other programs know from the list of Spaces, without what is null, and without the applications,
/// which come and go too often for a signal each time.
PropertyList DesktopObject::spaces() const {
  auto list = PropertyList::array();
  for (const auto& space : services_.watcher.latest().allSpaces()) {
    auto record = spaceRecord(space, services_.store, [](const Space&) { return std::vector<std::string>(); });
    record.erase("apps");
    for (auto member = record.begin(); member != record.end();) {
      member = member->is_null() ? record.erase(member) : std::next(member);
    }
    list.push_back(std::move(record));
  }
  return list;
}

PropertyList DesktopObject::current() const {
  return PropertyList::array({bridge_.currentNumber(), bridge_.currentName()});
}

PropertyList DesktopObject::names() const {
  return bridge_.allNames();
}

PropertyList DesktopObject::value(const std::string& property) const {
  const auto* const found = std::ranges::find(properties_, property, &Property::name);
  return found != properties_.end() ? (this->*found->read)() : PropertyList();
}

void DesktopObject::tellChanges() {
  std::vector<std::string> changed;
  for (auto& [name, type, read, told] : properties_) {
    if (auto now = (this->*read)(); now != told) {
      told = std::move(now);
      changed.push_back(name);
    }
  }
  if (!changed.empty()) {
    services_.desktopService.tellChanged(commandInterface, changed);
  }
}

}  // namespace tallowin
