#include "core/driven/mach_o_symbols.h"

#include <cstring>

namespace tallowin {

namespace {

// The layout of mach-o/loader.h and mach-o/nlist.h.
constexpr std::uint32_t magic64 = 0xfeedfacf;     // MH_MAGIC_64
constexpr std::uint64_t headerSize = 32;          // struct mach_header_64
constexpr std::uint64_t commandCountOffset = 16;  // ncmds
constexpr std::uint64_t commandsSizeOffset = 20;  // sizeofcmds
constexpr std::uint32_t symbolTableKind = 2;      // LC_SYMTAB
constexpr std::uint32_t segmentKind = 25;         // LC_SEGMENT_64
constexpr std::uint32_t minimumCommandSize = 8;   // struct load_command
constexpr std::uint32_t symbolTableSize = 24;     // struct symtab_command
constexpr std::uint32_t segmentSize = 72;         // struct segment_command_64
constexpr std::uint64_t symbolEntrySize = 16;     // struct nlist_64
constexpr std::size_t segmentNameLength = 16;

struct Segment {
  std::uint64_t address;
  std::uint64_t size;
  std::uint64_t fileOffset;
};

struct SymbolTable {
  std::uint32_t symbolOffset;
  std::uint32_t symbolCount;
  std::uint32_t stringOffset;
  std::uint32_t stringSize;
};

struct Commands {
  std::optional<Segment> linkEdit;
  std::optional<SymbolTable> symbols;
};

/// Reads numbers out of the image. Mach-O images of this process have its byte order.
class Bytes {
 public:
  explicit Bytes(std::span<const std::byte> bytes) : bytes_(bytes) {}

  [[nodiscard]] bool covers(std::uint64_t offset, std::uint64_t size) const {
    return offset <= bytes_.size() && size <= bytes_.size() - offset;
  }

  template <typename Number>
  [[nodiscard]] std::optional<Number> number(std::uint64_t offset) const {
    if (!covers(offset, sizeof(Number))) {
      return std::nullopt;
    }
    Number value{};
    std::memcpy(&value, bytes_.data() + offset, sizeof value);
    return value;
  }

  /// The characters from `offset` on; the range must be covered.
  [[nodiscard]] std::string_view text(std::uint64_t offset, std::uint64_t size) const {
    return {reinterpret_cast<const char*>(bytes_.data()) + offset, size};
  }

 private:
  std::span<const std::byte> bytes_;
};

/// Sums and differences of addresses that become nothing when one overflows.
class Address {
 public:
  explicit Address(std::uint64_t value) : value_(value) {}

  Address& operator+=(std::uint64_t summand) {
    valid_ = !__builtin_add_overflow(value_, summand, &value_) && valid_;
    return *this;
  }
  Address& operator-=(std::uint64_t subtrahend) {
    valid_ = !__builtin_sub_overflow(value_, subtrahend, &value_) && valid_;
    return *this;
  }
  Address& slideBy(std::int64_t slide) {
    valid_ = !__builtin_add_overflow(value_, slide, &value_) && valid_;
    return *this;
  }
  [[nodiscard]] std::optional<std::uint64_t> value() const { return valid_ ? std::optional(value_) : std::nullopt; }

