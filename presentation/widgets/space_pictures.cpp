#include "presentation/widgets/space_pictures.h"

#include <QFont>
#include <QPainter>
#include <QPen>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "presentation/widgets/ink.h"
#include "presentation/widgets/symbols.h"

namespace tallowin {

namespace {

QImage blank(int extent) {
  QImage image(extent, extent, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  return image;
}

void drawCentered(QPainter& painter, const QRectF& area, const std::string& text, const QColor& color) {
  const double height = std::min(area.height() * 0.9, area.width() * 1.4 / static_cast<double>(text.size()));
  auto font = painter.font();
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(height))));
  font.setBold(true);
  painter.setFont(font);
  painter.setPen(color);
  painter.drawText(area, Qt::AlignCenter, QString::fromStdString(text));
}

/// The active one is filled; the others are rings, or numbers alone.
void paintMark(QPainter& painter, const QRectF& area, const StatusItem::Mark& mark) {
  const auto color = colorFrom(mark.colorHex).value_or(anyGroundGrey);
  const double line = std::max(1.0, area.height() / 10);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  if (!mark.text.empty()) {
    if (mark.isActive) {
      painter.drawRoundedRect(area, area.width() / 5, area.width() / 5);
    }
    drawCentered(painter, area, mark.text, mark.isActive ? readableOn(color) : color);
  } else if (mark.isActive) {
    painter.drawEllipse(area);
  } else {
    painter.setPen(QPen(color, line));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(area.adjusted(line / 2, line / 2, -line / 2, -line / 2));
  }
}

/// How many further Spaces there are is said in the rest of the last row.
void paintMarks(QPainter& painter, const StatusItem& item, int extent) {
  const auto cells = item.marks.size() + (item.more > 0 ? 1 : 0);
  const auto columns = static_cast<std::size_t>(std::ceil(std::sqrt(cells)));
  const auto rows = (cells + columns - 1) / columns;
  const double cell = static_cast<double>(extent) / static_cast<double>(columns);
  const double top = (extent - cell * static_cast<double>(rows)) / 2;
  const double margin = std::max(0.5, cell / 16);
  for (std::size_t i = 0; i < cells; ++i) {
    const auto row = i / columns;
    const QPointF corner(static_cast<double>(i % columns) * cell, top + static_cast<double>(row) * cell);
    const auto area = QRectF(corner, QSizeF(cell, cell)).adjusted(margin, margin, -margin, -margin);
    if (i < item.marks.size()) {
      paintMark(painter, area, item.marks[i]);
    } else {
      drawCentered(painter, area.adjusted(0, 0, extent - area.right(), 0), '+' + std::to_string(item.more),
                   anyGroundGrey);
    }
  }
}

}  // namespace

QImage statusPicture(const StatusItem& item, int extent) {
  auto image = blank(extent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!item.marks.empty()) {
    paintMarks(painter, item, extent);
    return image;
  }
  const double margin = std::floor(extent / 16.0);
  paintSpaceSquare(painter, QRectF(image.rect()).adjusted(margin, margin, -margin, -margin), item.colorHex, item.symbol,
                   item.number);
  return image;
}

QList<QImage> statusPictures(const StatusItem& item) {
  QList<QImage> pictures;
  for (const int extent : {16, 22, 24, 32, 44, 48}) {
    pictures.push_back(statusPicture(item, extent));
  }
  return pictures;
}

QImage menuPicture(const MenuEntry& entry, int extent, const QColor& ink) {
  const auto color = colorFrom(entry.colorHex);
  if (!color && entry.symbol.empty()) {
    return {};
  }
  auto image = blank(extent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  if (paintSymbol(painter, QRectF(image.rect()), entry.symbol, color.value_or(ink))) {
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
  auto image = blank(extent);
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
