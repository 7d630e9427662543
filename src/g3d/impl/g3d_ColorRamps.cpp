#include "g3d_Blend.h"
#include "g3d_ColorMap.h"
#include "g3d_RampFill.h"
#include "g3d_Utils.h"
#include "omi_Singleton.h"

#include <algorithm>
#include <vector>

namespace {

// The pure color of a hue.
g3d_Color OfHue(double hue, float alpha) noexcept {
    constexpr double kStep = 1.5259022e-05F;  // of 65535 in 1
    const _HSV hsv = PctToHSV(static_cast<float>(hue), 1, 1);
    const g3d_RGB16 rgb = HSVToRGB(hsv.hue, hsv.saturation, hsv.value);
    const auto component = [](std::uint16_t steps) { return static_cast<float>(steps * kStep); };
    return {component(rgb.red), component(rgb.green), component(rgb.blue), alpha};
}

}  // namespace

void g3d_Utils::Rainbow(g3d_Color* colors, int n, bool reverse, float alpha) {
    // Hues run from red to blue, the ramp from blue to red.
    g3d_FillRamp(colors, n, !reverse, g3d_Color(reverse ? g3d_RED : g3d_BLUE, alpha),
                 [alpha](double t) { return OfHue(t * 0.6666667, alpha); });
}

void g3d_Utils::BlueToRed(g3d_Color* colors, int n, bool reverse, float alpha) {
    g3d_FillRamp(colors, n, reverse, g3d_Color(reverse ? g3d_RED : g3d_BLUE, alpha),
                 [alpha](double t) {
                     return g3d_Color(static_cast<float>(t * t), 0.09F,
                                      static_cast<float>((1 - t) * (1 - t)), alpha);
                 });
}

void g3d_Utils::BlackToWhite(g3d_Color* colors, int n, bool reverse, float alpha) {
    g3d_FillRamp(colors, n, reverse, g3d_Color(reverse ? g3d_WHITE : g3d_BLACK, alpha),
                 [alpha](double t) {
                     const auto level = static_cast<float>(0.15 + 0.7 * t);
                     return g3d_Color(level, level, level, alpha);
                 });
}

void g3d_Utils::WrapAround(g3d_Color* colors, int n, float alpha) {
    g3d_FillRamp(colors, n, false, g3d_Color(g3d_GREEN, alpha), [alpha](double t) {
        const double hue = t + 0.3;
        return OfHue(hue > 1 ? hue - 1 : hue, alpha);
    });
}

void g3d_Utils::FillInColorsAndInterpolate(const cow_List<cow_String>& names, int n,
                                           g3d_Color* colors) {
    if (n < 1 || names.IsEmpty()) return;
    const g3d_ColorMap& map = omi_Singleton<g3d_ColorMap>::Instance();
    std::vector<g3d_Color> named;
    named.reserve(static_cast<std::size_t>(names.Length()));
    for (const cow_String& name : names)
        named.push_back(map.ConstGet(name));

    // Places are fractions of integers, so that those of the names are met exactly.
    const std::size_t steps = std::max(static_cast<std::size_t>(n) - 1, std::size_t{1});
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
        const std::size_t place = i * (named.size() - 1);
        const std::size_t at = place / steps;
        const double part = static_cast<double>(place % steps) / static_cast<double>(steps);
        colors[i] = part == 0 ? named[at] : g3d_Blend(named[at], named[at + 1], part);
    }
}
