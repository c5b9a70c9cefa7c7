#include "platform/x11/x11_window_reader.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>
#include <xcb/res.h>

#include "platform/x11/x11_properties.h"

namespace tallowin {

/// The requests about one window whose answers are still to come.
struct X11WindowReader::Cookies {
  xcb_window_t window;
  xcb_get_property_cookie_t netName, name, pid, machine, wmClass, desktop, state, type, extents, opacity;
};

/// Those about where it is, which windows do not tell themselves when their frames move.
struct X11WindowReader::PlaceCookies {
  xcb_get_geometry_cookie_t geometry;
  xcb_translate_coordinates_cookie_t corner;
};

namespace {

/// A window in its frame.
struct Nesting {
  xcb_query_tree_cookie_t cookie{};
  xcb_window_t topLevel = XCB_WINDOW_NONE;
};

X11StackingPlaces takePlaces(X11Connection& connection, xcb_query_tree_cookie_t cookie) {
  X11StackingPlaces places;
  if (const auto tree = connection.reply(xcb_query_tree_reply, cookie)) {
    const auto* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
      places.emplace(children[i], places.size() + 1);
    }
  }
  return places;
}

xcb_window_t takeParent(X11Connection& connection, xcb_query_tree_cookie_t cookie) {
  const auto tree = connection.reply(xcb_query_tree_reply, cookie);
  return tree ? tree->parent : xcb_window_t{XCB_WINDOW_NONE};
}

/// The top-level window of each window. Asks once more for windows that lie two deep in a frame.
std::vector<xcb_window_t> topLevelsOf(X11Connection& connection, const std::vector<xcb_window_t>& windows,
                                      std::vector<Nesting> nestings, const X11StackingPlaces& places) {
  std::set<std::size_t> deeper;
  for (std::size_t i = 0; i < windows.size(); ++i) {
    const auto parent = takeParent(connection, nestings[i].cookie);
    nestings[i].topLevel = parent == connection.root() ? windows[i] : parent;
    if (parent != XCB_WINDOW_NONE && !places.contains(nestings[i].topLevel)) {
      nestings[i].cookie = xcb_query_tree(connection.raw(), parent);
      deeper.insert(i);
    }
  }
  std::vector<xcb_window_t> found;
  for (std::size_t i = 0; i < windows.size(); ++i) {
    found.push_back(deeper.contains(i) ? takeParent(connection, nestings[i].cookie) : nestings[i].topLevel);
  }
  return found;
}

bool has(const std::vector<std::uint32_t>& atoms, xcb_atom_t atom) {
  return std::ranges::find(atoms, atom) != atoms.end();
}

}  // namespace

X11WindowReader::X11WindowReader(X11Connection& connection, X11DesktopReader& desktops, ProcessID self)
    : connection_(connection),
      desktops_(desktops),
      self_(self),
      resourceMask_(connection.alive() ? xcb_get_setup(connection.raw())->resource_id_mask : 0),
      knowsPids_(connection.hasExtension(xcb_res_id)),
      localNames_(localMachineNames()),
      numbers_(resourceMask_, [this](xcb_window_t window) {
        const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        return xcb_change_window_attributes(connection_.raw(), window, XCB_CW_EVENT_MASK, &mask).sequence;
      }) {}

/// Ends the numbers of windows that are not managed any more. A window manager takes the property away when a window is
/// withdrawn, but leaves it when it ends itself (EWMH, _NET_WM_DESKTOP): the windows that come back with its successor
/// are not new.
void X11WindowReader::forgetUnmanaged(const std::vector<xcb_window_t>& listed) {
  const auto missing = numbers_.missingFrom(listed);
  const auto managed = desktopsOf(missing);
  for (const auto window : missing) {
    if (!managed.contains(window)) {
      numbers_.noteGone(window);
    }
  }
}

