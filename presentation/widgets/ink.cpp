#include "presentation/widgets/ink.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "presentation/model/status_item.h"
#include "presentation/widgets/symbols.h"

namespace tallowin {

namespace {

double contrast(double a, double b) {
  constexpr double flare = 0.05;
  return (std::max(a, b) + flare) / (std::min(a, b) + flare);
}

/// A channel of sRGB as linear light.
double linear(double channel) {
  return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

}  // namespace

std::optional<QColor> colorFrom(const std::optional<std::string>& colorHex) {
  constexpr std::size_t length = 7;
  if (!colorHex || colorHex->size() != length || colorHex->front() != '#') {
    return std::nullopt;
  }
  const QColor color(QString::fromStdString(*colorHex));
  return color.isValid() ? std::optional(color) : std::nullopt;
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor readableOn(const QColor& background) {
  const double light = luminance(background);
  return contrast(light, 0) > contrast(light, 1) ? Qt::black : Qt::white;
}

Ink Ink::from(const QPalette& palette) {
  Ink ink{palette.color(QPalette::Window), palette.color(QPalette::WindowText), {}, QColor(0xE0, 0x30, 0x30)};
  ink.faint = ink.text;
  ink.faint.setAlphaF(0.75F);
  return ink;
}

void paintSpaceSquare(QPainter& painter, const QRectF& square, const std::optional<std::string>& colorHex,
                      const std::string& symbol, const std::string& number) {
  constexpr double roundness = 0.2;
  constexpr double margin = 0.2;
  const auto color = colorFrom(colorHex).value_or(QColor(0x70, 0x70, 0x78));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawRoundedRect(square, square.width() * roundness, square.height() * roundness);
  const auto ink = readableOn(color);
  const auto inner = square.adjusted(square.width() * margin, square.height() * margin, -square.width() * margin,
                                     -square.height() * margin);
  if (!symbol.empty() && (symbol != plainSymbol || number.empty()) && paintSymbol(painter, inner, symbol, ink)) {
    return;
  }
  auto font = painter.font();
  font.setPixelSize(std::max(1, static_cast<int>(inner.height())));
  font.setBold(true);
  const auto text = QString::fromStdString(number);
  const double width = QFontMetricsF(font).horizontalAdvance(text);
  if (width > square.width() - 2) {
    font.setPixelSize(std::max(1, static_cast<int>(inner.height() * (square.width() - 2) / width)));
  }
  painter.setFont(font);
  painter.setPen(ink);
  painter.drawText(square, Qt::AlignCenter, text);
}

}  // namespace tallowin