 private:
  std::uint64_t value_;
  bool valid_ = true;
};

void readSegment(const Bytes& bytes, std::uint64_t at, Commands& commands) {
  constexpr std::string_view linkEdit("__LINKEDIT\0\0\0\0\0\0", segmentNameLength);
  if (bytes.text(at + 8, segmentNameLength) == linkEdit) {
    commands.linkEdit = Segment{*bytes.number<std::uint64_t>(at + 24), *bytes.number<std::uint64_t>(at + 32),
                                *bytes.number<std::uint64_t>(at + 40)};
  }
}

void readSymbolTable(const Bytes& bytes, std::uint64_t at, Commands& commands) {
  commands.symbols = SymbolTable{*bytes.number<std::uint32_t>(at + 8), *bytes.number<std::uint32_t>(at + 12),
                                 *bytes.number<std::uint32_t>(at + 16), *bytes.number<std::uint32_t>(at + 20)};
}

std::optional<Commands> readCommands(const Bytes& bytes) {
  const auto count = bytes.number<std::uint32_t>(commandCountOffset);
  const auto total = bytes.number<std::uint32_t>(commandsSizeOffset);
  if (!count || !total || !bytes.covers(headerSize, *total)) {
    return std::nullopt;
  }
  Commands commands;
  const std::uint64_t end = headerSize + *total;
  std::uint64_t at = headerSize;
  for (std::uint32_t i = 0; i < *count; ++i) {
    if (end - at < minimumCommandSize) {
      return std::nullopt;
    }
    const auto kind = *bytes.number<std::uint32_t>(at);
    const auto size = *bytes.number<std::uint32_t>(at + 4);
    if (size < minimumCommandSize || size > end - at) {
      return std::nullopt;
    }
    if (kind == segmentKind && size >= segmentSize) {
      readSegment(bytes, at, commands);
    } else if (kind == symbolTableKind && size >= symbolTableSize) {
      readSymbolTable(bytes, at, commands);
    }
    at += size;
  }
  return commands;
}

/// Where a part of the link-edit segment lies in the image's bytes, if it lies wholly inside both.
std::optional<std::uint64_t> offsetInImage(const LoadedImage& image, const Segment& linkEdit, std::uint64_t fileOffset,
                                           std::uint64_t size) {
  const auto start = Address(linkEdit.address).slideBy(image.slide).value();
  if (!start) {
    return std::nullopt;
  }
  const auto address = (Address(*start) -= linkEdit.fileOffset) += fileOffset;
  const auto segmentEnd = (Address(*start) += linkEdit.size).value();
  auto last = address;
  const auto end = (last += size).value();
  if (!address.value() || !segmentEnd || !end || *address.value() < *start || *end > *segmentEnd) {
    return std::nullopt;
  }
  auto relative = address;
  const auto offset = (relative -= image.loadAddress).value();
  return offset && Bytes(image.bytes).covers(*offset, size) ? offset : std::nullopt;
}

/// Whether the string table, from `offset` on, holds `name` and the zero that ends it.
bool holdsName(std::string_view strings, std::uint32_t offset, std::string_view name) {
  return offset < strings.size() && strings.size() - offset > name.size() &&
         strings.substr(offset, name.size()) == name && strings[offset + name.size()] == '\0';
}

}  // namespace

bool isMachO64(std::span<const std::byte> image) {
  return Bytes(image).number<std::uint32_t>(0) == magic64;
}

std::optional<std::uint64_t> addressOfSymbol(const LoadedImage& image, std::string_view name) {
  const Bytes bytes(image.bytes);
  const auto commands = isMachO64(image.bytes) ? readCommands(bytes) : std::nullopt;
  if (!commands || !commands->linkEdit || !commands->symbols) {
    return std::nullopt;
  }
  const auto& table = *commands->symbols;
  if (table.symbolCount == 0 || table.stringSize == 0) {
    return std::nullopt;
  }
  const auto entries =
      offsetInImage(image, *commands->linkEdit, table.symbolOffset, std::uint64_t{table.symbolCount} * symbolEntrySize);
  const auto stringsAt = offsetInImage(image, *commands->linkEdit, table.stringOffset, table.stringSize);
  if (!entries || !stringsAt) {
    return std::nullopt;
  }
  const auto strings = bytes.text(*stringsAt, table.stringSize);
  for (std::uint32_t i = 0; i < table.symbolCount; ++i) {
    const std::uint64_t entry = *entries + i * symbolEntrySize;
    const auto nameOffset = *bytes.number<std::uint32_t>(entry);
    const auto value = *bytes.number<std::uint64_t>(entry + 8);
    if (nameOffset != 0 && value != 0 && holdsName(strings, nameOffset, name)) {
      return Address(value).slideBy(image.slide).value();
    }
  }
  return std::nullopt;
}

}  // namespace tallowin