X11WindowReader::Cookies X11WindowReader::request(xcb_window_t window) {
  const auto property = [&](X11Atom atom, xcb_atom_t type) { return connection_.requestProperty(window, atom, type); };
  const auto predefined = [&](xcb_atom_t atom) {
    constexpr std::uint32_t longest = 4096;  // in units of four bytes
    return xcb_get_property(connection_.raw(), 0, window, atom, XCB_GET_PROPERTY_TYPE_ANY, 0, longest);
  };
  return {.window = window,
          .netName = property(X11Atom::netWmName, connection_.atom(X11Atom::utf8String)),
          .name = predefined(XCB_ATOM_WM_NAME),
          .pid = property(X11Atom::netWmPid, XCB_ATOM_CARDINAL),
          .machine = predefined(XCB_ATOM_WM_CLIENT_MACHINE),
          .wmClass = predefined(XCB_ATOM_WM_CLASS),
          .desktop = property(X11Atom::netWmDesktop, XCB_ATOM_CARDINAL),
          .state = property(X11Atom::netWmState, XCB_ATOM_ATOM),
          .type = property(X11Atom::netWmWindowType, XCB_ATOM_ATOM),
          .extents = property(X11Atom::netFrameExtents, XCB_ATOM_CARDINAL),
          .opacity = property(X11Atom::netWmWindowOpacity, XCB_ATOM_CARDINAL)};
}

X11WindowReader::PlaceCookies X11WindowReader::requestPlace(xcb_window_t window) {
  return {.geometry = xcb_get_geometry(connection_.raw(), window),
          .corner = xcb_translate_coordinates(connection_.raw(), window, connection_.root(), 0, 0)};
}

/// Sets the frame of a window whose properties are known. False when it has gone.
bool X11WindowReader::takePlace(const PlaceCookies& cookies, X11Window& window) {
  const auto size = connection_.reply(xcb_get_geometry_reply, cookies.geometry);
  const auto corner = connection_.reply(xcb_translate_coordinates_reply, cookies.corner);
  if (!size || !corner) {
    return false;
  }
  // Where the window manager does not tell the decoration's widths a client may have kept a border of its own, around
  // which requests count.
  const double border = window.extents ? 0 : size->border_width;
  window.frame = withExtents({{corner->dst_x - border, corner->dst_y - border},
                              {static_cast<double>(size->width), static_cast<double>(size->height)}},
                             window.extents.value_or(FrameExtents{}));
  return true;
}

X11Window X11WindowReader::take(const Cookies& cookies, const Pids& pids) {
  const auto property = [&](xcb_get_property_cookie_t cookie) { return connection_.takeProperty(cookie); };
  X11Window window;
  window.id = cookies.window;
  window.title = parseText(property(cookies.netName), true);
  const auto name = parseText(property(cookies.name), false);
  if (window.title.empty()) {
    window.title = name;
  }
  ProcessEvidence evidence;
  evidence.named = parseCardinal(property(cookies.pid));
  evidence.machine = parseText(property(cookies.machine), false);
  if (const auto known = pids.find(baseOf(cookies.window)); known != pids.end()) {
    evidence.server = known->second;
  }
  window.pid = processOf(evidence, localNames_).value_or(standInPid(cookies.window, resourceMask_));
  std::tie(window.instance, window.className) = parseWMClass(property(cookies.wmClass));
  window.desktop = parseCardinal(property(cookies.desktop));
  const auto states = parseWords(property(cookies.state));
  const auto is = [&](X11Atom state) { return has(states, connection_.atom(state)); };
  window.hidden = is(X11Atom::netWmStateHidden);
  window.sticky = is(X11Atom::netWmStateSticky);
  window.above = is(X11Atom::netWmStateAbove);
  window.maximized = is(X11Atom::netWmStateMaximizedVert) || is(X11Atom::netWmStateMaximizedHorz);
  window.fullscreen = is(X11Atom::netWmStateFullscreen);
  window.layer = windowLayer(parseWords(property(cookies.type)), connection_);
  window.extents = parseFrameExtents(property(cookies.extents));
  window.alpha = parseOpacity(property(cookies.opacity));
  return window;
}

std::optional<std::uint32_t> X11WindowReader::requestPids(const std::vector<xcb_window_t>& windows) {
  if (!knowsPids_ || windows.empty()) {
    return std::nullopt;
  }
  std::set<std::uint32_t> clients;
  for (const auto window : windows) {
    clients.insert(baseOf(window));
  }
  std::vector<xcb_res_client_id_spec_t> wanted;
  for (const auto client : clients) {
    wanted.push_back({client, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID});
  }
  return xcb_res_query_client_ids(connection_.raw(), static_cast<std::uint32_t>(wanted.size()), wanted.data()).sequence;
}

