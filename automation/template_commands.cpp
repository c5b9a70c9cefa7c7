#include "automation/template_commands.h"

#include <algorithm>

#include "base/unicode.h"

namespace tallowin {

namespace {

Toast applied(const SpaceTemplate& layout) {
  return {"Applied " + layout.name + " template", "square.grid.2x2"};
}

std::size_t spacesOf(const SpaceSnapshot& snapshot) {
  return snapshot.allSpaces().size();
}

}  // namespace

Outcome TemplateCommands::apply(const std::string& name) {
  const auto layout = services_.templates.named(name);
  if (!layout) {
    const auto message = "No template is called " + name;
    services_.toasts.show({message, std::nullopt, true});
    return Outcome::refused(message);
  }
  const auto outcome = services_.templates.apply(*layout, services_.watcher.fresh());
  if (outcome.missing > 0) {
    askToAdd(*layout, outcome);
    return Outcome::notSeen();
  }
  services_.toasts.show(applied(*layout));
  return Outcome::done();
}

void TemplateCommands::askToAdd(const SpaceTemplate& layout, SpaceTemplates::Outcome outcome) {
  const auto missing = outcome.missing;
  const Alert question{layout.name + " needs " + std::to_string(missing) + " more desktop" + (missing == 1 ? "" : "s"),
                       "Tallowin set up " + std::to_string(outcome.applied) + std::string(services_.texts.askToAdd),
                       {"Add Desktops", "Not Now"}};
  services_.alerts.show(question, lifetime_.bound([this, layout](std::optional<std::size_t> button) {
    if (button == std::size_t{0}) {
      addMissing(layout);
    }
  }));
}

/// Others may have added desktops, or removed some, since the question was asked.
void TemplateCommands::addMissing(const SpaceTemplate& layout) {
  const auto snapshot = services_.watcher.fresh();
  const auto missing = SpaceTemplates::outcome(layout, snapshot).missing;
  const auto wanted = spacesOf(snapshot) + missing;
  if (missing > 0) {
    add(layout, missing, wanted);
  } else {
    applyWhenThere(layout, wanted, patience);
  }
}

void TemplateCommands::add(const SpaceTemplate& layout, std::size_t count, std::size_t wanted) {
  adding_ = true;
  services_.management.addDesktop(lifetime_.bound([this, layout, count, wanted](SpaceManagement::Result result) {
    if (!result) {
      adding_ = false;
      services_.toasts.show({std::string(additionFailure(result.error(), services_.texts)), std::nullopt, true});
    } else if (count > 1) {
      const auto pause = services_.management.showsAtOnce() ? Duration::zero() : closingTime;
      waiting_ = services_.mainQueue.after(pause, [this, layout, count, wanted] { add(layout, count - 1, wanted); });
    } else {
      applyWhenThere(layout, wanted, patience);
    }
  }));
}

void TemplateCommands::applyWhenThere(const SpaceTemplate& layout, std::size_t wanted, Duration patienceLeft) {
  const auto snapshot = services_.watcher.fresh();
  if (spacesOf(snapshot) < wanted && patienceLeft > Duration::zero()) {
    waiting_ = services_.mainQueue.after(pollInterval, [this, layout, wanted, patienceLeft] {
      applyWhenThere(layout, wanted, patienceLeft - pollInterval);
    });
    return;
  }
  adding_ = false;
  const auto outcome = services_.templates.apply(layout, snapshot);
  services_.toasts.show(outcome.missing == 0 ? applied(layout)
                                             : Toast{setUpSentence(outcome, services_.texts), std::nullopt, true});
}

std::string setUpSentence(SpaceTemplates::Outcome outcome, const DesktopTexts& texts) {
  auto sentence = "Set up " + std::to_string(outcome.applied) + " Spaces.";
  if (outcome.missing > 0) {
    sentence += " Add " + std::to_string(outcome.missing) + std::string(texts.addAndApplyAgain);
  }
  return sentence;
}

std::string templateList(const std::vector<SpaceTemplate>& templates) {
  std::size_t width = 0;
  for (const auto& layout : templates) {
    width = std::max(width, displayWidth(printable(layout.name)));
  }
  std::string text;
  for (const auto& layout : templates) {
    const auto name = printable(layout.name);
    const auto count = layout.slots.size();
    text += name + std::string(width - displayWidth(name), ' ') + "  " + std::to_string(count) + " Space" +
            (count == 1 ? " " : "s") + "  " + printable(layout.summary) + '\n';
  }
  return text;
}

}  // namespace tallowin
