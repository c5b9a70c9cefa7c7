#include "platform/x11/x11_desktop.h"

#include <algorithm>
#include <iterator>
#include <ranges>
#include <thread>
#include <utility>

namespace tallowin {

namespace {

/// Window managers switch within a few milliseconds, or not at all.
constexpr Duration untilSwitchGivenUp = std::chrono::milliseconds(100);
constexpr Duration untilCounted = std::chrono::seconds(1);
constexpr Duration untilArrived = std::chrono::seconds(1);
constexpr Duration restorePatience = std::chrono::milliseconds(100);

}  // namespace

X11Desktop::X11Desktop(const Services& services)
    : services_(services),
      connection_(services.connection),
      desktops_(services.desktops),
      carrier_(connection_, desktops_, services.queue, [this](ManagedSpaceID space) { switchPlainly(space); }) {
  connection_.selectEvents(connection_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
}

std::optional<DesktopReading> X11Desktop::read() {
  const auto state = desktops_.read();
  if (state.spaces.empty()) {
    return std::nullopt;
  }
  DesktopDisplay display{.id = mainDisplay, .spaces = {}, .current = shown(state), .isMenuBarDisplay = true};
  for (std::size_t index = 0; index < state.spaces.size(); ++index) {
    auto& space = display.spaces.emplace_back();
    space.id = state.spaces[index];
    space.index = static_cast<std::int64_t>(index);
  }
  return DesktopReading{.displays = {std::move(display)}, .manager = managers_ << 32 | state.checkWindow};
}

/// When something else than before is in front our switch has arrived, or somebody else was faster.
std::optional<ManagedSpaceID> X11Desktop::shown(const X11DesktopState& desktops) {
  const auto active = desktops.active();
  return switch_ && active == switch_->origin && desktops.indexOf(switch_->target) ? switch_->target : active;
}

std::optional<ManagedSpaceID> X11Desktop::activeSpace() {
  return desktops_.read().active();
}

CGSBridgeHealth X11Desktop::health() {
  const bool listed = !desktops_.read().spaces.empty();
  std::uint32_t bits = CGSBridgeHealth::managedDisplaySpaces | CGSBridgeHealth::activeMenuBarDisplay |
                       CGSBridgeHealth::activeSpace | CGSBridgeHealth::notifications;
  bits |= connection_.alive() ? CGSBridgeHealth::connection : 0U;
  bits |= listed ? CGSBridgeHealth::spacesListed : 0U;
  return CGSBridgeHealth(bits);
}

bool X11Desktop::observe(std::function<void(const DesktopSign&)> observer) {
  observer_ = std::move(observer);
  windowManagerChanged();
  connection_.flush();
  return connection_.alive();
}

std::optional<std::vector<ManagedSpaceID>> X11Desktop::spacesOfWindow(WindowNumber number) {
  const auto window = services_.windows.numbers().window(number);
  if (!window) {
    return std::nullopt;
  }
  const auto reading = services_.applications.present();
  const auto* known = reading == nullptr ? nullptr : reading->screen.find(*window);
  return known == nullptr ? services_.windows.spacesOf(*window)
                          : spacesShowing(reading->screen.view.desktops, known->desktop, known->sticky);
}

bool X11Desktop::moveWindow(WindowNumber number, ManagedSpaceID space) {
  const auto window = services_.windows.numbers().window(number);
  const auto state = desktops_.present().desktops;
  const auto index = state.indexOf(space);
  // Only windows that are managed can be moved. One with a number was seen to be, and has not been destroyed since.
  const bool isManaged = window && (services_.windows.numbers().number(*window) ||
                                    services_.windows.desktopsOf({*window}).contains(*window));
  if (!isManaged || !index) {
    return false;
  }
  services_.actions.moveToDesktop(*window, static_cast<std::uint32_t>(*index), state);
  return connection_.alive();
}

DesktopAbilities X11Desktop::abilities() {
  const auto state = desktops_.present().desktops;
  const bool changes =
      canChangeCount(state) && !services_.refusals.isRefused(X11Refusals::Request::desktopCount, state);
  return {.addsSpaces = changes, .removesSpaces = changes, .movesWindows = !state.spaces.empty()};
}

bool X11Desktop::canChangeCount(const X11DesktopState& desktops) {
  return !desktops.dynamic && !desktops.spaces.empty();
}

bool X11Desktop::switchTo(ManagedSpaceID space) {
  const auto state = desktops_.present().desktops;
  if (!state.indexOf(space)) {
    return false;
  }
  if (shown(state) != space) {
    switch_ = {space, state.active(), services_.queue.after(untilSwitchGivenUp, [this] {
                 switch_.reset();
                 tell("a switch that did not come");
                 allHandled();
               })};
    if (!carrier_.carryTo(space)) {
      switchPlainly(space);
    }
  }
  return connection_.alive();
}

void X11Desktop::switchPlainly(ManagedSpaceID space) {
  if (const auto index = desktops_.present().desktops.indexOf(space)) {
    send(static_cast<std::uint32_t>(*index));
  }
}

void X11Desktop::send(std::uint32_t desktop) {
  // No X event asked for the switch, so there is no time stamp to give.
  connection_.sendToWindowManager(connection_.root(), X11Atom::netCurrentDesktop, {desktop, XCB_CURRENT_TIME, 0, 0, 0});
}

void X11Desktop::addSpace(const std::string& display, Completion completion) {
  request(
      [this, display](const X11DesktopState& /*now*/) -> std::expected<Spaces, DesktopRefusal> {
        if (display != mainDisplay) {
          return std::unexpected(DesktopRefusal::noSpace);
        }
        return services_.places.get().withNew();
      },
      std::move(completion));
}

void X11Desktop::removeSpace(ManagedSpaceID space, Completion completion) {
  request(
      [this, space](const X11DesktopState& now) -> std::expected<Spaces, DesktopRefusal> {
        const auto index = now.indexOf(space);
        if (!index || now.spaces.size() < 2) {
          return std::unexpected(DesktopRefusal::noSpace);
        }
        return services_.places.get().without(*index);
      },
      std::move(completion));
}

std::optional<std::vector<ManagedSpaceID>> X11Desktop::places() {
  const auto state = desktops_.read();
  return state.dynamic || state.spaces.empty() ? std::nullopt : std::optional(state.spaces);
}

void X11Desktop::adopt(const Spaces& spaces) {
  if (places() && !change_) {
    services_.places.adopt(spaces);
    services_.names.desktopsChanged();
    tell("the order of the desktops");
    allHandled();
  }
}

bool X11Desktop::restore(const Spaces& spaces) {
  request(
      [this, spaces](const X11DesktopState& /*now*/) -> std::expected<Spaces, DesktopRefusal> {
        return services_.places.get().withRemoved(spaces);
      },
      {});
  const auto end = std::chrono::steady_clock::now() + restorePatience;
  while (change_ && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    advance();
  }
  return !change_ && places() && services_.places.get().withRemoved(spaces) == services_.places.get().ids();
}

void X11Desktop::request(Plan plan, Completion completion) {
  requests_.push_back({std::move(plan), std::move(completion)});
  nextRequest();
}

void X11Desktop::nextRequest() {
  while (!change_ && !requests_.empty()) {
    const auto next = std::move(requests_.front());
    requests_.pop_front();
    const auto state = desktops_.read();
    auto wanted = canChangeCount(state) ? next.plan(state) : std::unexpected(DesktopRefusal::unable);
    if (wanted && wanted->size() > maximumDesktopCount) {
      wanted = std::unexpected(DesktopRefusal::unable);
    }
    if (wanted && *wanted != state.spaces) {
      begin(state, *std::move(wanted), next.completion);
    } else if (next.completion) {
      next.completion(wanted ? std::expected<void, DesktopRefusal>() : std::unexpected(wanted.error()));
    }
  }
}

void X11Desktop::begin(const X11DesktopState& before, Spaces wanted, Completion completion) {
  const auto target = [&](std::size_t index) {
    const auto found = std::ranges::find(wanted, before.spaces[index]);
    const auto place = found != wanted.end() ? static_cast<std::size_t>(found - wanted.begin()) : index;
    return static_cast<std::uint32_t>(std::min(place, wanted.size() - 1));
  };
  Change begun{.wanted = {}, .completion = std::move(completion)};
  const bool anyMoves = std::mismatch(before.spaces.begin(), before.spaces.end(), wanted.begin(), wanted.end()).first !=
                        before.spaces.end();
  if (anyMoves) {
    for (const auto& [window, desktop] : services_.windows.desktopsOfWindows()) {
      if (desktop < before.spaces.size() && target(desktop) != desktop) {
        begun.targets[window] = target(desktop);
      }
    }
  }
  if (before.current && target(*before.current) != *before.current) {
    begun.current = target(*before.current);
  }
  begun.before = before;
  begun.wanted = std::move(wanted);
  const auto patience = services_.refusals.patience(X11Refusals::Request::desktopCount, untilCounted, before);
  begun.end = services_.queue.after(patience, [this] {
    services_.refusals.note(X11Refusals::Request::desktopCount, false);
    finish(std::unexpected(DesktopRefusal::ignored));
  });
  const auto count = begun.wanted.size();
  desktops_.hold(before, count);
  change_ = std::move(begun);
  if (count != before.spaces.size()) {
    connection_.sendToWindowManager(connection_.root(), X11Atom::netNumberOfDesktops,
                                    {static_cast<std::uint32_t>(count), 0, 0, 0, 0});
  } else {
    countChanged();
  }
}

/// Looks how far the change has come, and takes its next step.
void X11Desktop::advance() {
  mayAdvance_ = false;
  const auto now = desktops_.readPlainly();
  if (!change_->counted && now.spaces.size() == change_->wanted.size()) {
    countChanged();
  }
  if (!change_ || !change_->counted || (change_->current && now.current != std::size_t{*change_->current})) {
    return;
  }
  std::vector<xcb_window_t> moving;
  std::ranges::copy(std::views::keys(change_->targets), std::back_inserter(moving));
  const auto desktops = moving.empty() ? change_->targets : services_.windows.desktopsOf(moving);
  std::erase_if(change_->targets, [&](const auto& each) {
    const auto found = desktops.find(each.first);
    return found == desktops.end() || found->second == each.second;
  });
  if (change_->targets.empty()) {
    finish({});
  }
}

/// There are as many desktops as wanted: windows and view follow.
void X11Desktop::countChanged() {
  auto& change = *change_;
  change.counted = true;
  services_.refusals.note(X11Refusals::Request::desktopCount, true);
  // The user may switch meanwhile, and windows may have gone.
  change.end = services_.queue.after(untilArrived, [this] { finish({}); });
  for (const auto& [window, desktop] : change.targets) {
    services_.actions.moveToDesktop(window, desktop, change.before);
  }
  if (change.current) {
    send(*change.current);
  }
  if (change.targets.empty() && !change.current) {
    finish({});
  }
}

void X11Desktop::finish(std::expected<void, DesktopRefusal> result) {
  if (result) {
    services_.places.assign(std::move(change_->wanted));
  }
  const auto ended = std::exchange(change_, std::nullopt);
  desktops_.release();
  services_.names.desktopsChanged();
  tell("desktops that came, went or moved");
  allHandled();
  if (ended->completion) {
    ended->completion(result);
  }
  nextRequest();
}

void X11Desktop::tell(const char* reason) {
  sign_ = sign_ == nullptr ? reason : sign_;
}

void X11Desktop::allHandled() {
  if (change_) {
    if (mayAdvance_) {
      advance();
    }
  } else if (const auto* reason = std::exchange(sign_, nullptr); reason != nullptr && observer_) {
    // A copy, as the observer may be replaced while it is being told.
    const auto observer = observer_;
    observer({reason, true});
  }
}

void X11Desktop::handle(const xcb_generic_event_t& event) {
  const int type = x11EventType(event);
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto& changed = x11EventAs<xcb_property_notify_event_t>(event);
    const auto is = [&](X11Atom atom) { return changed.atom == connection_.atom(atom); };
    if (is(X11Atom::netSupportingWmCheck) || (changed.window == checkWindow_ && is(X11Atom::netWmName))) {
      windowManagerChanged();
      tell("the window manager");
    } else if (changed.window == connection_.root()) {
      rootPropertyChanged(changed);
    } else {
      mayAdvance_ = mayAdvance_ || is(X11Atom::netWmDesktop);
    }
  } else if (type == XCB_DESTROY_NOTIFY && x11EventAs<xcb_destroy_notify_event_t>(event).window == checkWindow_) {
    windowManagerChanged();
    tell("the end of the window manager");
  }
}

void X11Desktop::rootPropertyChanged(const xcb_property_notify_event_t& event) {
  if (event.atom == connection_.atom(X11Atom::netCurrentDesktop)) {
    mayAdvance_ = true;
    switch_.reset();
    tell("the current desktop");
  } else if (event.atom == connection_.atom(X11Atom::netNumberOfDesktops)) {
    mayAdvance_ = true;
    services_.names.desktopsChanged();
    tell("the number of desktops");
  } else if (event.atom == connection_.atom(X11Atom::netDesktopNames)) {
    services_.names.namesChanged(event.sequence);
    tell("the names of the desktops");
  }
}

void X11Desktop::windowManagerChanged() {
  const auto cookie = connection_.requestProperty(connection_.root(), X11Atom::netSupportingWmCheck, XCB_ATOM_WINDOW);
  checkWindow_ = parseCardinal(connection_.takeProperty(cookie)).value_or(XCB_WINDOW_NONE);
  if (checkWindow_ != XCB_WINDOW_NONE) {
    // Its properties too: a window manager may name the window before it has filled them in. Also when the number is
    // the same as before: a window manager that is started again is often given the ids of the one that died.
    connection_.selectEvents(checkWindow_, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
  }
  ++managers_;
  services_.names.windowManagerChanged();
}

}  // namespace tallowin
