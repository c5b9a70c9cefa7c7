#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "platform/dynamic_loader.h"
#include "platform/simulated/simulated_functions.h"

namespace tallowin {

/// Finds the simulated system's C functions, except those that are missing on it, and shows the private framework as a
/// loaded image whose symbol table has the function that is not exported. While it lives the functions work on its
/// context. Main thread only.
class SimulatedLoader : public DynamicLoader {
 public:
  /// `missing` holds names of functions, of the class of bridged operations, or paths of libraries.
  SimulatedLoader(FunctionContext context, std::set<std::string, std::less<>> missing);

  LibraryHandle open(std::string_view path, int mode) override;
  void* symbol(LibraryHandle library, std::string_view name) override;
  std::vector<LoadedImage> loadedImages() override;

  /// Whether there is a function, class or library of this name, missing or not.
  [[nodiscard]] static bool knows(std::string_view name) { return everything().contains(name); }

  /// All these names.
  [[nodiscard]] static std::set<std::string, std::less<>> everything();

 private:
  struct Library {
    std::string_view path;
    FunctionLibrary kind = FunctionLibrary::skyLight;
    bool loaded = true;  ///< has been opened, by the process itself from the start
  };

  FunctionContext context_;
  const FunctionContextGuard guard_;
  const std::set<std::string, std::less<>> missing_;
  std::vector<Library> libraries_;  // never grows: its elements' addresses are the handles
  std::vector<std::byte> image_;    // of the private framework
};

}  // namespace tallowin
