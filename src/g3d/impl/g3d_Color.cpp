#include "g3d_Color.h"

#include "g3d_HueSectors.h"
#include "g3d_Srgb.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace {

struct Rgb {
    float red;
    float green;
    float blue;
};

constexpr Rgb kPresets[] = {
    {0, 0, 0},          {1, 0, 0},          {0, 1, 0},          {0, 0, 1},
    {0, 1, 1},          {1, 0, 1},          {1, 1, 0},          {1, 1, 1},
    {0.1F, 0.1F, 0.1F}, {0.2F, 0.2F, 0.2F}, {0.3F, 0.3F, 0.3F}, {0.4F, 0.4F, 0.4F},
    {0.5F, 0.5F, 0.5F}, {0.6F, 0.6F, 0.6F}, {0.7F, 0.7F, 0.7F}, {0.8F, 0.8F, 0.8F},
    {0.9F, 0.9F, 0.9F},
};
static_assert(std::size(kPresets) == g3d_GREY90 + 1);

// --- Text ----------------------------------------------------------------------------------------

constexpr unsigned char kNoDigit = 0xFF;

// The value of every character as a hexadecimal digit.
constexpr auto kDigits = [] {
    std::array<unsigned char, 256> digits{};
    digits.fill(kNoDigit);
    for (unsigned i = 0; i < 16; ++i) {
        digits[static_cast<unsigned char>("0123456789ABCDEF"[i])] = static_cast<unsigned char>(i);
        digits[static_cast<unsigned char>("0123456789abcdef"[i])] = static_cast<unsigned char>(i);
    }
    return digits;
}();

unsigned DigitAt(std::string_view text, std::size_t at) noexcept {
    return at < text.size() ? kDigits[static_cast<unsigned char>(text[at])] : kNoDigit;
}

bool IsOneOf(std::string_view text, std::size_t at, std::string_view characters) noexcept {
    return at < text.size() && characters.find(text[at]) != std::string_view::npos;
}

// Reads one "%2X" as the C library does, taking it off the text; false where it does not match.
bool ScanComponent(std::string_view& text, unsigned& component) noexcept {
    if (const unsigned high = DigitAt(text, 0), low = DigitAt(text, 1); (high | low) != kNoDigit) {
        component = 16 * high + low;
        text.remove_prefix(2);
        return true;
    }
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    std::size_t at = 0;
    const bool isNegative = IsOneOf(text, 0, "-");
    if (IsOneOf(text, 0, "+-")) ++at;
    unsigned value = DigitAt(text, at++);
    if (value == kNoDigit) return false;
    if (at < 2 && value == 0 && IsOneOf(text, at, "xX")) {
        ++at;  // "0x" leaves no room for a digit, and counts as 0
    } else if (at < 2 && DigitAt(text, at) != kNoDigit) {
        value = 16 * value + DigitAt(text, at++);
    }
    component = isNegative ? 0U - value : value;
    text.remove_prefix(at);
    return true;
}

// --- Contrast ------------------------------------------------------------------------------------

float Limited(float component) noexcept { return component > 0 ? std::min(component, 1.0F) : 0; }

double Light(float component) noexcept { return g3d_LightOfSrgb(Limited(component)); }

double Luminance(const g3d_Color& color) noexcept {
    return 0.2126 * Light(color.Red()) + 0.7152 * Light(color.Green()) +
           0.0722 * Light(color.Blue());
}

double Contrast(double luminance, double other) noexcept {
    return (std::max(luminance, other) + 0.05) / (std::min(luminance, other) + 0.05);
}

// The color in whole bytes, moved by k / 255 of the way to white or black, rounded toward that.
g3d_Color Moved(const g3d_Color& color, bool toWhite, unsigned k) noexcept {
    const unsigned rgba = color.GetRGBA();
    const auto component = [&](int shift) {
        const unsigned byte = rgba >> shift & 0xFF;
        const unsigned way = toWhite ? 255 - byte : byte;
        const unsigned move = (way * k + 254) / 255;
        return static_cast<float>(toWhite ? byte + move : byte - move) / 255.0F;
    };
    return {component(24), component(16), component(8), color.Alpha()};
}

// The color itself, or the nearest on its way to white or black that reaches the contrast. It goes
// on to the side of the background on which it lies, unless the contrast is not to be had there.
g3d_Color StandingOut(const g3d_Color& color, const g3d_Color& background,
                      double contrast) noexcept {
    const double ground = Luminance(background);
    const double groundInBytes = Luminance(Moved(background, false, 0));
    const auto reaches = [&](const g3d_Color& other) {
        const double luminance = Luminance(other);
        return std::min(Contrast(luminance, ground), Contrast(luminance, groundInBytes)) >=
               contrast;
    };
    if (reaches(color) && reaches(Moved(color, false, 0))) return color;
    const double own = Luminance(color);
    const double white = Contrast(1, ground);
    const double black = Contrast(0, ground);
    const bool toWhite = own > ground   ? white >= contrast
                         : own < ground ? black < contrast
                                        : white > black;
    unsigned tooNear = 0;
    unsigned enough = 255;
    while (enough - tooNear > 1) {
        const unsigned middle = (tooNear + enough) / 2;
        (reaches(Moved(color, toWhite, middle)) ? enough : tooNear) = middle;
    }
    return Moved(color, toWhite, enough);
}

}  // namespace

