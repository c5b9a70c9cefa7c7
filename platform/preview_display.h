#pragma once

namespace tallowin {

/// Whatever shows the user the previews of the Spaces. Main thread only.
class PreviewDisplay {
 public:
  virtual ~PreviewDisplay() = default;

  /// Whether there is anything that would show them; else they need not be taken.
  [[nodiscard]] virtual bool wantsPreviews() = 0;
};

}  // namespace tallowin