X11WindowReader::Pids X11WindowReader::takePids(std::optional<std::uint32_t> sequence) {
  Pids pids;
  const auto answer =
      sequence ? connection_.reply(xcb_res_query_client_ids_reply, xcb_res_query_client_ids_cookie_t{*sequence})
               : XcbPtr<xcb_res_query_client_ids_reply_t>();
  if (!answer) {
    return pids;
  }
  for (auto each = xcb_res_query_client_ids_ids_iterator(answer.get()); each.rem > 0;
       xcb_res_client_id_value_next(&each)) {
    if (xcb_res_client_id_value_value_length(each.data) > 0) {
      pids[baseOf(each.data->spec.client)] = *xcb_res_client_id_value_value(each.data);
    }
  }
  return pids;
}

std::optional<ProcessID> X11WindowReader::process(xcb_window_t window) {
  const auto pids = takePids(requestPids({window}));
  return pids.empty() ? std::nullopt : std::optional(static_cast<ProcessID>(pids.begin()->second));
}

void X11WindowReader::handle(const xcb_generic_event_t& event) {
  switch (x11EventType(event)) {
    case XCB_PROPERTY_NOTIFY:
      known_.erase(x11EventAs<xcb_property_notify_event_t>(event).window);
      break;
    case XCB_REPARENT_NOTIFY:
      known_.erase(x11EventAs<xcb_reparent_notify_event_t>(event).window);
      break;
    case XCB_DESTROY_NOTIFY:
      known_.erase(x11EventAs<xcb_destroy_notify_event_t>(event).window);
      break;
    default:
      break;
  }
}

/// Reads the properties of those windows that are not known.
void X11WindowReader::learn(const std::vector<xcb_window_t>& listed, const X11StackingPlaces& places) {
  std::erase_if(known_, [present = std::set(listed.begin(), listed.end())](const auto& known) {
    return !present.contains(known.first);
  });
  std::vector<xcb_window_t> unknown;
  std::ranges::copy_if(listed, std::back_inserter(unknown),
                       [this](xcb_window_t window) { return !known_.contains(window); });
  const auto pidsCookie = requestPids(unknown);
  std::vector<Cookies> cookies;
  std::vector<Nesting> nestings;
  for (const auto window : unknown) {
    cookies.push_back(request(window));
    nestings.push_back({.cookie = xcb_query_tree(connection_.raw(), window)});
  }
  const auto pids = takePids(pidsCookie);
  std::vector<X11Window> learned;
  for (const auto& each : cookies) {
    learned.push_back(take(each, pids));
  }
  const auto topLevels = topLevelsOf(connection_, unknown, std::move(nestings), places);
  for (std::size_t i = 0; i < unknown.size(); ++i) {
    known_[unknown[i]] = {std::move(learned[i]), topLevels[i]};
  }
}

bool X11WindowReader::isOwn(const X11Window& window) const {
  return window.pid == self_ || window.className == "Tallowin";
}

X11WindowSnapshot X11WindowReader::read() {
  const auto listCookie = connection_.requestProperty(connection_.root(), X11Atom::netClientList, XCB_ATOM_WINDOW);
  const auto treeCookie = xcb_query_tree(connection_.raw(), connection_.root());
  const auto viewCookies = desktops_.request();
  X11WindowSnapshot snapshot;
  const auto listed = parseWords(connection_.takeProperty(listCookie));
  snapshot.view = desktops_.take(viewCookies);
  const auto places = takePlaces(connection_, treeCookie);
  // What changed before these answers has been told with them.
  connection_.peekAtEvents([this](const xcb_generic_event_t& event) { handle(event); });

  numbers_.noteManaged(listed);
  forgetUnmanaged(listed);
  std::vector<PlaceCookies> placeCookies;
  std::ranges::transform(listed, std::back_inserter(placeCookies),
                         [this](xcb_window_t window) { return requestPlace(window); });
  learn(listed, places);

  std::vector<std::pair<std::size_t, X11Window>> found;
  for (std::size_t i = 0; i < listed.size(); ++i) {
    auto [window, topLevel] = known_[listed[i]];
    const auto place = places.find(topLevel);
    const bool exists = takePlace(placeCookies[i], window);
    if (!exists || place == places.end()) {
      known_.erase(listed[i]);
    }
    if (exists && !isOwn(window)) {
      found.emplace_back(place == places.end() ? 0 : place->second, std::move(window));
    }
  }
  std::ranges::stable_sort(found, std::greater(), [](const auto& each) { return each.first; });
  for (auto& [place, window] : found) {
    snapshot.windows.push_back(std::move(window));
  }
  return snapshot;
}

