#include "g3d_ContourTable.h"

#include "g3d_Blend.h"
#include "nex_TextException.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

namespace {

// Limit i of n between two others. Dividing last leaves one rounding where the limits are short.
double BreakBetween(double minimum, double maximum, std::size_t i, std::size_t n) noexcept {
    const auto above = static_cast<double>(i);
    const auto below = static_cast<double>(n - i);
    const auto all = static_cast<double>(n);
    const double sum = minimum * below + maximum * above;
    return std::isfinite(sum) ? sum / all : minimum * (below / all) + maximum * (above / all);
}

// Bands in a unit, where a band guessed by it is never more than one off; else 0.
double BandsPerUnit(double minimum, double maximum, std::size_t n) noexcept {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr std::size_t kMost = std::size_t{1} << 24;
    const double greatest = std::max(std::abs(minimum), std::abs(maximum));
    const double spacing = std::nextafter(greatest, kInfinity) - greatest;
    const double range = maximum - minimum;
    const auto bands = static_cast<double>(n);
    // Breaks are rounded by two spacings at most, a quarter of a band being allowed.
    const bool isRegular = n <= kMost && std::isfinite(range) && range / bands >= 16 * spacing &&
                           std::isfinite(bands / range);
    return isRegular ? bands / range : 0;
}

}  // namespace

// Finds bands: a copy of what this takes, so that loops that write elsewhere need not reread it.
class g3d_ContourTable::Finder {
public:
    explicit Finder(const g3d_ContourTable& table) noexcept
        : _starts(table._starts.data()),
          _bands(table.Bands()),
          _minimum(table.Minimum()),
          _bandsPerUnit(table._bandsPerUnit) {}

    [[nodiscard]] int Band(double value) const noexcept {
        return CanGuess() ? Guessed(value) : Searched(value);
    }

    template <class Value>
    void Write(std::span<const Value> values, int* bands) const noexcept {
        const std::size_t done = CanGuess() ? GuessFours(values, bands) : 0;
        for (std::size_t i = done; i < values.size(); ++i)
            bands[i] = Band(values[i]);
    }

private:
    [[nodiscard]] bool CanGuess() const noexcept { return _bandsPerUnit != 0; }

    [[nodiscard]] int Searched(double value) const noexcept {
        if (std::isnan(value)) return kNotANumber;
        return static_cast<int>(std::upper_bound(_starts, _starts + _bands + 1, value) - _starts) -
               1;
    }

    // A guess is one off at most; the breaks themselves decide.
    [[nodiscard]] int Guessed(double value) const noexcept {
        if (std::isnan(value)) return kNotANumber;
        const double place = (value - _minimum) * _bandsPerUnit;
        const int guess = static_cast<int>(std::clamp(place, 0.0, _bands - 1.0));
        return guess - 1 + static_cast<int>(_starts[guess] <= value) +
               static_cast<int>(_starts[guess + 1] <= value);
    }

    // Writes Guessed() of four values at a time, as far as they go; tells how many were written.
    // Nothing branches on a value: values come in any order.
    template <class Value>
    std::size_t GuessFours(std::span<const Value> values, int* bands) const noexcept {
        std::size_t i = 0;
#if defined(__x86_64__)
        for (; i + 4 <= values.size(); i += 4) {
            const Pair low = GuessTwo(TwoOf(&values[i]));
            const Pair high = GuessTwo(TwoOf(&values[i + 2]));
            const __m128 corrections =
                _mm_shuffle_ps(_mm_castsi128_ps(low.correction), _mm_castsi128_ps(high.correction),
                               _MM_SHUFFLE(2, 0, 2, 0));
            const __m128i four = _mm_add_epi32(_mm_unpacklo_epi64(low.guess, high.guess),
                                               _mm_castps_si128(corrections));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(bands + i), four);
        }
#else
        static_cast<void>(values);
        static_cast<void>(bands);
#endif
        return i;
    }

