#include "platform/simulated/simulated_command_channel.h"

namespace tallowin {

class SimulatedCommandChannel::JournalCaller : public Caller {
 public:
  JournalCaller(SimulatedCommandChannel& channel, int number) : channel_(channel), number_(number) {}

  bool out(std::string_view text) override { return record("out", text); }
  bool err(std::string_view text) override { return record("err", text); }
  void exit(int status) override {
    record("status", status);
    channel_.callers_.erase(number_);
  }
  void exitAtEnd(int status) override { exit(status); }

 private:
  bool record(const char* what, const nlohmann::ordered_json& value) {
    const bool lives = channel_.callers_.contains(number_);
    if (lives) {
      channel_.journal_.record("answer", {{"caller", number_}, {what, value}});
    }
    return lives;
  }

  SimulatedCommandChannel& channel_;
  const int number_;
};

void SimulatedCommandChannel::run(const std::vector<std::string>& arguments) {
  if (handler_) {
    callers_.insert(++lastCaller_);
    handler_({arguments, "/home/user"}, std::make_unique<JournalCaller>(*this, lastCaller_));
  }
}

}  // namespace tallowin
