#pragma once

#include "CaeUtilsExport.h"
#include "cow_String.h"

/// A colour: red, green, blue and alpha, nominally in [0, 1]; nothing is clamped.
class CAE_API g3d_Color {
public:
    /// Opaque black.
    constexpr g3d_Color() noexcept = default;
    constexpr g3d_Color(float red, float green, float blue, float alpha) noexcept
        : _red(red), _green(green), _blue(blue), _alpha(alpha) {}

    [[nodiscard]] constexpr float Red() const noexcept { return _red; }
    [[nodiscard]] constexpr float Green() const noexcept { return _green; }
    [[nodiscard]] constexpr float Blue() const noexcept { return _blue; }
    [[nodiscard]] constexpr float Alpha() const noexcept { return _alpha; }

    /// Takes red, green and blue, a byte each, from a text like "#80FF00"; components that are
    /// missing or not hexadecimal become 0. A text that does not begin with '#' changes nothing.
    void Set(const cow_String& text, float alpha);

    /// Exact comparison of all four.
    friend constexpr bool operator==(const g3d_Color&, const g3d_Color&) noexcept = default;

private:
    float _red = 0;
    float _green = 0;
    float _blue = 0;
    float _alpha = 1;
};
