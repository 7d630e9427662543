#include "g3d_Color.h"

#include "g3d_ColorArray.h"
#include "g3d_HSV.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr g3d_Color kGrey(0.5F, 0.5F, 0.5F, 0.5F);

std::string Text(const g3d_Color& color) {
    std::string text;
    aio_ostream stream(
        [](void* to, const char* part, std::size_t length) {
            static_cast<std::string*>(to)->append(part, length);
        },
        &text);
    stream << color;
    return text;
}

TEST(g3d_Color, PresetsAreReachedByValueAndBySetter) {
    g3d_Color color;
    color.SetMagenta(0.5F);
    EXPECT_EQ(color, g3d_Color(1, 0, 1, 0.5F));
    EXPECT_EQ(color, g3d_Color(g3d_MAGENTA, 0.5F));
    color.SetGrey70(2);
    EXPECT_EQ(color, g3d_Color(0.7F, 0.7F, 0.7F, 2));
    for (const int unknown : {-1, g3d_GREY90 + 1})
        EXPECT_EQ(g3d_Color(static_cast<g3d_PresetColorEnum>(unknown), 1), g3d_Color());
}

TEST(g3d_Color, BytesGoRoundAndPackingTruncates) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        const unsigned rgba = byte << 24 | (255 - byte) << 16 | (byte ^ 0x55) << 8 | (byte ^ 0xAA);
        g3d_Color times;
        times.Set(rgba);
        EXPECT_EQ(times.GetRGBA(), rgba);
        EXPECT_EQ(times.Red(), static_cast<float>(byte * 0.003921568859368563));

        char text[8];
        std::snprintf(text, sizeof text, "#%02X%02x%02X", byte, 255 - byte, byte ^ 0x55);
        g3d_Color over;
        over.Set(cow_String(text), 1);
        EXPECT_EQ(over.GetRGBA(), rgba | 0xFF) << text;
        EXPECT_EQ(over.Red(), static_cast<float>(byte) / 255.0F);  // not the product
    }
    EXPECT_EQ(g3d_Color(0.999F, 0.5F, 0.2F, 0.1F).GetRGBA(), 0xFE7F3319U);
    EXPECT_EQ(g3d_Color(kNaN, 1e30F, -1e30F, kInfinity).GetRGBA(), 0x00FF00FFU);
    g3d_Color color(kNaN, 2, -kInfinity, 0.5F);
    color.Clamp();
    EXPECT_EQ(color, g3d_Color(0, 1, 0, 0.5F));
}

TEST(g3d_Color, HexadecimalTextIsReadAsSscanfReadsIt) {
    std::mt19937 random(20);
    const char kCharacters[] = "0123456789abcdefABCDEFgx+- \t\n#%";
    for (int i = 0; i < 100000; ++i) {
        std::string text = "#";
        for (auto left = random() % 9; left > 0; --left)
            text += kCharacters[random() % (sizeof kCharacters - 1)];
        // A bare "0x" is what C libraries disagree on; its cases are below.
        if (text.find("0x") != std::string::npos) continue;
        unsigned red = 0;
        unsigned green = 0;
        unsigned blue = 0;
        static_cast<void>(std::sscanf(text.c_str(), "#%02X%02X%02X", &red, &green, &blue));
        g3d_Color color = kGrey;
        color.Set(cow_String(text), 0.25F);
        ASSERT_EQ(color, g3d_Color(static_cast<float>(red) / 255, static_cast<float>(green) / 255,
                                   static_cast<float>(blue) / 255, 0.25F))
            << text;
    }
    const std::pair<cow_String, g3d_Color> kCases[] = {
        // clang-format off
        {"#", {0, 0, 0, 1}}, {"#FFxx33", {1, 0, 0, 1}}, {"#0xFF33", {0, 1, 0.2F, 1}},
        {"# F -1\v\fFF", {15 / 255.0F, 4294967295.0F / 255.0F, 1, 1}},
        {cow_String(std::string("#FF\0FF", 6)), {1, 0, 0, 1}}, {" #FF0000", kGrey}, {"", kGrey},
        // clang-format on
    };
    for (const auto& [text, expected] : kCases) {
        g3d_Color color = kGrey;
        color.Set(text, 1);
        EXPECT_EQ(color, expected) << text.View();
    }
}

