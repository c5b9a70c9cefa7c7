#include "platform/simulated/simulated_loader.h"

#include <algorithm>
#include <cstdint>

#include "platform/private_functions.h"
#include "platform/simulated/mach_o_image_builder.h"

namespace tallowin {

namespace {

// Small enough to be taken off any function's address.
constexpr std::int64_t slide = 0x1000;

/// The private framework's image, with a symbol that names nothing of interest beside the one that does.
MachOImageBuilder skyLightImage() {
  MachOImageBuilder image;
  image.symbols.push_back({"_SLSInitialize", 0x2000, {}, true});
  for (const auto& function : simulatedFunctions()) {
    if (function.library == FunctionLibrary::symbolTable && function.address != nullptr) {
      image.symbols.push_back(
          {std::string(function.name), std::bit_cast<std::uint64_t>(function.address) - slide, {}, true});
    }
  }
  return image;
}

}  // namespace

SimulatedLoader::SimulatedLoader(FunctionContext context, std::set<std::string, std::less<>> missing)
    : context_(std::move(context)), guard_(context_), missing_(std::move(missing)) {
  libraries_ = {{private_functions::skyLight, FunctionLibrary::skyLight, true},
                {private_functions::hiServices, FunctionLibrary::hiServices, true},
                {private_functions::multitouchSupport, FunctionLibrary::multitouchSupport, false}};
  auto builder = skyLightImage();
  std::erase_if(builder.symbols, [this](const MachOSymbol& symbol) { return missing_.contains(symbol.name); });
  image_ = builder.build();
  // The addresses in the image are those where it was linked for; only now is it known where it is.
  builder.linkedAt = std::bit_cast<std::uint64_t>(image_.data()) - slide;
  std::ranges::copy(builder.build(), image_.begin());
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

std::set<std::string, std::less<>> SimulatedLoader::everything() {
  std::set<std::string, std::less<>> names = {private_functions::skyLight, private_functions::hiServices,
                                              private_functions::multitouchSupport};
  for (const auto& function : simulatedFunctions()) {
    names.emplace(function.name);
  }
  return names;
}

}  // namespace tallowin
