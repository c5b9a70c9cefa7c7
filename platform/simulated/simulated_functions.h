#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/geometry.h"
#include "platform/main_queue.h"
#include "platform/private_functions.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"
#include "platform/window_server.h"

namespace tallowin {

/// Counted objects as the simulated C functions take and return them. Each lives on the heap and is owned by its one
/// reference, so that one that is never released is a leak to a leak checker. Main thread only.
class SimulatedCoreFoundation : public CoreFoundation {
 public:
  PropertyList propertyList(CFTypeRef object) override;
  CFTypeRef create(const PropertyList& value) override;
  std::vector<const void*> elements(CFTypeRef array) override;
  void CFRelease(CFTypeRef object) override;

  /// A new array of references that are no property lists.
  static CFTypeRef createArray(std::vector<const void*> elements);
};

/// What the system's private C functions work on: the window server, the multitouch devices and the Objective-C run
/// time, as far as the functions need them. Main thread only.
struct SimulatedFunctions {
  struct Services {
    DesktopState& state;
    MainQueue& queue;
    const Clock& clock;
    CoreFoundation& coreFoundation;
    Journal& journal;
    std::function<void(std::string_view name)> dockNotification;
  };

  /// `missing`: what is not found by name. `notificationFailures`: window-server events that cannot be registered for.
  SimulatedFunctions(Services services, const NameSet& missing, std::set<std::uint32_t> notificationFailures);
  ~SimulatedFunctions();
  SimulatedFunctions(const SimulatedFunctions&) = delete;
  SimulatedFunctions& operator=(const SimulatedFunctions&) = delete;

  /// C functions have no place for a context of their own: those of the process work on the latest of these. Null when
  /// it has gone; then they answer as if they failed.
  static SimulatedFunctions* current;

  /// Tells everybody who has registered for this event.
  void notify(WindowServerEvent event);

  /// A frame on the first multitouch device, if it was started, with contacts at these normalised positions (0 to 1,
  /// origin bottom left). Every registered callback gets it, one that was registered twice twice.
  void touch(const std::vector<CGPoint>& contacts);

  /// Makes a function's move: windows that do not exist are passed over, as is a Space that does not, and a function
  /// whose moves are to be ignored.
  void move(std::string_view function, const std::vector<std::int64_t>& windows, std::uint64_t space);

  /// The integers of an array object; what is none is left out.
  [[nodiscard]] std::vector<std::int64_t> windowNumbers(CFTypeRef list) const;
  /// Null when there is no such window.
  [[nodiscard]] SimulatedWindow* window(std::int64_t number) const;

  /// A receiver of connection notifications. The same one may be registered for several events, and more than once.
  struct Receiver {
    private_functions::ConnectionNotifyProc proc = nullptr;
    std::uint32_t event = 0;
    void* argument = nullptr;
  };
  struct Device {
    std::vector<private_functions::ContactFrameCallback> callbacks;
    bool started = false;
  };
  /// A bridged move that is to be performed, as an object of the Objective-C run time.
  struct Operation {
    std::vector<std::int64_t> windows;
    std::uint64_t space = 0;
  };
  /// The name of its class, which is found by name like a function.
  static constexpr auto operationClass = "SLSBridgedMoveWindowsToManagedSpaceOperation";

  const Services services;
  const bool hasOperationClass;
  const std::set<std::uint32_t> notificationFailures;
  std::vector<Receiver> receivers;
  std::map<std::uint32_t, ManagedSpaceID> compatIDs;
  std::vector<Device> devices;  ///< never grows: its elements' addresses are the references
  std::int32_t lastFrame = 0;
  NameSet selectors;  ///< a selector is the address of its name
  std::map<void*, std::unique_ptr<Operation>> operations;
};

/// A library that functions are found in.
enum class FunctionLibrary {
  skyLight,           ///< the private framework, which is loaded already: also the default namespace
  hiServices,         ///< the accessibility framework, likewise
  multitouchSupport,  ///< found only in the library itself
  process,            ///< only the default namespace
  symbolTable,        ///< not exported at all: found only in the symbol table of the private framework's image
};

/// A C function of the simulated system, with a signature of platform/private_functions.h.
struct SimulatedFunction {
  /// Checks the signature at compile time.
  template <typename Signature>
  static SimulatedFunction make(std::string name, FunctionLibrary library, Signature function) {
    return {std::move(name), library, reinterpret_cast<void*>(function)};
  }

  std::string name;
  FunctionLibrary library = FunctionLibrary::skyLight;
  void* address = nullptr;
};

/// The functions of the window server, and all others.
[[nodiscard]] std::vector<SimulatedFunction> windowServerFunctions();
[[nodiscard]] std::vector<SimulatedFunction> runtimeFunctions();

}  // namespace tallowin
