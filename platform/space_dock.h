#pragma once

#include <string>
#include <vector>

namespace tallowin {

/// The bar with the applications of the current Space, while the setting "spaceDock" is on. Main thread only.
class SpaceDock {
 public:
  virtual ~SpaceDock() = default;

  /// The names of the applications in the order of their windows; empty for a Space without windows.
  virtual void update(const std::vector<std::string>& applications) = 0;
};

}  // namespace tallowin
