#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/json_text.h"
#include "base/property_list_reading.h"
#include "base/record_file.h"
#include "base/unicode.h"
#include "commands/cli/request_words.h"
#include "commands/commands_under_way.h"
#include "commands/outcome.h"
#include "platform/ways_in.h"

namespace tallowin {

/// What each of the things in a list is called.
template <typename Named>
[[nodiscard]] std::vector<std::string> namesOf(const std::vector<Named>& list) {
  std::vector<std::string> names;
  for (const auto& each : list) {
    names.push_back(each.name);
  }
  return names;
}

/// A request that has been understood, on its way to the answer. Letting go of the last copy unanswered tells the
/// caller so.
struct RequestJob {
  RequestWords words;
  std::shared_ptr<Caller> caller;  ///< shared with the copies that wait for something to happen
  std::string workingDirectory;    ///< where relative paths among the operands start from

  /// A file that an operand names.
  [[nodiscard]] std::filesystem::path path(const std::string& operand) const {
    return (std::filesystem::path(workingDirectory) / operand).lexically_normal();
  }

  /// Ends it well, with something on the caller's standard output.
  void print(const std::string& text) const {
    caller->out(text);
    caller->exit(exit_status::success);
  }

  /// Ends it well with names alone, one to a line, as menus and shells' completions take them.
  void printNames(const std::vector<std::string>& names) const {
    std::string text;
    for (const auto& name : names) {
      text.append(printable(name)).append("\n");
    }
    print(text);
  }

  /// Ends it well with a list: names alone, JSON records or text, as its options say.
  template <typename Named>
  void printList(const std::vector<Named>& list, const std::function<PropertyList(const Named&)>& record,
                 const std::function<std::string()>& text) const {
    if (words.namesOnly()) {
      printNames(namesOf(list));
    } else {
      print(words.json() ? prettyJSON(listToJson(list, record)) : text());
    }
  }

  /// Ends it with one line on the caller's standard error.
  void fail(const std::string& message, int status = exit_status::failure) const {
    caller->err("tallowin: " + printable(message) + "\n");
    caller->exit(status);
  }

  /// Ends it with what is wrong with something that was handed in.
  void fail(const ForeignFault& fault) const {
    fail(fault.sentence + " (" + fault.reason + ")", fault.isUnreadable ? exit_status::noInput : exit_status::badData);
  }

  void succeed() const { caller->exit(exit_status::success); }

  /// Ends it as the command that it asked for did.
  void end(const Outcome& outcome) const {
    if (outcome.kind == Outcome::Kind::done) {
      succeed();
    } else {
      fail(outcome.sentence, outcome.kind == Outcome::Kind::refused ? exit_status::failure : exit_status::notObserved);
    }
  }

  /// Writes what is unsaved. False when that failed; then the job has ended with the reason and `cannotCreate`.
  [[nodiscard]] bool save(Storage& storage) const {
    const auto saved = storage.saveNow();
    if (!saved) {
      fail("cannot save: " + saved.error().description, exit_status::cannotCreate);
    }
    return saved.has_value();
  }

  /// Ends it well once what is unsaved is in its files.
  void succeedOnceSaved(Storage& storage) const {
    if (save(storage)) {
      succeed();
    }
  }
};

/// Who answers which kind of request.
using RequestTable = std::map<RequestKind, std::function<void(RequestJob)>>;

/// Answers what another program of the user's asks for: at once, or, where that is still waited for, when there is a
/// snapshot and, for what is asked, when what was commanded before has happened. `answers` holds every kind of request,
/// and outlives them.
void handleRequest(const RequestTable& answers, CommandsUnderWay& underWay, const Request& request,
                   std::unique_ptr<Caller> caller);

}  // namespace tallowin
