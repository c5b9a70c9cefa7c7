#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tallowin {

/// One entry of a symbol table.
struct MachOSymbol {
  std::string name;
  std::uint64_t value = 0;
  std::optional<std::uint32_t> stringIndex;  ///< in place of the right one
  bool terminated = true;                    ///< whether a zero follows the name
};

/// Makes small 64-bit Mach-O images (mach-o/loader.h, mach-o/nlist.h): a header, a segment command for the link-edit
/// segment, a symbol-table command, and the link-edit segment with symbols and strings right behind. What is not set
/// comes out right; setting it makes images that are wrong in one known way.
struct MachOImageBuilder {
  static constexpr std::uint32_t magic64 = 0xfeedfacf;
  static constexpr std::uint32_t segmentKind = 25;     // LC_SEGMENT_64
  static constexpr std::uint32_t symbolTableKind = 2;  // LC_SYMTAB
  static constexpr std::size_t headerSize = 32;
  static constexpr std::size_t segmentCommandSize = 72;
  static constexpr std::size_t symbolTableCommandSize = 24;
  static constexpr std::size_t symbolSize = 16;

  std::vector<MachOSymbol> symbols;
  std::uint32_t magic = magic64;
  std::string segmentName = "__LINKEDIT";
  /// The address that the image's first byte was linked for.
  std::uint64_t linkedAt = 0;
  bool hasSegment = true;
  bool hasSymbolTable = true;
  std::optional<std::uint32_t> commandCount;
  std::optional<std::uint32_t> commandsSize;
  std::optional<std::uint32_t> segmentSizeOfCommand;
  std::optional<std::uint64_t> segmentAddress;
  std::optional<std::uint64_t> segmentSize;  ///< mapped
  std::optional<std::uint64_t> segmentFileOffset;
  std::optional<std::uint32_t> symbolTableSizeOfCommand;
  std::optional<std::uint32_t> symbolOffset;
  std::optional<std::uint32_t> symbolCount;
  std::optional<std::uint32_t> stringOffset;
  std::optional<std::uint32_t> stringSize;

  [[nodiscard]] std::vector<std::byte> build() const;
};

}  // namespace tallowin
