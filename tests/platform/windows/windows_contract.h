#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "platform/windows.h"

namespace tallowin {

/// A desktop for the tests of what every Windows promises: on the Space that is shown a window of one program in front
/// of two of another one, and one more of the latter on another Space. In that order, each 300 points wide and 200
/// high.
class WindowsWorld {
 public:
  virtual ~WindowsWorld() = default;

  virtual Windows& windows() = 0;
  /// Lets everything happen that is under way, and everybody be told.
  virtual void settle() = 0;
  /// The windows of the start.
  [[nodiscard]] virtual std::vector<WindowRef> all() const = 0;
};

/// An implementation of Windows. Each has a source file here that makes its worlds and instantiates the suite.
struct WindowsImplementation {
  const char* name;
  std::function<std::unique_ptr<WindowsWorld>()> make;
};

class WindowsContract : public testing::TestWithParam<WindowsImplementation> {
 protected:
  Windows& windows() { return world->windows(); }
  /// The windows of the start that are listed, by their places then.
  [[nodiscard]] std::vector<std::size_t> listed(WindowScope scope);

  std::unique_ptr<WindowsWorld> world = GetParam().make();
  const std::vector<WindowRef> all = world->all();
};

}  // namespace tallowin
