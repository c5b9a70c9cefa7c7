#include "platform/xdg/desktop_entry.h"

#include <gmock/gmock.h>

#include "platform/xdg/xdg_environment.h"

namespace tallowin {
namespace {

using testing::ElementsAre;
using Words = std::vector<std::string>;

TEST(DesktopEntry, ReadsWhatAnEntrySays) {
  const auto entry = parseDesktopEntry(
      "# a comment\n[Some Group]\nName=Other\n\n[Desktop Entry]\r\n Type = Application \nName=Files\\sand\\\\more\n"
      "Name[de]=Dateien\nName[de_CH]=Ablage\nExec=files --new %U\nTryExec=files\nIcon=folder\nStartupWMClass=Files\n"
      "OnlyShowIn=GNOME;X\\;Y;\nNoDisplay=true\nTerminal=false\nno equals sign\nName=twice\n"
      "Actions=gone;NewWindow;\n[Desktop Action NewWindow]\nName=New window\nExec=other --window\nHidden=true\n",
      {"de_AT", "de"});
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->name, "Dateien");
  EXPECT_EQ(entry->exec, "files --new %U");
  EXPECT_EQ(entry->newWindowExec, "other --window");
  EXPECT_EQ(entry->tryExec, "files");
  EXPECT_EQ(entry->icon, "folder");
  EXPECT_EQ(entry->startupWMClass, "Files");
  EXPECT_THAT(entry->onlyShowIn, ElementsAre("GNOME", "X;Y"));
  EXPECT_FALSE(entry->hidden);
  EXPECT_FALSE(entry->terminal);
  EXPECT_TRUE(entry->noDisplay);
  EXPECT_EQ(parseDesktopEntry("[Desktop Entry]\nType=Application\nName=Files\\sand\\\\more", {})->name,
            "Files and\\more");
}

TEST(DesktopEntry, IsNothingWithoutAnApplication) {
  for (const auto* text : {"", "Type=Application\n", "[Desktop Entry]\nName=x\n", "[Desktop Entry]\nType=Link\n",
                           "[desktop entry]\nType=Application\n"}) {
    EXPECT_EQ(parseDesktopEntry(text, {}), std::nullopt) << text;
  }
  EXPECT_TRUE(parseDesktopEntry("[Desktop Entry]\nHidden=true", {})->hidden) << "hides another one";
}

TEST(DesktopEntry, IsOfferedByTheMenusThatItSays) {
  const struct {
    const char* lines;
    bool offered;
  } cases[] = {
      {"", true},
      {"NoDisplay=true\n", false},
      {"Hidden=true\n", false},
      {"OnlyShowIn=KDE;XFCE;\n", true},
      {"OnlyShowIn=GNOME;\n", false},
      {"NotShowIn=XFCE;\n", false},
      {"NotShowIn=GNOME;\n", true},
  };
  for (const auto& [lines, offered] : cases) {
    const auto entry = parseDesktopEntry(std::string("[Desktop Entry]\nType=Application\n") + lines, {});
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->isOffered({"ubuntu", "XFCE"}), offered) << lines;
  }
}

TEST(ExecLine, ExpandsFieldCodes) {
  const struct {
    const char* exec;
    Words arguments;
    Words expected;
  } cases[] = {
      {"xterm", {}, {"xterm"}},
      {"xterm", {"a"}, {"xterm", "a"}},
      {"  view\t--once   %f ", {"a b", "c"}, {"view", "--once", "a b"}},
      {"view %f", {}, {"view"}},
      {"view %F x", {"a", "b"}, {"view", "a", "b", "x"}},
      {"view %u", {"http://x"}, {"view", "http://x"}},
      {"view --at=%u", {"http://x"}, {"view", "--at=http://x"}},
      {"view %i --name %c %k", {}, {"view", "--icon", "pic", "--name", "The Name", "/entry"}},
      {"view 100%% %d%v", {}, {"view", "100%", ""}},
      {"view %m", {}, {"view"}},
      {"\"two words\" \"a \\\"quote\\\"\" \"\"", {}, {"two words", "a \"quote\"", ""}},
      {"sh -c \"echo \\$HOME\"", {}, {"sh", "-c", "echo $HOME"}},
      {"view %x", {}, {}},
      {"view %", {}, {}},
      {"view \"open", {}, {}},
      {"", {"a"}, {}},
      {"printf %%f", {"a"}, {"printf", "%f", "a"}},
  };
  for (const auto& [exec, arguments, expected] : cases) {
    DesktopEntry entry;
    entry.name = "The Name";
    entry.icon = "pic";
    entry.exec = exec;
    EXPECT_EQ(expandExec(entry, "/entry", arguments), expected) << exec;
  }
}

