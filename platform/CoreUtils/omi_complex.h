#pragma once

#include "CoreUtilsExport.h"

/// A complex number that remembers the form it was given in: rectangular (the two stored parts are
/// the real and the imaginary part) or converted (magnitude and angle [rad]).
class CORE_API omi_complex {
public:
    /// The rectangular number \p re + \p im i.
    constexpr explicit(false) omi_complex(double re = 0.0, double im = 0.0) noexcept
        : _first(re), _second(im) {}

    /// The number of that magnitude and angle [rad], kept in the converted form.
    [[nodiscard]] static constexpr omi_complex FromPolar(double magnitude, double angle) noexcept {
        omi_complex number(magnitude, angle);
        number._converted = true;
        return number;
    }

    /// True when the stored parts are magnitude and angle.
    [[nodiscard]] constexpr bool IsConverted() const noexcept { return _converted; }

    /// The first stored part as it is: real part, or magnitude.
    [[nodiscard]] constexpr double Real() const noexcept { return _first; }

    /// The second stored part as it is: imaginary part, or angle [rad].
    [[nodiscard]] constexpr double Imag() const noexcept { return _second; }

    /// The real part in either form.
    [[nodiscard]] double ConvertedReal() const noexcept;

    /// The imaginary part in either form.
    [[nodiscard]] double ConvertedImag() const noexcept;

    /// Both parts exactly equal, each number seen as rectangular.
    [[nodiscard]] friend bool operator==(const omi_complex& a, const omi_complex& b) noexcept {
        return a.ConvertedReal() == b.ConvertedReal() && a.ConvertedImag() == b.ConvertedImag();
    }

private:
    double _first;
    double _second;
    bool _converted = false;
};
