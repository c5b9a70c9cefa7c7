#pragma once

#include <memory>

#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/presentation.h"
#include "platform/toasts.h"

namespace tallowin {

/// A presentation without windows. What it cannot do it says: to the log, once for each thing that the settings ask
/// for; to the user, whenever he asked for it. Main thread only.
class Windowless {
 public:
  struct Services {
    Preferences& preferences;
    Toasts& toasts;
    Log& log;
  };

  explicit Windowless(Services services);
  ~Windowless();
  Windowless(const Windowless&) = delete;
  Windowless& operator=(const Windowless&) = delete;

  /// Valid as long as this object.
  [[nodiscard]] Presentation presentation() const;

 private:
  struct Parts;

  const std::unique_ptr<Parts> parts_;
};

}  // namespace tallowin
