#include "presentation/widgets/alert_dialog.h"

#include <QCoreApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

namespace tallowin {

AlertDialog::AlertDialog(const Alert& alert, Answered answered)
    : QuestionDialog("tallowin-alert", std::move(answered)) {
  constexpr int widthInLines = 24;
  const auto message = QString::fromStdString(alert.messageText);
  const auto more = QString::fromStdString(alert.informativeText);
  setWindowTitle(QCoreApplication::applicationName());
  setAccessibleName(message);
  setAccessibleDescription(more);
  setMinimumWidth(widthInLines * fontMetrics().height());
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(textLabel(message, true));
  if (!more.isEmpty()) {
    layout->addWidget(textLabel(more));
  }
  layout->addSpacing(fontMetrics().height() / 2);
  std::vector<QPushButton*> buttons;
  for (const auto& text : alert.buttons) {
    const auto index = std::to_string(buttons.size());
    buttons.push_back(
        new DialogButton(QString::fromStdString(text).replace('&', "&&"), [this, index] { answer({index}); }));
  }
  layout->addWidget(buttonRow(buttons, 0));
  buttons.front()->setFocus();
}

}  // namespace tallowin
