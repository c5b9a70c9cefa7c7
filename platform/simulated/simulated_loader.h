#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/private_functions.h"
#include "platform/simulated/simulated_functions.h"

namespace tallowin {

/// A symbol of an image, with the address that the image was linked for.
struct MachOSymbol {
  std::string name;
  std::uint64_t value = 0;
};

/// A small 64-bit Mach-O image (mach-o/loader.h, mach-o/nlist.h) whose first byte was linked for this address: a header
/// (32 bytes), a segment command for the link-edit segment (72), a symbol-table command (24), the symbols (16 each) and
/// their names.
[[nodiscard]] std::vector<std::byte> machOImage(const std::vector<MachOSymbol>& symbols, std::uint64_t linkedAt);

/// Finds the simulated system's C functions, except those that are missing on it, and shows the private framework as a
/// loaded image whose symbol table has the function that is not exported. Main thread only.
class SimulatedLoader : public DynamicLoader {
 public:
  /// `missing` holds names of functions, of the class of bridged operations, or paths of libraries.
  explicit SimulatedLoader(NameSet missing);

  LibraryHandle open(std::string_view path, int mode) override;
  void* symbol(LibraryHandle library, std::string_view name) override;
  std::vector<LoadedImage> loadedImages() override;

  /// The names of all functions, classes and libraries, missing or not.
  [[nodiscard]] static NameSet everything();

 private:
  struct Library {
    std::string_view path;
    FunctionLibrary kind = FunctionLibrary::skyLight;
    bool loaded = true;  ///< has been opened, by the process itself from the start
  };

  const NameSet missing_;
  std::vector<Library> libraries_;  // never grows: its elements' addresses are the handles
  std::vector<std::byte> image_;    // of the private framework
};

}  // namespace tallowin
