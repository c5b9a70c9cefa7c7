#pragma once

#include <string_view>

#include "platform/accessibility.h"

namespace tallowin {

/// An accessibility element whose answers come from this process. Main thread only.
class SimulatedElement : public AXElementHandle {
 public:
  /// The empty alternative for an attribute that it does not have.
  [[nodiscard]] virtual AXValue attribute(std::string_view name) const = 0;

  /// True when the action was performed. By default it has no actions.
  virtual bool perform(std::string_view /*action*/) const { return false; }

  /// True when the attribute was set. By default none can be.
  virtual bool setAttribute(std::string_view /*name*/, const AXValue& /*value*/) const { return false; }
};

}  // namespace tallowin
