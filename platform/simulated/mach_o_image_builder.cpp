#include "platform/simulated/mach_o_image_builder.h"

#include <string_view>

namespace tallowin {

namespace {

class Bytes {
 public:
  template <typename Unsigned>
  void put(Unsigned value) {
    for (std::size_t i = 0; i < sizeof(Unsigned); ++i) {
      bytes_.push_back(static_cast<std::byte>(value >> (8 * i)));
    }
  }

  /// The text, cut off or filled up with zeros to `width` bytes.
  void put(std::string_view text, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) {
      bytes_.push_back(i < text.size() ? static_cast<std::byte>(text[i]) : std::byte{0});
    }
  }

  [[nodiscard]] std::vector<std::byte> take() && { return std::move(bytes_); }

 private:
  std::vector<std::byte> bytes_;
};

std::uint32_t word(std::size_t value) {
  return static_cast<std::uint32_t>(value);
}

/// Where things are in a right image.
struct Layout {
  std::size_t commands = 0;       ///< how many
  std::size_t commandsSize = 0;   ///< in bytes
  std::size_t linkEdit = 0;       ///< offset of the symbols
  std::size_t strings = 0;        ///< offset of the string table
  std::string stringTable{'\0'};  // index 0 names nothing
  std::vector<std::uint32_t> indices;
};

Layout layOut(const MachOImageBuilder& image) {
  Layout layout;
  layout.commands = std::size_t{image.hasSegment} + std::size_t{image.hasSymbolTable};
  layout.commandsSize = (image.hasSegment ? MachOImageBuilder::segmentCommandSize : 0) +
                        (image.hasSymbolTable ? MachOImageBuilder::symbolTableCommandSize : 0);
  layout.linkEdit = MachOImageBuilder::headerSize + layout.commandsSize;
  layout.strings = layout.linkEdit + image.symbols.size() * MachOImageBuilder::symbolSize;
  for (const auto& symbol : image.symbols) {
    layout.indices.push_back(symbol.stringIndex.value_or(word(layout.stringTable.size())));
    layout.stringTable += symbol.name;
    if (symbol.terminated) {
      layout.stringTable += '\0';
    }
  }
  return layout;
}

void putSegment(Bytes& bytes, const MachOImageBuilder& image, const Layout& layout) {
  const auto size = layout.strings + layout.stringTable.size() - layout.linkEdit;
  bytes.put(MachOImageBuilder::segmentKind);
  bytes.put(image.segmentSizeOfCommand.value_or(word(MachOImageBuilder::segmentCommandSize)));
  bytes.put(image.segmentName, 16);
  bytes.put(image.segmentAddress.value_or(image.linkedAt + layout.linkEdit));
  bytes.put(image.segmentSize.value_or(std::uint64_t{size}));
  bytes.put(image.segmentFileOffset.value_or(std::uint64_t{layout.linkEdit}));
  bytes.put(std::uint64_t{size});
  // Protections (readable), number of sections, flags.
  bytes.put(std::uint32_t{1});
  bytes.put(std::uint32_t{1});
  bytes.put(std::uint64_t{0});
}

void putSymbolTable(Bytes& bytes, const MachOImageBuilder& image, const Layout& layout) {
  bytes.put(MachOImageBuilder::symbolTableKind);
  bytes.put(image.symbolTableSizeOfCommand.value_or(word(MachOImageBuilder::symbolTableCommandSize)));
  bytes.put(image.symbolOffset.value_or(word(layout.linkEdit)));
  bytes.put(image.symbolCount.value_or(word(image.symbols.size())));
  bytes.put(image.stringOffset.value_or(word(layout.strings)));
  bytes.put(image.stringSize.value_or(word(layout.stringTable.size())));
}

}  // namespace

std::vector<std::byte> MachOImageBuilder::build() const {
  const auto layout = layOut(*this);
  Bytes bytes;
  bytes.put(magic);
  bytes.put(std::uint64_t{0});  // processor type and subtype, which nobody here looks at
  bytes.put(std::uint32_t{6});  // MH_DYLIB
  bytes.put(commandCount.value_or(word(layout.commands)));
  bytes.put(commandsSize.value_or(word(layout.commandsSize)));
  bytes.put(std::uint64_t{0});  // flags, reserved
  if (hasSegment) {
    putSegment(bytes, *this, layout);
  }
  if (hasSymbolTable) {
    putSymbolTable(bytes, *this, layout);
  }
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    bytes.put(layout.indices[i]);
    bytes.put(std::uint32_t{0x010E});  // type N_SECT, section 1, no description
    bytes.put(symbols[i].value);
  }
  bytes.put(layout.stringTable, layout.stringTable.size());
  return std::move(bytes).take();
}

}  // namespace tallowin
