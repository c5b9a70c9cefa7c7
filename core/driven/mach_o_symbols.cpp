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

/// Where the load commands that matter are in the image.
struct Commands {
  std::optional<std::uint64_t> linkEdit;
  std::optional<std::uint64_t> symbolTable;
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

/// Sums and differences of addresses, which do not overflow.
using WideAddress = __int128;
constexpr WideAddress addressEnd = WideAddress{1} << 64;

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
    constexpr std::string_view linkEdit("__LINKEDIT\0\0\0\0\0\0", segmentNameLength);
    if (kind == segmentKind && size >= segmentSize && bytes.text(at + 8, segmentNameLength) == linkEdit) {
      commands.linkEdit = at;
    } else if (kind == symbolTableKind && size >= symbolTableSize) {
      commands.symbolTable = at;
    }
    at += size;
  }
  return commands;
}

/// Where a part of the link-edit segment lies in the image's bytes, if it lies wholly inside both.
std::optional<std::uint64_t> offsetInImage(const LoadedImage& image, std::uint64_t linkEdit, std::uint64_t fileOffset,
                                           std::uint64_t size) {
  const Bytes bytes(image.bytes);
  const auto start = WideAddress{*bytes.number<std::uint64_t>(linkEdit + 24)} + image.slide;
  const auto end = start + *bytes.number<std::uint64_t>(linkEdit + 32);
  const auto address = start - *bytes.number<std::uint64_t>(linkEdit + 40) + fileOffset;
  const auto offset = address - image.loadAddress;
  if (start < 0 || end > addressEnd || address < start || address + size > end || offset < 0 || offset >= addressEnd) {
    return std::nullopt;
  }
  const auto found = static_cast<std::uint64_t>(offset);
  return bytes.covers(found, size) ? std::optional(found) : std::nullopt;
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
  if (!commands || !commands->linkEdit || !commands->symbolTable) {
    return std::nullopt;
  }
  const auto member = [&](std::uint64_t at) { return *bytes.number<std::uint32_t>(*commands->symbolTable + at); };
  const auto count = member(12);
  const auto stringSize = member(20);
  const auto entries = offsetInImage(image, *commands->linkEdit, member(8), std::uint64_t{count} * symbolEntrySize);
  const auto stringsAt = offsetInImage(image, *commands->linkEdit, member(16), stringSize);
  if (!entries || !stringsAt) {
    return std::nullopt;
  }
  const auto strings = bytes.text(*stringsAt, stringSize);
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint64_t entry = *entries + i * symbolEntrySize;
    const auto nameOffset = *bytes.number<std::uint32_t>(entry);
    const auto value = *bytes.number<std::uint64_t>(entry + 8);
    if (nameOffset != 0 && value != 0 && holdsName(strings, nameOffset, name)) {
      const auto address = WideAddress{value} + image.slide;
      return address >= 0 && address < addressEnd ? std::optional(static_cast<std::uint64_t>(address)) : std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace tallowin
