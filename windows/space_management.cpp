#include "windows/space_management.h"

#include <utility>

#include "core/space_provider.h"

namespace tallowin {

namespace {

SpaceManagement::Failure failureOf(DesktopRefusal refusal) {
  return refusal == DesktopRefusal::noSpace ? SpaceManagement::Failure::notFound
                                            : SpaceManagement::Failure::unavailable;
}

}  // namespace

SpaceManagement::SpaceManagement(const Platform& services)
    : asked_(services.asked),
      driver_(services.driven == nullptr
                  ? nullptr
                  : std::make_unique<MissionControlDriver>(MissionControlDriver::Services{
                        *services.driven, services.workspace, services.events, services.mainQueue})) {}

SpaceManagement::~SpaceManagement() = default;

/// Tells what became of a request to the desktop, unless this object has gone.
AskedDesktop::Completion SpaceManagement::told(Completion completion) const {
  return lifetime_.bound([completion = std::move(completion)](auto result) {
    completion(result ? Result() : std::unexpected(failureOf(result.error())));
  });
}

void SpaceManagement::addDesktop(Completion completion) {
  if (driver_ != nullptr) {
    driver_->addDesktop(std::move(completion));
    return;
  }
  const auto reading = asked_->read();
  if (reading && !reading->displays.empty()) {
    asked_->addSpace(reading->displays.front().id, told(std::move(completion)));
  } else {
    completion(std::unexpected(Failure::unavailable));
  }
}

void SpaceManagement::removeDesktop(std::int64_t number, Completion completion) {
  if (driver_ != nullptr) {
    driver_->removeDesktop(number, std::move(completion));
    return;
  }
  const auto reading = asked_->read();
  const auto space = reading ? SpaceSnapshot{SpaceProvider::displays(*reading), {}}.desktop(number) : std::nullopt;
  if (space) {
    asked_->removeSpace(space->managedID, told(std::move(completion)));
  } else {
    completion(std::unexpected(Failure::notFound));
  }
}

std::string_view additionFailure(SpaceManagement::Failure failure, const DesktopTexts& texts) {
  return failure == SpaceManagement::Failure::noButton ? texts.noAddButton : texts.noWayToAdd;
}

std::string_view removalFailure(SpaceManagement::Failure failure, const DesktopTexts& texts) {
  return failure == SpaceManagement::Failure::notFound ? texts.desktopNotFound : texts.noWayToRemove;
}

}  // namespace tallowin
