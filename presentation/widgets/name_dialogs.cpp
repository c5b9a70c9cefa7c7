#include "presentation/widgets/name_dialogs.h"

#include <QColorDialog>
#include <QCompleter>
#include <QCoreApplication>
#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QStringList>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <utility>

#include "presentation/widgets/choice_grid.h"
#include "presentation/widgets/ink.h"
#include "presentation/widgets/symbols.h"
#include "presentation/widgets/x11_window.h"

namespace tallowin {

namespace {

constexpr double widthInLines = 22.5;

QString inNameDialog(const char* text) {
  return QCoreApplication::translate("NameDialog", text);
}

QLineEdit* nameField(const NameQuestion& question) {
  auto* const field = new QLineEdit(QString::fromStdString(question.ownName));
  field->setObjectName("name");
  field->setPlaceholderText(QString::fromStdString(question.space.name));
  field->setAccessibleName(inNameDialog("Name"));
  field->setMinimumHeight(targetSize(*field));
  field->selectAll();
  QStringList names;
  for (const auto& name : question.recentNames) {
    names.append(QString::fromStdString(name));
  }
  auto* const completer = new QCompleter(names, field);
  completer->setCaseSensitivity(Qt::CaseInsensitive);
  field->setCompleter(completer);
  return field;
}

std::string nameWord(const QLineEdit& field) {
  return "name=" + field.text().trimmed().toStdString();
}

/// A dot; one that is chosen has a tick, and one that stands for no colour a stroke through it.
void paintColorDot(QPainter& painter, const QRectF& area, const std::string& colorHex, bool isChosen,
                   const QColor& text) {
  const double line = area.height() / 14;
  const auto color = colorFrom(colorHex);
  const auto dot = area.adjusted(line, line, -line, -line);
  const auto at = [&dot](double x, double y) {
    return QPointF(dot.left() + x * dot.width(), dot.top() + y * dot.height());
  };
  painter.setPen(QPen(text, line / 2));
  painter.setBrush(color ? QBrush(*color) : QBrush(Qt::NoBrush));
  painter.drawEllipse(dot);
  if (!color) {
    painter.drawLine(at(0.15, 0.85), at(0.85, 0.15));
  }
  if (isChosen) {
    painter.setPen(QPen(color ? readableOn(*color) : text, line * 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const std::array tick = {at(0.28, 0.52), at(0.44, 0.68), at(0.74, 0.34)};
    painter.drawPolyline(tick.data(), static_cast<int>(tick.size()));
  }
}

/// A symbol; one that is chosen stands on the colour of what is selected.
void paintChoice(QPainter& painter, const QRectF& area, const std::string& symbol, bool isChosen,
                 const QPalette& palette) {
  if (isChosen) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.color(QPalette::Highlight));
    painter.drawRoundedRect(area, area.height() / 6, area.height() / 6);
  }
  const double margin = area.height() / 10;
  paintSymbol(painter, area.adjusted(margin, margin, -margin, -margin), symbol,
              palette.color(isChosen ? QPalette::HighlightedText : QPalette::WindowText));
}

}  // namespace

RenameDialog::RenameDialog(const NameQuestion& question, Answered answered)
    : QuestionDialog("tallowin-rename", std::move(answered)), name_(nameField(question)) {
  setWindowTitle(inNameDialog("Rename “%1”").arg(QString::fromStdString(question.space.name)));
  setMinimumWidth(qRound(widthInLines * fontMetrics().height()));
  auto* const layout = new QVBoxLayout(this);
  auto* const caption = new QLabel(inNameDialog("&Name"));
  caption->setBuddy(name_);
  layout->addWidget(caption);
  layout->addWidget(name_);
  addColors(question);
  addSymbols(question);
  layout->addWidget(buttonRow({new DialogButton(inNameDialog("Cancel"), [this] { reject(); }),
                               new DialogButton(inNameDialog("&Rename"), [this] { keep(); })},
                              1));
  QObject::connect(name_, &QLineEdit::returnPressed, this, [this] { keep(); });  // also while names are suggested
  name_->setFocus();
}

void RenameDialog::addColors(const NameQuestion& question) {
  std::vector<Suggestion> choices = {{"", "No color"}};
  choices.insert(choices.end(), suggestedColors().begin(), suggestedColors().end());
  colors_ = new ChoiceGrid(inNameDialog("&Color"), choices, question.space.colorHex.value_or(""),
                           [this](QPainter& painter, const QRectF& area, const std::string& value, bool isChosen) {
                             paintColorDot(painter, area, value, isChosen, palette().color(QPalette::WindowText));
                           });
  auto* const other = new QToolButton;
  other->setText("…");
  other->setAccessibleName(inNameDialog("Other color…"));
  other->setToolTip(other->accessibleName());
  other->setFocusPolicy(Qt::StrongFocus);
  other->setMinimumSize(targetSize(*this), targetSize(*this));
  QObject::connect(other, &QToolButton::clicked, this, [this] { askForOtherColor(); });
  colors_->append(other);
  layout()->addWidget(colors_);
}

/// The first choice is what a Space shows without a symbol of its own.
void RenameDialog::addSymbols(const NameQuestion& question) {
  auto choices = suggestedSymbols();
  const auto standard = std::exchange(choices.front().value, "");
  const auto chosen = question.space.symbol == standard ? "" : question.space.symbol;
  symbols_ =
      new ChoiceGrid(inNameDialog("&Symbol"), choices, chosen,
                     [this, standard](QPainter& painter, const QRectF& area, const std::string& value, bool isChosen) {
                       paintChoice(painter, area, value.empty() ? standard : value, isChosen, palette());
                     });
  layout()->addWidget(symbols_);
}

void RenameDialog::askForOtherColor() {
  auto* const dialog = new QColorDialog(this);
  dialog->setObjectName("color");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  setWindowInstance(*dialog, "tallowin-rename");
  QObject::connect(dialog, &QColorDialog::colorSelected, this,
                   [this](const QColor& color) { colors_->choose(color.name().toUpper().toStdString()); });
  dialog->open();
}

void RenameDialog::keep() {
  std::vector<std::string> words = {nameWord(*name_)};
  if (const auto symbol = symbols_->change()) {
    words.push_back("symbol=" + *symbol);
  }
  if (const auto color = colors_->change()) {
    words.push_back("color=" + *color);
  }
  answer(std::move(words));
}

NewSpaceDialog::NewSpaceDialog(const NameQuestion& question, Answered answered)
    : QuestionDialog("tallowin-rename", std::move(answered), Kind::popUp) {
  const auto text = inNameDialog("Name this new Space?");
  setWindowTitle(text);
  setMinimumWidth(qRound(widthInLines * fontMetrics().height()));
  auto* const outer = new QVBoxLayout(this);
  outer->setContentsMargins({});
  auto* const frame = new QFrame;
  frame->setFrameStyle(QFrame::StyledPanel);
  outer->addWidget(frame);
  auto* const layout = new QVBoxLayout(frame);
  layout->addWidget(textLabel(text, true));
  auto* const row = new QHBoxLayout;
  auto* const field = nameField(question);
  const auto keep = [this, field] { answer({nameWord(*field)}); };
  row->addWidget(field);
  row->addWidget(buttonRow(
      {new DialogButton(inNameDialog("Not Now"), [this] { reject(); }), new DialogButton(inNameDialog("&Name"), keep)},
      1));
  layout->addLayout(row);
  QObject::connect(field, &QLineEdit::returnPressed, this, keep);
  field->setFocus();
  end_.setSingleShot(true);
  QObject::connect(&end_, &QTimer::timeout, this, [this] { reject(); });
  end_.start(timeShown);
}

bool NewSpaceDialog::event(QEvent* event) {
  constexpr auto changesUse =
      std::to_array({QEvent::Enter, QEvent::Leave, QEvent::WindowActivate, QEvent::WindowDeactivate});
  if (std::ranges::count(changesUse, event->type()) != 0) {
    if (underMouse() || isActiveWindow()) {
      end_.stop();
    } else {
      end_.start(timeShown);
    }
  }
  return QuestionDialog::event(event);
}

}  // namespace tallowin
