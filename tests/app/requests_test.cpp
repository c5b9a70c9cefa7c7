// What the running instance can be asked for, and how the small program in front of it reads its arguments.

#include <gtest/gtest.h>

#include "app/front/option_table.h"
#include "commands/cli/request_words.h"

namespace tallowin {
namespace {

using Words = std::vector<std::string>;

TEST(RequestWords, AreReadOrRefusedInOneLine) {
  const std::pair<Words, RequestWords> understood[] = {
      {{}, {RequestKind::start, {}, {}}},
      {{"list", "--names"}, {RequestKind::list, {}, {{"--names", ""}}}},
      {{"--json", "current"}, {RequestKind::current, {}, {{"--json", ""}}}},
      {{"windows", "--json", "--all"}, {RequestKind::windows, {}, {{"--all", ""}, {"--json", ""}}}},
      {{"mark", "x"}, {RequestKind::mark, {"x"}, {}}},
      {{"time", "--days", "3", "--csv", "f"}, {RequestKind::time, {}, {{"--csv", "f"}, {"--days", "3"}}}},
      {{"edit", "3", "--name", ""}, {RequestKind::edit, {"3"}, {{"--name", ""}}}},
      {{"automation", "3", "set", "f"}, {RequestKind::automation, {"3", "set", "f"}, {}}},
      {{"switch", "Mail"}, {RequestKind::command, {"Mail"}, {}, "switch"}},
      {{"search", "--all"}, {RequestKind::command, {}, {{"--all", ""}}, "windows"}},
      {{"rename", "2", ""}, {RequestKind::command, {"2", ""}, {}, "rename"}},
      {{"rename", "2", "--", "--strange"}, {RequestKind::command, {"2", "--strange"}, {}, "rename"}},
      {{"note", "text"}, {RequestKind::command, {"text"}, {}, "note"}},
      {{"note", "2", "text"}, {RequestKind::command, {"2", "text"}, {}, "note"}},
      {{"tallowin://switch/3"}, {RequestKind::url, {"tallowin://switch/3"}, {}}},
  };
  for (const auto& [words, expected] : understood) {
    EXPECT_EQ(readRequestWords(words), expected) << testing::PrintToString(words);
  }
  const std::pair<Words, std::string> refused[] = {
      {{"list", "more"}, "it is called so: tallowin list [--json] [--names] [--urls] [--format TEXT]"},
      {{"time", "--days"}, "it is called so: tallowin time [--days N] [--csv FILE] [--json]"},
      {{"jump", "a", "b"}, "it is called so: tallowin jump [LETTER]"},
      {{"windows", "--json", "--every"}, "it is called so: tallowin windows [--all] [--json]"},
      {{"rename", "2"}, "it is called so: tallowin rename SPACE NAME"},
      {{"switch", ""}, "it is called so: tallowin switch SPACE"},
      {{"note", "", "text"}, "it is called so: tallowin note [SPACE] TEXT"},
      {{"--json"}, "--json goes with what is asked for, as in: tallowin list --json"},
      {{"tallowin://back", "--json"}, "a URL goes alone"},
  };
  for (const auto& [words, message] : refused) {
    EXPECT_EQ(readRequestWords(words).error(), message);
  }
}

TEST(RequestWords, ThatOnlyTellSomethingStartNothing) {
  const std::pair<Words, RequestNature> cases[] = {
      {{}, RequestNature::control},
      {{"tallowin://back"}, RequestNature::action},
      {{"list"}, RequestNature::query},
      {{"watch"}, RequestNature::control},
      {{"profile", "list"}, RequestNature::query},
      {{"profile", "use", "Work"}, RequestNature::action},
      {{"automation", "2"}, RequestNature::query},
      {{"automation", "2", "run"}, RequestNature::action},
      {{"restore"}, RequestNature::query},
      {{"restore", "1"}, RequestNature::action},
      {{"mark"}, RequestNature::action},
      {{"doctor"}, RequestNature::control},
  };
  for (const auto& [words, nature] : cases) {
    EXPECT_EQ(readRequestWords(words)->nature(), nature) << testing::PrintToString(words);
  }
}

TEST(FrontArguments, TellWhatTheInstanceCanDo) {
  struct Case {
    std::vector<const char*> arguments;
    bool forInstance;
    std::string home;
    Words request;
  };
  const Case cases[] = {
      {{}, true, "", {}},
      {{"--home", "h", "--verbose", "--platform", "x11", "tallowin://back"}, true, "h", {"tallowin://back"}},
      {{"--scenario", "list", "--port", "57302"}, true, "", {}},
      {{"--switch", "3", "classic"}, false, "", {"--switch", "3", "classic"}},
      {{"edit", "3", "--name", "classic"}, true, "", {"edit", "3", "--name", "classic"}},
      {{"rename", "2", "--", "--demo"}, true, "", {"rename", "2", "--", "--demo"}},
      {{"--home"}, false, "", {}},
      {{"--settings", "--probe"}, false, "", {}},
      {{"edit", "3", "--name", "--probe"}, false, "", {"edit", "3", "--name", "--probe"}},
      {{"--simulate", "s.json"}, false, "", {"--simulate", "s.json"}},
  };
  for (auto [arguments, forInstance, home, request] : cases) {
    arguments.push_back(nullptr);
    const auto read = readFrontArguments(arguments.data());
    EXPECT_EQ(read.forInstance, forInstance) << testing::PrintToString(request);
    EXPECT_EQ(read.home != nullptr ? read.home : "", home);
    EXPECT_EQ(read.request, request);
  }
}

}  // namespace
}  // namespace tallowin
