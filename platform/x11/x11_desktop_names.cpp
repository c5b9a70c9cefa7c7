#include "platform/x11/x11_desktop_names.h"

#include <algorithm>
#include <iterator>

#include "base/words.h"

namespace tallowin {

namespace {

/// A window manager that restarts deletes the names and writes them again; that is to be one change.
constexpr Duration settlingTime = std::chrono::milliseconds(50);
constexpr Duration rewriteWindow = std::chrono::seconds(1);

/// As many as both lists and the number before them can have.
constexpr std::size_t mostTexts = 2 * std::size_t{maximumDesktopCount} + 1;

/// What fits in the list: `name` as a valid text without the byte that ends texts there.
std::string presentable(const std::string& name) {
  auto text = validUtf8(name);
  std::erase(text, '\0');
  return text;
}

/// What the window manager calls its desktops beside their numbers: "Workspace " for "Workspace 1", "Workspace 2"; an
/// empty text for "1", "2". Nothing when its names, those that are empty apart, are others or there are none.
std::optional<std::string> stemOf(const std::vector<std::string>& own) {
  std::optional<std::string> stem;
  for (std::size_t index = 0; index < own.size(); ++index) {
    const auto number = std::to_string(index + 1);
    const auto& name = own[index];
    if (name.empty()) {
      continue;
    }
    if (!name.ends_with(number) || (stem && *stem + number != name)) {
      return std::nullopt;
    }
    stem = name.substr(0, name.size() - number.size());
  }
  return stem;
}

std::vector<std::string> withNames(const std::vector<std::string>& own, const std::vector<ManagedSpaceID>& spaces,
                                   const std::map<ManagedSpaceID, std::string>& names) {
  auto list = own;
  list.resize(std::max(list.size(), spaces.size()));
  const auto stem = stemOf(own).value_or("Desktop ");
  bool named = false;
  for (std::size_t index = 0; index < spaces.size(); ++index) {
    const auto found = names.find(spaces[index]);
    const auto name = found != names.end() ? presentable(found->second) : std::string();
    named = named || !name.empty();
    if (!name.empty()) {
      list[index] = name;
    } else if (list[index].empty()) {
      list[index] = stem + std::to_string(index + 1);
    }
  }
  return named ? list : own;
}

/// Whether it has nothing but digits.
bool isNumber(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

/// Whether the lists come back whole when they are read. A list that is as long as can be read may have been longer.
bool canBeReadBack(const DesktopNamesPlan& plan) {
  return plan.current.size() < maximumDesktopCount &&
         encodeDesktopNamesRecord({plan.wanted, plan.current}).size() < longestPropertyBytes &&
         encodeDesktopNamesRecord(plan.record).size() < longestPropertyBytes;
}

}  // namespace

DesktopNamesRecord parseDesktopNamesRecord(const X11Property& property) {
  const auto texts = parseTexts(property, mostTexts);
  const auto count = texts.empty() ? 0 : decimalInteger(texts[0]).value_or(0);
  if (count <= 0 || count >= std::ssize(texts)) {
    return {};
  }
  const auto middle = texts.begin() + 1 + count;
  return {.written = {texts.begin() + 1, middle}, .own = {middle, texts.end()}};
}

std::string encodeDesktopNamesRecord(const DesktopNamesRecord& record) {
  return encodeTexts({std::to_string(record.written.size())}) + encodeTexts(record.written) + encodeTexts(record.own);
}

std::string encodeTexts(const std::vector<std::string>& texts) {
  std::string bytes;
  for (const auto& text : texts) {
    bytes += text;
    bytes += '\0';
  }
  return bytes;
}

std::vector<std::string> ownDesktopNames(const std::vector<std::string>& current, const DesktopNamesRecord& record,
                                         bool dynamic) {
  if (current == record.written) {
    return record.own;
  }
  if (dynamic) {
    return current;
  }
  std::vector<std::string> own;
  for (std::size_t index = 0; index < current.size(); ++index) {
    const bool written = index < record.written.size() && current[index] == record.written[index];
    if (!written || index < record.own.size()) {
      own.resize(index);  // what only filled the list up to here has no name
      own.push_back(written ? record.own[index] : current[index]);
    }
  }
  return own;
}

DesktopNamesPlan planDesktopNames(const X11DesktopProperties& properties, const X11DesktopState& state,
                                  const std::map<ManagedSpaceID, std::string>& names) {
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

std::map<ManagedSpaceID, std::string> tellingDesktopNames(const X11DesktopProperties& properties,
                                                          const X11DesktopState& state) {
  const auto own = ownDesktopNames(parseDesktopNames(properties.desktopNames),
                                   parseDesktopNamesRecord(properties.desktopNamesRecord), state.dynamic);
  std::map<ManagedSpaceID, std::string> names;
  if (stemOf(own)) {
    return names;
  }
  for (std::size_t index = 0; index < std::min(own.size(), state.spaces.size()); ++index) {
    const auto& name = own[index];
    if (!name.empty() && name != std::to_string(index + 1) && !(state.dynamic && isNumber(name))) {
      names.emplace(state.spaces[index], name);
    }
  }
  return names;
}

void X11DesktopNames::publish(const std::map<ManagedSpaceID, std::string>& names) {
  if (names_ != names) {
    names_ = names;
    forgetRewrites();
    applySoon();
  }
}

const std::map<ManagedSpaceID, std::string>& X11DesktopNames::ownNames() {
  if (!ownNames_) {
    const auto view = desktops_.look();
    ownNames_ = tellingDesktopNames(view.properties, view.desktops);
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
  const auto view = desktops_.look();
  return planDesktopNames(view.properties, view.desktops, *names_);
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
