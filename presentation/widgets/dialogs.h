#pragma once

#include <QPointer>
#include <QRect>
#include <QSize>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/pinned.h"
#include "presentation/link/messages.h"
#include "presentation/widgets/instance.h"
#include "presentation/widgets/question_dialog.h"

namespace tallowin {

/// The questions that the user is asked in dialogs, and his answers to them. Main thread only.
class Dialogs : Pinned {
 public:
  /// Where a window of a size stands in the place of the pop-up.
  using PopUpPlace = std::function<QRect(const QSize& extent)>;

  Dialogs(Instance& instance, PopUpPlace popUpPlace) : instance_(instance), popUpPlace_(std::move(popUpPlace)) {}
  ~Dialogs();

  /// One alert is shown at a time; the next one when it is answered.
  void show(const ui::AskAlert& ask);
  void show(const ui::AskName& ask);
  void show(const ui::AskNote& ask);
  void show(const ui::Withdraw& withdrawn);

 private:
  template <typename Dialog>
  Dialog* open(std::uint64_t number, const auto& question) {
    auto* const dialog =
        new Dialog(question, [this, number](const std::vector<std::string>& words) { answer(number, words); });
    open_[number] = dialog;
    return dialog;
  }

  void answer(std::uint64_t number, const std::vector<std::string>& words);
  void ended(std::uint64_t number);
  void showFirstAlert();

  Instance& instance_;
  const PopUpPlace popUpPlace_;
  std::deque<ui::AskAlert> alerts_;  ///< the first one is shown
  std::map<std::uint64_t, QPointer<QuestionDialog>> open_;
};

}  // namespace tallowin
