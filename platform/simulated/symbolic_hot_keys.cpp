#include "platform/simulated/symbolic_hot_keys.h"

#include <array>

#include "platform/events.h"

namespace tallowin {

namespace {

// HIToolbox/Events.h.
constexpr VirtualKeyCode leftArrow = 123;
constexpr VirtualKeyCode rightArrow = 124;
constexpr std::array<VirtualKeyCode, 10> digits = {18, 19, 20, 21, 23, 22, 26, 28, 25, 29};  // 1 to 9, then 0
// Arrow keys carry these beside the modifiers (CGEventTypes.h: numeric pad and secondary Fn).
constexpr std::uint64_t arrowKeyFlags = 0xA00000;

}  // namespace

SymbolicHotKeys::SymbolicHotKeys() {
  entries_[symbolic_hot_key::moveLeft] = {SymbolicHotKeyBinding{leftArrow, CGEventFlag::control | arrowKeyFlags}, true};
  entries_[symbolic_hot_key::moveRight] = {SymbolicHotKeyBinding{rightArrow, CGEventFlag::control | arrowKeyFlags},
                                           true};
  for (std::size_t index = 0; index < symbolic_hot_key::desktops; ++index) {
    const int hotKey = symbolic_hot_key::firstDesktop + static_cast<int>(index);
    const std::uint64_t option = index < digits.size() ? 0 : CGEventFlag::alternate;
    entries_[hotKey] = {SymbolicHotKeyBinding{digits.at(index % digits.size()), CGEventFlag::control | option}, true};
  }
}

std::optional<SymbolicHotKeyBinding> SymbolicHotKeys::binding(int hotKey) const {
  const auto found = entries_.find(hotKey);
  return found == entries_.end() ? std::nullopt : found->second.binding;
}

bool SymbolicHotKeys::isEnabled(int hotKey) const {
  const auto found = entries_.find(hotKey);
  return found != entries_.end() && found->second.enabled;
}

bool SymbolicHotKeys::setEnabled(int hotKey, bool enabled) {
  const auto found = entries_.find(hotKey);
  if (found == entries_.end()) {
    return false;
  }
  found->second.enabled = enabled;
  return true;
}

void SymbolicHotKeys::bind(int hotKey, std::optional<SymbolicHotKeyBinding> binding) {
  entries_[hotKey].binding = binding;
}

std::optional<int> SymbolicHotKeys::match(VirtualKeyCode keyCode, std::uint64_t flags) const {
  for (const auto& [hotKey, entry] : entries_) {
    if (entry.enabled && entry.binding && entry.binding->keyCode == keyCode &&
        (entry.binding->modifierFlags & CGEventFlag::modifiers) == (flags & CGEventFlag::modifiers)) {
      return hotKey;
    }
  }
  return std::nullopt;
}

}  // namespace tallowin
