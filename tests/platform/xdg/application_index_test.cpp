#include "platform/xdg/application_index.h"

#include <fstream>
#include <gtest/gtest.h>
#include <stdlib.h>

namespace tallowin {
namespace {

/// Data folders of their own: "user" before "system".
class ApplicationIndexTest : public testing::Test {
 protected:
  ApplicationIndexTest() {
    std::string name = (std::filesystem::temp_directory_path() / "tallowin-test.XXXXXX").string();
    folder_ = mkdtemp(name.data());
    environment_.home = folder_ / "home";
    environment_.dataFolders = {folder_ / "user", folder_ / "system"};
    environment_.programFolders = {folder_ / "bin"};
    environment_.currentDesktops = {"XFCE"};
  }
  ~ApplicationIndexTest() override { std::filesystem::remove_all(folder_); }

  std::filesystem::path write(const std::filesystem::path& name, const std::string& text) {
    const auto path = folder_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << text;
    return path;
  }

  void install(const std::filesystem::path& name, const std::string& lines) {
    write(name, "[Desktop Entry]\nType=Application\n" + lines);
  }

  [[nodiscard]] std::string match(const ApplicationHint& hint) const {
    const auto index = ApplicationIndex::read(environment_);
    const auto* found = index.match(hint);
    return found == nullptr ? "-" : found->id;
  }

