#include "platform/simulated/simulated_event.h"

#include <tuple>

#include "base/json_text.h"

namespace tallowin {

namespace {

constexpr std::string_view version("\0\0\0\2", 4);

/// Time stamp, flags, location and fields.
using Serialised = std::tuple<std::uint64_t, std::uint64_t, double, double, std::map<CGEventField, PropertyList>>;

}  // namespace

std::int64_t SimulatedEvent::integer(CGEventField field) const {
  const auto found = fields.find(field);
  return found != fields.end() ? found->second.get<std::int64_t>() : 0;
}

double SimulatedEvent::real(CGEventField field) const {
  const auto found = fields.find(field);
  return found != fields.end() ? found->second.get<double>() : 0;
}

std::string SimulatedEvent::serialised() const {
  const PropertyList list = Serialised{timestamp, flags, location.x, location.y, fields};
  return std::string(version) + list.dump() + '\n' + payload;
}

std::optional<SimulatedEvent> SimulatedEvent::deserialised(std::string_view bytes) {
  const auto end = bytes.find('\n');
  if (!bytes.starts_with(version) || end == std::string_view::npos) {
    return std::nullopt;
  }
  const auto list = parseJSON(bytes.substr(version.size(), end - version.size()));
  if (!list) {
    return std::nullopt;
  }
  SimulatedEvent event;
  std::tie(event.timestamp, event.flags, event.location.x, event.location.y, event.fields) = list->get<Serialised>();
  event.payload = bytes.substr(end + 1);
  return event;
}

}  // namespace tallowin
