#pragma once

#include <QButtonGroup>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "presentation/model/questions.h"

class QGridLayout;
class QLabel;
class QPainter;
class QRectF;

namespace tallowin {

/// Pictures in rows below a caption, one of which is chosen. Main thread only.
class ChoiceGrid : public QWidget {
 public:
  /// Paints the picture of a value into an area.
  using Paint = std::function<void(QPainter& painter, const QRectF& area, const std::string& value, bool isChosen)>;

  /// `chosen` gets a picture too where the choices have none.
  ChoiceGrid(const QString& caption, const std::vector<Suggestion>& choices, const std::string& chosen, Paint paint);

  /// Chooses a value, which gets a picture if it has none.
  void choose(const std::string& value);
  /// The value that is chosen; nothing while it is the first one.
  [[nodiscard]] std::optional<std::string> change() const;

  /// Puts a button behind the pictures.
  void append(QWidget* widget);

 private:
  void add(const Suggestion& choice);

  const Paint paint_;
  QLabel* const caption_;
  QGridLayout* const grid_;
  QButtonGroup buttons_;
  std::vector<std::string> values_;  ///< by the ids of their buttons
  int first_ = 0;                    ///< id of the button that was chosen at first
};

}  // namespace tallowin