TEST(g3d_Color, HsvGoesThereAndBack) {
    const std::pair<g3d_Color, _HSV> kCases[] = {
        // clang-format off
        {{1, 1, 0, 1}, {0.16666667F, 1, 1}},     {{0.5F, 0.5F, 0.5F, 1}, {0, 0, 0.5F}},
        {{0, 0, 0, 1}, {0, 0, 0}},               {{1, 0, 1, 1}, {5 * 0.16666667F, 1, 1}},
        {{0, 0.5F, 0.5F, 1}, {0.5F, 1, 0.5F}},   {{0.75F, 1, 0.5F, 1}, {0.25F, 0.5F, 1}},
        // clang-format on
    };
    for (const auto& [color, hsv] : kCases)
        EXPECT_EQ(color.GetHSV(), hsv) << Text(color);

    std::mt19937 random(21);
    std::uniform_real_distribution<float> uniform(0, 1);
    for (int i = 0; i < 10000; ++i) {
        const g3d_Color color(uniform(random), uniform(random), uniform(random), 0.5F);
        g3d_Color back(0, 0, 0, 0.5F);
        back.SetHSV(color.GetHSV());
        back = back - color;
        ASSERT_LT(std::hypot(back.Red(), back.Green(), back.Blue()), 1e-6) << Text(color);
    }

    for (const float hue : {1.0F, 7.0F, -0.2F, 1e30F, -kInfinity, kNaN}) {
        g3d_Color color(g3d_RED, 0.5F);
        color.SetHSV({hue, 0.5F, 0.5F});
        EXPECT_EQ(color, g3d_Color(g3d_RED, 0.5F)) << hue;
        color.SetHSV({hue, 0, 0.25F});
        EXPECT_EQ(color, g3d_Color(0.25F, 0.25F, 0.25F, 0.5F)) << hue;
    }
}

TEST(g3d_HSV, SixteenBitsRoundAndTakeAnyFloat) {
    const struct {
        float h, s, v;
        g3d_RGB16 rgb;
    } kCases[] = {
        // clang-format off
        {0, 0, 0.5F, {32768, 32768, 32768}},     {0.25F, 1, 1, {32768, 65535, 0}},
        {0.75F, 0.5F, 1, {49151, 32768, 65535}}, {1, 1, 1, {65535, 0, 0}},
        {-0.25F, 1, 1, {32768, 0, 65535}},       {-1e-30F, 1, 1, {65535, 0, 0}},
        {kNaN, 1, 1, {65535, 0, 0}},             {0, kNaN, 1, {65535, 65535, 65535}},
        {0, 7, 7, {65535, 0, 0}},                {0, -1, -1, {0, 0, 0}},
        {0, 0, 9, {65535, 65535, 65535}},        {0, 0, kNaN, {0, 0, 0}},
        // clang-format on
    };
    for (const auto& expected : kCases) {
        EXPECT_EQ(HSVToRGB(expected.h, expected.s, expected.v), expected.rgb) << expected.h;
    }
    EXPECT_EQ(PctToHSV(0.5F, 3, -2), (_HSV{0.5F, 1, -2}));
}

// WCAG 2.1, "relative luminance", of a color in bytes.
long double Luminance(unsigned rgba) {
    const auto light = [](unsigned byte) {
        const long double c = byte / 255.0L;
        return c <= 0.03928L ? c / 12.92L : std::pow((c + 0.055L) / 1.055L, 2.4L);
    };
    return 0.2126L * light(rgba >> 24) + 0.7152L * light(rgba >> 16 & 255) +
           0.0722L * light(rgba >> 8 & 255);
}

long double Contrast(unsigned a, unsigned b) {
    const long double x = Luminance(a);
    const long double y = Luminance(b);
    return (std::max(x, y) + 0.05L) / (std::min(x, y) + 0.05L);
}

