#pragma once

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dynamic_loader.h"
#include "platform/main_queue.h"
#include "platform/simulated/simulated_input.h"
#include "platform/simulated/simulated_runtime.h"
#include "platform/simulated/simulated_window_server.h"

namespace tallowin {

/// What the C functions work on.
struct FunctionContext {
  SimulatedWindowServer& windowServer;
  SimulatedCoreFoundation& coreFoundation;
  SimulatedObjectiveC& objectiveC;
  SimulatedTrackpads& trackpads;
  MainQueue& queue;
  std::function<void(std::string_view name)> dockNotification;
};

/// A library that functions are found in.
enum class FunctionLibrary {
  skyLight,           ///< the private framework, which is loaded already: also the default namespace
  hiServices,         ///< the accessibility framework, likewise
  multitouchSupport,  ///< found only in the library itself
  process,            ///< only the default namespace
  symbolTable,        ///< not exported at all: found only in the symbol table of the private framework's image
};

/// A C function of the simulated system.
struct SimulatedFunction {
  std::string_view name;
  FunctionLibrary library = FunctionLibrary::skyLight;
  void* address = nullptr;
};

/// All of them. The signatures are those of platform/private_functions.h.
[[nodiscard]] const std::vector<SimulatedFunction>& simulatedFunctions();

/// While it lives, except while a later one does, the C functions work on this context. C functions have no place for a
/// context of their own, so that there is one for the process; without any they answer as if they failed.
class FunctionContextGuard {
 public:
  explicit FunctionContextGuard(FunctionContext& context);
  ~FunctionContextGuard();
  FunctionContextGuard(const FunctionContextGuard&) = delete;
  FunctionContextGuard& operator=(const FunctionContextGuard&) = delete;

 private:
  FunctionContext* const mine_;
};

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
