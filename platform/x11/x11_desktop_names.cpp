#include "platform/x11/x11_desktop_names.h"

namespace tallowin {

namespace {

/// A window manager that restarts deletes the names and writes them again; that is to be one change.
constexpr Duration settlingTime = std::chrono::milliseconds(50);
constexpr Duration rewriteWindow = std::chrono::seconds(1);

}  // namespace

void X11DesktopNames::publish(const std::map<ManagedSpaceID, std::string>& names) {
  if (names_ != names) {
    names_ = names;
    forgetRewrites();
    applySoon();
  }
}

const std::map<ManagedSpaceID, std::string>& X11DesktopNames::ownNames() {
  if (!ownNames_) {
    const auto properties = desktops_.readProperties();
    ownNames_ = tellingDesktopNames(properties, desktops_.stateOf(properties));
  }
  return *ownNames_;
}

void X11DesktopNames::forgetOwnNames() {
  ownNames_.reset();
  ownNamesChange_.tell();
}

void X11DesktopNames::desktopsChanged() {
  forgetOwnNames();
  applySoon();
}

void X11DesktopNames::namesChanged(std::uint16_t sequence) {
  if (ownChange_) {
    if (*ownChange_ == sequence) {
      ownChange_.reset();
    }
    return;
  }
  forgetOwnNames();
  if (dynamic_) {
    // Every name there is the window manager's now, even one that reads as if it had been written for the desktop that
    // stood there before; and whoever hears of the change reads the desktops at once.
    xcb_delete_property(connection_.raw(), connection_.root(), connection_.atom(X11Atom::tallowinDesktopNames));
    connection_.flush();
  }
  applySoon();
}

void X11DesktopNames::windowManagerChanged() {
  forgetOwnNames();
  forgetRewrites();
  applySoon();
}

void X11DesktopNames::forgetRewrites() {
  written_.reset();
  lastRewrite_.reset();
  stopped_ = false;
}

void X11DesktopNames::applySoon() {
  if (names_ && !stopped_) {
    pending_ = queue_.after(settlingTime, [this] { apply(); });
  }
}

void X11DesktopNames::apply() {
  const auto seen = plan();
  dynamic_ = seen.dynamic;
  if (!seen.changesAnything()) {
    return;
  }
  if (isRewrittenTooOften(seen)) {
    stopped_ = true;
    return;
  }
  // What the window manager writes between our reading and our writing would be lost, and under one whose desktops are
  // known by their names they would change places. So it waits, for one round trip.
  xcb_grab_server(connection_.raw());
  write(plan());
  xcb_ungrab_server(connection_.raw());
  connection_.flush();
}

DesktopNamesPlan X11DesktopNames::plan() {
  const auto properties = desktops_.readProperties();
  return planDesktopNames(properties, desktops_.stateOf(properties), *names_);
}

bool X11DesktopNames::isRewrittenTooOften(const DesktopNamesPlan& plan) {
  if (!written_ || written_->wanted == plan.current || written_->spaces != plan.spaces ||
      (plan.dynamic && written_->record.own != plan.record.own)) {
    return false;
  }
  const auto now = clock_.systemUptime();
  const bool again = lastRewrite_ && now - *lastRewrite_ < rewriteWindow;
  lastRewrite_ = now;
  return again;
}

void X11DesktopNames::write(const DesktopNamesPlan& plan) {
  // The record first: the window manager's own names are never only in memory.
  if (plan.record != plan.recorded) {
    writeTexts(X11Atom::tallowinDesktopNames,
               plan.record == DesktopNamesRecord() ? "" : encodeDesktopNamesRecord(plan.record));
  }
  if (plan.wanted != plan.current) {
    ownChange_ = writeTexts(X11Atom::netDesktopNames, encodeTexts(plan.wanted));
  }
  written_ = plan;
}

std::uint16_t X11DesktopNames::writeTexts(X11Atom property, const std::string& bytes) {
  const auto atom = connection_.atom(property);
  // Events carry the lower half of the number of the request that they answer.
  if (bytes.empty()) {
    return static_cast<std::uint16_t>(xcb_delete_property(connection_.raw(), connection_.root(), atom).sequence);
  }
  return static_cast<std::uint16_t>(xcb_change_property(connection_.raw(), XCB_PROP_MODE_REPLACE, connection_.root(),
                                                        atom, connection_.atom(X11Atom::utf8String), 8,
                                                        static_cast<std::uint32_t>(bytes.size()), bytes.data())
                                        .sequence);
}

}  // namespace tallowin
