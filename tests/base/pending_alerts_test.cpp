#include "base/pending_alerts.h"

#include <gmock/gmock.h>
#include <map>

#include "tests/lines_log.h"

namespace tallowin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Keeps the callbacks of what is displayed, by the question.
class KeptDisplay : public AlertDisplay {
 public:
  Subscription show(const Alert& alert, const std::string& howToAnswer, Answered answered) override {
    hints.push_back(howToAnswer);
    const auto question = alert.messageText;
    displayed[question] = std::move(answered);
    return Subscription([this, question] { displayed.erase(question); });
  }
  std::vector<std::string> hints;
  std::map<std::string, Answered> displayed;
};

class PendingAlertsTest : public testing::Test {
 protected:
  void ask(const std::string& question, const std::vector<std::string>& buttons) {
    alerts_->show({question, "", buttons}, [this, question](std::optional<std::size_t> button) {
      answers_.push_back(question + (button ? std::to_string(*button) : " closed"));
    });
  }
  std::string answer(std::string_view button) {
    const auto result = alerts_->answer(button);
    return result ? *result : "error: " + result.error();
  }

  LinesLog log_;
  KeptDisplay display_;
  std::vector<std::string> answers_;
  std::optional<PendingAlerts> alerts_{std::in_place, display_, log_};
};

TEST_F(PendingAlertsTest, TheOldestQuestionWithTheButtonIsAnswered) {
  EXPECT_EQ(answer("OK"), "error: nothing is asked");
  ask("A?", {"OK"});
  ask("B?", {"Übernehmen", "Not Now"});
  ask("C?", {"Not Now", "OK", "1"});
  ask("D?", {"Yes"});
  EXPECT_EQ(answer("Oui\n"),
            "error: no open question has the button \"Oui \"; what can be answered: \"A?\" with OK; "
            "\"B?\" with Übernehmen, Not Now; \"C?\" with Not Now, OK, 1; \"D?\" with Yes");
  for (const auto* none : {"", "0", "-1", "4", "99999999999999999999", "O"}) {
    EXPECT_FALSE(alerts_->answer(none)) << none;
  }
  EXPECT_THAT(answers_, IsEmpty());
  EXPECT_EQ(answer("not now"), "B? Not Now");
  EXPECT_EQ(answer("1"), "C? 1") << "a name goes before a number";
  EXPECT_EQ(answer("1"), "A? OK");
  EXPECT_EQ(answer("YES"), "D? Yes");
  EXPECT_EQ(answer("yes"), "error: nothing is asked");
  EXPECT_THAT(answers_, ElementsAre("B?1", "C?2", "A?0", "D?0"));
  EXPECT_THAT(display_.displayed, IsEmpty());
}

TEST_F(PendingAlertsTest, AnsweredOnceWhereItIsDisplayedOrElsewhere) {
  ask("A?", {"OK"});
  ask("B?", {"OK"});
  auto pressed = display_.displayed.at("A?");
  pressed(0);
  pressed(0);
  display_.displayed.extract("B?").mapped()(std::nullopt);
  EXPECT_EQ(answer("OK"), "error: nothing is asked");
  EXPECT_THAT(answers_, ElementsAre("A?0", "B? closed"));

  // An answer may ask again, or be the end of it all.
  alerts_->show({"C?", "", {"OK"}}, [this](auto) { ask("D?", {"OK"}); });
  EXPECT_EQ(answer("OK"), "C? OK");
  alerts_->show({"E?", "", {"Stop"}}, [this](auto) { alerts_.reset(); });
  EXPECT_EQ(answer("Stop"), "E? Stop");
  EXPECT_THAT(answers_, ElementsAre("A?0", "B? closed")) << "D was open, and is not answered by the end";
  EXPECT_THAT(display_.displayed, IsEmpty());
}

TEST_F(PendingAlertsTest, SaysHowToAnswerInAShell) {
  ask("A?", {"OK"});
  ask("B?", {"Restore", "Not Now", "Don't", "$HOME", ""});
  EXPECT_THAT(display_.hints, ElementsAre("Answer with: tallowin answer OK",
                                          "Answer with: tallowin answer Restore, or: tallowin answer \"Not Now\", or: "
                                          "tallowin answer \"Don't\", or: tallowin answer 4, or: tallowin answer 5"));
  EXPECT_THAT(log_.lines, ElementsAre("A? " + display_.hints[0], "B? " + display_.hints[1]));
}

}  // namespace
}  // namespace tallowin
