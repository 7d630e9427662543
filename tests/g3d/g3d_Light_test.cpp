#include "g3d_ColorErrorException.h"
#include "g3d_ColorMap.h"
#include "g3d_LineThicknessEnum.h"
#include "g3d_MarkerSizeEnum.h"
#include "g3d_Studio.h"
#include "g3d_Utils.h"
#include "nex_AssertException.h"
#include "omi_Singleton.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <sstream>
#include <tuple>

namespace {

// What the defaults of a studio decide, one line per light that is on.
std::string Describe(const g3d_Studio& studio) {
    std::ostringstream text;
    text << studio.IsQualityAssurance() << ' ' << studio.Shininess() << ' '
         << studio.Background().View();
    for (int i = 0; i < g3d_Studio::kLights; ++i) {
        const g3d_Light& light = studio.Light(i);
        if (light.IsOn()) {
            text << '\n'
                 << i << ": " << light.Ambient().View() << ' ' << light.Diffuse().View() << ' '
                 << light.Specular().View() << ' ' << light.Latitude() << ' ' << light.Longitude()
                 << " w" << light.Position().w;
        }
    }
    return text.str();
}

constexpr const char* kInteractive =
    "0 65 #404040\n0: Black #7f7f7f #595959 10 10 w0\n1: Black #595959 Black 10 -10 w0";
constexpr const char* kQualityAssurance = "1 25 #333333\n0: Black White Black 26.5651 26.5651 w1";

// Runs in a process of its own: is its first studio as expected, and the second one the same after
// the environment has changed?
[[noreturn]] void LookInChild(const char* value, const char* expected) {
    value == nullptr ? unsetenv("TVX_QA_PRINT") : setenv("TVX_QA_PRINT", value, 1);
    const std::string first = Describe(g3d_Studio());
    value == nullptr ? setenv("TVX_QA_PRINT", "1", 1) : unsetenv("TVX_QA_PRINT");
    std::exit(first == expected && Describe(g3d_Studio()) == first ? 0 : 1);
}

TEST(g3d_StudioDeathTest, ThePresenceOfTheVariableDecidesOncePerProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // a new process, which has no studio yet
    EXPECT_EXIT(LookInChild(nullptr, kInteractive), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(LookInChild("", kQualityAssurance), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(LookInChild("0", kQualityAssurance), testing::ExitedWithCode(0), "");
}

TEST(g3d_Light, AnglesPlaceItOnTheUnitSphereAndKeepW) {
    g3d_Light light;
    EXPECT_EQ(light.Position(), g3d_Point(0, 0, 1, 0));
    const double radian = std::acos(-1.0) / 180;
    for (const auto& [latitude, longitude, w] :
         {std::tuple(10.0F, -10.0F, 0.0F), {26.565052F, 26.565052F, 1}, {400, -725, 2.5F}}) {
        light.SetPosition(g3d_Point(9, 9, 9, w));
        light.SetPositionVector(latitude, longitude);
        const double cosine = std::cos(latitude * radian);
        EXPECT_NEAR(light.Position().x, cosine * std::sin(longitude * radian), 1e-7);
        EXPECT_NEAR(light.Position().y, std::sin(latitude * radian), 1e-7);
        EXPECT_NEAR(light.Position().z, cosine * std::cos(longitude * radian), 1e-7);
        EXPECT_EQ(light.Position().w, w);
        EXPECT_EQ(light.Latitude(), latitude);
    }
    // The cosine of a right angle in double: not 0, as the sine of the latitude would be.
    light.SetPositionVector(0, 90);
    EXPECT_EQ(light.Position().y, 6.123234e-17F);

    const g3d_Light before = light;
    light.SetPositionVector(std::numeric_limits<float>::quiet_NaN(), 0);
    light.SetPositionVector(0, std::numeric_limits<float>::infinity());
    EXPECT_EQ(light, before);
    EXPECT_EQ(light.Longitude(), 90);
}

TEST(g3d_Studio, EqualityCoversAllButTheAnglesOfLights) {
    using Change = void (*)(g3d_Studio&);
    const Change changes[] = {
        [](g3d_Studio& studio) { studio.Light(7).SetOn(true); },
        [](g3d_Studio& studio) { studio.Light(0).SetAmbient("Red"); },
        [](g3d_Studio& studio) { studio.Light(1).SetDiffuse("Red"); },
        [](g3d_Studio& studio) { studio.Light(2).SetSpecular("Red"); },
        [](g3d_Studio& studio) { studio.Light(3).SetPosition(g3d_Point(0, 0, 1, 1)); },
        [](g3d_Studio& studio) { studio.Light(4).SetAttenuation(2, 0, 0); },
        [](g3d_Studio& studio) { studio.Light(5).SetAttenuation(1, 2, 0); },
        [](g3d_Studio& studio) { studio.Light(6).SetAttenuation(1, 0, 2); },
        [](g3d_Studio& studio) { studio.SetBackground("White"); },
        [](g3d_Studio& studio) { studio.SetOption(0, true); },
        [](g3d_Studio& studio) { studio.SetShininess(NAN); },
    };
    const g3d_Studio studio;
    g3d_Studio changed = studio;
    for (const Change change : changes) {
        changed = studio;
        EXPECT_EQ(changed, studio);
        change(changed);
        EXPECT_NE(changed, studio);
        EXPECT_EQ(changed, changed);  // even with a NaN
    }
    changed = studio;
    changed.Light(4).SetPositionVector(0, 360);
    changed.Light(4).SetPosition(studio.Light(4).Position());
    EXPECT_EQ(changed, studio);

    EXPECT_EQ(test_Message<nex_AssertException>([&] { changed.Light(8).SetOn(true); }),
              "index >= 0 && index < kLights");
    EXPECT_EQ(test_Message<nex_AssertException>([&] { changed.SetOption(-1, true); }),
              "index >= 0 && index < kOptions");
}

TEST(g3d_Light, ColoursAreLookedUpWhenTheyAreUsed) {
    g3d_Light light;
    EXPECT_EQ(light.DiffuseColor(), g3d_Color(179.0F / 255, 179.0F / 255, 179.0F / 255, 1));
    light.SetSpecular("Ash 50%");
    EXPECT_EQ(
        test_Message<g3d_ColorErrorException>([&] { static_cast<void>(light.SpecularColor()); }),
        "Ash 50% is not a valid color name.");
    auto& map = omi_Singleton<g3d_ColorMap>::Instance();
    map.AddByRGB("Ash 50%", 0.5F, 0.25F, 0.125F);
    EXPECT_EQ(light.SpecularColor(), g3d_Color(0.5F, 0.25F, 0.125F, 1));
    map.Remove("Ash 50%");
}

TEST(g3d_Utils, ChecksRaiseInEveryBuildAndSettingsBecomeDrawingUnits) {
    EXPECT_EQ(test_Raised<nex_AssertException>([] { g3d_Utils::Assert(false, "a < b", "f", 7); }),
              "f:7: a < b");
    EXPECT_NO_THROW(g3d_Utils::Assert(true, "a < b", "f", 7));
    EXPECT_THROW(g3d_Utils::AssertMem(nullptr), std::bad_alloc);
    const float thicknesses[] = {0.2F, 0.2F, 0.5F, 0.8F, 1.2F, 0.2F};
    const int sizes[] = {2, 2, 3, 4, 2, 2};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(g3d_Utils::ConvertLineThickness(g3d_LineThicknessEnum(i - 1)), thicknesses[i]);
        EXPECT_EQ(g3d_Utils::ConvertMarkerSize(g3d_MarkerSizeEnum(i - 1)), sizes[i]);
    }
}

}  // namespace
