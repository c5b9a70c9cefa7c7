#pragma once

#include "platform/messages.h"
#include "presentation/widgets/question_dialog.h"

namespace tallowin {

/// A question with a button for each answer; the answer is the index of a button. Main thread only.
class AlertDialog : public QuestionDialog {
 public:
  AlertDialog(const Alert& alert, Answered answered);
};

}  // namespace tallowin
