#include "windows/front_window.h"

#include "base/property_list_reading.h"
#include "windows/window_list_entry.h"

namespace tallowin {

namespace {

namespace plist = property_list;

std::optional<FrontWindow> readFrontWindow(const PropertyList& entry, std::optional<ProcessID> owner) {
  const auto pid = plist::member(entry, "kCGWindowOwnerPID", plist::integer32);
  if (plist::member(entry, "kCGWindowLayer", plist::integer) != 0 || !pid || (owner && *pid != *owner)) {
    return {};
  }
  const auto number = windowNumber(entry);
  const auto bounds = windowBounds(entry);
  // Strictly larger, where a window that is only listed may be just as large.
  if (!number || !bounds || !(bounds->size.width > smallestWindow && bounds->size.height > smallestWindow)) {
    return {};
  }
  return FrontWindow{*number, *pid, *bounds};
}

}  // namespace

std::optional<FrontWindow> frontmostWindow(const std::optional<PropertyList>& list, std::optional<ProcessID> owner) {
  const auto* const entries = plist::listOfDictionaries(list ? &*list : nullptr);
  if (entries == nullptr) {
    return {};
  }
  for (const auto& entry : *entries) {
    if (const auto window = readFrontWindow(entry, owner)) {
      return window;
    }
  }
  return {};
}

}  // namespace tallowin
