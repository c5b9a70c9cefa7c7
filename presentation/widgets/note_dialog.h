#pragma once

#include "presentation/model/questions.h"
#include "presentation/widgets/question_dialog.h"

class QPlainTextEdit;

namespace tallowin {

/// Asks for the note of a Space. Whoever leaves a changed one is asked once whether he means it, in the dialog itself.
/// Main thread only.
class NoteDialog : public QuestionDialog {
 public:
  NoteDialog(const NoteQuestion& question, Answered answered);

  void reject() override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  [[nodiscard]] QWidget* makeDiscardRow();
  void save();
  void editOn();

  QPlainTextEdit* const text_;
  QWidget* const discard_;  ///< shown while it asks
  QWidget* const actions_;  ///< shown otherwise
};

}  // namespace tallowin
