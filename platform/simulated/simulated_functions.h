#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "platform/main_queue.h"
#include "platform/simulated/simulated_core_foundation.h"
#include "platform/simulated/simulated_objective_c.h"
#include "platform/simulated/simulated_trackpads.h"
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

}  // namespace tallowin
