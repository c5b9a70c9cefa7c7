#pragma once

#include <QColor>
#include <QImage>
#include <QList>

#include "presentation/model/menu.h"
#include "presentation/model/status_item.h"

namespace tallowin {

/// The picture of the status item, so many pixels wide and high: the active Space's square, or the marks of all Spaces
/// in rows. Panels shrink what is wider than high, so that nobody could see a long row.
[[nodiscard]] QImage statusPicture(const StatusItem& item, int extent);

/// The same in every size that panels ask for, from 16 to 48 pixels, those for screens of twice the density among them.
[[nodiscard]] QList<QImage> statusPictures(const StatusItem& item);

/// Readable on light grounds and on dark ones, for where nobody says which it is.
inline constexpr QColor anyGroundGrey(0x80, 0x80, 0x88);

/// What stands before the label of a menu entry: its symbol in its colour, or in `ink` where it has none, or a dot;
/// null for neither. So many pixels wide and high.
[[nodiscard]] QImage menuPicture(const MenuEntry& entry, int extent, const QColor& ink);

/// A check mark on the entry's colour, or in `ink` where it has none.
[[nodiscard]] QImage checkPicture(const MenuEntry& entry, int extent, const QColor& ink);

}  // namespace tallowin
