#include "presentation/widgets/choice_grid.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QRadioButton>
#include <utility>

#include "presentation/widgets/question_dialog.h"

namespace tallowin {

namespace {

constexpr int picturesInRow = 9;

/// One of several, as a picture; its words are for the tool tip and for those who do not see it.
class PictureButton : public QRadioButton {
 public:
  using Paint = std::function<void(QPainter& painter, const QRectF& area, bool isChosen)>;

  PictureButton(const QString& words, Paint paint) : paint_(std::move(paint)) {
    setAccessibleName(words);
    setToolTip(words);
  }

  [[nodiscard]] QSize sizeHint() const override { return {targetSize(*this), targetSize(*this)}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  [[nodiscard]] bool hitButton(const QPoint& point) const override { return rect().contains(point); }

  void paintEvent(QPaintEvent* /*event*/) override {
    const double line = height() / 16.0;
    const double roundness = height() / 5.0;
    const QRectF frame = QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (hasFocus() || underMouse()) {
      auto color = palette().color(hasFocus() ? QPalette::WindowText : QPalette::Mid);
      painter.setPen(QPen(color, line));
      painter.drawRoundedRect(frame, roundness, roundness);
    }
    const double margin = line * 1.5;
    paint_(painter, frame.adjusted(margin, margin, -margin, -margin), isChecked());
  }

 private:
  const Paint paint_;
};

}  // namespace

ChoiceGrid::ChoiceGrid(const QString& caption, const std::vector<Suggestion>& choices, const std::string& chosen,
                       Paint paint)
    : paint_(std::move(paint)), caption_(new QLabel(caption, this)), grid_(new QGridLayout(this)) {
  grid_->setContentsMargins({});
  grid_->setSpacing(2);
  grid_->addWidget(caption_, 0, 0, 1, picturesInRow + 1);
  grid_->setColumnStretch(picturesInRow, 1);
  for (const auto& choice : choices) {
    add(choice);
  }
  QObject::connect(&buttons_, &QButtonGroup::idToggled, this, [this](int id, bool isChosen) {
    if (isChosen) {
      caption_->setBuddy(buttons_.button(id));
    }
  });
  choose(chosen);
  first_ = buttons_.checkedId();
}

void ChoiceGrid::add(const Suggestion& choice) {
  const auto words = QCoreApplication::translate("Suggestion", choice.words.c_str());
  auto* const button =
      new PictureButton(words, [this, value = choice.value](QPainter& painter, const QRectF& area, bool isChosen) {
        paint_(painter, area, value, isChosen);
      });
  buttons_.addButton(button, static_cast<int>(values_.size()));
  values_.push_back(choice.value);
  append(button);
}

void ChoiceGrid::choose(const std::string& value) {
  const auto sought = QString::fromStdString(value);
  std::size_t id = 0;
  while (id < values_.size() && sought.compare(QString::fromStdString(values_[id]), Qt::CaseInsensitive) != 0) {
    ++id;
  }
  if (id == values_.size()) {
    add({value, value});
  }
  buttons_.button(static_cast<int>(id))->setChecked(true);
}

std::optional<std::string> ChoiceGrid::change() const {
  const int id = buttons_.checkedId();
  return id != first_ ? std::optional(values_.at(static_cast<std::size_t>(id))) : std::nullopt;
}

void ChoiceGrid::append(QWidget* widget) {
  const int place = grid_->count() - 1;  // without the caption
  grid_->addWidget(widget, 1 + place / picturesInRow, place % picturesInRow);
}

}  // namespace tallowin
