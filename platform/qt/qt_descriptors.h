#pragma once

#include "platform/descriptors.h"

namespace tallowin {

/// File descriptors in Qt's event loop.
class QtDescriptors : public Descriptors {
 public:
  Subscription watchReadable(int descriptor, std::function<void()> onReadable) override;
  Subscription watchWritable(int descriptor, std::function<void()> onWritable) override;
};

}  // namespace tallowin
