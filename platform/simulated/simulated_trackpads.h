#pragma once

#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include "platform/geometry.h"
#include "platform/private_functions.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// The multitouch devices, as the multitouch framework's functions see them. Main thread only.
class SimulatedTrackpads {
 public:
  SimulatedTrackpads(int count, const Clock& clock, Journal& journal)
      : devices_(static_cast<std::size_t>(count)), clock_(clock), journal_(journal) {}

  /// One opaque reference for each device.
  [[nodiscard]] std::vector<const void*> devices() const;

  void registerCallback(const void* device, private_functions::ContactFrameCallback callback);
  private_functions::Error start(const void* device, std::int32_t mode);

  /// A frame on the first device, if it was started, with contacts at these normalised positions (0 to 1, origin bottom
  /// left). Every registered callback gets it, one that was registered twice twice.
  void touch(const std::vector<CGPoint>& contacts);

 private:
  struct Device {
    std::vector<private_functions::ContactFrameCallback> callbacks;
    bool started = false;
  };
  Device* find(const void* device);

  std::vector<Device> devices_;  // never grows: its elements' addresses are the references
  const Clock& clock_;
  Journal& journal_;
  std::int32_t frame_ = 0;
};

}  // namespace tallowin
