#include "presentation/ui_presentation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Words = std::vector<std::string>;

/// The kinds of message that a ui process was told, with what is said in each.
struct Told {
  std::vector<std::string> lines;
  std::string error;
  std::optional<int> status;
  std::function<void()> whenGone;
};

class TestCaller : public Caller {
 public:
  explicit TestCaller(std::shared_ptr<Told> told) : told_(std::move(told)) {}

  bool out(std::string_view text) override {
    const auto arrived = ui::decode(text);
    told_->lines.push_back(arrived && arrived->message
                               ? std::visit([](const auto& each) { return line(each); }, *arrived->message)
                               : std::string(text));
    return true;
  }
  bool err(std::string_view text) override {
    told_->error += text;
    return true;
  }
  void exit(int status) override { told_->status = status; }
  void exitAtEnd(int status) override { exit(status); }
  void whenGone(std::function<void()> gone) override { told_->whenGone = std::move(gone); }

 private:
  static std::string line(const ui::Hello& hello) { return "hello " + hello.version; }
  static std::string line(const StatusItem& item) { return "item " + item.text; }
  static std::string line(const HUD& hud) { return "hud " + hud.name; }
  static std::string line(const Toast& toast) { return "toast " + toast.text; }
  static std::string line(const ui::Feedback& feedback) { return "say " + feedback.speech; }
  static std::string line(const ui::AskAlert& ask) { return "alert " + ask.question.messageText; }
  static std::string line(const ui::AskName& ask) { return "name " + ask.question.space.name; }
  static std::string line(const ui::AskNote& ask) { return "note " + ask.question.text; }
  static std::string line(const ui::Withdraw& withdraw) { return "withdraw " + std::to_string(withdraw.number); }

  const std::shared_ptr<Told> told_;
};

/// A machine on which ui processes are started, and stand-ins that note what they are shown.
class UiPresentationTest : public ::testing::Test, public WatchedProcesses, public Toasts, public AlertDisplay {
 protected:
  struct Handle : WatchedProcess {
    explicit Handle(UiPresentationTest& owner) : test(owner) {}
    void kill() override { ++test.killed; }
    UiPresentationTest& test;
  };

  std::expected<std::unique_ptr<WatchedProcess>, std::string> start(
      const ProcessRequest& /*request*/, std::function<void(const std::string&)> ended) override {
    ++started;
    end = std::move(ended);
    return isMissing ? std::expected<std::unique_ptr<WatchedProcess>, std::string>(std::unexpected("none"))
                     : std::make_unique<Handle>(*this);
  }
  void show(const Toast& toast) override { standIn.push_back(toast.text); }
  Subscription show(const Alert& alert, const std::string& /*how*/, Answered /*answered*/) override {
    standIn.push_back(alert.messageText);
    return Subscription([this, text = alert.messageText] { standIn.push_back("no more " + text); });
  }

  /// The words after "ui", as the ui process says them.
  std::shared_ptr<Told> say(const Words& words) {
    auto told = std::make_shared<Told>();
    presentation.hear(words, std::make_shared<TestCaller>(told));
    return told;
  }
  void begin() {
    presentation.begin({[] { return Menu(); }, [this](const Words& words) { performed.push_back(words.front()); }});
    program.time.runFor(100ms);
  }
  /// Its lines from now on, without those before.
  static std::vector<std::string> take(Told& told) { return std::exchange(told.lines, {}); }

  SimulatedProgram program{"{}"};
  int started = 0;
  int killed = 0;
  bool isMissing = false;
  std::function<void(const std::string&)> end;
  std::vector<std::string> standIn;
  std::vector<std::string> performed;
  UiPresentation presentation{{program.platform.preferences, program.time, program.time, program.platform.log, *this,
                               *this, *this, ProcessRequest{"/ui", {}, {}, {}}, "1"}};
};

TEST_F(UiPresentationTest, TellsTheProcessThatComesWhatWaitedForIt) {
  presentation.show(Toast{"Hello", std::nullopt, false});
  presentation.showStatusItem({.text = "Mail"});
  const auto asked =
      presentation.show({"Really?", "", {"Yes", "No"}}, "", [](std::optional<std::size_t> /*button*/) {});
  EXPECT_EQ(started, 0);
  begin();
  EXPECT_EQ(started, 1);
  const auto ui = say({"attach", "1"});
  EXPECT_THAT(ui->lines, ElementsAre("hello 1", "item Mail", "toast Hello", "alert Really?"));
  EXPECT_EQ(say({"attach", "1"})->lines, Words{"another process shows the windows\n"});
  EXPECT_THAT(standIn, IsEmpty());
  say({"do", "switch", "3"});
  EXPECT_THAT(performed, ElementsAre("switch"));
  EXPECT_EQ(say({"dance"})->status, 64);
}

