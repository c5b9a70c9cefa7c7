#include "platform/x11/x11_window_server.h"

#include <algorithm>
#include <utility>

#include "platform/x11/x11_elements.h"
#include "platform/x11/x11_window_properties.h"

namespace tallowin {

namespace {

PropertyList spaceEntry(ManagedSpaceID space) {
  return {{"ManagedSpaceID", space}, {"type", 0}};
}

/// The Spaces that show a window with this desktop and, or not, the state of being sticky.
std::optional<std::vector<ManagedSpaceID>> spacesShowing(const X11DesktopState& state,
                                                         std::optional<std::uint32_t> desktop, bool sticky) {
  // i3 says by the state alone that a window is on all desktops; others leave it set when that is over.
  const bool everywhere = (sticky && state.dynamic) || desktop == X11Connection::allDesktops;
  if (desktop && everywhere && !state.spaces.empty()) {
    return state.spaces;
  }
  if (!desktop || *desktop >= state.spaces.size()) {
    return std::nullopt;
  }
  return std::vector{state.spaces[*desktop]};
}

}  // namespace

ConnectionID X11WindowServer::CGSBridgeConnection() {
  // The base of the ids that the server lets this client use is different for each client, and never 0, the server's.
  return connection_.alive() ? xcb_get_setup(connection_.raw())->resource_id_base : 0;
}

std::optional<PropertyList> X11WindowServer::CGSBridgeCopyManagedDisplaySpaces() {
  const auto view = windows_.glance.look();
  const auto& state = view->desktops;
  if (state.spaces.empty()) {
    return std::nullopt;
  }
  auto spaces = PropertyList::array();
  for (const auto space : state.spaces) {
    spaces.push_back(spaceEntry(space));
  }
  PropertyList display = {{"Display Identifier", mainDisplay}, {"Spaces", std::move(spaces)}};
  const auto heading = dock_.heading(mainDisplay, state.active());
  reportedActive_ = heading && state.indexOf(*heading) ? heading : state.active();
  if (reportedActive_) {
    display["Current Space"] = {{"ManagedSpaceID", *reportedActive_}};
  }
  return PropertyList::array({std::move(display)});
}

std::optional<std::string> X11WindowServer::CGSBridgeCopyActiveMenuBarDisplayIdentifier() {
  return connection_.alive() ? std::optional<std::string>(mainDisplay) : std::nullopt;
}

std::uint64_t X11WindowServer::CGSBridgeActiveSpace() {
  return static_cast<std::uint64_t>(desktops_.read().active().value_or(0));
}

bool X11WindowServer::CGSBridgeRegisterSpaceNotifications(SpaceNotificationCallback callback) {
  callback_ = std::move(callback);
  return connection_.alive();
}

std::optional<SymbolicHotKeyBinding> X11WindowServer::CGSBridgeGetSymbolicHotKey(int hotKey) {
  return hotKeys_.binding(hotKey);
}

bool X11WindowServer::CGSBridgeIsSymbolicHotKeyEnabled(int hotKey) {
  return hotKeys_.isEnabled(hotKey);
}

bool X11WindowServer::CGSBridgeSetSymbolicHotKeyEnabled(int hotKey, bool enabled) {
  return hotKeys_.setEnabled(hotKey, enabled);
}

CGSBridgeHealth X11WindowServer::CGSBridgeProbe() {
  const bool listed = !desktops_.read().spaces.empty();
  std::uint32_t bits = CGSBridgeHealth::managedDisplaySpaces | CGSBridgeHealth::activeMenuBarDisplay |
                       CGSBridgeHealth::activeSpace | CGSBridgeHealth::notifications | CGSBridgeHealth::symbolicHotKeys;
  bits |= connection_.alive() ? CGSBridgeHealth::connection : 0U;
  bits |= listed ? CGSBridgeHealth::spacesListed : 0U;
  return CGSBridgeHealth(bits);
}

std::optional<std::vector<ManagedSpaceID>> X11WindowServer::CGSBridgeCopySpacesForWindow(WindowNumber number) {
  const auto window = windows_.reader.numbers().window(number);
  if (!window) {
    return std::nullopt;
  }
  if (const auto reading = windows_.applications.present()) {
    if (const auto* known = reading->screen.find(*window)) {
      return spacesShowing(desktopsBeside(reading), known->desktop, known->sticky);
    }
  }
  const auto cookie = connection_.requestProperty(*window, X11Atom::netWmDesktop, XCB_ATOM_CARDINAL);
  const auto statesCookie = connection_.requestProperty(*window, X11Atom::netWmState, XCB_ATOM_ATOM);
  const auto state = desktops_.read();
  const auto desktop = parseCardinal(connection_.takeProperty(cookie));
  const auto states = parseWords(connection_.takeProperty(statesCookie));
  const bool sticky = std::ranges::find(states, connection_.atom(X11Atom::netWmStateSticky)) != states.end();
  return spacesShowing(state, desktop, sticky);
}

/// The desktops as they were just after that reading of the windows.
X11DesktopState X11WindowServer::desktopsBeside(const WindowReading& reading) {
  const std::lock_guard lock(mutex_);
  if (besideDesktops_ != reading) {
    besideWindows_ = desktops_.read();
    besideDesktops_ = reading;
  }
  return besideWindows_;
}

std::optional<WindowNumber> X11WindowServer::CGSBridgeAXWindowID(const AXUIElement& element) {
  const auto* const window = dynamic_cast<const X11WindowElement*>(element.get());
  return window == nullptr ? std::nullopt : std::optional(window->number());
}

bool X11WindowServer::CGSBridgeMoveWindowToSpace(WindowNumber number, ManagedSpaceID space) {
  const auto window = windows_.reader.numbers().window(number);
  if (!window) {
    return false;
  }
  const auto cookie = connection_.requestProperty(*window, X11Atom::netWmDesktop, XCB_ATOM_CARDINAL);
  const auto state = desktops_.read();
  const auto index = state.indexOf(space);
  // Only windows that are managed have the property, and only they can be moved.
  if (!parseCardinal(connection_.takeProperty(cookie)) || !index) {
    return false;
  }
  windows_.actions.moveToDesktop(*window, static_cast<std::uint32_t>(*index), state);
  return connection_.alive();
}

bool X11WindowServer::CGSBridgeDockNotify(std::string_view notification) {
  notifyDock_(notification);
  return connection_.alive();
}

bool X11WindowServer::CGSBridgeStartTouchMonitor(TouchCallback /*callback*/) {
  return false;
}

void X11WindowServer::notify(WindowServerEvent event) const {
  // A copy, as the receiver may be replaced while it is being told.
  if (const auto callback = callback_) {
    callback(event);
  }
}

}  // namespace tallowin
