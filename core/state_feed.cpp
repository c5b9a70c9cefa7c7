#include "core/state_feed.h"

#include <algorithm>

#include "base/json_text.h"
#include "base/unicode.h"
#include "core/space_state.h"

namespace tallowin {

namespace {

/// Whether what was said of a Space that is still there has changed.
bool differs(const std::map<std::string, PropertyList>& before, const std::map<std::string, PropertyList>& now) {
  return std::ranges::any_of(now, [&](const auto& entry) {
    const auto old = before.find(entry.first);
    return old != before.end() && old->second != entry.second;
  });
}

}  // namespace

StateFeed::StateFeed(const ProgramServices& services, SpaceChanges& changes, AppNames apps)
    : services_(services), apps_(std::move(apps)), changes_(changes.observe([this] { refresh(); })) {}

void StateFeed::add(std::shared_ptr<Caller> caller, Form form) {
  refresh();  // the others are to know what this one is told
  if (caller->out(line("state", form))) {
    readers_.push_back({std::move(caller), std::move(form)});
    last_ = state();
  }
}

void StateFeed::refresh() {
  if (readers_.empty()) {
    return;
  }
  const auto before = std::exchange(last_, state());
  if (before.spaces != last_.spaces) {
    tell("spaces");
  }
  if (before.active != last_.active) {
    tell("active");
  }
  if (differs(before.said, last_.said)) {
    tell("names");
  }
}

void StateFeed::tell(const std::string& change) {
  ++sequence_;
  std::erase_if(readers_, [&](const Reader& reader) { return !reader.caller->out(line(change, reader.form)); });
}

StateFeed::State StateFeed::state() const {
  State state;
  const auto& snapshot = services_.watcher.latest();
  for (const auto& display : snapshot.displays) {
    state.spaces.push_back("display " + display.id);
    state.active.push_back((display.isMenuBarDisplay ? "* " : "") + display.activeSpaceID.value_or(""));
    for (const auto& space : display.spaces) {
      state.spaces.push_back(space.id + (space.isFullscreen ? " full screen" : ""));
      const auto meta = services_.store.meta(space.id);
      state.said[space.id] = {services_.store.displayName(space), services_.store.symbol(space),
                              meta.colorHex.value_or(""), meta.note.value_or("")};
    }
  }
  return state;
}

std::string StateFeed::line(const std::string& change, const Form& form) const {
  if (form.json) {
    return compactJSON(record(change)) + "\n";
  }
  const auto active = services_.watcher.latest().activeSpace();
  if (form.format) {
    return active ? form.format->line(*active, services_.store) : "\n";
  }
  const auto number = active ? desktopNumberText(*active) : "-";
  const auto name = active ? printable(services_.store.displayName(*active)) : "";
  return std::to_string(sequence_) + "\t" + change + "\t" + number + "\t" + name + "\n";
}

PropertyList StateFeed::record(const std::string& change) const {
  const auto& snapshot = services_.watcher.latest();
  auto record = stateRecord(snapshot, services_.store, apps_, services_.clock.now());
  const auto active = snapshot.activeSpace();
  record["sequence"] = sequence_;
  record["change"] = change;
  record["text"] = active ? printable(services_.store.displayName(*active)) : "";
  record["alt"] = active && active->desktopNumber ? std::to_string(*active->desktopNumber) : "";
  record["class"] = active && active->isFullscreen ? "fullscreen" : "desktop";
  auto tooltip = spaceList(snapshot, services_.store);
  tooltip.erase(tooltip.find_last_not_of('\n') + 1);
  record["tooltip"] = tooltip;
  return record;
}

}  // namespace tallowin
