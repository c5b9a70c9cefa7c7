#pragma once

#include <QColor>
#include <QImage>
#include <QList>

#include "presentation/model/menu.h"
#include "presentation/model/status_item.h"

namespace tallowin {

/// How the marks of a status item are laid out; without marks its picture is a square anyway.
enum class MarkLayout {
  row,    ///< as wide as it needs
  square  ///< in rows, for panels that give every item a square; numbers are left out where there is no room
};

/// The picture of the status item, so many pixels high.
[[nodiscard]] QImage statusPicture(const StatusItem& item, int height, MarkLayout layout);

/// The same in every size that panels ask for, from 16 to 48 pixels, those for screens of twice the density among them.
[[nodiscard]] QList<QImage> statusPictures(const StatusItem& item, MarkLayout layout);

/// What stands before the label of a menu entry: its symbol in its colour, or a dot; null for neither. So many pixels
/// wide and high.
[[nodiscard]] QImage menuPicture(const MenuEntry& entry, int extent);

/// A check mark on the entry's colour, or in `ink` where it has none.
[[nodiscard]] QImage checkPicture(const MenuEntry& entry, int extent, const QColor& ink);

}  // namespace tallowin
