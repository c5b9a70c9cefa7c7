#pragma once

#include <QColor>
#include <QPalette>
#include <QRectF>
#include <optional>
#include <string>

class QPainter;

namespace tallowin {

/// A Space's colour from its text; nothing when that is none ("#RRGGBB").
[[nodiscard]] std::optional<QColor> colorFrom(const std::optional<std::string>& colorHex);

/// How light a colour looks (relative luminance of WCAG 2.1), from 0 for black to 1 for white.
[[nodiscard]] double luminance(const QColor& color);

/// Black or white, whichever reads better on a background; at least 4.5 to 1 (contrast ratio of WCAG 2.1).
[[nodiscard]] QColor readableOn(const QColor& background);

/// What is painted in, from the palette of the desktop's theme.
struct Ink {
  QColor background;
  QColor text;
  QColor faint;  ///< for what is said beside the text
  QColor error;

  [[nodiscard]] static Ink from(const QPalette& palette);
};

/// The square that stands for a Space: in its colour, or grey; in it the symbol, or, where there is none for the name
/// or it is the plain one, the number.
void paintSpaceSquare(QPainter& painter, const QRectF& square, const std::optional<std::string>& colorHex,
                      const std::string& symbol, const std::string& number);

}  // namespace tallowin