TEST_F(UiPresentationTest, LeavesItToTheStandInsWhereThereIsNoProcess) {
  isMissing = true;
  presentation.show(Toast{"Hello", std::nullopt, false});
  const auto asked = presentation.show({"Really?", "", {"Yes"}}, "", [](std::optional<std::size_t> /*button*/) {});
  EXPECT_THAT(standIn, IsEmpty());
  begin();
  EXPECT_THAT(standIn, ElementsAre("Hello", "Really?"));
  bool named = false;
  EXPECT_FALSE(presentation.askForName({}, [&named](const auto& given) { named = !given; }));
  EXPECT_TRUE(named) << "without a name";
  EXPECT_EQ(started, 2) << "whoever asks for a window has it tried again";
}

TEST_F(UiPresentationTest, StartsItAgainAndAsksAgain) {
  begin();
  auto ui = say({"attach", "1"});
  std::optional<GivenName> given;
  ASSERT_TRUE(presentation.askForName({.space = {.name = "Mail"}}, [&given](const auto& name) { given = name; }));
  EXPECT_EQ(take(*ui).back(), "name Mail");
  const auto asked = presentation.show({"Really?", "", {"Yes"}}, "", [](std::optional<std::size_t> /*button*/) {});
  end("signal 11");
  ui->whenGone();
  presentation.show(Toast{"Between", std::nullopt, false});
  program.time.runFor(UiProcess::restartDelay);
  EXPECT_EQ(started, 2);
  ui = say({"attach", "1"});
  EXPECT_THAT(take(*ui), ElementsAre("hello 1", "toast Between", "name Mail", "alert Really?"));
  say({"answer", "1", "name=Post", "color=#FF0000"});
  ASSERT_TRUE(given);
  EXPECT_EQ(*given, (GivenName{"Post", std::nullopt, "#FF0000"}));

  end("signal 11");
  ui->whenGone();
  program.time.runFor(UiProcess::restartDelay);
  say({"attach", "1"})->whenGone();
  end("signal 11");
  program.time.runFor(10s);
  EXPECT_EQ(started, 3) << "three times in a minute";
  EXPECT_THAT(standIn, ElementsAre("Really?"));
}

TEST_F(UiPresentationTest, EndsAQuestionThatNobodyCanShow) {
  begin();
  std::optional<bool> isNamed;
  ASSERT_TRUE(presentation.askForName({}, [&isNamed](const auto& given) { isNamed = given.has_value(); }));
  program.time.runFor(UiPresentation::startTime);
  EXPECT_EQ(isNamed, std::optional(false)) << "the process has not come";
}

TEST_F(UiPresentationTest, EndsAProcessThatHangs) {
  begin();
  const auto ui = say({"attach", "1"});
  say({"seen", "1"});
  program.time.runFor(1min);
  EXPECT_EQ(killed, 0) << "nothing is asked of an idle one";
  presentation.showHUD({.name = "Mail"});
  program.time.runFor(2s);
  presentation.showHUD({.name = "Chat"});
  program.time.runFor(UiLink::patience - 2s - 1ms);
  EXPECT_EQ(killed, 0);
  program.time.runFor(1ms);
  EXPECT_EQ(killed, 1) << "the first one has not been seen in time";
}

