#include "platform/simulated/simulated_event.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/json_text.h"
#include "platform/property_list.h"

namespace tallowin {

namespace {

constexpr std::string_view version("\0\0\0\2", 4);
constexpr std::ptrdiff_t fixedParts = 4;  // before the fields

std::int64_t clampedToInteger(double value) {
  // 2^63 is the first double above every 64-bit integer.
  constexpr double limit = 9223372036854775808.0;
  if (std::isnan(value)) {
    return 0;
  }
  if (value >= limit) {
    return std::numeric_limits<std::int64_t>::max();
  }
  return value < -limit ? std::numeric_limits<std::int64_t>::min() : static_cast<std::int64_t>(value);
}

}  // namespace

std::int64_t SimulatedEvent::integer(CGEventField field) const {
  const auto found = fields.find(field);
  if (found == fields.end()) {
    return 0;
  }
  const auto* value = std::get_if<std::int64_t>(&found->second);
  return value != nullptr ? *value : clampedToInteger(std::get<double>(found->second));
}

double SimulatedEvent::real(CGEventField field) const {
  const auto found = fields.find(field);
  if (found == fields.end()) {
    return 0;
  }
  const auto* value = std::get_if<double>(&found->second);
  return value != nullptr ? *value : static_cast<double>(std::get<std::int64_t>(found->second));
}

std::string SimulatedEvent::serialised() const {
  auto list = PropertyList::array({timestamp, flags, location.x, location.y});
  for (const auto& [number, field] : fields) {
    std::visit([&, key = number](auto value) { list.push_back({key, value}); }, field);
  }
  return std::string(version) + list.dump() + '\n' + payload;
}

std::optional<SimulatedEvent> SimulatedEvent::deserialised(std::string_view bytes) {
  const auto end = bytes.find('\n');
  if (!bytes.starts_with(version) || end == std::string_view::npos) {
    return std::nullopt;
  }
  const auto list = parseJSON(bytes.substr(version.size(), end - version.size()));
  const auto isNumber = [](const PropertyList& value) { return value.is_number(); };
  if (!list || !list->is_array() || std::ssize(*list) < fixedParts ||
      !std::all_of(list->begin(), list->begin() + fixedParts, isNumber)) {
    return std::nullopt;
  }
  SimulatedEvent event;
  event.timestamp = (*list)[0];
  event.flags = (*list)[1];
  event.location = {(*list)[2], (*list)[3]};
  for (auto field = list->begin() + fixedParts; field != list->end(); ++field) {
    if (!field->is_array() || field->size() != 2 || !std::ranges::all_of(*field, isNumber)) {
      return std::nullopt;
    }
    const CGEventField number = (*field)[0];
    if ((*field)[1].is_number_float()) {
      event.fields[number] = (*field)[1].get<double>();
    } else {
      event.fields[number] = (*field)[1].get<std::int64_t>();
    }
  }
  event.payload = bytes.substr(end + 1);
  return event;
}

}  // namespace tallowin
