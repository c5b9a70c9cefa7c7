#include <cerrno>
#include <fstream>
#include <iostream>
#include <system_error>

#include "app/diagnostic_modes.h"
#include "app/main/host.h"
#include "app/main/machine.h"
#include "base/app_paths.h"
#include "base/main_thread_work_queues.h"
#include "commands/outcome.h"
#include "core/driven/cgs_bridge.h"
#include "core/driven/driven_desktop.h"
#include "core/space_provider.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/simulated_desktop.h"
#include "platform/simulated/virtual_time.h"
#include "windows/driven/driven_windows.h"

namespace tallowin {

namespace {

using ScenarioResult = std::expected<Scenario, HostError>;

ScenarioResult readScenario(const std::optional<std::filesystem::path>& path) {
  if (!path) {
    return *Scenario::parse("{}");
  }
  constexpr std::size_t largestScenario = 64 << 20;
  errno = 0;
  std::ifstream file(*path, std::ios::binary);
  std::string bytes;
  for (char part[1 << 16]; file && bytes.size() <= largestScenario;) {
    file.read(part, sizeof part);
    bytes.append(part, static_cast<std::size_t>(file.gcount()));
  }
  if (!file.eof()) {
    const auto why = bytes.size() > largestScenario ? "it is too large for a scenario"
                                                    : std::generic_category().message(errno != 0 ? errno : EIO);
    return std::unexpected(HostError{"cannot read " + path->string() + ": " + why, exit_status::noInput});
  }
  auto scenario = Scenario::parse(bytes);
  if (!scenario) {
    return std::unexpected(HostError{path->string() + ": " + scenario.error(), exit_status::badData});
  }
  return *std::move(scenario);
}

/// Where the lines of the journal go.
class JournalFile {
 public:
  /// To `path`; without one to standard output if `byDefault`, else nowhere. False when the file cannot be written.
  bool open(const std::optional<std::filesystem::path>& path, bool byDefault) {
    if (path) {
      file_.open(*path);
    }
    out_ = path ? &file_ : byDefault ? &std::cout : nullptr;
    return !path || file_.is_open();
  }

  void write(std::string_view line) {
    if (out_ != nullptr) {
      *out_ << line << '\n';
    }
  }

  /// Whether everything was written.
  [[nodiscard]] bool close() { return out_ == nullptr || out_->flush().good(); }

 private:
  std::ofstream file_;
  std::ostream* out_ = nullptr;
};

/// A desktop that is driven, its window server's functions found by name as on the real one.
struct Driven {
  Driven(SimulatedDesktop& simulated, MainQueue& queue)
      : bridge(simulated.loader(), simulated.coreFoundation()),
        services{bridge, simulated.accessibility(), simulated.windowList()},
        desktop(bridge, queue),
        windows(services) {}

  CGSBridge bridge;
  DrivenServices services;
  DrivenDesktop desktop;
  DrivenWindows windows;
};

/// The simulated desktop.
class SimulatedHost : public Host {
 public:
  explicit SimulatedHost(Scenario scenario) : scenario_(std::move(scenario)) {}

 protected:
  void make(MainQueue& queue, SimulatedClock& clock, RunLoop& runLoop, Journal& journal, Images& images) {
    desktop_ = std::make_unique<SimulatedDesktop>(scenario_, queue, clock, images, journal);
    desktop_->onQuit = [&runLoop](int status) { runLoop.stop(status); };
    driven_.emplace(*desktop_, queue);
  }

  /// Asked or driven, as the scenario says.
  [[nodiscard]] Desktop& spaces() {
    return desktop_->asked() != nullptr ? static_cast<Desktop&>(*desktop_->asked()) : driven_->desktop;
  }
  [[nodiscard]] Windows& windows() { return desktop_->asked() != nullptr ? desktop_->windows() : driven_->windows; }

  [[nodiscard]] std::unique_ptr<Preferences> preferencesIn(Storage& storage, Files& files, MainQueue& queue,
                                                           const std::filesystem::path& path) {
    return std::make_unique<Preferences>(storage, files, queue, path,
                                         [this](std::string_view key) { return desktop_->globalPreference(key); });
  }

