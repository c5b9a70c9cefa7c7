#include "platform/xdg/xdg_environment.h"

#include <fstream>
#include <gtest/gtest.h>
#include <stdlib.h>

namespace tallowin {
namespace {

namespace fs = std::filesystem;

TEST(Autostart, IsByAUnitThatIsWantedOrAnEntryThatIsNotHidden) {
  std::string name = (fs::temp_directory_path() / "tallowin-test.XXXXXX").string();
  const fs::path root = mkdtemp(name.data());
  const AutostartFolders folders{{root / "own", root / "system"}, {root / "units", root / "vendor"}};
  const auto write = [](const fs::path& path, const char* text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path) << "[Desktop Entry]\nType=Application\nName=T\nExec=t\n" << text;
  };
  EXPECT_EQ(autostartPlace(folders), std::nullopt);
  const auto entry = root / "system/autostart/com.quorvex.Tallowin.desktop";
  write(entry, "");
  EXPECT_EQ(autostartPlace(folders), entry);
  const auto wanted = root / "vendor/graphical-session.target.wants/tallowin.service";
  fs::create_directories(wanted.parent_path());
  fs::create_symlink("../tallowin.service", wanted);
  EXPECT_EQ(autostartPlace(folders), wanted);
  fs::create_directories(root / "units");
  fs::create_symlink("/dev/null", root / "units/tallowin.service");
  EXPECT_EQ(autostartPlace(folders), entry) << "the unit is masked";
  write(root / "own/autostart/com.quorvex.Tallowin.desktop", "Hidden=true\n");
  EXPECT_EQ(autostartPlace(folders), std::nullopt);
  fs::remove_all(root);
}

}  // namespace
}  // namespace tallowin
