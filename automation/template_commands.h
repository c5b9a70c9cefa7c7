#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "automation/space_templates.h"
#include "base/desktop_texts.h"
#include "base/lifetime.h"
#include "commands/outcome.h"
#include "core/space_watcher.h"
#include "platform/alerts.h"
#include "platform/main_queue.h"
#include "platform/toasts.h"
#include "windows/space_management.h"

namespace tallowin {

/// The user's commands about templates, with what the user is told and asked. Main thread only.
class TemplateCommands {
 public:
  /// Desktops that were added are looked for this long, this often.
  static constexpr Duration patience = std::chrono::seconds(3);
  static constexpr Duration pollInterval = std::chrono::milliseconds(100);
  /// Mission Control takes so long to close before it can be opened for the next one.
  static constexpr Duration closingTime = std::chrono::milliseconds(500);

  struct Services {
    SpaceTemplates& templates;
    SpaceManagement& management;
    Alerts& alerts;
    Toasts& toasts;
    MainQueue& mainQueue;
    const DesktopTexts& texts;
    SpaceWatcher& watcher;
  };

  explicit TemplateCommands(Services services) : services_(services) {}
  TemplateCommands(const TemplateCommands&) = delete;
  TemplateCommands& operator=(const TemplateCommands&) = delete;

  /// Applies the template of this name. When there are too few desktops, asks whether to add the others, and then adds
  /// them and applies it again; what becomes of that is not waited for.
  Outcome apply(const std::string& name);

  /// Whether desktops are being added that the template will name.
  [[nodiscard]] bool isAddingDesktops() const { return adding_; }

 private:
  void askToAdd(const SpaceTemplate& layout, SpaceTemplates::Outcome outcome);
  void addMissing(const SpaceTemplate& layout);
  /// Adds so many desktops, one after the other, until there are `wanted` Spaces.
  void add(const SpaceTemplate& layout, std::size_t count, std::size_t wanted);
  void applyWhenThere(const SpaceTemplate& layout, std::size_t wanted, Duration patienceLeft);

  const Services services_;
  WorkItem waiting_;
  bool adding_ = false;
  Lifetime lifetime_;
};

/// What the settings window says of a template that was applied, on such a desktop.
[[nodiscard]] std::string setUpSentence(SpaceTemplates::Outcome outcome, const DesktopTexts& texts);

/// The templates for reading, one line each: name, number of Spaces, summary. Columns are aligned.
[[nodiscard]] std::string templateList(const std::vector<SpaceTemplate>& templates);

}  // namespace tallowin
