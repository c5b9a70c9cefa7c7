// Any bytes may stand in a file of the program's own, or in one that somebody hands in. The first byte of the input
// chooses the file, the rest is its content. What was understood is the same after a save, and nothing else is lost.

#include <algorithm>
#include <filesystem>

#include "automation/diagnostics.h"
#include "automation/profile_store.h"
#include "automation/settings_transfer.h"
#include "automation/space_templates.h"
#include "automation/time_tracker.h"
#include "base/json_text.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/storing_program.h"
#include "windows/saved_spaces.h"
#include "windows/window_layout.h"

using namespace tallowin;

namespace {

using namespace std::chrono_literals;

constexpr auto preferencesFile = "/home/user/.config/tallowin/preferences.json";
constexpr auto handedIn = "/home/user/handed-in.json";
constexpr auto added = "Added by the fuzzer";
constexpr auto displays = "displays";

/// A simulated desktop with a window, and the services of the program that read files, where one file has a content
/// that anybody may have written.
class Machine : public StoringProgram {
 public:
  Machine(std::filesystem::path file, std::string_view content)
      : StoringProgram(R"({"start": "2026-03-02T09:00:00Z", "windows": [{"number": 1, "pid": 11}],
                              "applications": [{"name": "Mail", "pid": 11, "bundleID": "app.mail"}]})"),
        file_(std::move(file)),
        content_(content) {
    files().replace(file_, content_);
  }

  /// What was not understood is still in its folder.
  [[nodiscard]] bool keepsWhatItDoesNotUnderstand() {
    const auto folder = file_.parent_path();
    return std::ranges::none_of(lines, [](const auto& line) { return line.contains("cannot understand"); }) ||
           std::ranges::any_of(files().list(folder),
                               [&](const auto& name) { return fileText(folder / name) == content_; });
  }

  [[nodiscard]] SpaceStore newStore() {
    return {
        {files(), images, desktop.workspace(), desktop.log(), settings, paths}, storage, supportFolder + "spaces.json"};
  }
  [[nodiscard]] TimeTracker newTracker() { return TimeTracker(services); }

  ProfileStore profiles{services};
  SpaceTemplates templates{services};
  LayoutFiles layouts{storage, paths};
  SettingsTransfer transfer{services};
  SpaceContents contents{platform};
  SavedSpaces savedSpaces{services, contents};

 private:
  const std::filesystem::path file_;
  const std::string content_;
};

/// The elements but for those with the name that is added here.
template <typename Named>
std::vector<Named> withoutAdded(std::vector<Named> list) {
  std::erase_if(list, [](const Named& element) { return element.name == added; });
  return list;
}

void readSpaces(Machine& machine) {
  auto store = machine.newStore();
  store.replaceAll(store.metas());
  machine.time.advance(1s);
  require(machine.newStore().metas() == store.metas(), "records of Spaces survive a save");
}

void readPreferences(Machine& machine) {
  auto values = machine.preferences.persistentDomain();
  require(machine.preferences.setObject("gridColumns", 3), "a setting can be set whatever stands in the file");
  values["gridColumns"] = 3;
  Preferences again(machine.storage, machine.files(), machine.time, preferencesFile, {});
  require(again.persistentDomain() == values, "settings survive a save");
}

void readLayout(Machine& machine) {
  if (const auto layout = machine.layouts.read(layout_name::manual, displays)) {
    machine.layouts.write(*layout, layout_name::manual);
    require(machine.layouts.read(layout_name::manual, layout->displaySetup) == layout, "a layout survives a save");
  }
}

void readProfiles(Machine& machine) {
  const auto profiles = withoutAdded(machine.profiles.list());
  machine.profiles.saveCurrent(added);
  require(withoutAdded(machine.profiles.list()) == profiles, "profiles survive a save");
}

void readTemplates(Machine& machine) {
  const auto templates = withoutAdded(machine.templates.list());
  machine.files().replace(handedIn, prettyJSON(toJson(SpaceTemplate{added, "", {}})));
  require(machine.templates.importFile(handedIn).has_value(), "a template is imported whatever stands in the file");
  require(withoutAdded(machine.templates.list()) == templates, "templates survive a save");
}

void importTemplate(Machine& machine) {
  if (const auto imported = machine.templates.importFile(handedIn)) {
    require(machine.templates.list().back() == *imported, "a template that was imported is listed");
    machine.templates.apply(*imported, machine.snapshot());
  }
}

void readTimes(Machine& machine) {
  auto tracker = machine.newTracker();
  tracker.spaceChanged(machine.space(1));
  machine.time.advance(90s);
  tracker.flush();
  machine.time.advance(6s);
  require(machine.newTracker().days() == tracker.days(), "times survive a save");
}

void importSettings(Machine& machine) {
  static_cast<void>(machine.transfer.importFile(handedIn));
  const auto after = machine.transfer.exportData();
  machine.files().replace(handedIn, after);
  require(machine.transfer.importFile(handedIn).has_value(), "an export can be imported");
  require(machine.transfer.exportData() == after, "an export that is imported is the same export");
}

void readSavedSpaces(Machine& machine) {
  const auto spaces = machine.savedSpaces.list();
  machine.contents.start();
  machine.time.advance(1s);
  require(machine.savedSpaces.save(machine.space(1)).has_value(), "a Space is saved whatever there is");
  auto more = machine.savedSpaces.list();
  more.pop_back();
  require(more == spaces, "saved Spaces survive a save");
}

struct Kind {
  char letter;
  std::string file;
  void (*read)(Machine& machine);
};

const Kind kinds[] = {
    {'s', supportFolder + "spaces.json", readSpaces},
    {'p', preferencesFile, readPreferences},
    {'l', supportFolder + "Layouts/" + layoutFileName(layout_name::manual, displays), readLayout},
    {'r', supportFolder + "profiles.json", readProfiles},
    {'t', supportFolder + "templates.json", readTemplates},
    {'i', handedIn, importTemplate},
    {'m', supportFolder + "stats.json", readTimes},
    {'e', handedIn, importSettings},
    {'v', supportFolder + "saved-spaces.json", readSavedSpaces},
    {'o', "/etc/os-release",
     [](Machine& machine) { static_cast<void>(diagnosticsReport(machine.services, machine.snapshot())); }},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto input = inputText(data, size);
  const auto kind = std::ranges::find(kinds, input.empty() ? '\0' : input.front(), &Kind::letter);
  if (kind == std::end(kinds)) {
    return -1;  // keeps it out of the corpus
  }
  Machine machine(kind->file, input.substr(1));
  kind->read(machine);
  require(machine.keepsWhatItDoesNotUnderstand(), "what is not understood is kept");
  return 0;
}
