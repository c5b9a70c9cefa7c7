#include "presentation/widgets/feedback.h"

#include <QLibrary>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <canberra.h>
#include <iostream>
#include <utility>

namespace tallowin {

/// The functions of the library, and the connection to the sound server that they work on.
struct FeedbackPlayer::Sounds : Pinned {
  explicit Sounds(QLibrary& library)
      : play(reinterpret_cast<decltype(&ca_context_play)>(library.resolve("ca_context_play"))),
        destroy(reinterpret_cast<decltype(&ca_context_destroy)>(library.resolve("ca_context_destroy"))) {
    const auto create = reinterpret_cast<decltype(&ca_context_create)>(library.resolve("ca_context_create"));
    if (play == nullptr || destroy == nullptr || create == nullptr || create(&context) != CA_SUCCESS) {
      context = nullptr;
    }
  }
  ~Sounds() {
    if (context != nullptr) {
      destroy(context);
    }
  }

  decltype(&ca_context_play) play;
  decltype(&ca_context_destroy) destroy;
  ca_context* context = nullptr;
};

FeedbackPlayer::FeedbackPlayer() = default;
FeedbackPlayer::~FeedbackPlayer() = default;

void FeedbackPlayer::give(const ui::Feedback& feedback) {
  if (!feedback.sound.empty()) {
    play(feedback.sound);
  }
  if (!feedback.speech.empty()) {
    speak(feedback.speech);
  }
}

void FeedbackPlayer::play(const std::string& sound) {
  constexpr int interfaceVersion = 0;
  if (!sounds_) {
    QLibrary library("canberra", interfaceVersion);  // stays loaded
    sounds_ = std::make_unique<Sounds>(library);
    if (sounds_->context == nullptr) {
      std::cerr << "tallowin-ui: no sounds: " << library.errorString().toStdString() << '\n';
    }
  }
  if (sounds_->context != nullptr) {
    constexpr std::uint32_t id = 0;
    sounds_->play(sounds_->context, id, CA_PROP_EVENT_ID, sound.c_str(), CA_PROP_EVENT_DESCRIPTION, "Tallowin",
                  nullptr);
  }
}

/// A message of the priority "notification" gives way to a newer one, so that only the last of many switches is heard.
void FeedbackPlayer::speak(const std::string& text) {
  const QStringList arguments = {"--rate",
                                 "4",
                                 "--priority",
                                 "notification",
                                 "--application-name",
                                 "Tallowin",
                                 "--",
                                 QString::fromStdString(text)};
  if (!QProcess::startDetached("spd-say", arguments) && !std::exchange(missesSpeech_, true)) {
    std::cerr << "tallowin-ui: no speech: there is no spd-say (speech-dispatcher)\n";
  }
}

}  // namespace tallowin