std::optional<X11Window> X11WindowReader::read(xcb_window_t window) {
  const auto listCookie = connection_.requestProperty(connection_.root(), X11Atom::netClientList, XCB_ATOM_WINDOW);
  const auto pidsCookie = requestPids({window});
  const auto cookies = request(window);
  const auto placeCookies = requestPlace(window);
  const auto viewCookies = desktops_.request();
  const auto listed = parseWords(connection_.takeProperty(listCookie));
  const auto pids = takePids(pidsCookie);
  auto read = take(cookies, pids);
  const bool exists = takePlace(placeCookies, read);
  desktops_.take(viewCookies);
  if (!exists || isOwn(read) || !has(listed, window)) {
    return std::nullopt;
  }
  numbers_.noteManaged({window});
  latest_ = read;
  latestAt_ = connection_.moment();
  return read;
}

std::map<xcb_window_t, std::uint32_t> X11WindowReader::desktopsOfWindows() {
  const auto listed = parseWords(connection_.takeProperty(
      connection_.requestProperty(connection_.root(), X11Atom::netClientList, XCB_ATOM_WINDOW)));
  numbers_.noteManaged(listed);
  return desktopsOf(listed);
}

std::map<xcb_window_t, std::uint32_t> X11WindowReader::desktopsOf(const std::vector<xcb_window_t>& windows) {
  std::map<xcb_window_t, xcb_get_property_cookie_t> cookies;
  for (const auto window : windows) {
    cookies[window] = connection_.requestProperty(window, X11Atom::netWmDesktop, XCB_ATOM_CARDINAL);
  }
  std::map<xcb_window_t, std::uint32_t> desktops;
  for (const auto& [window, cookie] : cookies) {
    if (const auto desktop = parseCardinal(connection_.takeProperty(cookie))) {
      desktops[window] = *desktop;
    }
  }
  return desktops;
}

std::optional<std::vector<ManagedSpaceID>> X11WindowReader::spacesOf(xcb_window_t window) {
  const bool isKnown = latest_ && latest_->id == window && latestAt_ == connection_.moment();
  const auto found = isKnown ? latest_ : read(window);
  return found ? spacesShowing(desktops_.present().desktops, found->desktop, found->sticky) : std::nullopt;
}

bool X11WindowSnapshot::isOnScreen(const X11Window& window) const {
  return !window.hidden && (!window.desktop || window.desktop == view.desktops.current ||
                            window.desktop == X11Connection::allDesktops || window.sticky);
}

const X11Window* X11WindowSnapshot::find(xcb_window_t id) const {
  const auto found = std::ranges::find(windows, id, &X11Window::id);
  return found == windows.end() ? nullptr : &*found;
}

std::optional<std::vector<ManagedSpaceID>> spacesShowing(const X11DesktopState& desktops,
                                                         std::optional<std::uint32_t> desktop, bool sticky) {
  // i3 says by the state alone that a window is on all desktops; others leave it set when that is over.
  const bool everywhere = (sticky && desktops.dynamic) || desktop == X11Connection::allDesktops;
  if (desktop && everywhere && !desktops.spaces.empty()) {
    return desktops.spaces;
  }
  if (!desktop || *desktop >= desktops.spaces.size()) {
    return std::nullopt;
  }
  return std::vector{desktops.spaces[*desktop]};
}

}  // namespace tallowin
