#include "g3d_Bitmap.h"

#include "mem_ExhaustedException.h"
#include "test_Faults.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr int kMaximum = std::numeric_limits<int>::max();

g3d_Bitmap Marker(int kind, int size) {
    g3d_Bitmap bitmap;
    bitmap.SetMarker(static_cast<g3d_MarkerEnum>(kind), size);
    return bitmap;
}

// Clear, with the numbers that a marker of that side has.
g3d_Bitmap Square(int side) {
    g3d_Bitmap bitmap;
    bitmap.SetSize(side, side, true, true);
    bitmap.SetOrigin(0.5F * static_cast<float>(side - 1), 0.5F * static_cast<float>(side - 1));
    bitmap.SetMove(static_cast<float>(side), 0);
    return bitmap;
}

// Markers of one height side by side, rows from the top.
std::string Picture(const std::vector<int>& kinds, int size) {
    std::string text;
    for (int y = size - 1; y >= 0; --y) {
        for (const int kind : kinds) {
            const g3d_Bitmap marker = Marker(kind, size);
            for (int x = 0; x < marker.Width(); ++x) {
                text += marker.GetBit(x, y) != 0 ? '#' : '.';
            }
            text += kind == kinds.back() ? '\n' : ' ';
        }
    }
    return text;
}

