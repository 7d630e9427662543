// Colors: hue and back, names, hexadecimal texts, values to contour bands. Every workload is
// checked against a plain computation before it is timed. Times are of all items.

#include "g3d_ColorMap.h"
#include "g3d_ContourTable.h"

#include <benchmark/benchmark.h>

#ifdef BENCH_HAVE_QTGUI
#include <QColor>
#endif

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kColors = 10'000;
constexpr int kValues = 1'000'000;

void Check(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "%s: wrong result\n", what);
        std::exit(1);
    }
}

// --- Hue, saturation, value, there and back
// --------------------------------------------------------

using Rgb = std::array<float, 3>;

std::vector<Rgb> SomeColors() {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> uniform(0, 1);
    std::vector<Rgb> colors(kColors);
    for (Rgb& color : colors)
        color = {uniform(random), uniform(random), uniform(random)};
    return colors;
}

_HSV PlainHsv(const Rgb& rgb) {
    const double r = rgb[0];
    const double g = rgb[1];
    const double b = rgb[2];
    const double max = std::max({r, g, b});
    const double d = max - std::min({r, g, b});
    if (max == 0 || d == 0) return {0, 0, static_cast<float>(max)};
    double h = 0;
    if (r == max) {
        h = (g - b) / d;
    } else if (g == max) {
        h = (b - r) / d + 2;
    } else {
        h = (r - g) / d + 4;
    }
    if (h < 0) h += 6;
    return {static_cast<float>(h / 6), static_cast<float>(d / max), static_cast<float>(max)};
}

Rgb PlainRgb(const _HSV& hsv) {
    const double v = hsv.value;
    const double s = hsv.saturation;
    const double h = hsv.hue * 6.0;
    const int i = static_cast<int>(h);
    const double f = h - i;
    const auto p = static_cast<float>(v * (1 - s));
    const auto q = static_cast<float>(v * (1 - s * f));
    const auto t = static_cast<float>(v * (1 - s * (1 - f)));
    switch (i) {
        case 0:
            return {hsv.value, t, p};
        case 1:
            return {q, hsv.value, p};
        case 2:
            return {p, hsv.value, t};
        case 3:
            return {p, q, hsv.value};
        case 4:
            return {t, p, hsv.value};
        default:
            return {hsv.value, p, q};
    }
}

template <class Color, class Round>
void GoRound(benchmark::State& state, const std::vector<Color>& colors, Round round) {
    std::vector<Color> back(colors.size());
    for (auto _ : state) {
        std::transform(colors.begin(), colors.end(), back.begin(), round);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kColors);
}

g3d_Color RoundOfOurs(const g3d_Color& color) {
    g3d_Color back;
    back.SetHSV(color.GetHSV());
    return back;
}

void HsvOurs(benchmark::State& state) {
    std::vector<g3d_Color> colors;
    for (const Rgb& rgb : SomeColors()) {
        colors.emplace_back(rgb[0], rgb[1], rgb[2], 1.0F);
        const g3d_Color back = RoundOfOurs(colors.back());
        const Rgb plain = PlainRgb(PlainHsv(rgb));
        Check(std::abs(back.Red() - plain[0]) + std::abs(back.Green() - plain[1]) +
                      std::abs(back.Blue() - plain[2]) <
                  1e-6F,
              "HSV");
    }
    GoRound(state, colors, RoundOfOurs);
}

void HsvLoop(benchmark::State& state) {
    GoRound(state, SomeColors(), [](const Rgb& rgb) { return PlainRgb(PlainHsv(rgb)); });
}

// --- Names and hexadecimal texts
// -------------------------------------------------------------------

// Shuffled: which name comes next cannot be foreseen.
std::vector<std::string> AskedNames() {
    std::vector<std::string> names;
    for (const cow_String& name : g3d_ColorMap().Keys())
        names.push_back(name.Std());
    std::mt19937 random(2);
    std::vector<std::string> asked(kColors);
    for (std::string& name : asked)
        name = names[random() % names.size()];
    return asked;
}

std::vector<std::string> AskedTexts() {
    std::mt19937 random(3);
    std::vector<std::string> texts(kColors);
    for (std::string& text : texts) {
        char buffer[8];
        std::snprintf(buffer, sizeof buffer, "#%06X", static_cast<unsigned>(random() & 0xFFFFFF));
        text = buffer;
    }
    return texts;
}

template <class Text, class Find>
void FindColors(benchmark::State& state, const std::vector<Text>& texts, Find find) {
    for (auto _ : state) {
        for (const Text& text : texts) {
            auto color = find(text);
            benchmark::DoNotOptimize(color);
        }
    }
    state.SetItemsProcessed(state.iterations() * kColors);
}

g3d_Color ByScanf(const std::string& text) {
    unsigned red = 0;
    unsigned green = 0;
    unsigned blue = 0;
    static_cast<void>(std::sscanf(text.c_str(), "#%02X%02X%02X", &red, &green, &blue));
    return {static_cast<float>(red) / 255, static_cast<float>(green) / 255,
            static_cast<float>(blue) / 255, 1};
}

std::map<std::string, g3d_Color> NamedColors() {
    const g3d_ColorMap map;
    std::map<std::string, g3d_Color> colors;
    for (const cow_String& name : map.Keys())
        colors[name.Std()] = map.ConstGet(name);
    return colors;
}