#if defined(__x86_64__)
    struct Pair {
        __m128i guess;       // in the first two of four integers
        __m128i correction;  // in the first and the third
    };

    static __m128d TwoOf(const double* values) noexcept { return _mm_loadu_pd(values); }
    static __m128d TwoOf(const float* values) noexcept {
        return _mm_set_pd(static_cast<double>(values[1]), static_cast<double>(values[0]));
    }

    [[nodiscard]] Pair GuessTwo(__m128d values) const noexcept {
        const __m128d places =
            _mm_mul_pd(_mm_sub_pd(values, _mm_set1_pd(_minimum)), _mm_set1_pd(_bandsPerUnit));
        // In this order of operands a maximum with NaN is 0.
        const __m128d inside =
            _mm_min_pd(_mm_max_pd(places, _mm_setzero_pd()), _mm_set1_pd(_bands - 1.0));
        const __m128i guess = _mm_cvttpd_epi32(inside);
        const std::int64_t both = _mm_cvtsi128_si64(guess);
        const __m128d first = _mm_loadu_pd(_starts + static_cast<std::uint32_t>(both));
        const __m128d second = _mm_loadu_pd(_starts + (both >> 32));
        // A comparison that holds is -1, so sums count them: guess - 1 + [start <= value] +
        // [next start <= value] - [NaN].
        const __m128i begun =
            _mm_castpd_si128(_mm_cmple_pd(_mm_unpacklo_pd(first, second), values));
        const __m128i passed =
            _mm_castpd_si128(_mm_cmple_pd(_mm_unpackhi_pd(first, second), values));
        const __m128i isNan = _mm_castpd_si128(_mm_cmpunord_pd(values, values));
        const __m128i one = _mm_set1_epi32(1);
        return {guess, _mm_sub_epi32(_mm_sub_epi32(_mm_sub_epi32(isNan, one), begun), passed)};
    }
#endif

    const double* _starts;
    int _bands;
    double _minimum;
    double _bandsPerUnit;
};

g3d_ContourTable::g3d_ContourTable(double minimum, double maximum,
                                   std::span<const g3d_Color> colors, bool smooth)
    : _isSmooth(smooth) {
    if (!std::isfinite(minimum) || !std::isfinite(maximum) || colors.empty()) {
        nex_TextException(atr_String("A contour table takes finite limits and at least one color."))
            .Throw("generated/g3d/impl/g3d_ContourTable", __LINE__);
    }
    const std::size_t n = colors.size();
    _palette.reserve(n + 3);
    _palette = {g3d_Color(g3d_GREY50, 1), g3d_Color(g3d_GREY20, 1)};
    _palette.insert(_palette.end(), colors.begin(), colors.end());
    _palette.push_back(g3d_Color(g3d_GREY80, 1));
    if (minimum > maximum) {
        std::swap(minimum, maximum);
        std::reverse(_palette.begin() + 2, _palette.end() - 1);
    }

    _maximum = maximum;
    _starts.reserve(n + 1);
    _starts.push_back(minimum);
    for (std::size_t i = 1; i < n; ++i) {
        const double start = BreakBetween(minimum, maximum, i, n);
        _starts.push_back(std::clamp(start, _starts.back(), maximum));
    }
    _starts.push_back(std::nextafter(maximum, std::numeric_limits<double>::infinity()));
    _bandsPerUnit = BandsPerUnit(minimum, maximum, n);
}

int g3d_ContourTable::Band(double value) const noexcept { return Finder(*this).Band(value); }

g3d_Color g3d_ContourTable::Color(double value) const noexcept {
    return ColorAt(value, Band(value));
}

g3d_Color g3d_ContourTable::ColorAt(double value, int band) const noexcept {
    const int last = Bands() - 1;
    if (!_isSmooth || band < 0 || band > last) return ColorOfBand(band);
    // Half of everything where the whole range would be too large.
    const double unit = std::isfinite(_maximum - Minimum()) ? 1 : 0.5;
    const double from = Minimum() * unit;
    const double place = (value * unit - from) / (_maximum * unit - from) * last;
    if (!(place < last)) return BandColor(last);  // where minimum = maximum, too
    const int below = static_cast<int>(place);
    return g3d_Blend(BandColor(below), BandColor(below + 1), place - below);
}

template <class Value>
void g3d_ContourTable::WriteBands(std::span<const Value> values,
                                  std::span<int> bands) const noexcept {
    Finder(*this).Write(values.first(std::min(values.size(), bands.size())), bands.data());
}

template <class Value>
void g3d_ContourTable::WriteColors(std::span<const Value> values,
                                   std::span<g3d_Color> colors) const noexcept {
    std::array<int, 256> bands;
    while (!values.empty() && !colors.empty()) {
        const auto some = values.first(std::min({values.size(), colors.size(), bands.size()}));
        WriteBands(some, bands);
        for (std::size_t i = 0; i < some.size(); ++i)
            colors[i] = ColorAt(some[i], bands[i]);
        values = values.subspan(some.size());
        colors = colors.subspan(some.size());
    }
}

void g3d_ContourTable::Bands(std::span<const double> values, std::span<int> bands) const noexcept {
    WriteBands(values, bands);
}

void g3d_ContourTable::Bands(std::span<const float> values, std::span<int> bands) const noexcept {
    WriteBands(values, bands);
}

void g3d_ContourTable::Colors(std::span<const double> values,
                              std::span<g3d_Color> colors) const noexcept {
    WriteColors(values, colors);
}

void g3d_ContourTable::Colors(std::span<const float> values,
                              std::span<g3d_Color> colors) const noexcept {
    WriteColors(values, colors);
}
