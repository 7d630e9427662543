#include "aio_cerr.h"
#include "aio_ostream.h"
#include "atr_String.h"
#include "atr_translate.h"
#include "omi_complex.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfenv>
#include <cfloat>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numbers>
#include <random>

namespace {

std::string PrintfText(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.15g", value);
    return std::isnan(value) ? "nan" : text;
}

/// Doubles of all sizes, many of them decimals with few digits or halfway between two texts.
double RandomDouble(std::mt19937_64& random) {
    const double scale = std::pow(10.0, static_cast<double>(random() % 24) - 12.0);
    switch (random() % 4) {
        case 0:
            return std::bit_cast<double>(random());
        case 1:
            return static_cast<double>(random() % 100'000'000) * scale;
        case 2:
            return static_cast<double>(random() % 2'000'000'000'000'000) + 0.5;
        default:
            return std::ldexp(static_cast<double>(random() % 2'000'000),
                              -static_cast<int>(random() % 60));
    }
}

TEST(NumberText, HandValues) {
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        double value;
        const char* text;
    } cases[] = {{0.0, "0"},
                 {-0.0, "-0"},
                 {1.0, "1"},
                 {0.1, "0.1"},
                 {-2.5, "-2.5"},
                 {1e20, "1e+20"},
                 {123456789012345.0, "123456789012345"},
                 {999999999999999.0, "999999999999999"},
                 {999999999999999.5, "1e+15"},
                 {0.00012, "0.00012"},
                 {0.000012, "1.2e-05"},
                 {1.0 / 3.0, "0.333333333333333"},
                 {-DBL_MAX, "-1.79769313486232e+308"},
                 {DBL_MIN, "2.2250738585072e-308"},
                 {5e-324, "4.94065645841247e-324"},
                 {inf, "inf"},
                 {-inf, "-inf"},
                 {nan, "nan"},
                 {-nan, "nan"}};
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(atr_StringBase::FromDouble(value), text);
    }
    EXPECT_EQ(atr_StringBase::FromInt(std::numeric_limits<int>::min()), "-2147483648");
    EXPECT_EQ(atr_StringBase::FromUnsigned(4294967295u), "4294967295");
}

TEST(NumberText, IsThatOfPrintfInEveryRoundingMode) {
    std::mt19937_64 random(20);
    for (const int mode : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        for (int i = 0; i < 100'000; ++i) {
            const double value = RandomDouble(random);
            std::fesetround(mode);
            const std::string text = atr_StringBase::FromDouble(value);
            std::fesetround(FE_TONEAREST);
            ASSERT_EQ(text, PrintfText(value)) << std::hexfloat << value << " in mode " << mode;
        }
    }
}

TEST(NumberText, IgnoresTheLocale) {
    const std::string old = std::setlocale(LC_ALL, nullptr);
    if (!std::setlocale(LC_ALL, "de_DE.UTF-8") && !std::setlocale(LC_ALL, "de_DE")) {
        GTEST_SKIP() << "The locale de_DE is not installed";
    }
    const std::string printed = PrintfText(1.5);
    const std::string text = atr_StringBase::FromDouble(1.5);
    const std::string tie = atr_StringBase::FromDouble(123456789012345.5);
    std::setlocale(LC_ALL, old.c_str());
    EXPECT_EQ(printed, "1,5") << "the locale has no decimal comma: the test shows nothing";
    EXPECT_EQ(text, "1.5");
    EXPECT_EQ(tie, "123456789012346");
}

std::string German(std::string_view text) {
    if (text == "%s has %d nodes") {
        return "%s hat %d Knoten";
    }
    if (text == "Part %s, set %s") {
        return "Teil %s, Satz %d";
    }
    if (text == "%s of %s") {
        return "von %s";
    }
    return "<" + std::string(text) + ">";
}

class Translation : public testing::Test {
protected:
    ~Translation() override { atr_SetTranslationHook(nullptr); }
};

TEST_F(Translation, GoesThroughTheHookWhileThereIsOne) {
    EXPECT_EQ(atr_translate("Open"), atr_String("Open"));
    EXPECT_EQ(atr_SetTranslationHook(&German), nullptr);
    EXPECT_EQ(atr_translate("Open"), atr_String("<Open>"));
    EXPECT_EQ(atr_SetTranslationHook(nullptr), &German);
    EXPECT_EQ(atr_translate("Open"), atr_String("Open"));
}

