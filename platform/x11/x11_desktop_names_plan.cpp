#include "platform/x11/x11_desktop_names_plan.h"

#include <algorithm>

namespace tallowin {

namespace {

/// What fits in the list: `name` as a valid text without the byte that ends texts there.
std::string presentable(const std::string& name) {
  auto text = validUtf8(name);
  std::erase(text, '\0');
  return text;
}

std::vector<std::string> withNames(std::vector<std::string> list, const std::vector<ManagedSpaceID>& spaces,
                                   const std::map<ManagedSpaceID, std::string>& names) {
  for (std::size_t index = 0; index < spaces.size(); ++index) {
    const auto found = names.find(spaces[index]);
    const auto name = found != names.end() ? presentable(found->second) : std::string();
    if (!name.empty()) {
      list.resize(std::max(list.size(), index + 1));
      list[index] = name;
    }
  }
  return list;
}

/// Whether the lists come back whole when they are read. A list that is as long as can be read may have been longer.
bool canBeReadBack(const DesktopNamesPlan& plan) {
  return plan.current.size() < maximumDesktopCount &&
         encodeDesktopNamesRecord({plan.wanted, plan.current}).size() < longestPropertyBytes &&
         encodeDesktopNamesRecord(plan.record).size() < longestPropertyBytes;
}

}  // namespace

DesktopNamesPlan planDesktopNames(const X11DesktopProperties& properties,
                                  const std::map<ManagedSpaceID, std::string>& names) {
  const auto state = readX11DesktopState(properties);
  DesktopNamesPlan plan;
  plan.spaces = state.spaces;
  plan.dynamic = state.dynamic;
  plan.current = parseDesktopNames(properties.desktopNames);
  plan.recorded = parseDesktopNamesRecord(properties.desktopNamesRecord);
  const auto own = ownDesktopNames(plan.current, plan.recorded, plan.dynamic);
  plan.wanted = withNames(own, plan.spaces, names);
  plan.record = plan.wanted != own ? DesktopNamesRecord{plan.wanted, own} : DesktopNamesRecord();
  if (state.checkWindow == 0 || !canBeReadBack(plan)) {
    plan.wanted = plan.current;
    plan.record = plan.recorded;
  }
  return plan;
}

}  // namespace tallowin
