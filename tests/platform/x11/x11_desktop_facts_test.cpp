#include "platform/x11/x11_desktop_facts.h"

#include "tests/platform/x11/x11_desktop_fixture.h"

namespace tallowin {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Not;

TEST(WindowManagerVersion, IsFoundInWhatProgramsPrint) {
  const std::pair<const char*, const char*> cases[] = {
      {"Openbox 3.6.1\nCopyright (c) 2004 Mikael Magnusson 1.0", "3.6.1"},
      {"i3 version 4.22 (2023-01-02) \u00a9 2009 Michael Stapelberg", "4.22"},
      {"\tThis is xfwm4 version 4.18.0 (revision 7e7473c5b) for Xfce 4.18\n", "4.18.0"},
      {"kwin 5.27.5", "5.27.5"},
      {"JWM v2.4.3 by Joe Wingbermuehle", "2.4.3"},
      {"icewm 3.3.1, Copyright 1997-2012 Marko Macek", "3.3.1"},
      {"no 1 knows", ""},
      {"", ""},
  };
  for (const auto& [text, version] : cases) {
    EXPECT_EQ(versionIn(text), version) << text;
  }
  EXPECT_EQ(versionArgument("openbox"), "--version");
  EXPECT_EQ(versionArgument("somethingwm"), "") << "who knows what it would do";
}

using X11DesktopFactsTest = X11DesktopTest;

TEST_F(X11DesktopFactsTest, TellsWhatTheWindowManagerLacks) {
  connect();
  EXPECT_EQ(desktop_->desktopFacts().windowManager(), std::nullopt);
  ScriptedWindowManager manager("Otherbox");
  manager.claim({X11Atom::netCurrentDesktop, X11Atom::netCloseWindow});
  const auto facts = desktop_->desktopFacts().windowManager();
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->name, "Otherbox");
  EXPECT_EQ(facts->version, "") << "this program is not known to tell it";
  EXPECT_THAT(facts->missingHints, AllOf(Contains("_NET_RESTACK_WINDOW"), Contains("_NET_WM_DESKTOP"),
                                         Not(Contains("_NET_CURRENT_DESKTOP")), Not(Contains("_NET_CLOSE_WINDOW"))));
}

}  // namespace
}  // namespace tallowin