  std::filesystem::path folder_;
  XdgEnvironment environment_;
};

TEST_F(ApplicationIndexTest, FindsTheApplicationOfAWindow) {
  install("system/applications/org.gnome.Terminal.desktop", "StartupWMClass=Gnome-terminal\nExec=gnome-terminal\n");
  install("system/applications/xterm.desktop", "Exec=/usr/bin/xterm -e %u\n");
  install("system/applications/vendor/deep/tool.desktop", "Exec=env A=b tool-program\n");
  install("system/applications/writer.desktop", "StartupWMClass=office-writer\nExec=office --writer\n");
  install("system/applications/calc.desktop", "StartupWMClass=office-calc\nExec=office --calc\n");
  install("system/applications/viewer.desktop", "Exec=view %f\n");
  install("system/applications/viewer-hidden.desktop", "Exec=view --other\nNoDisplay=true\n");
  install("system/applications/lower.desktop", "StartupWMClass=same\n");
  install("system/applications/upper.desktop", "StartupWMClass=Same\n");
  const struct {
    const char* what;
    ApplicationHint hint;
    const char* expected;
  } cases[] = {
      {"class", {"gnome-terminal-server", "Gnome-terminal", "x"}, "org.gnome.Terminal"},
      {"class in another case", {"", "OFFICE-Calc", ""}, "calc"},
      {"the class as it is written", {"", "Same", ""}, "upper"},
      {"instance", {"office-writer", "Office", ""}, "writer"},
      {"id", {"", "XTerm", ""}, "xterm"},
      {"last part of the id", {"terminal", "Other", ""}, "org.gnome.Terminal"},
      {"id of a folder", {"", "vendor-deep-tool", ""}, "vendor-deep-tool"},
      {"program", {"a", "b", "xterm"}, "xterm"},
      {"program of two offered entries", {"a", "b", "office"}, "-"},
      {"program of one offered entry", {"", "", "view"}, "viewer"},
      {"a program that runs others", {"", "", "env"}, "-"},
      {"nothing known", {"", "", ""}, "-"},
  };
  for (const auto& [what, hint, expected] : cases) {
    EXPECT_EQ(match(hint), expected) << what;
  }
}

TEST_F(ApplicationIndexTest, MoreImportantFoldersHideOthers) {
  install("system/applications/a.desktop", "Name=System\nStartupWMClass=A\n");
  install("user/applications/a.desktop", "Name=User\nStartupWMClass=A\n");
  install("system/applications/b.desktop", "Name=Deleted\nStartupWMClass=B\n");
  install("user/applications/b.desktop", "Hidden=true\n");
  install("system/applications/c.desktop", "Name=Missing\nTryExec=nowhere\nStartupWMClass=C\n");
  install("system/applications/d.desktop", "Name=Present\nTryExec=tool\nStartupWMClass=D\n");
  std::filesystem::permissions(write("bin/tool", "#!/bin/sh\n"), std::filesystem::perms::owner_all);
  write("bin/no-tool", "");
  install("system/applications/e.desktop", "Name=Unusable\nTryExec=no-tool\nStartupWMClass=E\n");
  const auto index = ApplicationIndex::read(environment_);
  EXPECT_EQ(index.find("a")->entry.name, "User");
  EXPECT_EQ(index.find("d")->file, folder_ / "system/applications/d.desktop");
  for (const auto* id : {"b", "c", "e", "f", "applications"}) {
    EXPECT_EQ(index.find(id), nullptr) << id;
  }
}

TEST_F(ApplicationIndexTest, ReadsAgainWhenFoldersChange) {
  InstalledApplications installed(environment_);
  const auto none = installed.current();
  EXPECT_EQ(none->find("new"), nullptr);
  EXPECT_EQ(installed.current(), none) << "nothing has changed";
  install("system/applications/sub/new.desktop", "Name=New\n");
  EXPECT_NE(installed.current()->find("sub-new"), nullptr);
  std::filesystem::remove_all(folder_ / "system");
  EXPECT_EQ(installed.current()->find("sub-new"), nullptr);
  EXPECT_EQ(none->find("sub-new"), nullptr) << "a reading never changes";
}

TEST_F(ApplicationIndexTest, FindsPicturesOfIcons) {
  const auto small = write("system/icons/hicolor/16x16/apps/tool.png", "16");
  EXPECT_EQ(findIcon("tool", environment_), small);
  const auto large = write("user/icons/hicolor/128x128/apps/tool.png", "128");
  EXPECT_EQ(findIcon("tool", environment_), large);
  EXPECT_EQ(findIcon("tool.png", environment_), large);
  EXPECT_EQ(findIcon(large.string(), environment_), large);
  const auto pixmap = write("system/pixmaps/other.png", "p");
  EXPECT_EQ(findIcon("other", environment_), pixmap);
  const auto vector = write("system/pixmaps/vector.svg", "v");
  for (const auto& none : {std::string(), std::string("vector"), vector.string(), std::string("/no/such.png")}) {
    EXPECT_EQ(findIcon(none, environment_), std::nullopt) << none;
  }
}

TEST_F(ApplicationIndexTest, StartsByAUnitThatIsWantedOrAnEntryThatIsNotHidden) {
  namespace fs = std::filesystem;
  const AutostartFolders folders{{folder_ / "own", folder_ / "system"}, {folder_ / "units", folder_ / "vendor"}};
  EXPECT_EQ(autostartPlace(folders), std::nullopt);
  install("system/autostart/com.quorvex.Tallowin.desktop", "Name=T\nExec=t\n");
  const auto entry = folder_ / "system/autostart/com.quorvex.Tallowin.desktop";
  EXPECT_EQ(autostartPlace(folders), entry);
  const auto wanted = folder_ / "vendor/graphical-session.target.wants/tallowin.service";
  fs::create_directories(wanted.parent_path());
  fs::create_symlink("../tallowin.service", wanted);
  EXPECT_EQ(autostartPlace(folders), wanted);
  fs::create_directories(folder_ / "units");
  fs::create_symlink("/dev/null", folder_ / "units/tallowin.service");
  EXPECT_EQ(autostartPlace(folders), entry) << "the unit is masked";
  install("own/autostart/com.quorvex.Tallowin.desktop", "Hidden=true\n");
  EXPECT_EQ(autostartPlace(folders), std::nullopt);
}

}  // namespace
}  // namespace tallowin
