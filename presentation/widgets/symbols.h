#pragma once

#include <QIcon>
#include <string>

class QColor;
class QPainter;
class QRectF;

namespace tallowin {

/// Paints the picture that stands for a system symbol image, in one colour, as large as fits. False when there is none
/// for this name: then nothing is painted.
bool paintSymbol(QPainter& painter, const QRectF& area, const std::string& symbol, const QColor& color);

/// The same as an icon for menus and buttons, in the colour of their texts and sharp in every size; a null one when
/// there is none.
[[nodiscard]] QIcon symbolIcon(const std::string& symbol, const QColor& color);

}  // namespace tallowin
