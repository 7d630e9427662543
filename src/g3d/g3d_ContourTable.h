#pragma once

#include "g3d_Color.h"

#include <span>
#include <vector>

/// Cuts the values from a minimum to a maximum into n bands and gives each value its colour.
///
/// Band i holds the values in [Break(i), Break(i + 1)), the last band its upper break too. Where
/// several breaks are equal, for want of numbers between them or because minimum = maximum, a
/// value on them belongs to the last band that begins there. A plain value; reading is
/// thread-safe.
class CAE_API g3d_ContourTable {
public:
    /// What Band() answers outside all bands; above them it is Bands().
    enum : int { kBelow = -1, kNotANumber = -2 };

    /// \param colors  of the n bands, of rising value. With minimum > maximum the two change
    ///                places, and the colours run the other way: the first stays at \p minimum.
    /// \param smooth  colours are those of the ends and of n - 2 places evenly between, and change
    ///                gradually.
    /// \throws nex_TextException  for a limit that is not finite, or without colours.
    g3d_ContourTable(double minimum, double maximum, std::span<const g3d_Color> colors,
                     bool smooth = false);

    [[nodiscard]] double Minimum() const noexcept { return _starts.front(); }
    [[nodiscard]] double Maximum() const noexcept { return _maximum; }
    [[nodiscard]] bool IsSmooth() const noexcept { return _isSmooth; }

    /// Number of bands, n.
    [[nodiscard]] int Bands() const noexcept { return static_cast<int>(_starts.size()) - 1; }
    /// Limit \p i in [0, n]: minimum + i (maximum - minimum) / n, correctly rounded where the
    /// limits are short numbers; never falling, the ends exact.
    [[nodiscard]] double Break(int i) const noexcept {
        return i == Bands() ? _maximum : _starts[static_cast<std::size_t>(i)];
    }
    /// Colour \p i in [0, n), of rising value.
    [[nodiscard]] const g3d_Color& BandColor(int i) const noexcept { return ColorOfBand(i); }

    /// Colours outside the bands: dark grey below, light grey above, middle grey for NaN until set.
    [[nodiscard]] const g3d_Color& Below() const noexcept { return ColorOfBand(kBelow); }
    [[nodiscard]] const g3d_Color& Above() const noexcept { return _palette.back(); }
    [[nodiscard]] const g3d_Color& NotANumber() const noexcept { return _palette.front(); }
    void SetBelow(const g3d_Color& color) noexcept { _palette[1] = color; }
    void SetAbove(const g3d_Color& color) noexcept { _palette.back() = color; }
    void SetNotANumber(const g3d_Color& color) noexcept { _palette.front() = color; }

    /// Band of \p value in [0, n), kBelow, n above the maximum, or kNotANumber.
    [[nodiscard]] int Band(double value) const noexcept;
    /// Colour of \p value: of its band, or between two of the colours if smooth.
    [[nodiscard]] g3d_Color Color(double value) const noexcept;

    /// Band() of each of \p values, to the same places of \p bands; as many as both have.
    void Bands(std::span<const double> values, std::span<int> bands) const noexcept;
    void Bands(std::span<const float> values, std::span<int> bands) const noexcept;
    /// Color() of each of \p values, to the same places of \p colors; as many as both have.
    void Colors(std::span<const double> values, std::span<g3d_Color> colors) const noexcept;
    void Colors(std::span<const float> values, std::span<g3d_Color> colors) const noexcept;

private:
    class Finder;

    [[nodiscard]] const g3d_Color& ColorOfBand(int band) const noexcept {
        return _palette[static_cast<std::size_t>(band - kNotANumber)];
    }
    [[nodiscard]] g3d_Color ColorAt(double value, int band) const noexcept;
    template <class Value>
    void WriteBands(std::span<const Value> values, std::span<int> bands) const noexcept;
    template <class Value>
    void WriteColors(std::span<const Value> values, std::span<g3d_Color> colors) const noexcept;

    std::vector<g3d_Color> _palette;  // for NaN, below, the n bands, above
    std::vector<double> _starts;      // of the n bands, and of what is above: n + 1, never falling
    double _maximum = 0;
    double _bandsPerUnit = 0;  // 0: breaks too close, or too far, to guess a band by it
    bool _isSmooth = false;
};
