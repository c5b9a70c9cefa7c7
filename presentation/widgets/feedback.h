#pragma once

#include <memory>
#include <string>

#include "platform/pinned.h"
#include "presentation/link/messages.h"

namespace tallowin {

/// What the user hears: sounds of the desktop's theme (freedesktop Sound Theme Specification) by libcanberra, which is
/// loaded for the first one, and names spoken by speech-dispatcher. Where either is missing, that is said once on
/// standard error. Main thread only; nothing blocks.
class FeedbackPlayer : Pinned {
 public:
  FeedbackPlayer();
  ~FeedbackPlayer();

  void give(const ui::Feedback& feedback);

 private:
  struct Sounds;

  void play(const std::string& sound);
  void speak(const std::string& text);

  std::unique_ptr<Sounds> sounds_;  ///< null until the first sound
  bool missesSpeech_ = false;
};

}  // namespace tallowin
