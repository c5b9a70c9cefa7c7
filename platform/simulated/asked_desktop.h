#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/delayed_steps.h"
#include "platform/desktop.h"
#include "platform/main_queue.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/simulated_spaces.h"
#include "platform/windows.h"

namespace tallowin {

/// What has been asked of the simulated desktop and has not been carried out yet. Main thread only.
class Requests {
 public:
  Requests(const DesktopState& state, MainQueue& queue, Journal& journal)
      : state_(state), journal_(journal), later_(queue) {}

  /// Writes a request down, and carries it out when its time has come, unless it is one that is ignored.
  void make(std::string_view request, const nlohmann::ordered_json& arguments, std::function<void()> carryOut);

  /// Runs `work` this much later.
  void after(Duration delay, std::function<void()> work) { later_.after(delay, std::move(work)); }

  [[nodiscard]] bool isPossible(std::string_view request) const { return !behaviour().impossible.contains(request); }
  /// Whether it is carried out by half only.
  [[nodiscard]] bool isPartly(std::string_view request) const { return behaviour().partly.contains(request); }
  [[nodiscard]] const RequestBehaviour& behaviour() const { return state_.requests; }

 private:
  const DesktopState& state_;
  Journal& journal_;
  DelayedSteps later_;
};

/// The windows of a desktop that is asked. What is asked becomes a line of the journal, and is carried out as the
/// scenario says. Main thread only.
class AskedWindows : public Windows {
 public:
  AskedWindows(DesktopState& state, Requests& requests, MainQueue& queue)
      : state_(state), requests_(requests), queue_(queue) {}

  std::optional<std::vector<DesktopWindow>> list(WindowScope scope) override;
  std::optional<DesktopWindow> window(WindowNumber number) override;
  std::optional<WindowNumber> focused(ProcessID pid) override;
  bool mayChange() override { return state_.accessibilityAllowed; }
  bool raise(const WindowRef& window) override;
  bool setFrame(const WindowRef& window, const CGRect& frame) override;
  bool minimize(const WindowRef& window) override { return setMinimized(window, true); }
  bool unminimize(const WindowRef& window) override { return setMinimized(window, false); }
  bool close(const WindowRef& window, Duration patience) override;
  bool observe(std::function<void()> observer) override;

  /// Tells the observer, in another turn, if the windows are not those that it was told of last. To be called after
  /// whatever may have changed them.
  void tellChanges();

 private:
  [[nodiscard]] DesktopWindow described(const SimulatedWindow& window) const;
  [[nodiscard]] std::vector<DesktopWindow> everything();
  bool setMinimized(const WindowRef& window, bool minimized);
  /// Asks for a change of a window; false when it cannot be made.
  bool ask(std::string_view request, const WindowRef& window, nlohmann::ordered_json arguments,
           std::function<void(SimulatedWindow&)> change);

  DesktopState& state_;
  Requests& requests_;
  MainQueue& queue_;
  std::function<void()> observer_;
  std::vector<DesktopWindow> told_;
  WorkItem telling_;
};

/// The Spaces of a desktop that is asked, likewise. Main thread only.
class SimulatedAskedDesktop : public AskedDesktop {
 public:
  /// Who asks for a Space waits this long for it before the request counts as ignored.
  static constexpr Duration patience = std::chrono::seconds(1);

  SimulatedAskedDesktop(DesktopState& state, SimulatedSpaces& spaces, AskedWindows& windows, Requests& requests)
      : state_(state), spaces_(spaces), windows_(windows), requests_(requests) {}

  std::optional<DesktopReading> read() override;
  std::optional<ManagedSpaceID> activeSpace() override;
  CGSBridgeHealth health() override;
  bool observe(std::function<void(const DesktopSign&)> observer) override {
    observer_ = std::move(observer);
    return true;
  }
  std::optional<std::vector<ManagedSpaceID>> spacesOfWindow(WindowNumber number) override;
  bool moveWindow(WindowNumber number, ManagedSpaceID space) override;
  DesktopAbilities abilities() override;
  bool switchTo(ManagedSpaceID space) override;
  void addSpace(const std::string& display, Completion completion) override;
  void removeSpace(ManagedSpaceID space, Completion completion) override;

  /// The Spaces have changed, by whomever: gives the sign of it.
  void spacesChanged(WindowServerEvent event);

 private:
  /// The active Spaces by display.
  using Active = std::map<std::string, std::optional<ManagedSpaceID>>;

  [[nodiscard]] Active active() const;
  void sign(const std::string& reason);
  void ask(std::string_view request, const nlohmann::ordered_json& arguments, std::function<bool()> carryOut,
           Completion completion);
  [[nodiscard]] std::optional<ManagedSpaceID> heirOf(ManagedSpaceID space) const;
  bool remove(ManagedSpaceID space);

  DesktopState& state_;
  SimulatedSpaces& spaces_;
  AskedWindows& windows_;
  Requests& requests_;
  std::function<void(const DesktopSign&)> observer_;
  NameSet unheard_;         ///< abilities whose request was ignored
  Active seen_ = active();  ///< as everybody could read them last
  bool isTorn_ = false;     ///< which Spaces are active cannot be read yet
};

}  // namespace tallowin
