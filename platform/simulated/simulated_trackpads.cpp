#include "platform/simulated/simulated_trackpads.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>

namespace tallowin {

std::vector<const void*> SimulatedTrackpads::devices() const {
  std::vector<const void*> references;
  for (const auto& device : devices_) {
    references.push_back(&device);
  }
  return references;
}

SimulatedTrackpads::Device* SimulatedTrackpads::find(const void* device) {
  const auto found = std::ranges::find_if(devices_, [&](const Device& candidate) { return &candidate == device; });
  return found == devices_.end() ? nullptr : &*found;
}

void SimulatedTrackpads::registerCallback(const void* device, private_functions::ContactFrameCallback callback) {
  journal_.record("MTRegisterContactFrameCallback");
  if (auto* const found = find(device); found != nullptr && callback != nullptr) {
    found->callbacks.push_back(callback);
  }
}

private_functions::Error SimulatedTrackpads::start(const void* device, std::int32_t mode) {
  journal_.record("MTDeviceStart", {{"mode", mode}});
  auto* const found = find(device);
  if (found == nullptr) {
    return 1;
  }
  found->started = true;
  return 0;
}

void SimulatedTrackpads::touch(const std::vector<CGPoint>& contacts) {
  if (devices_.empty() || !devices_.front().started) {
    return;
  }
  std::vector<std::byte> records(contacts.size() * private_functions::contactSize);
  for (std::size_t i = 0; i < contacts.size(); ++i) {
    const float position[] = {static_cast<float>(contacts[i].x), static_cast<float>(contacts[i].y)};
    std::memcpy(&records[i * private_functions::contactSize + private_functions::contactPositionOffset], position,
                sizeof position);
  }
  const auto now = std::chrono::duration<double>(clock_.systemUptime()).count();
  ++frame_;
  const auto callbacks = devices_.front().callbacks;
  for (const auto callback : callbacks) {
    callback(&devices_.front(), records.data(), static_cast<std::int32_t>(contacts.size()), now, frame_);
  }
}

}  // namespace tallowin