TEST(g3d_Color, ContrastingColorsCanBeReadOnTheirBackground) {
    std::mt19937 random(22);
    for (int i = 0; i < 20000; ++i) {
        g3d_Color background;
        background.Set(static_cast<unsigned>(random()));
        g3d_Color color;
        // Equal and grey ones are the hard ones.
        color.Set(i % 4 == 0 ? background.GetRGBA() : static_cast<unsigned>(random()));
        const g3d_Color contrasting = color.GetContrastingColor(background);
        const unsigned ground = background.GetRGBA();
        ASSERT_GE(Contrast(contrasting.GetRGBA(), ground), 4.5L) << Text(color) << Text(background);
        ASSERT_NEAR(g3d_Color::ContrastRatio(contrasting, background),
                    static_cast<double>(Contrast(contrasting.GetRGBA(), ground)), 1e-4);
        ASSERT_EQ(contrasting.Alpha(), color.Alpha());
        // Left alone, or moved no further than it takes.
        ASSERT_TRUE(contrasting == color || Contrast(contrasting.GetRGBA(), ground) < 4.9L);
        ASSERT_TRUE(contrasting == color || Contrast(color.GetRGBA(), ground) < 4.5001L);
        g3d_Color inverse;
        inverse.Invert(background, 0.5F);
        ASSERT_GE(Contrast(inverse.GetRGBA(), ground), 3.0L) << Text(background);
        ASSERT_EQ(inverse.Alpha(), 0.5F);
    }
    g3d_Color inverse;
    inverse.Invert(g3d_Color(1, 0, 0, 1), 1);
    EXPECT_EQ(inverse, g3d_Color(0, 1, 1, 1));
    EXPECT_EQ(g3d_Color(kNaN, kNaN, kNaN, 1).GetContrastingColor({-kInfinity, kNaN, -1, 1}),
              g3d_Color(117 / 255.0F, 117 / 255.0F, 117 / 255.0F, 1));
}

TEST(g3d_Color, ComponentsAddMultiplyAndPrint) {
    const g3d_Color a(0.5F, 0.25F, 1, 1);
    const g3d_Color b(0.25F, 0.5F, 0.5F, 0.5F);
    EXPECT_EQ((a + b) * (a - b), g3d_Color(0.1875F, -0.1875F, 0.75F, 0.75F));
    EXPECT_EQ(Text({0.1F, -1, kInfinity, std::numeric_limits<float>::min()}),
              "(0.1, -1, inf, 1.1754944e-38)");
}

TEST(g3d_ColorArray, KnowsItsColorsAndStopsAt254) {
    g3d_ColorArray palette;
    for (unsigned i = 0; i < 254; ++i) {
        ASSERT_EQ(palette.CheckColor(g3d_Color(static_cast<float>(i) / 255.0F, 0.5F, 0, 1)), i);
    }
    EXPECT_EQ(palette.CheckColor(g3d_Color(1, 1, 1, 1)), 254U);
    EXPECT_EQ(palette.Length(), 254U);
    EXPECT_EQ(palette.CheckColor(g3d_Color(7 / 255.0F, 0.5F, 0, 0.1F)), 7U);
    EXPECT_EQ(palette.GetColor(7), g3d_Color(7 / 255.0F, 127 / 255.0F, 0, 1));
    EXPECT_EQ(palette.GetColor(254), g3d_Color(1, 1, 1, 1));
    EXPECT_EQ(palette.GetColor(~0U), g3d_Color(1, 1, 1, 1));
    const std::pair<unsigned, g3d_Color> kThrees[] = {
        {3, palette.GetColor(3)}, {254, {1, 1, 1, 1}}, {255, {0.5F, 0.5F, 0.5F, 1}}};
    for (const auto& [index, expected] : kThrees) {
        float three[] = {0.5F, 0.5F, 0.5F};
        palette.GetColor(index, three[0], three[1], three[2]);
        EXPECT_EQ(g3d_Color(three[0], three[1], three[2], 1), expected) << index;
    }
    EXPECT_EQ(g3d_ColorArray::IntToFloatColor(0x80402010U),
              g3d_Color(16 / 255.0F, 32 / 255.0F, 64 / 255.0F, 128 / 255.0F));
}

TEST(g3d_ColorArray, CopiesAreValuesAndEveryEntryChanges) {
    g3d_ColorArray palette;
    palette.CheckColor(g3d_Color(0.1F, 0.2F, 0.3F, 1));
    palette.CheckColor(g3d_Color(1, 0.9F, 1, 1));
    g3d_ColorArray copy(palette);
    copy.SetAlpha(0.5F);
    EXPECT_EQ(palette.GetColor(1).Alpha(), 1);
    EXPECT_EQ(copy.GetColor(0).Alpha(), 127 / 255.0F);

    copy.ContrastColors(kGrey);
    for (unsigned i = 0; i < 2; ++i) {
        EXPECT_GE(Contrast(copy.GetColor(i).GetRGBA(), kGrey.GetRGBA()), 4.5L);
        EXPECT_EQ(copy.GetColor(i).Alpha(), 127 / 255.0F);
    }
    copy = palette;
    palette.Cleanup();
    EXPECT_EQ(palette.CheckColor(kGrey), 0U);
    EXPECT_EQ(copy.Length(), 2U);
}

}  // namespace
