#include "presentation/widgets/dialogs.h"

#include <algorithm>

#include "presentation/widgets/alert_dialog.h"
#include "presentation/widgets/name_dialogs.h"
#include "presentation/widgets/note_dialog.h"

namespace tallowin {

Dialogs::~Dialogs() {
  for (const auto& [number, dialog] : open_) {
    delete dialog.data();
  }
}

void Dialogs::answer(std::uint64_t number, const std::vector<std::string>& words) {
  std::vector<std::string> request = {"ui", "answer", std::to_string(number), "--"};
  request.insert(request.end(), words.begin(), words.end());
  instance_.ask(request, [](const InstanceAnswer& /*answer*/) {});
  ended(number);
}

void Dialogs::ended(std::uint64_t number) {
  open_.erase(number);
  const auto alert = std::ranges::find(alerts_, number, &ui::AskAlert::number);
  if (alert != alerts_.end()) {
    alerts_.erase(alert);
    showFirstAlert();
  }
}

void Dialogs::showFirstAlert() {
  if (!alerts_.empty() && !open_.contains(alerts_.front().number)) {
    const auto& [number, alert] = alerts_.front();
    open<AlertDialog>(number, alert)->present();
  }
}

void Dialogs::show(const ui::AskAlert& ask) {
  alerts_.push_back(ask);
  showFirstAlert();
}

void Dialogs::show(const ui::AskName& ask) {
  if (ask.question.isNew) {
    auto* const dialog = open<NewSpaceDialog>(ask.number, ask.question);
    dialog->adjustSize();
    dialog->setGeometry(popUpPlace_(dialog->size()));
    dialog->show();
  } else {
    open<RenameDialog>(ask.number, ask.question)->present();
  }
}

void Dialogs::show(const ui::AskNote& ask) {
  open<NoteDialog>(ask.number, ask.question)->present();
}

void Dialogs::show(const ui::Withdraw& withdrawn) {
  if (const auto found = open_.find(withdrawn.number); found != open_.end()) {
    found->second->withdraw();
  }
  ended(withdrawn.number);
}

}  // namespace tallowin
