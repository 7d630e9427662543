#pragma once

#include "CaeUtilsExport.h"
#include "aio_ostream.h"
#include "cow_String.h"
#include "g3d_HSV.h"
#include "g3d_PresetColorEnum.h"

/// A colour: red, green, blue and alpha, nominally in [0, 1]; nothing is clamped unless said so.
///
/// A plain value of four contiguous floats, in that order. Nothing here raises. NaN and infinite
/// components are carried along; where a byte or a luminance is wanted, NaN counts as 0.
class CAE_API g3d_Color {
public:
    /// Opaque black.
    constexpr g3d_Color() noexcept = default;
    constexpr g3d_Color(float red, float green, float blue, float alpha) noexcept
        : _red(red), _green(green), _blue(blue), _alpha(alpha) {}
    g3d_Color(g3d_PresetColorEnum preset, float alpha) noexcept { Set(preset, alpha); }

    [[nodiscard]] constexpr float Red() const noexcept { return _red; }
    [[nodiscard]] constexpr float Green() const noexcept { return _green; }
    [[nodiscard]] constexpr float Blue() const noexcept { return _blue; }
    [[nodiscard]] constexpr float Alpha() const noexcept { return _alpha; }

    void SetBlack(float alpha) noexcept { Set(g3d_BLACK, alpha); }
    void SetRed(float alpha) noexcept { Set(g3d_RED, alpha); }
    void SetGreen(float alpha) noexcept { Set(g3d_GREEN, alpha); }
    void SetBlue(float alpha) noexcept { Set(g3d_BLUE, alpha); }
    void SetCyan(float alpha) noexcept { Set(g3d_CYAN, alpha); }
    void SetMagenta(float alpha) noexcept { Set(g3d_MAGENTA, alpha); }
    void SetYellow(float alpha) noexcept { Set(g3d_YELLOW, alpha); }
    void SetWhite(float alpha) noexcept { Set(g3d_WHITE, alpha); }
    void SetGrey10(float alpha) noexcept { Set(g3d_GREY10, alpha); }
    void SetGrey20(float alpha) noexcept { Set(g3d_GREY20, alpha); }
    void SetGrey30(float alpha) noexcept { Set(g3d_GREY30, alpha); }
    void SetGrey40(float alpha) noexcept { Set(g3d_GREY40, alpha); }
    void SetGrey50(float alpha) noexcept { Set(g3d_GREY50, alpha); }
    void SetGrey60(float alpha) noexcept { Set(g3d_GREY60, alpha); }
    void SetGrey70(float alpha) noexcept { Set(g3d_GREY70, alpha); }
    void SetGrey80(float alpha) noexcept { Set(g3d_GREY80, alpha); }
    void SetGrey90(float alpha) noexcept { Set(g3d_GREY90, alpha); }

    /// A value that is no preset gives black.
    void Set(g3d_PresetColorEnum preset, float alpha) noexcept;
    /// The colour of \p other with this \p alpha.
    void Set(const g3d_Color& other, float alpha) noexcept;
    /// From bytes, red in bits 24 to 31, then green, blue, alpha; each times the float 1/255.
    void Set(unsigned rgba) noexcept;
    /// From a text like "#80FF00": a byte each of red, green and blue, over 255, read as sscanf
    /// reads "#%02X%02X%02X": blanks before a component are skipped, a sign and "0x" count among
    /// its two characters, and from the first that does not parse on they are 0. A text that does
    /// not begin with '#' changes nothing.
    void Set(const cow_String& text, float alpha) noexcept;

    /// Bytes, red in bits 24 to 31, then green, blue, alpha: each component times 255, truncated,
    /// limited to [0, 255]; NaN gives 0.
    [[nodiscard]] unsigned GetRGBA() const noexcept;

    /// Limits all four to [0, 1]; NaN becomes 0.
    void Clamp() noexcept;

    /// Hue, saturation and value of the components as they stand; those of grey have hue 0.
    [[nodiscard]] _HSV GetHSV() const noexcept;
    /// The colour of \p hsv as it stands, unlimited; alpha stays. Unless the saturation is 0, a hue
    /// that is NaN or whose number of sixths, cut toward zero, is not in [0, 5] changes nothing.
    void SetHSV(_HSV hsv) noexcept;

    /// The complement of \p color, moved on toward black or white while its contrast to \p color
    /// is below 3 (WCAG 2.1, 1.4.11: graphical objects); limited to [0, 1].
    void Invert(const g3d_Color& color, float alpha) noexcept;
    /// This colour, moved toward black or white by no more than it takes to reach a contrast of
    /// 4.5 to \p background (WCAG 2.1, 1.4.3: text), exact in bytes too. Alpha stays, those of
    /// both count as opaque. A colour that stands out already is returned as it is.
    [[nodiscard]] g3d_Color GetContrastingColor(const g3d_Color& background) const noexcept;
    /// The contrast of two colours, opaque and limited to [0, 1]: 1 for equal ones, 21 for black
    /// and white. Source: WCAG 2.1, definitions of contrast ratio and relative luminance.
    [[nodiscard]] static double ContrastRatio(const g3d_Color& a, const g3d_Color& b) noexcept;

    /// By component, alpha too.
    friend constexpr g3d_Color operator+(const g3d_Color& a, const g3d_Color& b) noexcept {
        return {a._red + b._red, a._green + b._green, a._blue + b._blue, a._alpha + b._alpha};
    }
    friend constexpr g3d_Color operator-(const g3d_Color& a, const g3d_Color& b) noexcept {
        return {a._red - b._red, a._green - b._green, a._blue - b._blue, a._alpha - b._alpha};
    }
    friend constexpr g3d_Color operator*(const g3d_Color& a, const g3d_Color& b) noexcept {
        return {a._red * b._red, a._green * b._green, a._blue * b._blue, a._alpha * b._alpha};
    }
    /// Exact comparison of all four.
    friend constexpr bool operator==(const g3d_Color&, const g3d_Color&) noexcept = default;

    /// "(1, 0.5, 0, 1)": each in the fewest digits that tell it from other floats.
    friend CAE_API aio_ostream& operator<<(aio_ostream& stream, const g3d_Color& color);

private:
    float _red = 0;
    float _green = 0;
    float _blue = 0;
    float _alpha = 1;
};
