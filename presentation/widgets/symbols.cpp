#include "presentation/widgets/symbols.h"

#include <QColor>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPixmap>
#include <QPointF>
#include <QRectF>
#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>
#include <utility>

namespace tallowin {

namespace {

constexpr double sideOfShape = 24;
constexpr double lineWidth = 1.7;

/// Lines and areas on a square of 24 by 24. A letter and its numbers: M x y moves, L x y draws a line, C a curve with
/// two control points, Z closes; R x y width height radius is a rectangle with round corners, O x y radius a circle;
/// what stands behind F is filled.
struct SymbolShape {
  std::string_view name;
  const char* shape;
};

constexpr auto symbolShapes = std::to_array<SymbolShape>({
    {"archivebox",
     "R 3 4 18 5 1.5 M 4.5 9 L 4.5 18 C 4.5 19.1 5.4 20 6.5 20 L 17.5 20 C 18.6 20 19.5 19.1 19.5 18 L 19.5 9"
     " M 9.5 13 L 14.5 13"},
    {"arrow.down.right.and.arrow.up.left",
     "M 3.5 3.5 L 10 10 M 10 4.5 L 10 10 L 4.5 10 M 20.5 20.5 L 14 14 M 14 19.5 L 14 14 L 19.5 14"},
    {"arrow.uturn.backward",
     "M 8.5 4.5 L 4 9 L 8.5 13.5 M 4 9 L 14.5 9 C 18 9 20.5 11.3 20.5 14.5 C 20.5 17.7 18 20 14.5 20 L 9 20"},
    {"bolt", "M 13.5 2.8 L 5 13.5 L 11 13.5 L 10 21.2 L 19 9.8 L 12.7 9.8 Z"},
    {"book",
     "M 12 6.5 C 9.5 4.5 6 4.2 3 4.8 L 3 18.3 C 6 17.7 9.5 18 12 20 C 14.5 18 18 17.7 21 18.3 L 21 4.8"
     " C 18 4.2 14.5 4.5 12 6.5 Z M 12 6.5 L 12 20"},
    {"bookmark.fill",
     "F M 7.5 3 L 16.5 3 C 17.3 3 18 3.7 18 4.5 L 18 21 L 12 16.5 L 6 21 L 6 4.5 C 6 3.7 6.7 3 7.5 3 Z"},
    {"books.vertical", "R 3.5 4 4.5 16 1 R 8 7 4.5 13 1 M 13.6 6.3 L 17.4 5.2 L 21.2 18.9 L 17.4 20 Z"},
    {"briefcase",
     "R 3 7.5 18 12 2 M 9 7.5 L 9 6 C 9 5.2 9.7 4.5 10.5 4.5 L 13.5 4.5 C 14.3 4.5 15 5.2 15 6 L 15 7.5"
     " M 3 13 L 21 13"},
    {"bubble.left.and.bubble.right",
     "M 4.8 3.5 L 12.2 3.5 C 13.2 3.5 14 4.3 14 5.3 L 14 9.2 C 14 10.2 13.2 11 12.2 11 L 8.5 11 L 5.5 13.5 L 5.5 11"
     " L 4.8 11 C 3.8 11 3 10.2 3 9.2 L 3 5.3 C 3 4.3 3.8 3.5 4.8 3.5 Z"
     " M 17 9.5 L 19.2 9.5 C 20.2 9.5 21 10.3 21 11.3 L 21 15.2 C 21 16.2 20.2 17 19.2 17 L 18.5 17 L 18.5 19.5"
     " L 15.5 17 L 11.8 17 C 10.8 17 10 16.2 10 15.2 L 10 14"},
    {"calendar",
     "R 3.5 5 17 15.5 2.5 M 3.5 10 L 20.5 10 M 8 3 L 8 6.5 M 16 3 L 16 6.5"
     " F O 8 13.6 1.1 O 12 13.6 1.1 O 16 13.6 1.1 O 8 17 1.1 O 12 17 1.1"},
    {"camera",
     "M 8.5 6.5 L 10 4.5 L 14 4.5 L 15.5 6.5 L 19 6.5 C 20.1 6.5 21 7.4 21 8.5 L 21 17 C 21 18.1 20.1 19 19 19"
     " L 5 19 C 3.9 19 3 18.1 3 17 L 3 8.5 C 3 7.4 3.9 6.5 5 6.5 Z O 12 12.6 3.6"},
    {"cart", "M 2.5 4 L 5 4 L 7.5 15 L 18 15 L 20.5 7 L 5.8 7 F O 9 19 1.7 O 16.5 19 1.7"},
    {"chevron.left.forwardslash.chevron.right",
     "M 7 7.5 L 2.5 12 L 7 16.5 M 17 7.5 L 21.5 12 L 17 16.5 M 13.8 5 L 10.2 19"},
    {"display.2",
     "R 2.5 4.5 12 9 1.5 M 8.5 13.5 L 8.5 17 M 5.5 17 L 11.5 17 M 17 8 L 20 8 C 20.8 8 21.5 8.7 21.5 9.5 L 21.5 15.5"
     " C 21.5 16.3 20.8 17 20 17 L 14.5 17 M 18 17 L 18 20 M 15.5 20 L 20.5 20"},
    {"doc.text",
     "M 7.5 3 L 13.5 3 L 18.5 8 L 18.5 19 C 18.5 20.1 17.6 21 16.5 21 L 7.5 21 C 6.4 21 5.5 20.1 5.5 19 L 5.5 5"
     " C 5.5 3.9 6.4 3 7.5 3 Z M 13.5 3 L 13.5 8 L 18.5 8 M 8.7 12.5 L 15.3 12.5 M 8.7 16.5 L 15.3 16.5"},
    {"eject", "M 12 4.5 L 20 14 L 4 14 Z M 4 18.5 L 20 18.5"},
    {"envelope", "R 3 5.5 18 13 2 M 3.7 7 L 12 13.3 L 20.3 7"},
    {"exclamationmark.triangle", "M 12 3.8 L 21.5 20 L 2.5 20 Z M 12 10 L 12 14 F O 12 17 1.1"},
    {"eye",
     "M 2.5 12 C 5 7.5 8.3 5.5 12 5.5 C 15.7 5.5 19 7.5 21.5 12 C 19 16.5 15.7 18.5 12 18.5 C 8.3 18.5 5 16.5 2.5 12 Z"
     " O 12 12 3"},
    {"film",
     "R 3 5 18 14 2 M 7.5 5 L 7.5 19 M 16.5 5 L 16.5 19 M 3 9.7 L 7.5 9.7 M 3 14.3 L 7.5 14.3 M 16.5 9.7 L 21 9.7"
     " M 16.5 14.3 L 21 14.3"},
    {"folder",
     "M 3 7 C 3 5.9 3.9 5 5 5 L 9 5 L 11.5 7.5 L 19 7.5 C 20.1 7.5 21 8.4 21 9.5 L 21 17 C 21 18.1 20.1 19 19 19"
     " L 5 19 C 3.9 19 3 18.1 3 17 Z"},
    {"gamecontroller",
     "M 7.5 7 L 16.5 7 C 19.5 7 20.5 9 21 12.5 C 21.6 16.5 21 18.5 19.3 18.5 C 17.5 18.5 16.8 15.5 15 15.5 L 9 15.5"
     " C 7.2 15.5 6.5 18.5 4.7 18.5 C 3 18.5 2.4 16.5 3 12.5 C 3.5 9 4.5 7 7.5 7 Z M 8 9.4 L 8 13 M 6.2 11.2 L 9.8 11.2"
     " F O 14.9 12.3 1.1 O 17.1 10.1 1.1"},
    {"gear",
     "O 12 12 6.2 O 12 12 2.3 M 12 5.8 L 12 2.8 M 12 18.2 L 12 21.2 M 5.8 12 L 2.8 12 M 18.2 12 L 21.2 12"
     " M 7.6 7.6 L 5.5 5.5 M 16.4 16.4 L 18.5 18.5 M 16.4 7.6 L 18.5 5.5 M 7.6 16.4 L 5.5 18.5"},
    {"globe", "O 12 12 9 M 12 3 C 6.5 8.5 6.5 15.5 12 21 C 17.5 15.5 17.5 8.5 12 3 Z M 3 12 L 21 12"},
    {"graduationcap",
     "M 12 5 L 21.5 9.5 L 12 14 L 2.5 9.5 Z M 6.5 11.5 L 6.5 16.5 C 9.5 19.3 14.5 19.3 17.5 16.5 L 17.5 11.5"
     " M 21.5 9.5 L 21.5 15"},
    {"hammer",
     "M 12.3 8.9 L 3.9 17.3 C 2.5 18.7 5.3 21.5 6.7 20.1 L 15.1 11.7"
     " M 8 5.2 C 10.8 2.8 14.5 3 17 5.3 L 18.3 6.6 L 20 7 L 21.3 10.3 L 18.2 13.4 L 16.6 13.2 L 10.9 7.5 Z"},
    {"heart",
     "M 12 20.5 C 6 16.5 3 13 3 9.2 C 3 6.5 5 4.5 7.5 4.5 C 9.5 4.5 11.2 5.6 12 7.2 C 12.8 5.6 14.5 4.5 16.5 4.5"
     " C 19 4.5 21 6.5 21 9.2 C 21 13 18 16.5 12 20.5 Z"},
    {"house", "M 3 11.5 L 12 4 L 21 11.5 M 5.5 9.5 L 5.5 20 L 18.5 20 L 18.5 9.5 M 10 20 L 10 14.5 L 14 14.5 L 14 20"},
    {"keyboard", "R 2.5 6 19 12 2 M 8.5 14.5 L 15.5 14.5 F O 6 10 1 O 9 10 1 O 12 10 1 O 15 10 1 O 18 10 1"},
    {"lock", "R 5 10.5 14 10 2 M 8 10.5 L 8 7.5 C 8 2.2 16 2.2 16 7.5 L 16 10.5 F O 12 15.5 1.5"},
    {"macwindow", "R 3 4.5 18 15 2.5 M 3 9.5 L 21 9.5 F O 6 7 0.9 O 8.8 7 0.9"},
    {"magnifyingglass", "O 10.5 10.5 6.7 M 15.5 15.5 L 20.8 20.8"},
    {"message",
     "M 6 4.5 L 18 4.5 C 19.7 4.5 21 5.8 21 7.5 L 21 13.5 C 21 15.2 19.7 16.5 18 16.5 L 11.5 16.5 L 7.5 20 L 7.5 16.5"
     " L 6 16.5 C 4.3 16.5 3 15.2 3 13.5 L 3 7.5 C 3 5.8 4.3 4.5 6 4.5 Z"},
    {"music.note", "M 11 17.5 L 11 3.5 C 11.5 7 17.5 7.5 17 12.5 F O 8.3 17.7 3.2"},
    {"paintbrush",
     "M 20.5 3.5 C 17 5 12.5 8.5 10 12 L 12.5 14.5 C 16 12 19.5 7.5 20.5 3.5 Z"
     " M 9.5 13 C 6.5 12.5 5 14.5 5 17 C 5 18.5 4.3 19.5 3 20 C 7 21.5 11.5 20 11.5 15.5"},
    {"person.2",
     "O 9 8 3.4 M 2.8 19.5 C 2.8 15.5 5.3 13.9 9 13.9 C 12.7 13.9 15.2 15.5 15.2 19.5 Z"
     " M 15 5 C 19.2 4.2 19.6 11 15.5 11 M 16.5 14 C 19.7 14 21.2 16 21.2 19.5 L 18.5 19.5"},
    {"person.crop.rectangle.stack",
     "R 3 9 18 11.5 2 M 5 6 L 19 6 M 7 3.2 L 17 3.2 O 12 13.2 1.9 M 8 20 C 8 17.6 9.5 16.9 12 16.9"
     " C 14.5 16.9 16 17.6 16 20"},
    {"photo.on.rectangle",
     "R 7 9 14 11 2 M 7 15 L 5 15 C 3.9 15 3 14.1 3 13 L 3 6 C 3 4.9 3.9 4 5 4 L 15 4 C 16.1 4 17 4.9 17 6 L 17 9"
     " M 7.5 18.5 L 11 14.5 L 13.7 17.2 L 16 15 L 20.5 19 F O 17.5 12.2 1.1"},
    {"play.rectangle", "R 3 5 18 14 2.5 F M 10 8.5 L 16 12 L 10 15.5 Z"},
    {"rectangle.3.group", "R 3 4 8 16 2 R 14 4 7 6.5 2 R 14 13.5 7 6.5 2"},
    {"rectangle.on.rectangle",
     "R 7 9 14 11 2 M 7 15 L 5 15 C 3.9 15 3 14.1 3 13 L 3 6 C 3 4.9 3.9 4 5 4 L 15 4 C 16.1 4 17 4.9 17 6 L 17 9"},
    {"safari", "O 12 12 9 M 16.3 7.7 L 13.8 13.8 L 7.7 16.3 L 10.2 10.2 Z F O 12 12 0.9"},
    {"square.grid.2x2", "R 3.5 3.5 7 7 1.8 R 13.5 3.5 7 7 1.8 R 3.5 13.5 7 7 1.8 R 13.5 13.5 7 7 1.8"},
    {"star", "M 12 3 L 14.7 8.8 L 21 9.5 L 16.3 13.8 L 17.6 20.1 L 12 16.9 L 6.4 20.1 L 7.7 13.8 L 3 9.5 L 9.3 8.8 Z"},
    {"terminal", "R 3 4 18 16 2.5 M 7 8.8 L 10.2 12 L 7 15.2 M 12.3 15.5 L 16.8 15.5"},
});

struct SymbolPaths {
  QPainterPath lines;
  QPainterPath areas;
};

SymbolPaths pathsOf(const char* shape) {
  SymbolPaths paths;
  auto* path = &paths.lines;
  std::istringstream words(shape);
  const auto number = [&words] {
    double value = 0;
    words >> value;
    return value;
  };
  const auto point = [&number] {
    const double x = number();
    return QPointF(x, number());
  };
  for (char letter = 0; words >> letter;) {
    switch (letter) {
      case 'M':
        path->moveTo(point());
        break;
      case 'L':
        path->lineTo(point());
        break;
      case 'C': {
        const auto first = point();
        const auto second = point();
        path->cubicTo(first, second, point());
        break;
      }
      case 'R': {
        const auto corner = point();
        const auto extent = point();
        const double radius = number();
        path->addRoundedRect({corner, QSizeF(extent.x(), extent.y())}, radius, radius);
        break;
      }
      case 'O': {
        const auto center = point();
        const double radius = number();
        path->addEllipse(center, radius, radius);
        break;
      }
      case 'Z':
        path->closeSubpath();
        break;
      default:
        path = &paths.areas;
        break;
    }
  }
  return paths;
}

const SymbolShape* shapeOf(const std::string& symbol) {
  const auto* const found = std::ranges::find(symbolShapes, symbol, &SymbolShape::name);
  return found != symbolShapes.end() ? found : nullptr;
}

/// Draws a shape at whatever size is asked for.
class SymbolIconEngine : public QIconEngine {
 public:
  SymbolIconEngine(std::string symbol, const QColor& color) : symbol_(std::move(symbol)), color_(color) {}

  void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State /*state*/) override {
    constexpr float dimmed = 0.4F;
    auto color = color_;
    color.setAlphaF(mode == QIcon::Disabled ? dimmed : color.alphaF());
    paintSymbol(*painter, area, symbol_, color);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }
  [[nodiscard]] QIconEngine* clone() const override { return new SymbolIconEngine(symbol_, color_); }

 private:
  const std::string symbol_;
  const QColor color_;
};

}  // namespace

bool paintSymbol(QPainter& painter, const QRectF& area, const std::string& symbol, const QColor& color) {
  const auto* const shape = shapeOf(symbol);
  if (shape == nullptr) {
    return false;
  }
  const auto paths = pathsOf(shape->shape);
  const double scale = std::min(area.width(), area.height()) / sideOfShape;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(area.center());
  painter.scale(scale, scale);
  painter.translate(-sideOfShape / 2, -sideOfShape / 2);
  painter.strokePath(paths.lines, QPen(color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.fillPath(paths.areas, color);
  painter.restore();
  return true;
}

QIcon symbolIcon(const std::string& symbol, const QColor& color) {
  return shapeOf(symbol) != nullptr ? QIcon(new SymbolIconEngine(symbol, color)) : QIcon();
}

}  // namespace tallowin
