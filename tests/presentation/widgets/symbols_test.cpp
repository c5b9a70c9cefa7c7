#include "presentation/widgets/symbols.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include "automation/space_templates.h"
#include "presentation/model/questions.h"

namespace tallowin {
namespace {

/// How many points of a square are painted, and how many outside of it.
struct Painted {
  int inside = 0;
  int outside = 0;
};

Painted painted(const std::string& symbol) {
  const QRect area(20, 10, 22, 22);
  QImage image(64, 48, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  const bool known = paintSymbol(painter, area, symbol, Qt::red);
  EXPECT_EQ(known, !symbolIcon(symbol, Qt::red).isNull());
  Painted points;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (qAlpha(image.pixel(x, y)) != 0) {
        EXPECT_EQ(qGreen(image.pixel(x, y)), 0) << symbol;
        ++(area.contains(x, y) ? points.inside : points.outside);
      }
    }
  }
  return points;
}

TEST(Symbols, EveryOneThatTheProgramNamesHasAPicture) {
  // Of Spaces without one of their own, of the demonstration mode, and of messages.
  std::vector<std::string> names = {"rectangle.on.rectangle",
                                    "macwindow",
                                    "books.vertical",
                                    "archivebox",
                                    "arrow.down.right.and.arrow.up.left",
                                    "bookmark.fill",
                                    "display.2",
                                    "eject",
                                    "exclamationmark.triangle",
                                    "keyboard",
                                    "lock",
                                    "person.crop.rectangle.stack",
                                    "rectangle.3.group",
                                    "square.grid.2x2"};
  for (const auto& layout : SpaceTemplate::builtIn()) {
    for (const auto& slot : layout.slots) {
      names.push_back(slot.symbol.value_or("none"));
    }
  }
  for (const auto& symbol : suggestedSymbols()) {
    names.push_back(symbol.value);
  }
  for (const auto& name : names) {
    const auto points = painted(name);
    EXPECT_GT(points.inside, 40) << name;
    EXPECT_EQ(points.outside, 0) << name;
  }
}

TEST(Symbols, NothingIsPaintedForAnotherName) {
  EXPECT_EQ(painted("no.such.symbol").inside, 0);
  EXPECT_EQ(painted("").inside, 0);
}

}  // namespace
}  // namespace tallowin
