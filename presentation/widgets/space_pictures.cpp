#include "presentation/widgets/space_pictures.h"

#include <QFont>
#include <QPainter>
#include <QPen>
#include <QPointF>
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "presentation/widgets/ink.h"
#include "presentation/widgets/symbols.h"

namespace tallowin {

namespace {

/// Readable on light panels and on dark ones, as nobody says which it is.
constexpr QColor panelGrey(0x80, 0x80, 0x88);

QImage blank(QSize size) {
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  return image;
}

void drawCentered(QPainter& painter, const QRectF& area, const std::string& text, double height, const QColor& color) {
  auto font = painter.font();
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(text.size() > 1 ? height * 0.8 : height))));
  font.setBold(true);
  painter.setFont(font);
  painter.setPen(color);
  painter.drawText(area, Qt::AlignCenter, QString::fromStdString(text));
}

/// The active one is filled, the others are outlines.
void paintMark(QPainter& painter, const QRectF& area, const StatusItem::Mark& mark) {
  constexpr double leastForText = 10;
  const auto color = colorFrom(mark.colorHex).value_or(panelGrey);
  const double line = std::max(1.0, area.height() / 10);
  const auto outline = area.adjusted(line / 2, line / 2, -line / 2, -line / 2);
  painter.setPen(QPen(color, line));
  painter.setBrush(mark.isActive ? QBrush(color) : QBrush(Qt::NoBrush));
  if (mark.text.empty()) {
    painter.drawEllipse(outline);
    return;
  }
  painter.drawRoundedRect(outline, area.width() / 5, area.width() / 5);
  if (area.height() >= leastForText) {
    drawCentered(painter, area, mark.text, area.height() * 0.7, mark.isActive ? readableOn(color) : color);
  }
}

/// The marks and what is written after them, in cells of one size.
QImage marksPicture(const StatusItem& item, int height, MarkLayout layout) {
  const auto cells = static_cast<int>(item.marks.size()) + (item.more > 0 ? 1 : 0);
  const bool inRow = layout == MarkLayout::row;
  const int columns = inRow ? cells : static_cast<int>(std::ceil(std::sqrt(cells)));
  const bool areDots = item.marks.front().text.empty();
  const double cell = inRow ? height * (areDots ? 12.0 : 17.0) / 22 : static_cast<double>(height) / columns;
  const double mark = cell * (inRow ? 10.0 / 12 : 0.85);
  const double top = (height - cell * std::ceil(static_cast<double>(cells) / columns)) / 2;
  auto image = blank(QSize(std::max(height, static_cast<int>(std::ceil(cell * columns))), height));
  const double left = (image.width() - cell * columns) / 2;
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  for (int i = 0; i < cells; ++i) {
    const QRectF place(left + i % columns * cell, top + static_cast<double>(i / columns) * cell, cell, cell);
    const double margin = (cell - mark) / 2;
    if (static_cast<std::size_t>(i) < item.marks.size()) {
      paintMark(painter, place.adjusted(margin, margin, -margin, -margin), item.marks.at(static_cast<std::size_t>(i)));
    } else {
      drawCentered(painter, place, inRow ? '+' + std::to_string(item.more) : "+", cell * 0.75, panelGrey);
    }
  }
  return image;
}

}  // namespace

QImage statusPicture(const StatusItem& item, int height, MarkLayout layout) {
  if (!item.marks.empty()) {
    return marksPicture(item, height, layout);
  }
  auto image = blank(QSize(height, height));
  QPainter painter(&image);
  const double margin = std::floor(height / 16.0);
  paintSpaceSquare(painter, QRectF(image.rect()).adjusted(margin, margin, -margin, -margin), item.colorHex, item.symbol,
                   item.number);
  return image;
}

QList<QImage> statusPictures(const StatusItem& item, MarkLayout layout) {
  QList<QImage> pictures;
  for (const int height : {16, 22, 24, 32, 44, 48}) {
    pictures.push_back(statusPicture(item, height, layout));
  }
  return pictures;
}

QImage menuPicture(const MenuEntry& entry, int extent) {
  const auto color = colorFrom(entry.colorHex);
  if (!color && entry.symbol.empty()) {
    return {};
  }
  auto image = blank(QSize(extent, extent));
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  if (paintSymbol(painter, QRectF(image.rect()), entry.symbol, color.value_or(panelGrey))) {
    return image;
  }
  if (!color) {
    return {};
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(*color);
  const double margin = extent / 4.0;
  painter.drawEllipse(QRectF(image.rect()).adjusted(margin, margin, -margin, -margin));
  return image;
}

QImage checkPicture(const MenuEntry& entry, int extent, const QColor& ink) {
  auto image = blank(QSize(extent, extent));
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  const auto color = colorFrom(entry.colorHex);
  if (color) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(*color);
    painter.drawEllipse(image.rect());
  }
  painter.setPen(QPen(color ? readableOn(*color) : ink, extent / 8.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  const QPointF corners[] = {
      {0.27 * extent, 0.53 * extent}, {0.44 * extent, 0.7 * extent}, {0.74 * extent, 0.34 * extent}};
  painter.drawPolyline(corners, 3);
  return image;
}

}  // namespace tallowin
