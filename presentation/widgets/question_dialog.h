#pragma once

#include <QDialog>
#include <QPushButton>
#include <functional>
#include <string>
#include <vector>

class QLabel;

namespace tallowin {

/// A window that asks the user something, once. It is deleted when it closes. Main thread only.
class QuestionDialog : public QDialog {
 public:
  /// Told the words of the answer, none when the dialog is closed unanswered. Runs once, unless it is withdrawn.
  using Answered = std::function<void(const std::vector<std::string>& words)>;

  /// An ordinary dialog, or a small one without a frame, which gets the focus only by a click.
  enum class Kind { dialog, popUp };

  /// `instance` as for setWindowInstance().
  QuestionDialog(const char* instance, Answered answered, Kind kind = Kind::dialog);

  /// Shows it in front of all others, in the middle of the screen of the pointer, with the focus.
  void present();
  /// Closes it, as nobody waits for the answer any more.
  void withdraw();

  void done(int result) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  /// Answers and closes.
  void answer(std::vector<std::string> words);

  /// A row with these buttons at the right, from left to right. Enter presses the one of this index.
  QWidget* buttonRow(const std::vector<QPushButton*>& buttons, std::size_t defaultButton);

 private:
  /// Into the middle of the screen of the pointer, no larger than it.
  void moveToPointer();

  Answered answered_;
  std::vector<std::string> words_;
};

/// A button that is high enough to be hit, whatever the style.
class DialogButton : public QPushButton {
 public:
  DialogButton(const QString& text, std::function<void()> pressed);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
};

/// A text in a dialog, as it is, in as many lines as it needs.
[[nodiscard]] QLabel* textLabel(const QString& text, bool isBold = false);

/// How large whatever is clicked is at least.
[[nodiscard]] int targetSize(const QWidget& widget);

}  // namespace tallowin
