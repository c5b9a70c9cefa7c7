#include "platform/simulated/simulated_loader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <initializer_list>
#include <iterator>
#include <string_view>

#include "platform/private_functions.h"

namespace tallowin {

namespace {

// Small enough to be taken off any function's address.
constexpr std::int64_t slide = 0x1000;

template <typename Unsigned>
void put(std::vector<std::byte>& bytes, std::initializer_list<Unsigned> values) {
  for (const auto value : values) {
    const auto representation = std::bit_cast<std::array<std::byte, sizeof(Unsigned)>>(value);
    bytes.insert(bytes.end(), representation.begin(), representation.end());
  }
}

const std::vector<SimulatedFunction>& simulatedFunctions() {
  static const std::vector<SimulatedFunction> functions = [] {
    auto all = windowServerFunctions();
    std::ranges::move(runtimeFunctions(), std::back_inserter(all));
    return all;
  }();
  return functions;
}

}  // namespace

std::vector<std::byte> machOImage(const std::vector<MachOSymbol>& symbols, std::uint64_t linkedAt) {
  constexpr std::uint32_t headerSize = 32;
  constexpr std::uint32_t segmentCommandSize = 72;
  constexpr std::uint32_t symbolTableCommandSize = 24;
  constexpr std::uint32_t linkEdit = headerSize + segmentCommandSize + symbolTableCommandSize;
  constexpr std::uint32_t symbolSize = 16;
  const auto count = static_cast<std::uint32_t>(symbols.size());
  const auto strings = linkEdit + count * symbolSize;
  std::string names(1, '\0');  // index 0 names nothing
  std::vector<std::uint32_t> indices;
  for (const auto& symbol : symbols) {
    indices.push_back(static_cast<std::uint32_t>(names.size()));
    names += symbol.name + '\0';
  }
  const auto namesSize = static_cast<std::uint32_t>(names.size());
  const std::uint64_t size = strings + namesSize - linkEdit;
  constexpr std::string_view segmentName("__LINKEDIT\0\0\0\0\0\0", 16);

  std::vector<std::byte> bytes;
  // MH_MAGIC_64; processor type and subtype, which nobody here looks at; MH_DYLIB; two commands; flags; reserved.
  put<std::uint32_t>(bytes, {0xfeedfacf, 0, 0, 6, 2, segmentCommandSize + symbolTableCommandSize, 0, 0});
  put<std::uint32_t>(bytes, {25, segmentCommandSize});  // LC_SEGMENT_64
  std::ranges::transform(segmentName, std::back_inserter(bytes), [](char c) { return static_cast<std::byte>(c); });
  put<std::uint64_t>(bytes, {linkedAt + linkEdit, size, linkEdit, size});
  put<std::uint32_t>(bytes, {1, 1, 0, 0});  // protections (readable), number of sections, flags
  put<std::uint32_t>(bytes, {2, symbolTableCommandSize, linkEdit, count, strings, namesSize});  // LC_SYMTAB
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    put<std::uint32_t>(bytes, {indices[i], 0x010E});  // type N_SECT, section 1, no description
    put<std::uint64_t>(bytes, {symbols[i].value});
  }
  std::ranges::transform(names, std::back_inserter(bytes), [](char c) { return static_cast<std::byte>(c); });
  return bytes;
}

SimulatedLoader::SimulatedLoader(NameSet missing) : missing_(std::move(missing)) {
  libraries_ = {{private_functions::skyLight, FunctionLibrary::skyLight, true},
                {private_functions::hiServices, FunctionLibrary::hiServices, true},
                {private_functions::multitouchSupport, FunctionLibrary::multitouchSupport, false}};
  std::vector<MachOSymbol> symbols = {{"_SLSInitialize", 0x2000}};  // which names nothing of interest
  for (const auto& [name, library, address] : simulatedFunctions()) {
    if (library == FunctionLibrary::symbolTable && address != nullptr && !missing_.contains(name)) {
      symbols.push_back({name, std::bit_cast<std::uint64_t>(address) - slide});
    }
  }
  image_ = machOImage(symbols, 0);
  // The addresses in the image are those where it was linked for; only now is it known where it is.
  std::ranges::copy(machOImage(symbols, std::bit_cast<std::uint64_t>(image_.data()) - slide), image_.begin());
}

LibraryHandle SimulatedLoader::open(std::string_view path, int mode) {
  const auto found = std::ranges::find(libraries_, path, &Library::path);
  if (found == libraries_.end() || missing_.contains(path) || ((mode & noLoad) != 0 && !found->loaded)) {
    return nullptr;
  }
  found->loaded = true;
  return &*found;
}

void* SimulatedLoader::symbol(LibraryHandle library, std::string_view name) {
  const auto opened = std::ranges::find_if(libraries_, [&](const Library& candidate) { return &candidate == library; });
  if (missing_.contains(name) || (library != nullptr && opened == libraries_.end())) {
    return nullptr;
  }
  for (const auto& function : simulatedFunctions()) {
    const bool exported = function.library != FunctionLibrary::symbolTable;
    const bool found = library != nullptr ? function.library == opened->kind
                                          : exported && function.library != FunctionLibrary::multitouchSupport;
    if (found && function.name == name) {
      return function.address;
    }
  }
  return nullptr;
}

std::vector<LoadedImage> SimulatedLoader::loadedImages() {
  if (missing_.contains(private_functions::skyLight)) {
    return {};
  }
  return {{private_functions::skyLight, image_, slide, std::bit_cast<std::uint64_t>(image_.data())}};
}

NameSet SimulatedLoader::everything() {
  NameSet names = {private_functions::skyLight, private_functions::hiServices, private_functions::multitouchSupport};
  for (const auto& function : simulatedFunctions()) {
    names.emplace(function.name);
  }
  return names;
}

}  // namespace tallowin
