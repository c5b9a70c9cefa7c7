#include "platform/emulated/emulated_event.h"

#include <bit>
#include <cmath>
#include <limits>

namespace tallowin {

namespace {

constexpr std::uint32_t serialisedVersion = 2;
constexpr char integerKind = 0;
constexpr char realKind = 1;

template <typename Unsigned>
void append(std::string& bytes, Unsigned value) {
  for (std::size_t shift = sizeof(Unsigned) * 8; shift > 0; shift -= 8) {
    bytes.push_back(static_cast<char>(static_cast<unsigned char>(value >> (shift - 8))));
  }
}

/// Takes numbers off the front of `bytes`; once they run out everything reads as nothing.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  template <typename Unsigned>
  std::optional<Unsigned> take() {
    if (bytes_.size() < sizeof(Unsigned)) {
      return std::nullopt;
    }
    Unsigned value = 0;
    for (std::size_t i = 0; i < sizeof(Unsigned); ++i) {
      value = static_cast<Unsigned>(value << 8 | static_cast<unsigned char>(bytes_[i]));
    }
    bytes_.remove_prefix(sizeof(Unsigned));
    return value;
  }

  [[nodiscard]] std::string_view rest() const { return bytes_; }

 private:
  std::string_view bytes_;
};

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

bool takeField(Reader& reader, EmulatedEvent& event) {
  const auto number = reader.take<std::uint32_t>();
  const auto kind = reader.take<std::uint8_t>();
  const auto bits = reader.take<std::uint64_t>();
  if (!number || !kind || !bits || *kind > realKind) {
    return false;
  }
  if (*kind == realKind) {
    event.fields[*number] = std::bit_cast<double>(*bits);
  } else {
    event.fields[*number] = std::bit_cast<std::int64_t>(*bits);
  }
  return true;
}

}  // namespace

std::int64_t EmulatedEvent::integer(CGEventField field) const {
  const auto found = fields.find(field);
  if (found == fields.end()) {
    return 0;
  }
  const auto* value = std::get_if<std::int64_t>(&found->second);
  return value != nullptr ? *value : clampedToInteger(std::get<double>(found->second));
}

double EmulatedEvent::real(CGEventField field) const {
  const auto found = fields.find(field);
  if (found == fields.end()) {
    return 0;
  }
  const auto* value = std::get_if<double>(&found->second);
  return value != nullptr ? *value : static_cast<double>(std::get<std::int64_t>(found->second));
}

std::string EmulatedEvent::serialised() const {
  std::string bytes;
  append(bytes, serialisedVersion);
  append(bytes, timestamp);
  append(bytes, flags);
  append(bytes, std::bit_cast<std::uint64_t>(location.x));
  append(bytes, std::bit_cast<std::uint64_t>(location.y));
  append(bytes, static_cast<std::uint32_t>(fields.size()));
  for (const auto& [number, field] : fields) {
    append(bytes, number);
    if (const auto* real = std::get_if<double>(&field)) {
      bytes.push_back(realKind);
      append(bytes, std::bit_cast<std::uint64_t>(*real));
    } else {
      bytes.push_back(integerKind);
      append(bytes, std::bit_cast<std::uint64_t>(std::get<std::int64_t>(field)));
    }
  }
  return bytes + payload;
}

std::optional<EmulatedEvent> EmulatedEvent::deserialised(std::string_view bytes) {
  Reader reader(bytes);
  if (reader.take<std::uint32_t>() != serialisedVersion) {
    return std::nullopt;
  }
  const auto timestamp = reader.take<std::uint64_t>();
  const auto flags = reader.take<std::uint64_t>();
  const auto x = reader.take<std::uint64_t>();
  const auto y = reader.take<std::uint64_t>();
  const auto count = reader.take<std::uint32_t>();
  if (!timestamp || !flags || !x || !y || !count) {
    return std::nullopt;
  }
  EmulatedEvent event;
  event.timestamp = *timestamp;
  event.flags = *flags;
  event.location = {std::bit_cast<double>(*x), std::bit_cast<double>(*y)};
  for (std::uint32_t i = 0; i < *count; ++i) {
    if (!takeField(reader, event)) {
      return std::nullopt;
    }
  }
  event.payload = reader.rest();
  return event;
}

}  // namespace tallowin
