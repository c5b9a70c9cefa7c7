#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tallowin {

/// What a call of the command line ends with when there is nobody to ask (EX_UNAVAILABLE of sysexits(3)).
inline constexpr int notReached = 69;

/// What the running instance answered.
struct InstanceAnswer {
  int status = notReached;  ///< as a call of the command line would have ended
  std::string out;
  std::string error;
};

/// The running instance, as the ui process speaks to it. Main thread only; nothing ever blocks.
class Instance {
 public:
  virtual ~Instance() = default;

  /// Asks for something in the words of the command line. `answered` runs once, never inside this call.
  virtual void ask(const std::vector<std::string>& words, std::function<void(const InstanceAnswer&)> answered) = 0;

  /// The same for what the user wants, who is told by the instance when nothing was done.
  void perform(std::vector<std::string> words) {
    words.insert(words.begin(), {"ui", "do", "--"});
    ask(words, [](const InstanceAnswer& /*answer*/) {});
  }
};

}  // namespace tallowin
