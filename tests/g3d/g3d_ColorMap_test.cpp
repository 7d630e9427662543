#include "g3d_ColorMap.h"

#include "g3d_ColorErrorException.h"
#include "g3d_Utils.h"
#include "omi_Singleton.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

g3d_Color Opaque(float red, float green, float blue) { return {red, green, blue, 1}; }

std::string Refused(const g3d_ColorMap& map, const cow_String& name) {
    return test_Raised<g3d_ColorErrorException>([&] { static_cast<void>(map.ConstGet(name)); });
}

std::string NoColor(const std::string& name) {
    return "generated/g3d/impl/g3d_ColorMap:247: " + name + " is not a valid color name.";
}

TEST(g3d_ColorMap, NumberSignsBypassTheMapsAndNamesMayHoldPercents) {
    g3d_ColorMap map;
    EXPECT_TRUE(map.AddByRGB("#FF", 0, 1, 0));
    EXPECT_TRUE(map.IsMember("#FF"));
    EXPECT_EQ(map.ConstGet("#FF"), Opaque(1, 0, 0));
    EXPECT_EQ(map.ConstGet("#B3B3B3"), Opaque(179 / 255.0F, 179 / 255.0F, 179 / 255.0F));
    EXPECT_EQ(Refused(map, "100%s%n"), NoColor("100%s%n"));
    EXPECT_EQ(Refused(map, ""), NoColor(""));
    EXPECT_TRUE(map.AddByRGB("100%s%n", 0, 0, 1));
    EXPECT_EQ(map.ConstGet("100%s%n"), Opaque(0, 0, 1));
}

TEST(g3d_ColorMap, UserColorsComeFirstAndDefaultsCannotBeRemoved) {
    g3d_ColorMap map;
    EXPECT_EQ(map.Length(), 28);
    EXPECT_FALSE(map.AddByRGB("Red", 0, 0, 1));
    EXPECT_FALSE(map.Remove("Red"));
    EXPECT_EQ(map.ConstGet("Red"), Opaque(1, 0, 0));

    EXPECT_TRUE(map.AddByRGB("Steel", 0, 0, 0.5F));
    EXPECT_TRUE(map.AddDefaultColor("Steel", 0.3F, 0, 0));
    EXPECT_EQ(map.ConstGet("Steel"), Opaque(0, 0, 0.5F));
    EXPECT_FALSE(map.AddByRGB("Steel", 0, 0, 0.7F));
    EXPECT_EQ(map.Length(), 30);
    EXPECT_EQ(map.Keys()[29], "Steel");
    EXPECT_TRUE(map.Remove("Steel"));
    EXPECT_EQ(map.ConstGet("Steel"), Opaque(0.3F, 0, 0));
    EXPECT_TRUE(map.AddDefaultColor("Steel", 0.4F, 0, 0));
    EXPECT_EQ(map.ConstGet("Steel"), Opaque(0.4F, 0, 0));
    EXPECT_FALSE(map.Remove("Steel"));
}

using Colors = std::vector<g3d_Color>;
using Ramp = void (*)(g3d_Color*, int, bool, float);

Colors Made(Ramp ramp, int n, bool reverse = false) {
    Colors colors(static_cast<std::size_t>(n));
    ramp(colors.data(), n, reverse, 1);
    return colors;
}

void WrapAround(g3d_Color* colors, int n, bool /*reverse*/, float alpha) {
    g3d_Utils::WrapAround(colors, n, alpha);
}

void ExpectNear(const g3d_Color& color, const g3d_Color& expected, double tolerance) {
    EXPECT_NEAR(color.Red(), expected.Red(), tolerance);
    EXPECT_NEAR(color.Green(), expected.Green(), tolerance);
    EXPECT_NEAR(color.Blue(), expected.Blue(), tolerance);
    EXPECT_EQ(color.Alpha(), expected.Alpha());
}

TEST(g3d_Utils, RampsMirrorKeepAlphaAndWriteNothingForNoColors) {
    const struct {
        Ramp ramp;
        g3d_Color one, oneReversed;
    } kRamps[] = {{&g3d_Utils::Rainbow, Opaque(0, 0, 1), Opaque(1, 0, 0)},
                  {&g3d_Utils::BlueToRed, Opaque(0, 0, 1), Opaque(1, 0, 0)},
                  {&g3d_Utils::BlackToWhite, Opaque(0, 0, 0), Opaque(1, 1, 1)},
                  {&g3d_Utils::Viridis, Opaque(0.267004F, 0.004874F, 0.329415F),
                   Opaque(0.993248F, 0.906157F, 0.143936F)},
                  {&g3d_Utils::CoolWarm, Opaque(59 / 255.0F, 76 / 255.0F, 192 / 255.0F),
                   Opaque(180 / 255.0F, 4 / 255.0F, 38 / 255.0F)},
                  {&WrapAround, Opaque(0, 1, 0), Opaque(0, 1, 0)}};
    for (const auto& [ramp, one, oneReversed] : kRamps) {
        EXPECT_EQ(Made(ramp, 1), Colors{one});
        EXPECT_EQ(Made(ramp, 1, true), Colors{oneReversed});
        for (const int none : {0, -1, -2147483647 - 1})
            ramp(nullptr, none, false, 1);
        Colors colors = Made(ramp, 13);
        std::reverse(colors.begin(), colors.end());
        EXPECT_EQ(Made(ramp, 13, true) == colors, ramp != &WrapAround);
        ramp(colors.data(), 2, false, 0.5F);
        EXPECT_EQ(colors[1].Alpha(), 0.5F);
    }
}