void g3d_Color::Set(g3d_PresetColorEnum preset, float alpha) noexcept {
    const auto index = static_cast<std::size_t>(preset);
    const Rgb& rgb = kPresets[index < std::size(kPresets) ? index : std::size_t{g3d_BLACK}];
    *this = g3d_Color(rgb.red, rgb.green, rgb.blue, alpha);
}

void g3d_Color::Set(const g3d_Color& other, float alpha) noexcept {
    *this = g3d_Color(other._red, other._green, other._blue, alpha);
}

void g3d_Color::Set(unsigned rgba) noexcept {
    constexpr float kStep = 0.003921568859368563F;  // not the same as division by 255
    const auto component = [rgba](int shift) {
        return static_cast<float>(rgba >> shift & 0xFF) * kStep;
    };
    *this = g3d_Color(component(24), component(16), component(8), component(0));
}

void g3d_Color::Set(const cow_String& text, float alpha) noexcept {
    std::string_view rest = text.View();
    if (rest.empty() || rest.front() != '#') return;
    rest.remove_prefix(1);
    unsigned components[3] = {};
    for (unsigned& component : components) {
        if (!ScanComponent(rest, component)) break;
    }
    const auto over255 = [](unsigned byte) { return static_cast<float>(byte) / 255.0F; };
    *this =
        g3d_Color(over255(components[0]), over255(components[1]), over255(components[2]), alpha);
}

unsigned g3d_Color::GetRGBA() const noexcept {
    const auto byte = [](float component) {
        const double scaled = static_cast<double>(component) * 255;
        return scaled > 0 ? static_cast<unsigned>(std::min(scaled, 255.0)) : 0U;
    };
    return byte(_red) << 24 | byte(_green) << 16 | byte(_blue) << 8 | byte(_alpha);
}

void g3d_Color::Clamp() noexcept {
    *this = g3d_Color(Limited(_red), Limited(_green), Limited(_blue), Limited(_alpha));
}

_HSV g3d_Color::GetHSV() const noexcept {
    constexpr double kSixth = 0.16666667F;
    const auto greater = [](float a, float b) { return a > b ? a : b; };
    const auto less = [](float a, float b) { return a < b ? a : b; };
    const float max = greater(greater(_red, _green), _blue);
    if (max == 0) return {0, 0, 0};
    const double range = static_cast<double>(max) - less(less(_red, _green), _blue);
    const auto saturation = static_cast<float>(range / max);
    if (saturation == 0) return {0, saturation, max};

    // Red wins ties, then green. Looked up, not branched on: no processor foresees which it is.
    const int greatest = static_cast<int>(_red != max) << static_cast<int>(_green != max);
    const float round[] = {_red, _green, _blue, _red, _green};
    const double difference = static_cast<double>(round[greatest + 1]) - round[greatest + 2];
    const double sixths = difference / range + 2 * greatest;
    const double turn = sixths < 0 ? 6 : 0;
    return {static_cast<float>((sixths + turn) * kSixth), saturation, max};
}

void g3d_Color::SetHSV(_HSV hsv) noexcept {
    // Without saturation every sector is grey.
    const double sixths = hsv.saturation == 0 ? 0 : static_cast<double>(hsv.hue) * 6;
    if (!(sixths > -1 && sixths < 6)) return;
    const g3d_Shades shades = g3d_ShadesOf(sixths, hsv.saturation, hsv.value);
    *this = g3d_Color(static_cast<float>(shades.red), static_cast<float>(shades.green),
                      static_cast<float>(shades.blue), _alpha);
}

void g3d_Color::Invert(const g3d_Color& color, float alpha) noexcept {
    constexpr double kGraphics = 3;
    const g3d_Color complement(1 - Limited(color._red), 1 - Limited(color._green),
                               1 - Limited(color._blue), alpha);
    *this = StandingOut(complement, color, kGraphics);
}

g3d_Color g3d_Color::GetContrastingColor(const g3d_Color& background) const noexcept {
    constexpr double kText = 4.5;
    return StandingOut(*this, background, kText);
}

double g3d_Color::ContrastRatio(const g3d_Color& a, const g3d_Color& b) noexcept {
    return Contrast(Luminance(a), Luminance(b));
}

aio_ostream& operator<<(aio_ostream& stream, const g3d_Color& color) {
    char text[96];
    char* end = text;
    *end++ = '(';
    for (const float component : {color._red, color._green, color._blue, color._alpha}) {
        end = std::to_chars(end, text + sizeof text, component).ptr;
        *end++ = ',';
        *end++ = ' ';
    }
    end[-2] = ')';
    return stream << std::string_view(text, static_cast<std::size_t>(end - 1 - text));
}