TEST_F(UiPresentationTest, ClosesWhatIsAnsweredElsewhereAndTakesNoWrongAnswer) {
  begin();
  const auto ui = say({"attach", "1"});
  std::vector<std::optional<std::size_t>> answers;
  const auto answered = [&answers](std::optional<std::size_t> button) { answers.push_back(button); };
  auto first = presentation.show({"One?", "", {"Yes", "No"}}, "", answered);
  const auto second = presentation.show({"Two?", "", {"Yes", "No"}}, "", answered);
  take(*ui);
  first.cancel();
  EXPECT_THAT(take(*ui), ElementsAre("withdraw 1"));
  EXPECT_EQ(say({"answer", "2", "2"})->status, 64);
  EXPECT_EQ(say({"answer", "2", "1"})->status, 0);
  EXPECT_THAT(take(*ui), ElementsAre("withdraw 2")) << "whoever has answered";
  EXPECT_EQ(say({"answer", "2"})->status, 0) << "too late";
  EXPECT_THAT(answers, ElementsAre(std::optional<std::size_t>(1)));
  std::vector<std::optional<std::string>> notes;
  const auto noted = [&notes](const std::optional<std::string>& text) { notes.push_back(text); };
  ASSERT_TRUE(presentation.askForNote({.text = "a"}, noted));
  ASSERT_TRUE(presentation.askForNote({.text = "b"}, noted));
  EXPECT_THAT(take(*ui), ElementsAre("note a", "withdraw 3", "note b"));
  say({"answer", "4", ""});
  take(*ui);
  EXPECT_THAT(notes, ElementsAre(std::nullopt, std::optional<std::string>("")));
  const auto renamed = [](const std::optional<GivenName>& /*given*/) {};
  ASSERT_TRUE(presentation.askForName({.space = {.name = "Mail"}}, renamed));
  ASSERT_TRUE(presentation.askForName({.space = {.name = "new"}, .isNew = true}, renamed));
  EXPECT_THAT(take(*ui), ElementsAre("name Mail", "name new")) << "a new Space does not take the user's dialog away";
  EXPECT_EQ(say({"answer", "5", "Post"})->status, 64) << "a name is said with its key";
}

TEST(UiMessages, ComeBackAsTheyWereAndPassOverWhatIsNew) {
  const HUD hud{"a", "Mail", "envelope", "#123456", 2, "call", HUDSize::large, HUDPosition::bottom, 1.5};
  EXPECT_EQ(ui::decode(ui::encode(7, hud))->message, std::optional<ui::Message>(hud));
  const StatusItem item{"Mail", "", "2", std::nullopt, {{"1", "#123456", true}}, 3, "2  Mail", true};
  EXPECT_EQ(ui::decode(ui::encode(8, item))->message, std::optional<ui::Message>(item));
  const auto menu = statusMenu({.spaces = {{"a", "Mail", 1, "", std::nullopt, "Work", true, true}}, .canAdd = true});
  EXPECT_EQ(ui::decodeMenu(ui::encodeMenu(menu)), menu);
  const auto newer = ui::decode(R"({"number": 9, "kind": "hologram", "value": {}, "more": 1})");
  ASSERT_TRUE(newer);
  EXPECT_EQ(newer->number, 9U);
  EXPECT_FALSE(newer->message);
  const auto missing = ui::decode(R"({"number": 1, "kind": "hud", "value": {"name": "x", "size": "vast"}})");
  EXPECT_EQ(missing->message, std::optional<ui::Message>(HUD{.name = "x"}));
  EXPECT_FALSE(ui::decode(R"({"number": 1, "kind": "hud", "value": {"name": 1}})")->message);
  for (const auto* text : {"", "[]", R"({"number": 1})", R"({"number": "x", "kind": "hud", "value": {}})"}) {
    EXPECT_FALSE(ui::decode(text)) << text;
  }
}

TEST(HudPlace, IsInTheWorkAreaAtEverySizeAndPlace) {
  const CGRect area{{1280, 30}, {800, 600}};
  const auto regular = hudExtent(HUDSize::regular, 16);
  EXPECT_EQ(regular, (CGSize{360, 96}));
  EXPECT_EQ(hudFrame(area, regular, HUDPosition::top), (CGRect{{1500, 105}, {360, 96}}));
  EXPECT_EQ(hudFrame(area, regular, HUDPosition::center), (CGRect{{1500, 282}, {360, 96}}));
  EXPECT_EQ(hudFrame(area, regular, HUDPosition::bottom), (CGRect{{1500, 459}, {360, 96}}));
  EXPECT_EQ(hudFrame({{0, 0}, {200, 90}}, regular, HUDPosition::bottom), (CGRect{{0, 0}, {200, 90}}));
}

TEST(ReadingTime, GrowsWithTheCharactersWithinBounds) {
  EXPECT_EQ(readingTime({"Mail", std::nullopt}), 1200ms);
  EXPECT_EQ(readingTime({std::string("ä") + std::string(24, 'x'), std::nullopt}), 1250ms);
  EXPECT_EQ(readingTime({std::string(1000, 'x'), std::nullopt}), 5s);
}

}  // namespace
}  // namespace tallowin
