#pragma once

#include <QTimer>

#include "presentation/model/questions.h"
#include "presentation/widgets/question_dialog.h"

class QLineEdit;

namespace tallowin {

class ChoiceGrid;

/// Asks for the name of a Space that the user wants to rename, and for its colour and symbol. Main thread only.
class RenameDialog : public QuestionDialog {
 public:
  RenameDialog(const NameQuestion& question, Answered answered);

 private:
  void addColors(const NameQuestion& question);
  void addSymbols(const NameQuestion& question);
  void askForOtherColor();
  void keep();

  QLineEdit* const name_;
  ChoiceGrid* colors_ = nullptr;
  ChoiceGrid* symbols_ = nullptr;
};

/// Asks for the name of a Space that has just been made: without taking the focus, which a click gives it, and for a
/// while only, unless the pointer is over it or it has the focus. Main thread only.
class NewSpaceDialog : public QuestionDialog {
 public:
  static constexpr int timeShown = 8000;  ///< ms

  NewSpaceDialog(const NameQuestion& question, Answered answered);

 protected:
  bool event(QEvent* event) override;

 private:
  QTimer end_{this};
};

}  // namespace tallowin
