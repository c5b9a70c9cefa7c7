#include "presentation/widgets/question_dialog.h"

#include <QEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "presentation/widgets/x11_window.h"

namespace tallowin {

QuestionDialog::QuestionDialog(const char* instance, Answered answered, Kind kind)
    : QDialog(nullptr, kind == Kind::popUp ? Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                                                 Qt::WindowDoesNotAcceptFocus
                                           : Qt::WindowFlags(Qt::Dialog)),
      answered_(std::move(answered)) {
  setObjectName(instance);
  setAttribute(Qt::WA_DeleteOnClose);
  setAttribute(Qt::WA_ShowWithoutActivating, kind == Kind::popUp);  // heeded when the window is made
  create();
  setWindowInstance(*this, instance);
  windowHandle()->installEventFilter(this);
  whenScreenGoes(*this, [this] {
    if (isVisible() && QGuiApplication::screenAt(frameGeometry().center()) == nullptr) {
      moveToPointer();
    }
  });
}

/// Not every window manager heeds that a window is to be shown without the focus, but each one that it accepts none.
bool QuestionDialog::eventFilter(QObject* watched, QEvent* event) {
  auto* const window = windowHandle();
  if (event->type() == QEvent::MouseButtonPress && window->flags().testFlag(Qt::WindowDoesNotAcceptFocus)) {
    window->setFlag(Qt::WindowDoesNotAcceptFocus, false);
    activateForUser(*this);
  }
  return QDialog::eventFilter(watched, event);
}

void QuestionDialog::present() {
  adjustSize();
  moveToPointer();
  show();
  raise();
  activateForUser(*this);
}

void QuestionDialog::moveToPointer() {
  const auto area = screenAtPointer()->availableGeometry();
  resize(size().boundedTo(area.size()));
  move(area.center() - rect().center());
}

void QuestionDialog::withdraw() {
  answered_ = nullptr;
  done(Rejected);
}

void QuestionDialog::answer(std::vector<std::string> words) {
  words_ = std::move(words);
  done(Accepted);
}

void QuestionDialog::done(int result) {
  QDialog::done(result);
  if (const auto answered = std::exchange(answered_, nullptr)) {
    answered(words_);
  }
}

QWidget* QuestionDialog::buttonRow(const std::vector<QPushButton*>& buttons, std::size_t defaultButton) {
  auto* const row = new QWidget(this);
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins({});
  layout->addStretch();
  for (auto* const button : buttons) {
    layout->addWidget(button);
  }
  buttons.at(defaultButton)->setDefault(true);
  return row;
}

DialogButton::DialogButton(const QString& text, std::function<void()> pressed) : QPushButton(text) {
  QObject::connect(this, &QPushButton::clicked, this, std::move(pressed));
}

QSize DialogButton::sizeHint() const {
  return QPushButton::sizeHint().expandedTo({0, targetSize(*this)});
}

QLabel* textLabel(const QString& text, bool isBold) {
  auto* const label = new QLabel;
  label->setTextFormat(Qt::PlainText);
  label->setText(text);
  label->setWordWrap(true);
  if (isBold) {
    auto font = label->font();
    font.setBold(true);
    label->setFont(font);
  }
  return label;
}

int targetSize(const QWidget& widget) {
  constexpr int least = 32;
  return std::max(least, 2 * widget.fontMetrics().height());
}

}  // namespace tallowin
