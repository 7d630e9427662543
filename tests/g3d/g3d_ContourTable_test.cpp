#include "g3d_ContourTable.h"

#include "nex_TextException.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>
#include <vector>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

const g3d_Color kBlue(0, 0, 1, 1);
const g3d_Color kGreen(0, 1, 0, 1);
const g3d_Color kRed(1, 0, 0, 0.5F);

// The rule, read off the limits one by one.
int BandByRule(const g3d_ContourTable& table, double value) {
    if (std::isnan(value)) return g3d_ContourTable::kNotANumber;
    if (value > table.Maximum()) return table.Bands();
    int band = g3d_ContourTable::kBelow;
    for (int i = 0; i < table.Bands(); ++i) {
        if (table.Break(i) <= value) band = i;
    }
    return band;
}

TEST(g3d_ContourTable, EveryValueIsInTheBandOfTheRuleAloneOrInBulk) {
    using Table = std::tuple<double, double, std::size_t>;
    const Table kTables[] = {
        // clang-format off
        {0, 1, 10}, {0.1, 0.7, 1}, {-3, 1e6, 255}, {5, 5, 4}, {-0.0, 0.0, 3}, {10, -10, 7},
        {1e16, 1e16 + 4, 10}, {-DBL_MAX, DBL_MAX, 7}, {1, DBL_MAX, 12}, {0, 4 * DBL_TRUE_MIN, 10},
        {1e-310, 3e-310, 100}, {0, 1e-307, 24}, {1, 1 + 40 * DBL_EPSILON, 3},
        // clang-format on
    };
    std::mt19937_64 random(30);
    for (const auto& [minimum, maximum, bands] : kTables) {
        const g3d_ContourTable table(minimum, maximum, std::vector<g3d_Color>(bands));
        ASSERT_EQ(table.Bands(), static_cast<int>(bands));
        EXPECT_EQ(table.Minimum(), std::min(minimum, maximum));
        EXPECT_EQ(table.Break(table.Bands()), std::max(minimum, maximum));
        std::vector<double> values = {kNaN, -kNaN, kInfinity, -kInfinity, 0, -DBL_MAX, DBL_MAX};
        for (int i = 0; i <= table.Bands(); ++i) {
            const double limit = table.Break(i);
            EXPECT_LE(table.Break(std::max(i - 1, 0)), limit);
            values.insert(values.end(), {limit, std::nextafter(limit, -kInfinity),
                                         std::nextafter(limit, kInfinity)});
        }
        for (int i = 0; i < 1000; ++i) {
            const double part = std::uniform_real_distribution<double>(-0.2, 1.2)(random);
            values.push_back(minimum * (1 - part) + maximum * part);
        }
        std::vector<int> found(values.size() + 1, 77);
        table.Bands(std::span<const double>(values), found);
        EXPECT_EQ(found.back(), 77);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const double value = values[i];
            ASSERT_EQ(table.Band(value), BandByRule(table, value)) << value << " of " << minimum;
            ASSERT_EQ(found[i], table.Band(value)) << value << " of " << minimum;
        }
    }
}

TEST(g3d_ContourTable, FloatsAreTakenAsTheDoublesTheyAre) {
    const g3d_ContourTable table(0, 1, std::vector<g3d_Color>(10));
    // The float 0.1 is above the double, the float 0.7 below.
    const std::vector<float> values = {0.1F, 0.7F, -1, 2, NAN, 1, 0, 0.3F, 0.95F};
    std::vector<int> found(values.size());
    table.Bands(std::span<const float>(values), found);
    EXPECT_EQ(found, (std::vector<int>{1, 6, -1, 10, -2, 9, 0, 3, 9}));
    std::vector<g3d_Color> colors(2, kRed);  // fewer than values: as many as there is room for
    table.Colors(std::span<const float>(values), colors);
    EXPECT_EQ(colors, std::vector<g3d_Color>(2));
}

TEST(g3d_ContourTable, BandsHaveTheirColorsAndThoseOutsideTheirOwn) {
    g3d_ContourTable table(0, 3, std::vector{kBlue, kGreen, kRed});
    EXPECT_EQ(table.Color(0), kBlue);
    EXPECT_EQ(table.Color(0.999), kBlue);
    EXPECT_EQ(table.Color(1), kGreen);
    EXPECT_EQ(table.Color(3), kRed);
    table.SetBelow({0.1F, 0, 0, 1});
    table.SetAbove({0.2F, 0, 0, 1});
    table.SetNotANumber({0.3F, 0, 0, 1});
    EXPECT_EQ(table.Color(-1e-300), table.Below());
    EXPECT_EQ(table.Color(3.0000001), g3d_Color(0.2F, 0, 0, 1));
    EXPECT_EQ(table.Color(kNaN), g3d_Color(0.3F, 0, 0, 1));
    EXPECT_EQ(table.BandColor(1), kGreen);

    const g3d_ContourTable falling(3, 0, std::vector{kBlue, kGreen, kRed});
    EXPECT_EQ(falling.Color(3), kBlue);
    EXPECT_EQ(falling.Color(0), kRed);
    const g3d_ContourTable constant(2, 2, std::vector{kBlue, kGreen, kRed});
    EXPECT_EQ(constant.Color(2), kRed);
    const g3d_ContourTable tenths(-1, 1, std::vector<g3d_Color>(20));
    EXPECT_EQ(tenths.Break(13), 0.3);  // as short as the limits are
}

TEST(g3d_ContourTable, SmoothColorsMeetTheirPlacesAndBlendBetween) {
    g3d_ContourTable table(-1, 1, std::vector{kBlue, kGreen, kRed}, true);
    const double values[] = {-1, 0, 1, -0.5, 0.5, -2, 2, kNaN};
    const g3d_Color expected[] = {kBlue,
                                  kGreen,
                                  kRed,
                                  {0, 0.5F, 0.5F, 1},
                                  {0.5F, 0.5F, 0, 0.75F},
                                  table.Below(),
                                  table.Above(),
                                  table.NotANumber()};
    std::vector<g3d_Color> found(std::size(values));
    table.Colors(values, found);
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_EQ(table.Color(values[i]), expected[i]) << values[i];
        EXPECT_EQ(found[i], expected[i]) << values[i];
    }

    const g3d_ContourTable wide(-DBL_MAX, DBL_MAX, std::vector{kBlue, kGreen, kRed}, true);
    EXPECT_EQ(wide.Color(0), kGreen);
    EXPECT_EQ(wide.Color(DBL_MAX / 2), g3d_Color(0.5F, 0.5F, 0, 0.75F));
    EXPECT_EQ(g3d_ContourTable(2, 2, std::vector{kBlue, kRed}, true).Color(2), kRed);
    EXPECT_EQ(g3d_ContourTable(0, 2, std::vector{kBlue}, true).Color(1), kBlue);
}

TEST(g3d_ContourTable, RefusesLimitsThatAreNotFiniteAndNoColors) {
    const std::vector<g3d_Color> two(2);
    EXPECT_THROW(g3d_ContourTable(kNaN, 1, two), nex_TextException);
    EXPECT_THROW(g3d_ContourTable(0, kInfinity, two), nex_TextException);
    EXPECT_THROW(g3d_ContourTable(0, 1, {}), nex_TextException);
}

}  // namespace