TEST(g3d_Utils, RampsHaveTheirColors) {
    EXPECT_EQ(Made(&g3d_Utils::Rainbow, 3),
              (Colors{Opaque(0, 0, 1), Opaque(0, 1, 0), Opaque(1, 0, 0)}));
    const Colors rainbow = Made(&g3d_Utils::Rainbow, 1001);
    for (std::size_t i = 0; i <= 1000; ++i) {
        // Of hue and full saturation: each channel is a clipped ramp of the distance in hue.
        const double hue = static_cast<double>(1000 - i) / 1000 * 4;
        const auto channel = [hue](double center) {
            return static_cast<float>(std::min(1.0, std::max(0.0, 2 - std::abs(hue - center))));
        };
        ExpectNear(rainbow[i], Opaque(channel(0), channel(2), channel(4)), 1e-5);
    }
    EXPECT_EQ(Made(&g3d_Utils::BlueToRed, 3),
              (Colors{Opaque(0, 0.09F, 1), Opaque(0.25F, 0.09F, 0.25F), Opaque(1, 0.09F, 0)}));
    EXPECT_EQ(Made(&g3d_Utils::BlackToWhite, 2),
              (Colors{Opaque(0.15F, 0.15F, 0.15F), Opaque(0.85F, 0.85F, 0.85F)}));

    const Colors wrapped = Made(&WrapAround, 11);
    EXPECT_EQ(wrapped.front(), wrapped.back());
    ExpectNear(wrapped[0], Opaque(0.2F, 1, 0), 1e-5);
    ExpectNear(wrapped[2], Opaque(0, 1, 1), 1e-5);
    ExpectNear(wrapped[7], Opaque(1, 0, 0), 1e-5);  // where the hue is 1, or just above
}

TEST(g3d_Utils, PerceptualRampsAreThosePublished) {
    const Colors viridis = Made(&g3d_Utils::Viridis, 256);
    ExpectNear(viridis[127], Opaque(0.128729F, 0.563265F, 0.551229F), 1e-7);
    ExpectNear(viridis[199], Opaque(0.430983F, 0.808473F, 0.346476F), 1e-7);
    const g3d_Color black(0, 0, 0, 1);
    const Colors fine = Made(&g3d_Utils::Viridis, 1000);
    for (std::size_t i = 1; i < fine.size(); ++i) {
        EXPECT_GT(g3d_Color::ContrastRatio(fine[i], black),
                  g3d_Color::ContrastRatio(fine[i - 1], black));
    }
    // From the table that accompanies Moreland's paper, whose ends are these to two decimals.
    const Colors coolWarm = Made(&g3d_Utils::CoolWarm, 33);
    ExpectNear(coolWarm[4], Opaque(0.38301334F, 0.50941904F, 0.917387822F), 0.005);
    ExpectNear(coolWarm[8], Opaque(0.552953156F, 0.688929332F, 0.995375608F), 0.005);
    ExpectNear(coolWarm[16], Opaque(0.865395197F, 0.86541021F, 0.865395561F), 0.002);
    EXPECT_EQ(coolWarm.back(), Opaque(180 / 255.0F, 4 / 255.0F, 38 / 255.0F));
}

TEST(g3d_Utils, NamedColorsSpreadEvenlyWithExactEnds) {
    const auto fill = [](const cow_List<cow_String>& names, int n) {
        Colors colors(static_cast<std::size_t>(n), g3d_Color(9, 9, 9, 9));
        g3d_Utils::FillInColorsAndInterpolate(names, n, colors.data());
        return colors;
    };
    const g3d_Color red(g3d_RED, 1);
    const g3d_Color green(g3d_GREEN, 1);
    const g3d_Color blue(g3d_BLUE, 1);
    EXPECT_EQ(fill({"Red", "Green", "#0000FF"}, 5),
              (Colors{red, Opaque(0.5F, 0.5F, 0), green, Opaque(0, 0.5F, 0.5F), blue}));
    EXPECT_EQ(fill({"Red", "White", "Green", "Black", "Blue"}, 3), (Colors{red, green, blue}));
    EXPECT_EQ(fill({"Red", "Blue"}, 1), Colors{red});
    EXPECT_EQ(fill({"Red"}, 3), (Colors{red, red, red}));
    EXPECT_EQ(fill({}, 1), Colors{g3d_Color(9, 9, 9, 9)});
    g3d_Utils::FillInColorsAndInterpolate({"nowhere"}, 0, nullptr);

    Colors untouched(2);
    EXPECT_THROW(g3d_Utils::FillInColorsAndInterpolate({"Red", "nowhere"}, 2, untouched.data()),
                 g3d_ColorErrorException);
    EXPECT_EQ(untouched, Colors(2));
}

}  // namespace