void NameOurs(benchmark::State& state) {
    const g3d_ColorMap map;
    const std::vector<std::string> asked = AskedNames();
    const std::vector<cow_String> names(asked.begin(), asked.end());
    const auto plain = NamedColors();
    for (const cow_String& name : names)
        Check(map.ConstGet(name) == plain.at(name.Std()), "names");
    FindColors(state, names, [&map](const cow_String& name) { return map.ConstGet(name); });
}

void NameMap(benchmark::State& state) {
    const auto colors = NamedColors();
    FindColors(state, AskedNames(),
               [&colors](const std::string& name) { return colors.find(name)->second; });
}

void TextOurs(benchmark::State& state) {
    const auto find = [](const cow_String& text) {
        g3d_Color color;
        color.Set(text, 1);
        return color;
    };
    const std::vector<std::string> asked = AskedTexts();
    const std::vector<cow_String> texts(asked.begin(), asked.end());
    for (const cow_String& text : texts)
        Check(find(text) == ByScanf(text.Std()), "hexadecimal texts");
    FindColors(state, texts, find);
}

void TextScanf(benchmark::State& state) { FindColors(state, AskedTexts(), ByScanf); }

#ifdef BENCH_HAVE_QTGUI
void HsvQt(benchmark::State& state) {
    std::vector<QColor> colors;
    for (const Rgb& rgb : SomeColors())
        colors.push_back(QColor::fromRgbF(rgb[0], rgb[1], rgb[2]));
    GoRound(state, colors, [](const QColor& color) { return color.toHsv().toRgb(); });
}

QColor ByQt(const QString& text) { return QColor(text); }

// Names that it knows: the other ones are quickly refused.
void NameQt(benchmark::State& state) {
    const QStringList known = QColor::colorNames();
    std::mt19937 random(2);
    std::vector<QString> names(kColors);
    for (QString& name : names)
        name = known[static_cast<qsizetype>(random() % 28)];
    Check(ByQt(names[0]).isValid(), "QColor");
    FindColors(state, names, ByQt);
}

void TextQt(benchmark::State& state) {
    const std::vector<std::string> asked = AskedTexts();
    std::vector<QString> texts;
    for (const std::string& text : asked)
        texts.push_back(QString::fromStdString(text));
    FindColors(state, texts, ByQt);
}
#endif

// --- Values to bands
// -------------------------------------------------------------------------------

constexpr int kBands = 12;

// Some below, some above; every thousandth is none.
std::vector<double> SomeValues() {
    std::mt19937_64 random(4);
    std::uniform_real_distribution<double> uniform(-0.5, 10.5);
    std::vector<double> values(kValues);
    for (double& value : values)
        value = random() % 1000 == 0 ? std::nan("") : uniform(random);
    return values;
}

g3d_ContourTable SomeTable() { return {0, 10, std::vector<g3d_Color>(kBands)}; }

void BandsOurs(benchmark::State& state) {
    const g3d_ContourTable table = SomeTable();
    const std::vector<double> values = SomeValues();
    std::vector<int> bands(kValues);
    for (auto _ : state) {
        table.Bands(values, bands);
        benchmark::ClobberMemory();
    }
    for (std::size_t i = 0; i < values.size(); ++i)
        Check(bands[i] == table.Band(values[i]), "bands");
    state.SetItemsProcessed(state.iterations() * kValues);
}

template <class BandOf>
void BandsBy(benchmark::State& state, BandOf bandOf) {
    const std::vector<double> values = SomeValues();
    std::vector<int> bands(kValues);
    for (auto _ : state) {
        std::transform(values.begin(), values.end(), bands.begin(), bandOf);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kValues);
}

// The usual formula; a value next to a limit may come out on its other side.
void BandsLoop(benchmark::State& state) {
    BandsBy(state, [](double value) {
        if (std::isnan(value)) return -2;
        if (value < 0) return -1;
        if (value > 10) return kBands;
        return std::min(static_cast<int>(value * (kBands / 10.0)), kBands - 1);
    });
}

void BandsSearch(benchmark::State& state) {
    const g3d_ContourTable table = SomeTable();
    std::vector<double> limits;
    for (int i = 0; i <= kBands; ++i)
        limits.push_back(table.Break(i));
    BandsBy(state, [&limits](double value) {
        return static_cast<int>(std::upper_bound(limits.begin(), limits.end(), value) -
                                limits.begin());
    });
}

BENCHMARK(HsvOurs)->Name("HSV there and back, 10,000 colors/ours");
BENCHMARK(HsvLoop)->Name("HSV there and back, 10,000 colors/loop");
BENCHMARK(NameOurs)->Name("default name to color, 10,000/ours");
BENCHMARK(NameMap)->Name("default name to color, 10,000/std_map");
BENCHMARK(TextOurs)->Name("#RRGGBB to color, 10,000/ours");
BENCHMARK(TextScanf)->Name("#RRGGBB to color, 10,000/sscanf");
#ifdef BENCH_HAVE_QTGUI
BENCHMARK(HsvQt)->Name("HSV there and back, 10,000 colors/qcolor");
BENCHMARK(NameQt)->Name("default name to color, 10,000/qcolor");
BENCHMARK(TextQt)->Name("#RRGGBB to color, 10,000/qcolor");
#endif
BENCHMARK(BandsOurs)->Name("contour bands, 1,000,000 values/ours");
BENCHMARK(BandsLoop)->Name("contour bands, 1,000,000 values/loop");
BENCHMARK(BandsSearch)->Name("contour bands, 1,000,000 values/std_upper_bound");

}  // namespace