TEST_F(Translation, FormatFillsThePlacesOfTheTranslation) {
    const auto text = [](const atr_String& formatted) { return std::string(formatted.View()); };
    EXPECT_EQ(text(atr_String::Format("%s has %d nodes", "Beam", -3)), "Beam has -3 nodes");
    EXPECT_EQ(text(atr_String::Format("100%% of %u", 4294967295u)), "100% of 4294967295");
    EXPECT_EQ(text(atr_String::Format("%s%s", atr_String("%s"), std::string("%d"))), "%s%d");
    EXPECT_EQ(text(atr_String::Format("5% x %", "unused")), "5% x %");
    EXPECT_EQ(text(atr_String::Format("%s and %s", "one")), "one and %s");
    EXPECT_EQ(text(atr_String::Format("[%s]", static_cast<const char*>(nullptr))), "[]");

    atr_SetTranslationHook(&German);
    EXPECT_EQ(text(atr_String::Format("%s has %d nodes", "Beam", 3)), "Beam hat 3 Knoten");
    EXPECT_EQ(text(atr_String::Format("Part %s, set %s", "A", "B")), "Part A, set B");
    EXPECT_EQ(text(atr_String::Format("%s of %s", "A", "B")), "A of B");
    EXPECT_EQ(text(atr_String::Format("no places")), "<no places>");
}

TEST(TranslatableText, SharesAndComparesByBytes) {
    atr_String text("caf\xc3\xa9");
    EXPECT_EQ(text.Length(), 5);
    const atr_String copy = text;
    EXPECT_EQ(copy.AsCharPtr(), text.AsCharPtr());
    const atr_String moved = std::move(text);
    EXPECT_TRUE(text.IsEmpty());  // NOLINT(bugprone-use-after-move): promised to be empty
    EXPECT_STREQ(text.AsCharPtr(), "");
    EXPECT_EQ(moved, copy);
    EXPECT_EQ(atr_String(static_cast<const char*>(nullptr)), atr_String());
    EXPECT_GT(copy.Compare("cafe"), 0);
    EXPECT_LT(atr_String("a").Compare("ab"), 0);
    text = copy;
    text = static_cast<const atr_String&>(text);
    EXPECT_STREQ(text.AsCharPtr(), "caf\xc3\xa9");
}

TEST(TextOutput, WritesEveryKindToAFunctionOrAFile) {
    std::string collected;
    aio_ostream sink(
        [](void* context, const char* text, std::size_t length) {
            static_cast<std::string*>(context)->append(text, length);
        },
        &collected);
    sink << "a" << 'b' << -1 << ' ' << 2u << ' ' << 0.1 << atr_String(" c") << std::string("d")
         << static_cast<const char*>(nullptr);
    EXPECT_EQ(collected, "ab-1 2 0.1 cd");

    std::FILE* const file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    aio_ostream stream(file);
    stream << "x = " << 1e20;
    stream.Flush();
    std::rewind(file);
    char read[32] = {};
    EXPECT_EQ(std::fread(read, 1, sizeof read, file), 9u);
    EXPECT_STREQ(read, "x = 1e+20");
    std::fclose(file);

    testing::internal::CaptureStderr();
    aio_cerr() << "warning " << 1 << "\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "warning 1\n");
}

TEST(Complex, KnowsBothForms) {
    const omi_complex plain(3.0, -4.0);
    EXPECT_EQ(plain.ConvertedReal(), 3.0);
    EXPECT_EQ(plain.ConvertedImag(), -4.0);
    const omi_complex polar = omi_complex::FromPolar(2.0, std::numbers::pi / 6.0);
    EXPECT_TRUE(polar.IsConverted());
    EXPECT_EQ(polar.Real(), 2.0);
    EXPECT_DOUBLE_EQ(polar.ConvertedReal(), std::numbers::sqrt3);
    EXPECT_DOUBLE_EQ(polar.ConvertedImag(), 1.0);
    EXPECT_EQ(omi_complex::FromPolar(5.0, 0.0), omi_complex(5.0));
    EXPECT_NE(plain, omi_complex(3.0, 4.0));
}

}  // namespace
