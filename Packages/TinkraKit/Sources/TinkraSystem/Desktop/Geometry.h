#pragma once

namespace Tinkra::System {

/// In points; the origin is the bottom left corner of the first screen, and y grows upwards.
struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

/// In points.
struct Size {
    double width = 0;
    double height = 0;

    friend bool operator==(const Size&, const Size&) = default;
};

/// A rectangle by its bottom left corner and its size.
struct Rect {
    Point origin;
    Size size;

    double midX() const { return origin.x + size.width / 2; }
    double maxX() const { return origin.x + size.width; }
    double maxY() const { return origin.y + size.height; }

    /// Whether a pointer at `point` is over the rectangle (NSMouseInRect, not flipped): a pointer is over a
    /// pixel, whose upper left corner is its place, so the top and left edges belong to the rectangle.
    bool holdsPointer(Point point) const
    {
        return point.x >= origin.x && point.x < maxX() && point.y > origin.y && point.y <= maxY();
    }

    friend bool operator==(const Rect&, const Rect&) = default;
};

}
