#include "commands/cli/space_requests.h"

#include <functional>

#include "base/json_text.h"
#include "base/unicode.h"
#include "base/url.h"
#include "commands/space_command.h"
#include "core/space_state.h"

namespace tallowin {

namespace {

/// The URL that switches to a Space of this name; a name that would be taken for something else gives way to the
/// number.
std::string switchURL(const std::string& name, const Space& space) {
  const bool isPlain = spaceRefFromText(name) == SpaceRef::name(name);
  return "tallowin://switch/" + (isPlain ? percentEncoded(name) : desktopNumberText(space));
}

constexpr auto formatOption = "--format";

/// What --format asks for; nothing where it is not understood, which has been answered then.
std::optional<SpaceFormat> formatOf(const RequestJob& job) {
  auto format = SpaceFormat::parse(job.words.options.at(formatOption));
  if (!format) {
    job.fail(format.error(), exit_status::usage);
    return std::nullopt;
  }
  return *std::move(format);
}

struct SpaceRequests {
  const ProgramServices& services;
  StateFeed& feed;
  const AppNames apps;

  /// Whether there are Spaces to tell of; if not, that has been answered.
  bool haveSpaces(const RequestJob& job) const {
    const bool have = !services.watcher.latest().displays.empty();
    if (!have) {
      job.fail("there are no desktops here; \"tallowin doctor\" tells what is missing", exit_status::unavailable);
    }
    return have;
  }

  void list(const RequestJob& job) const {
    if (!haveSpaces(job)) {
      return;
    }
    const auto& snapshot = services.watcher.latest();
    if (job.words.has(formatOption)) {
      if (const auto format = formatOf(job)) {
        std::string lines;
        for (const auto& space : snapshot.allSpaces()) {
          lines += format->line(space, services.store);
        }
        job.print(lines);
      }
      return;
    }
    if (job.words.namesOnly() || job.words.has("--urls")) {
      std::vector<std::string> lines;
      for (const auto& space : snapshot.allSpaces()) {
        const auto name = services.store.displayName(space);
        lines.push_back(job.words.namesOnly() ? name : switchURL(name, space));
      }
      job.printNames(lines);
      return;
    }
    job.print(job.words.json() ? prettyJSON(stateRecord(snapshot, services.store, apps, services.clock.now()))
                               : spaceList(snapshot, services.store));
  }

  void current(const RequestJob& job) const {
    if (!haveSpaces(job)) {
      return;
    }
    const auto space = services.watcher.latest().activeSpace();
    if (!space) {
      job.fail(noActiveSpace);
      return;
    }
    if (job.words.has(formatOption)) {
      if (const auto format = formatOf(job)) {
        job.print(format->line(*space, services.store));
      }
      return;
    }
    job.print(job.words.json() ? prettyJSON(spaceRecord(*space, services.store, apps))
                               : printable(services.store.displayName(*space)) + "\n");
  }

  void watch(const RequestJob& job) const {
    std::optional<SpaceFormat> format;
    if (job.words.has(formatOption) && !(format = formatOf(job))) {
      return;
    }
    feed.add(job.caller, {job.words.json(), std::move(format)});
  }

  void answer(const RequestJob& job) const {
    if (const auto taken = services.alerts.answer(job.words.operands.front())) {
      job.print(printable(*taken) + "\n");
    } else {
      job.fail(taken.error());
    }
  }

  /// The caller ends when this process does, and is told what is lost by that.
  void quit(const RequestJob& job) const {
    const auto saved = services.storage.saveNow();
    if (!saved) {
      job.caller->err("tallowin: cannot save: " + saved.error().description + "\n");
    }
    job.caller->exitAtEnd(saved ? exit_status::success : exit_status::cannotCreate);
    services.runLoop.stop(exit_status::success);
  }
};

}  // namespace

void addSpaceRequests(RequestTable& table, const ProgramServices& services, StateFeed& feed, const AppNames& apps) {
  const SpaceRequests answers{services, feed, apps};
  table[RequestKind::list] = std::bind_front(&SpaceRequests::list, answers);
  table[RequestKind::current] = std::bind_front(&SpaceRequests::current, answers);
  table[RequestKind::watch] = std::bind_front(&SpaceRequests::watch, answers);
  table[RequestKind::answer] = std::bind_front(&SpaceRequests::answer, answers);
  table[RequestKind::quit] = std::bind_front(&SpaceRequests::quit, answers);
  table[RequestKind::start] = [](const RequestJob& job) {
    job.caller->err("tallowin: already running\n");
    job.succeed();
  };
}

}  // namespace tallowin
