#include "presentation/widgets/symbols.h"

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QRectF>

namespace tallowin {

QIcon symbolIcon(const std::string& /*symbol*/, const QColor& /*color*/) {
  return {};
}

bool paintSymbol(QPainter& painter, const QRectF& area, const std::string& symbol, const QColor& color) {
  const auto icon = symbolIcon(symbol, color);
  if (icon.isNull()) {
    return false;
  }
  icon.paint(&painter, area.toAlignedRect());
  return true;
}

}  // namespace tallowin
