#include "commands/scripting/scripting_bridge.h"

#include <optional>

#include "base/decimal_integer.h"
#include "base/property_list_reading.h"

namespace tallowin {

namespace {

/// The integer value of a number; nothing for what is no number or does not fit.
std::optional<std::int64_t> integerValue(const PropertyList& value) {
  constexpr double limit = 0x1p63;
  if (!value.is_number_float()) {
    return property_list::integer(value);
  }
  const auto real = value.get<double>();
  return real >= -limit && real < limit ? std::optional(static_cast<std::int64_t>(real)) : std::nullopt;
}

}  // namespace

void ScriptingBridge::send(const SpaceCommand& command) const {
  if (handler) {
    handler(command);
  }
}

SpaceRef ScriptingBridge::ref(const PropertyList& value) {
  if (const auto text = property_list::text(value)) {
    const auto number = decimalInteger(*text);
    return number ? SpaceRef::number(*number) : SpaceRef::name(*text);
  }
  const auto number = integerValue(value).value_or(0);
  return number != 0 ? SpaceRef::number(number) : SpaceRef::current();
}

}  // namespace tallowin
