#include "g3d_MarkerShapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace {

using Canvas = g3d_MarkerCanvas;

// The convex shapes and the hourglass are symmetric about their vertical axis, so one number per
// row describes them: pixel x belongs to them when |2 x - (side - 1)| <= reach. Doubled, a distance
// from the axis is an integer for odd and even sides alike.
using Reach = int (*)(int side, int row) noexcept;

constexpr int DoubledHeight(int side, int row) noexcept { return std::abs(2 * row - (side - 1)); }

int DiscReach(int side, int row) noexcept {
    // (x - c)^2 + (y - c)^2 - c^2 <= 1 about c = (side - 1) / 2, times 4. Sides that fit into
    // memory are far below 2^26, where double holds the squares, and so the floor of the root,
    // exactly.
    const double height = DoubledHeight(side, row);
    const double center = side - 1;
    return static_cast<int>(std::sqrt(4 + center * center - height * height));
}

int SquareReach(int side, int /*row*/) noexcept { return side; }

// One pixel (two when even) at the tip, the whole side in the lowest row.
int TriangleReach(int side, int row) noexcept { return side - row; }

int DiamondReach(int side, int row) noexcept { return side - DoubledHeight(side, row); }

int HourglassReach(int side, int row) noexcept { return DoubledHeight(side, row); }

template <Reach reach>
int FirstPixel(int side, int row) noexcept {
    return std::max(0, (side - reach(side, row)) / 2);
}

// Draws the shape in its own \p side, in the middle of the canvas.
template <Reach reach>
void FillInMiddle(const Canvas& canvas, int side) noexcept {
    const int margin = (canvas.side - side) / 2;
    for (int row = 0; row < side; ++row) {
        const int first = FirstPixel<reach>(side, row);
        canvas.FillRow(margin + row, margin + first, margin + side - 1 - first);
    }
}

template <Reach reach>
void Fill(const Canvas& canvas) noexcept {
    FillInMiddle<reach>(canvas, canvas.side);
}

// Those pixels of a convex shape that have a neighbour outside, left, right, above or below.
template <Reach reach>
void Outline(const Canvas& canvas) noexcept {
    const int top = canvas.side - 1;
    for (int row = 0; row <= top; ++row) {
        const int first = FirstPixel<reach>(canvas.side, row);
        const int last = top - first;
        int inner = last + 1;  // the first pixel that is not drawn, if there is one
        if (row > 0 && row < top) {
            inner = std::max({first + 1, FirstPixel<reach>(canvas.side, row - 1),
                              FirstPixel<reach>(canvas.side, row + 1)});
        }
        if (inner > top - inner) {
            canvas.FillRow(row, first, last);
        } else {
            canvas.FillRow(row, first, inner - 1);
            canvas.FillRow(row, top - inner + 1, last);
        }
    }
}

void DrawCircle(const Canvas& canvas) noexcept {
    constexpr double kTwoPi = 6.283185307179586;
    const int radius = canvas.side / 2;
    const double step = radius > 0 ? 1.0 / radius : kTwoPi;
    // The symbol is made of these steps, summed up as they are; its golden pictures depend on them.
    // NOLINTNEXTLINE(clang-analyzer-security.FloatLoopCounter)
    for (double angle = 0; angle < kTwoPi; angle += step) {
        const int x = static_cast<int>(radius * std::sin(angle)) + radius;
        const int y = static_cast<int>(radius * std::cos(angle)) + radius;
        canvas.FillRow(y, x, x);
    }
}

void DrawCross(const Canvas& canvas) noexcept {
    for (int row = 0; row < canvas.side; ++row) {
        canvas.FillRow(row, row, row);
        canvas.FillRow(row, canvas.side - 1 - row, canvas.side - 1 - row);
    }
}

void DrawPlus(const Canvas& canvas) noexcept {
    const int middle = canvas.side / 2;
    canvas.FillRow(middle, 0, canvas.side - 1);
    for (int row = 0; row < canvas.side; ++row) {
        canvas.FillRow(row, middle, middle);
    }
}

void DrawAsterisk(const Canvas& canvas) noexcept {
    DrawCross(canvas);
    DrawPlus(canvas);
}

void DrawTarget(const Canvas& canvas) noexcept {
    // The circle of marker 4 follows its fixed rule and leaves no room for a dot when it is small.
    Outline<&DiscReach>(canvas);
    FillInMiddle<&DiscReach>(canvas, canvas.side / 8 * 2 + 1);
}

constexpr std::array<g3d_MarkerShape, g3d_MARKER_COUNT> kShapes{{
    {g3d_MARKER_FILLED_CIRCLE, "FILLED_CIRCLE", false, &Fill<&DiscReach>},
    {g3d_MARKER_FILLED_SQUARE, "FILLED_SQUARE", false, &Fill<&SquareReach>},
    {g3d_MARKER_FILLED_TRIANGLE, "FILLED_TRIANGLE", false, &Fill<&TriangleReach>},
    {g3d_MARKER_FILLED_DIAMOND, "FILLED_DIAMOND", true, &Fill<&DiamondReach>},
    {g3d_MARKER_CIRCLE, "CIRCLE", true, &DrawCircle},
    {g3d_MARKER_SQUARE, "SQUARE", false, &Outline<&SquareReach>},
    {g3d_MARKER_TRIANGLE, "TRIANGLE", false, &Outline<&TriangleReach>},
    {g3d_MARKER_DIAMOND, "DIAMOND", true, &Outline<&DiamondReach>},
    {g3d_MARKER_CROSS, "CROSS", true, &DrawCross},
    {g3d_MARKER_PLUS, "PLUS", true, &DrawPlus},
    {g3d_MARKER_ASTERISK, "ASTERISK", true, &DrawAsterisk},
    {g3d_MARKER_TARGET, "TARGET", true, &DrawTarget},
    {g3d_MARKER_HOURGLASS, "HOURGLASS", false, &Fill<&HourglassReach>},
}};

constexpr bool IsInOrder() {
    int index = 0;
    return std::ranges::all_of(
        kShapes, [&index](const g3d_MarkerShape& shape) { return shape.kind == index++; });
}
static_assert(IsInOrder(), "a kind's value is its index in the table");

}  // namespace

void g3d_MarkerCanvas::FillRow(int row, int first, int last) const noexcept {
    constexpr std::uint32_t kAll = 0xFFFFFFFF;
    if (first > last) {
        return;
    }
    const std::int64_t start = std::int64_t{side} * row;
    const std::int64_t from = start + first;
    const std::int64_t to = start + last;
    const std::uint32_t fromMask = kAll << (from % 32);
    const std::uint32_t toMask = kAll >> (31 - to % 32);
    std::uint32_t* const firstWord = words + from / 32;
    std::uint32_t* const lastWord = words + to / 32;
    if (firstWord == lastWord) {
        *firstWord |= fromMask & toMask;
        return;
    }
    *firstWord |= fromMask;
    std::fill(firstWord + 1, lastWord, kAll);
    *lastWord |= toMask;
}

const g3d_MarkerShape* g3d_FindMarkerShape(g3d_MarkerEnum kind) noexcept {
    return kind >= 0 && kind < g3d_MARKER_COUNT ? &kShapes[static_cast<std::size_t>(kind)]
                                                : nullptr;
}
