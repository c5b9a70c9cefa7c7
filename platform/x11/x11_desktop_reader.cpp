#include "platform/x11/x11_desktop_reader.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <set>

#include "base/words.h"
#include "platform/x11/x11_desktop_names.h"

namespace tallowin {

namespace {

constexpr std::uint64_t hashedBase = std::uint64_t{1} << 48;

std::optional<ManagedSpaceID> leadingNumber(std::string_view name) {
  std::int32_t number = 0;  // and so it stays where there is none, or one that does not fit
  std::from_chars(name.data(), name.data() + name.size(), number);
  return number > 0 ? std::optional<ManagedSpaceID>(number) : std::nullopt;
}

ManagedSpaceID hashedID(std::string_view text) {
  const auto hash = fnv1a(text);
  // Folding is how FNV is shortened; cutting bits off would lose their part of the mixing.
  return static_cast<ManagedSpaceID>(hashedBase + ((hash >> 48) ^ (hash & (hashedBase - 1))));
}

/// What stands for a desktop without a name: no name can equal it, as none contains a zero byte.
std::string positionText(std::size_t index) {
  std::string text(1, '\0');
  text += std::to_string(index);
  return text;
}

std::vector<ManagedSpaceID> numberedSpaceIDs(std::size_t count) {
  std::vector<ManagedSpaceID> ids(count);
  std::iota(ids.begin(), ids.end(), 1);
  return ids;
}

/// The Spaces of desktops that are known by the names which the window manager gave them.
std::vector<ManagedSpaceID> dynamicSpaceIDs(const X11DesktopProperties& properties, std::size_t count) {
  const auto record = parseDesktopNamesRecord(properties.desktopNamesRecord);
  return namedSpaceIDs(ownDesktopNames(parseDesktopNames(properties.desktopNames), record, true), count);
}

}  // namespace

std::vector<ManagedSpaceID> namedSpaceIDs(const std::vector<std::string>& names, std::size_t count) {
  std::vector<ManagedSpaceID> ids;
  std::set<ManagedSpaceID> taken;
  for (std::size_t index = 0; index < count; ++index) {
    const std::string name = index < names.size() ? names[index] : std::string();
    auto id = leadingNumber(name);
    if (!id || taken.contains(*id)) {
      id = hashedID(name.empty() ? positionText(index) : name);
    }
    while (!taken.insert(*id).second) {
      ++*id;
    }
    ids.push_back(*id);
  }
  return ids;
}

X11DesktopState readX11DesktopState(const X11DesktopProperties& properties) {
  X11DesktopState state;
  const auto named = parseCardinal(properties.supportingWmCheck);
  if (!named || *named == 0 || *named != properties.checkWindow ||
      parseCardinal(properties.checkWindowCheck) != named) {
    return state;
  }
  state.checkWindow = *named;
  state.managerName = properties.checkWindowName.format == 8 ? properties.checkWindowName.bytes : "";
  // i3 numbers its workspaces by their rank among those that exist.
  state.dynamic = state.managerName == "i3";
  if (const auto count = parseDesktopCount(properties.numberOfDesktops)) {
    state.spaces = state.dynamic ? dynamicSpaceIDs(properties, *count) : numberedSpaceIDs(*count);
  }
  if (const auto current = parseCardinal(properties.currentDesktop); current && *current < state.spaces.size()) {
    state.current = *current;
  }
  return state;
}

std::optional<std::size_t> X11DesktopState::indexOf(ManagedSpaceID space) const {
  const auto found = std::ranges::find(spaces, space);
  return found == spaces.end() ? std::nullopt
                               : std::optional<std::size_t>(static_cast<std::size_t>(found - spaces.begin()));
}

std::optional<ManagedSpaceID> X11DesktopState::active() const {
  return current ? std::optional<ManagedSpaceID>(spaces[*current]) : std::nullopt;
}

X11DesktopReader::Cookies X11DesktopReader::request() {
  const auto root = connection_.root();
  const auto property = [&](X11Atom atom, xcb_atom_t type) { return connection_.requestProperty(root, atom, type); };
  const auto text = connection_.atom(X11Atom::utf8String);
  return {.moment = connection_.moment(),
          .likelyCheckWindow = likelyCheckWindow_,
          .count = property(X11Atom::netNumberOfDesktops, XCB_ATOM_CARDINAL),
          .current = property(X11Atom::netCurrentDesktop, XCB_ATOM_CARDINAL),
          .names = property(X11Atom::netDesktopNames, text),
          .record = property(X11Atom::tallowinDesktopNames, text),
          .check = property(X11Atom::netSupportingWmCheck, XCB_ATOM_WINDOW),
          .likely = requestCheckWindow(likelyCheckWindow_),
          .active = property(X11Atom::netActiveWindow, XCB_ATOM_WINDOW),
          .pointer = xcb_query_pointer(connection_.raw(), root),
          .size = xcb_get_geometry(connection_.raw(), root)};
}

X11DesktopProperties X11DesktopReader::takeProperties(const Cookies& cookies) {
  X11DesktopProperties properties;
  properties.checkWindow = cookies.likelyCheckWindow;
  takeCheckWindow(cookies.likely, properties);
  properties.numberOfDesktops = connection_.takeProperty(cookies.count);
  properties.currentDesktop = connection_.takeProperty(cookies.current);
  properties.desktopNames = connection_.takeProperty(cookies.names);
  properties.desktopNamesRecord = connection_.takeProperty(cookies.record);
  properties.supportingWmCheck = connection_.takeProperty(cookies.check);
  const auto named = parseCardinal(properties.supportingWmCheck);
  if (named && *named != properties.checkWindow) {
    properties.checkWindow = likelyCheckWindow_ = *named;
    takeCheckWindow(requestCheckWindow(*named), properties);
  }
  return properties;
}

X11DesktopReader::CheckCookies X11DesktopReader::requestCheckWindow(xcb_window_t window) {
  return {connection_.requestProperty(window, X11Atom::netSupportingWmCheck, XCB_ATOM_WINDOW),
          connection_.requestProperty(window, X11Atom::netWmName, connection_.atom(X11Atom::utf8String))};
}

void X11DesktopReader::takeCheckWindow(const CheckCookies& cookies, X11DesktopProperties& properties) {
  properties.checkWindowCheck = connection_.takeProperty(cookies.check);
  properties.checkWindowName = connection_.takeProperty(cookies.name);
}

X11View X11DesktopReader::take(const Cookies& cookies) {
  X11View view;
  view.properties = takeProperties(cookies);
  view.desktops = stateOf(view.properties);
  view.activeWindow = parseCardinal(connection_.takeProperty(cookies.active)).value_or(XCB_WINDOW_NONE);
  if (const auto pointer = connection_.reply(xcb_query_pointer_reply, cookies.pointer)) {
    view.pointer = {static_cast<double>(pointer->root_x), static_cast<double>(pointer->root_y)};
    view.held = pointer->mask;
    view.underPointer = pointer->child;
  }
  if (const auto size = connection_.reply(xcb_get_geometry_reply, cookies.size)) {
    view.rootSize = {static_cast<double>(size->width), static_cast<double>(size->height)};
  }
  readAt_ = cookies.moment;
  latest_ = view;
  return view;
}

X11View X11DesktopReader::present() {
  return readAt_ == connection_.moment() ? latest_ : look();
}

void X11DesktopReader::release() {
  held_.reset();
  readAt_.reset();
}

bool isManaged(X11Connection& connection) {
  KeptDesktopPlaces places;
  return X11DesktopReader(connection, places).read().checkWindow != XCB_WINDOW_NONE;
}

X11DesktopState X11DesktopReader::stateOf(const X11DesktopProperties& properties) {
  auto state = readX11DesktopState(properties);
  const auto count = state.spaces.size();
  if (state.dynamic || count == 0) {
    return state;
  }
  if (held_ && count == held_->count) {
    return held_->before;
  }
  if (held_ && count != held_->before.spaces.size()) {
    held_.reset();
  }
  places_.countSeen(count);
  state.spaces = places_.get().ids();
  return state;
}

}  // namespace tallowin