TEST(XdgEnvironment, TakesAbsoluteFoldersOnly) {
  const auto read = [](const std::map<std::string, std::string>& variables) {
    return readXdgEnvironment([&](const char* name) {
      const auto found = variables.find(name);
      return found == variables.end() ? std::nullopt : std::optional(found->second);
    });
  };
  const auto usual = read({{"HOME", "/home/ann"}, {"XDG_DATA_HOME", "relative"}, {"XDG_DATA_DIRS", ""}});
  EXPECT_THAT(usual.dataFolders, ElementsAre("/home/ann/.local/share", "/usr/local/share", "/usr/share"));
  EXPECT_THAT(usual.programFolders, ElementsAre("/usr/local/bin", "/usr/bin", "/bin"));
  EXPECT_EQ(usual.locale, "");
  const auto unusual = read({{"XDG_DATA_HOME", "/d"},
                             {"XDG_DATA_DIRS", "/a::b:/c/"},
                             {"PATH", ".:/bin"},
                             {"LC_ALL", ""},
                             {"LC_MESSAGES", "fr_FR.UTF-8"},
                             {"LANG", "de"},
                             {"XDG_CURRENT_DESKTOP", "ubuntu:GNOME"}});
  EXPECT_THAT(unusual.dataFolders, ElementsAre("/d", "/a", "/c/"));
  EXPECT_THAT(unusual.programFolders, ElementsAre("/bin"));
  EXPECT_EQ(unusual.locale, "fr_FR.UTF-8");
  EXPECT_THAT(unusual.currentDesktops, ElementsAre("ubuntu", "GNOME"));
}

TEST(XdgEnvironment, TheDocumentsFolderIsWhereTheUserPutIt) {
  const std::pair<const char*, std::optional<std::filesystem::path>> cases[] = {
      {"XDG_DOCUMENTS_DIR=\"$HOME/Papiere\"\n", "/home/ann/Papiere"},
      {"# XDG_DOCUMENTS_DIR=\"/no\"\nXDG_MUSIC_DIR=\"/m\"\nXDG_DOCUMENTS_DIR=\"/srv/d e\"", "/srv/d e"},
      {"XDG_DOCUMENTS_DIR=\"relative\"", std::nullopt},
      {"XDG_DOCUMENTS_DIR=\"", std::nullopt},
      {"", std::nullopt}};
  for (const auto& [text, folder] : cases) {
    EXPECT_EQ(documentsFolder(text, "/home/ann"), folder) << text;
  }
}

TEST(XdgEnvironment, TagsOfALocaleBestFirst) {
  const std::pair<const char*, Words> cases[] = {
      {"sr_YU.UTF-8@Latn", {"sr_YU@Latn", "sr_YU", "sr@Latn", "sr"}},
      {"de_CH", {"de_CH", "de"}},
      {"de", {"de"}},
      {"C.UTF-8", {}},
      {"POSIX", {}},
      {"", {}},
  };
  for (const auto& [locale, tags] : cases) {
    EXPECT_EQ(localeTags(locale), tags) << locale;
  }
}

}  // namespace
}  // namespace tallowin
