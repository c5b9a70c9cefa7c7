#pragma once

namespace tallowin {

/// A point in points (1 point is 1 pixel where the platform does not scale). Unless a declaration says otherwise the
/// origin is the top left corner of the main display and y grows downwards, as in CoreGraphics.
struct CGPoint {
  double x = 0;
  double y = 0;
  bool operator==(const CGPoint&) const = default;
};

/// A width and a height in points.
struct CGSize {
  double width = 0;
  double height = 0;
  bool operator==(const CGSize&) const = default;
};

/// A rectangle given by its top left corner and its size, in the coordinates of CGPoint.
struct CGRect {
  CGPoint origin;
  CGSize size;
  bool operator==(const CGRect&) const = default;

  /// As CGRectContainsPoint: the left and top edges belong to the rectangle, the right and bottom edges do not.
  [[nodiscard]] constexpr bool contains(CGPoint point) const {
    return point.x >= origin.x && point.x < origin.x + size.width && point.y >= origin.y &&
           point.y < origin.y + size.height;
  }

  [[nodiscard]] constexpr CGPoint center() const { return {origin.x + size.width / 2, origin.y + size.height / 2}; }
};

}  // namespace tallowin