  const Scenario scenario_;
  std::unique_ptr<SimulatedDesktop> desktop_;
  std::optional<Driven> driven_;
};

class VirtualTimeHost : public SimulatedHost {
 public:
  VirtualTimeHost(const CommandLine& line, Scenario scenario)
      : SimulatedHost(std::move(scenario)),
        verbose_(line.verbose),
        time_(scenario_.clock),
        images_(machineLog_, line.mode == Mode::capture) {
    time_.endAt(scenario_.end);
    make(time_, time_, time_, journal_, images_);
    const auto preferences = preferencesFile(desktop_->folders());
    desktop_->usePreferencesFile(preferences);
    preferences_ = preferencesIn(desktop_->storage(), desktop_->files(), time_, preferences);
  }

  [[nodiscard]] bool openJournal(const CommandLine& line) {
    return file_.open(line.journal, line.mode == Mode::resident);
  }

  Storage& storage() override { return desktop_->storage(); }

  Platform platform() override {
    return simulatedPlatform(*desktop_, spaces(), driven_->services, windows(), *preferences_, images_, time_);
  }

  void begin() override { desktop_->start(); }

  int end(int status) override {
    const auto reading = spaces().read();
    auto state = endState(reading ? std::optional(SpaceProvider::displays(*reading)) : std::nullopt, *preferences_);
    state["files"] = desktop_->parts().files.contents();
    state["status"] = status;
    journal_.record("end", state);
    if (!file_.close()) {
      std::cerr << "tallowin: the journal could not be written completely\n";
      return exit_status::outputFailed;
    }
    return status;
  }

 private:
  const bool verbose_;
  VirtualTime time_;
  JournalFile file_;
  Journal journal_{time_, [this](std::string_view line) {
                     file_.write(line);
                     if (verbose_) {
                       std::cerr << line << '\n';
                     }
                   }};
  SystemLog machineLog_{verbose_};
  LazyImages images_;
  std::unique_ptr<Preferences> preferences_;
};

/// The simulated window server, with the machine's own time, files and log.
class RealTimeHost : public SimulatedHost {
 public:
  RealTimeHost(const CommandLine& line, Scenario scenario, std::unique_ptr<InstanceLock> lock)
      : SimulatedHost(std::move(scenario)), machine_(line, std::move(lock)), clock_(scenario_.clock) {
    make(machine_.mainQueue, clock_, machine_.mainQueue, journal_, machine_.images);
    preferences_ =
        preferencesIn(machine_.storage, machine_.files, machine_.mainQueue, preferencesFile(machine_.folders));
    if (!scenario_.preferences.empty() || !scenario_.files.empty()) {
      std::cerr << "tallowin: the scenario's preferences and files count only with --simulate\n";
    }
  }

  Storage& storage() override { return machine_.storage; }

  Platform platform() override {
    auto& simulated = *desktop_;
    return {{.files = machine_.files,
             .folders = machine_.folders,
             .preferences = *preferences_,
             .processes = simulated.processes(),
             .system = simulated.system(),
             .images = machine_.images,
             .mainQueue = machine_.mainQueue,
             .workQueues = machine_.workQueues,
             .runLoop = machine_.mainQueue,
             .clock = machine_.clock,
             .log = machine_.log},
            simulatedDesktopServices(simulated, spaces(), driven_->services, windows(), desktopQueues_),
            {simulated.parts().user, simulated.parts().alerts, simulated.parts().user, simulated.parts().user},
            {.urlEvents = simulated.urlEvents(),
             .commandChannel = machine_.commandChannel(),
             .scriptEvents = simulated.scriptEvents(),
             .desktopService = machine_.desktopService(),
             .listeners = machine_.listeners}};
  }

  void begin() override {
    machine_.begin();
    desktop_->start();
  }

 private:
  Machine machine_;
  std::unique_ptr<Preferences> preferences_;
  RealTimeSimulatedClock clock_;
  MainThreadWorkQueues desktopQueues_{machine_.mainQueue};  // the simulated services belong to one thread
  // What is done to the desktop is worth a line of the log to those who want to see it.
  Journal journal_{clock_, [this](std::string_view line) { machine_.log.info("Simulation", line); }};
};

}  // namespace

HostResult makeSimulatedHost(const CommandLine& line, std::unique_ptr<InstanceLock> lock) {
  auto scenario = readScenario(line.simulate ? line.simulate : line.scenario);
  if (!scenario) {
    return std::unexpected(scenario.error());
  }
  if (!line.simulate) {
    return std::make_unique<RealTimeHost>(line, *std::move(scenario), std::move(lock));
  }
  auto host = std::make_unique<VirtualTimeHost>(line, *std::move(scenario));
  if (!host->openJournal(line)) {
    return std::unexpected(HostError{"cannot write " + line.journal->string(), exit_status::cannotCreate});
  }
  return host;
}

}  // namespace tallowin
