#include "platform/simulated/simulated_presentation.h"

namespace tallowin {

namespace {

nlohmann::ordered_json optionalText(const std::optional<std::string>& text) {
  return text ? nlohmann::ordered_json(*text) : nlohmann::ordered_json();
}

}  // namespace

void SimulatedHUD::show(const ShownSpace& space) {
  nlohmann::ordered_json arguments = {{"id", space.id}, {"name", space.name}, {"symbol", space.symbol}};
  if (space.desktopNumber) {
    arguments["desktopNumber"] = *space.desktopNumber;
  }
  journal_.record("hud", arguments);
}

Shown SimulatedOverview::toggle() {
  shown_ = !shown_;
  journal_.record("overview", {{"shown", shown_}});
  return {};
}

Shown SimulatedSettingsWindow::show(const std::optional<std::string>& tab, const std::optional<std::string>& spaceID) {
  journal_.record("settingsWindow", {{"tab", optionalText(tab)}, {"spaceID", optionalText(spaceID)}});
  return {};
}

Shown SimulatedRenameDialog::present(const ShownSpace& space, bool isNew, Completion completion) {
  answer(std::nullopt);
  journal_.record("renameDialog", {{"id", space.id}, {"name", space.name}, {"isNew", isNew}});
  open_ = std::move(completion);
  return {};
}

void SimulatedRenameDialog::answer(const std::optional<std::string>& name) {
  if (const auto completion = std::exchange(open_, nullptr)) {
    completion(name);
  }
}

bool SimulatedDockGuard::spaceChanged(const std::string& toSpaceID) {
  if (!std::exchange(clicked_, false)) {
    current_ = toSpaceID;
    return false;
  }
  journal_.record("dockGuard", {{"from", toSpaceID}, {"backTo", current_}});
  if (bounceBack_) {
    bounceBack_(current_);
  }
  return true;
}

void SimulatedDesktopLabel::update(const std::map<std::string, ShownSpace>& active) {
  auto names = nlohmann::ordered_json::object();
  for (const auto& [display, space] : active) {
    names[display] = space.name;
  }
  journal_.record("desktopLabel", {{"names", names}});
}

}  // namespace tallowin