TEST(g3d_Bitmap, MarkersLookAsDrawn) {
    EXPECT_EQ(Picture({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, 5),
              ".###. ##### ..#.. ..#.. ..#.. ##### ..#.. ..#.. #...# ..#.. #.#.# .###. #####\n"
              "##### ##### .###. .###. .###. #...# .#.#. .#.#. .#.#. ..#.. .###. #...# .###.\n"
              "##### ##### .###. ##### .#.#. #...# .#.#. #...# ..#.. ##### ##### #.#.# ..#..\n"
              "##### ##### ##### .###. .###. #...# #...# .#.#. .#.#. ..#.. .###. #...# .###.\n"
              ".###. ##### ##### ..#.. ..... ##### ##### ..#.. #...# ..#.. #.#.# .###. #####\n");
    EXPECT_EQ(Picture({2, 4, 6, 8, 10, 11}, 9),
              "....#.... ....#.... ....#.... #.......# #...#...# ...###...\n"
              "...###... ..####... ...#.#... .#.....#. .#..#..#. ..#...#..\n"
              "...###... .##...##. ...#.#... ..#...#.. ..#.#.#.. .#.....#.\n"
              "..#####.. .#.....#. ..#...#.. ...#.#... ...###... #..###..#\n"
              "..#####.. .#.....#. ..#...#.. ....#.... ######### #..###..#\n"
              ".#######. .#.....#. .#.....#. ...#.#... ...###... #..###..#\n"
              ".#######. .#.....#. .#.....#. ..#...#.. ..#.#.#.. .#.....#.\n"
              "######### ..#####.. #.......# .#.....#. .#..#..#. ..#...#..\n"
              "######### ......... ######### #.......# #...#...# ...###...\n");
}

TEST(g3d_Bitmap, MarkersAreDistinctSymmetricAndCentred) {
    for (int size = 1; size <= 40; ++size) {
        std::set<std::string> pictures;
        std::set<std::string> names;
        for (int kind = 0; kind < g3d_MARKER_COUNT; ++kind) {
            SCOPED_TRACE("kind " + std::to_string(kind) + ", size " + std::to_string(size));
            const g3d_Bitmap marker = Marker(kind, size);
            const bool hasMiddle = kind == 3 || kind == 4 || (kind >= 7 && kind <= 11);
            const int side = hasMiddle ? size / 2 * 2 + 1 : size;
            g3d_Bitmap mirrored = Square(side);
            for (int i = 0; i < side * side; ++i) {
                mirrored.SetBit(side - 1 - i % side, i / side,
                                marker.GetBit(i % side, i / side) != 0);
            }
            if (kind != g3d_MARKER_CIRCLE) {  // its fixed rule is not symmetric
                EXPECT_EQ(mirrored, marker);
            }
            pictures.insert(Picture({kind}, size));
            names.insert(g3d_Bitmap::MarkerName(static_cast<g3d_MarkerEnum>(kind)));
        }
        EXPECT_EQ(names.size(), 13U);
        EXPECT_TRUE(pictures.size() == 13 || size < 5) << size;
    }
}

TEST(g3d_Bitmap, DiscAndCircleFollowTheirRulesAtEverySize) {
    for (int size = 1; size < 300; size += size < 40 ? 1 : 37) {
        g3d_Bitmap expected = Square(size);
        const double c = 0.5 * size - 0.5;
        for (int i = 0; i < size * size; ++i) {
            const double x = i % size - c;
            const double y = i / size - c;
            expected.SetBit(i % size, i / size, x * x + y * y - c * c <= 1);
        }
        EXPECT_EQ(Marker(g3d_MARKER_FILLED_CIRCLE, size), expected) << size;

        const int r = size / 2;
        expected = Square(2 * r + 1);
        expected.SetBit(r, 2 * r);
        for (double t = 0; r > 0 && t < 6.283185307179586; t += 1.0 / r) {
            expected.SetBit(static_cast<int>(std::trunc(r * std::sin(t))) + r,
                            static_cast<int>(std::trunc(r * std::cos(t))) + r);
        }
        EXPECT_EQ(Marker(g3d_MARKER_CIRCLE, size), expected) << size;
    }
}

TEST(g3d_Bitmap, NothingToDrawGivesABlankWithoutStorage) {
    g3d_Bitmap blank;
    blank.SetSize(8, 1, true, false);
    EXPECT_EQ(blank.Length() + blank.GetBit(0, 0), 0);
    for (const auto& [kind, size] : {std::pair(0, 0), {4, -5}, {-1, 9}, {13, 9}, {kMaximum, 1}}) {
        g3d_Bitmap marker = Marker(0, 5);
        marker.SetMarker(static_cast<g3d_MarkerEnum>(kind), size);
        EXPECT_EQ(marker, blank);
    }
    EXPECT_STREQ(g3d_Bitmap::MarkerName(static_cast<g3d_MarkerEnum>(-1)), "");
    EXPECT_STREQ(g3d_Bitmap::MarkerName(static_cast<g3d_MarkerEnum>(13)), "");
}

TEST(g3d_Bitmap, StoresWordsFromTheLowestBitAndBytesFromTheHighest) {
    g3d_Bitmap words;
    words.SetSize(10, 3, true, true);
    ASSERT_EQ(words.Length(), 1);
    words.SetBit(9, 2);
    words.SetBit(0, 0);
    EXPECT_EQ(words.Words()[0], (1U << 29) | 1U);
    EXPECT_EQ(words.Bytes(), nullptr);

    g3d_Bitmap bytes = words;
    bytes.SetSize(10, 3, false, true);
    ASSERT_EQ(bytes.Length(), 4);
    EXPECT_EQ(bytes.GetBit(9, 2), 0);
    bytes.SetBit(9, 2);
    bytes.SetBit(0, 0);
    EXPECT_EQ(bytes.Bytes()[0], 0x80);
    EXPECT_EQ(bytes.Bytes()[3], 0x80 >> 5);
    EXPECT_EQ(bytes.Words(), nullptr);
    EXPECT_EQ(bytes.GetBit(9, 2), 1);
    EXPECT_NE(bytes, words);
    for (const auto& [x, y] : {std::pair(-1, 0), {0, -1}, {10, 0}, {0, 3}, {kMaximum, kMaximum}}) {
        bytes.SetBit(x, y);
        EXPECT_EQ(bytes.GetBit(x, y), 0);
    }
    bytes.SetBit(9, 2, false);
    EXPECT_EQ(bytes.Bytes()[3], 0);
}

TEST(g3d_Bitmap, SetSizeAlwaysKeepsTheSizeAndClears) {
    g3d_Bitmap bitmap = Marker(0, 5);
    for (const auto& [width, height] : {std::pair(100000, 100000), {0, 7}, {-3, -3}, {5, -1}}) {
        bitmap.SetSize(width, height, false, width != height || width < 0);
        EXPECT_EQ(bitmap.Width(), width);
        EXPECT_EQ(bitmap.Height(), height);
        EXPECT_EQ(bitmap.XOrigin() + bitmap.XMove(), 7);  // stay
        EXPECT_EQ(bitmap.Length() + bitmap.GetBit(0, 0), 0);
    }
    // As many words as there were bytes, the other way round, and the same again.
    for (const bool useWords : {false, true, true, false, false}) {
        bitmap.SetSize(useWords ? 128 : 32, 1, useWords, true);
        EXPECT_EQ(bitmap.Length(), 4);
        EXPECT_EQ(bitmap.Words() != nullptr, useWords);
        EXPECT_EQ(bitmap.Bytes() != nullptr, !useWords);
        EXPECT_EQ(bitmap.GetBit(31, 0), 0);
        bitmap.SetBit(31, 0);
    }
}

TEST(g3d_Bitmap, IsAValueThatExhaustionLeavesAlone) {
    const g3d_Bitmap disc = Marker(0, 9);
    g3d_Bitmap bitmap = disc;
    bitmap.SetBit(0, 0);
    EXPECT_NE(bitmap, disc);
    bitmap = disc;
    g3d_Bitmap taken(std::move(bitmap));
    EXPECT_EQ(bitmap, g3d_Bitmap());  // NOLINT(bugprone-use-after-move): empty, as promised
    bitmap = std::move(taken);
    EXPECT_EQ(taken, g3d_Bitmap());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(bitmap, disc);

    const auto survives = [&](auto&& operation, int allocation) {
        const test_Faults faults(0, allocation);
        return test_Faults::Raises(operation) && bitmap == disc;
    };
    const g3d_Bitmap large = Marker(1, 50);
    EXPECT_TRUE(survives([&] { bitmap = large; }, 1));
    EXPECT_TRUE(survives([&] { bitmap.SetMarker(g3d_MARKER_PLUS, 31); }, 1));
    EXPECT_TRUE(survives([&] { bitmap.SetSize(8, 3, false, true); }, 1));
    // More than can be counted: refused before anything is requested.
    EXPECT_TRUE(survives([&] { bitmap.SetMarker(g3d_MARKER_CIRCLE, kMaximum - 1); }, 0));
    EXPECT_TRUE(survives([&] { bitmap.SetSize(131072, 131072, false, true); }, 0));
}

TEST(g3d_Bitmap, MarkersOfMoreThanTwoToThe31PixelsAreDrawnWhole) {
    const int side = 46342;
    const g3d_Bitmap disc = Marker(g3d_MARKER_FILLED_CIRCLE, side);
    std::int64_t pixels = 0;
    for (int i = 0; i < disc.Length(); ++i) {
        pixels += std::popcount(disc.Words()[i]);
    }
    EXPECT_NEAR(static_cast<double>(pixels) / side / side, 0.785398, 1e-4);
}

}  // namespace
