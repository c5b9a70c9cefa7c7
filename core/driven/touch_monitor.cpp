#include "core/driven/touch_monitor.h"

#include <array>
#include <cstring>

#include "core/driven/callback_slot.h"
#include "core/driven/cf_object.h"
#include "platform/private_functions.h"

namespace tallowin {

namespace {

CallbackSlot<const TouchFrame&>& touchReceiver() {
  static CallbackSlot<const TouchFrame&> slot;
  return slot;
}

/// The frame that `count` contact records make up.
TouchFrame frameOf(const void* contacts, std::int32_t count, double timestamp) {
  TouchFrame frame{count, 0, 0, timestamp};
  if (count < 1 || contacts == nullptr) {
    return frame;
  }
  double sumX = 0;
  double sumY = 0;
  const auto* record = static_cast<const std::byte*>(contacts);
  for (std::int32_t i = 0; i < count; ++i, record += private_functions::contactSize) {
    std::array<float, 2> position{};
    std::memcpy(position.data(), record + private_functions::contactPositionOffset, sizeof position);
    sumX += position[0];
    sumY += position[1];
  }
  frame.meanX = static_cast<float>(sumX / count);
  frame.meanY = static_cast<float>(sumY / count);
  return frame;
}

std::int32_t frameTrampoline(const void* /*device*/, const void* contacts, std::int32_t count, double timestamp,
                             std::int32_t /*frame*/) {
  touchReceiver().call(frameOf(contacts, count, timestamp));
  return 0;
}

}  // namespace

TouchMonitor::~TouchMonitor() {
  touchReceiver().clear(this);
}

bool TouchMonitor::start(TouchCallback callback) {
  auto& loader = lookup_.loader();
  auto* framework = loader.open(private_functions::multitouchSupport, DynamicLoader::lazy);
  if (framework == nullptr) {
    return false;
  }
  const auto createList =
      reinterpret_cast<private_functions::DeviceCreateList>(loader.symbol(framework, "MTDeviceCreateList"));
  const auto registerCallback = reinterpret_cast<private_functions::RegisterContactFrameCallback>(
      loader.symbol(framework, "MTRegisterContactFrameCallback"));
  const auto startDevice = reinterpret_cast<private_functions::DeviceStart>(loader.symbol(framework, "MTDeviceStart"));
  if (createList == nullptr || registerCallback == nullptr || startDevice == nullptr) {
    return false;
  }
  touchReceiver().set(this, std::move(callback));
  const CFObject devices(coreFoundation_, createList());
  bool started = false;
  for (const auto* device : coreFoundation_.elements(devices.get())) {
    constexpr std::int32_t defaultMode = 0;
    registerCallback(device, frameTrampoline);
    started = startDevice(device, defaultMode) == 0 || started;
  }
  return started;
}

}  // namespace tallowin
