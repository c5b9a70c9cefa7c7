#include "presentation/widgets/note_dialog.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QTextDocument>
#include <QVBoxLayout>
#include <utility>

namespace tallowin {

namespace {

QString inNoteDialog(const char* text) {
  return QCoreApplication::translate("NoteDialog", text);
}

}  // namespace

NoteDialog::NoteDialog(const NoteQuestion& question, Answered answered)
    : QuestionDialog("tallowin-note", std::move(answered)),
      text_(new QPlainTextEdit(QString::fromStdString(question.text))),
      discard_(makeDiscardRow()),
      actions_(buttonRow({new DialogButton(inNoteDialog("Cancel"), [this] { reject(); }),
                          new DialogButton(inNoteDialog("&Save"), [this] { save(); })},
                         1)) {
  setWindowTitle(inNoteDialog("Note for “%1”").arg(QString::fromStdString(question.space.name)));
  text_->setObjectName("note");
  text_->setAccessibleName(inNoteDialog("Note"));
  text_->setTabChangesFocus(true);
  text_->setMinimumSize(22 * fontMetrics().height(), 8 * fontMetrics().height());
  text_->moveCursor(QTextCursor::End);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(text_);
  layout->addWidget(discard_);
  layout->addWidget(actions_);
  for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* const shortcut = new QShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(key)), this);
    QObject::connect(shortcut, &QShortcut::activated, this, [this] { save(); });
  }
  QObject::connect(text_, &QPlainTextEdit::textChanged, this, [this] { editOn(); });
  editOn();
}

QWidget* NoteDialog::makeDiscardRow() {
  auto* const row = new QWidget(this);
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins({});
  layout->addWidget(textLabel(inNoteDialog("Discard the changes?")), 1);
  auto* const discard = new DialogButton(inNoteDialog("&Discard"), [this] { done(Rejected); });
  discard->setObjectName("discard");
  discard->setAccessibleDescription(inNoteDialog("Discard the changes?"));
  layout->addWidget(discard);
  layout->addWidget(new DialogButton(inNoteDialog("Keep &Editing"), [this] { editOn(); }));
  return row;
}

/// The second time it is meant.
void NoteDialog::reject() {
  if (!text_->document()->isModified() || !discard_->isHidden()) {
    QuestionDialog::reject();
    return;
  }
  actions_->hide();
  discard_->show();
  discard_->findChild<QWidget*>("discard")->setFocus();
}

void NoteDialog::closeEvent(QCloseEvent* event) {
  done(Rejected);
  event->accept();
}

/// Escape that is held down is pressed once.
void NoteDialog::keyPressEvent(QKeyEvent* event) {
  if (!event->isAutoRepeat() || !event->matches(QKeySequence::Cancel)) {
    QuestionDialog::keyPressEvent(event);
  }
}

void NoteDialog::save() {
  answer({text_->toPlainText().remove(QChar::Null).toStdString()});
}

void NoteDialog::editOn() {
  discard_->hide();
  actions_->show();
  text_->setFocus();
}

}  // namespace tallowin
