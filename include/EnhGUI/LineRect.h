#pragma once

#include <QRect>

// A rectangle as the dialogs compute it: right and bottom are exclusive.
struct LineRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    // Width and height; negative for a rectangle turned inside out.
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool operator==(const LineRect&) const = default;
    // Conversions that keep the exclusive edges.
    QRect ToQRect() const { return QRect(left, top, right - left, bottom - top); }
    static LineRect FromQRect(const QRect& r) { return {r.left(), r.top(), r.left() + r.width(), r.top() + r.height()}; }
};
