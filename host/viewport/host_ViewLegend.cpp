#include "host_ViewLegend.h"

#include "host_ViewText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

std::string Text(double value, std::chars_format format, int decimals) {
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, format, decimals);
    return {buffer, end.ptr};
}

double Number(const std::string& text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

int Exponent(double value) { return static_cast<int>(std::floor(std::log10(value))); }

bool IsFirstByte(char byte) { return (byte & 0xC0) != 0x80; }

/// Number of characters, not bytes.
std::size_t CharacterCount(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsFirstByte));
}

/// Cuts a text to that many characters, of which the last three are full stops then.
std::string Shortened(const std::string& text, std::size_t count) {
    if (CharacterCount(text) <= count) {
        return text;
    }
    std::size_t left = std::max<std::size_t>(count, 3) - 3;
    const auto end = std::find_if(text.begin(), text.end(),
                                  [&](char byte) { return IsFirstByte(byte) && left-- == 0; });
    return std::string(text.begin(), end) + "...";
}

/// Lays out one legend after the other.
class Layout {
public:
    Layout(int width, int height, const g3d_Color& textColor, host_Scene& scene)
        : _width(static_cast<float>(width)),
          _height(static_cast<float>(height)),
          _size(host_TextSize(width, height)),
          _left(_size),
          _textColor(textColor),
          _scene(scene) {}

    /// Whether there is room for one more.
    [[nodiscard]] bool HasRoom() const {
        return _height >= 8 * _size && _left + 8 * _size <= _width;
    }

    /// Where the next one begins.
    [[nodiscard]] float Left() const noexcept { return _left; }

    void Add(const host_Legend& legend) {
        const float titleRoom = (_width - _left - _size) / (kCharacter * _size);
        const std::string title =
            Shortened(legend.title, static_cast<std::size_t>(std::max(titleRoom, 4.0F)));
        float right = _left + kCharacter * _size * static_cast<float>(CharacterCount(title));
        AddLabel(_left, 2 * _size, title);

        const int others = int{legend.hasAbove} + int{legend.hasBelow} + int{legend.hasNotANumber};
        const float otherHeight = std::round(1.3F * _size);
        const float gap = std::round(0.5F * _size);
        float top = std::round(3 * _size);
        // A line is left free below, for what is said of the deformation.
        const float room =
            _height - 2.5F * _size - top - static_cast<float>(others) * (otherHeight + gap);
        const auto other = [&](bool isThere, const g3d_Color& color, const char* name) {
            if (isThere) {
                AddBox(top, otherHeight, color);
                right = std::max(right, AddText(top + otherHeight / 2, name));
                top += otherHeight + gap;
            }
        };
        other(legend.hasAbove, legend.table.Above(), "above");
        const int bands = legend.table.Bands();
        const float wanted = 1.5F * _size * static_cast<float>(std::clamp(bands, 6, 16));
        const float height = std::max(std::floor(std::min(room, wanted)), 2.0F);
        right = std::max(right, AddBands(legend.table, top, height));
        top += height + gap;
        other(legend.hasBelow, legend.table.Below(), "below");
        other(legend.hasNotANumber, legend.table.NotANumber(), "no value");
        _left = right + 1.5F * _size;
    }

private:
    static constexpr float kCharacter = 0.6F;  // a character's width, over the size of the font

    void AddLabel(float x, float y, const std::string& text) {
        _scene.labels.push_back({x, y, _size, text, _textColor, host_Align::Left});
    }

    /// Text beside a box, and its right end.
    float AddText(float middle, const std::string& text) {
        const float x = BoxLeft() + BoxWidth() + 0.5F * _size;
        AddLabel(x, std::round(middle + 0.36F * _size), text);
        return x + kCharacter * _size * static_cast<float>(CharacterCount(text));
    }

    void AddFrame(float top, float height) {
        _scene.rectangles.push_back(
            {BoxLeft() - 1, top - 1, BoxWidth() + 2, height + 2, _textColor});
    }

    void AddBox(float top, float height, const g3d_Color& color) {
        AddFrame(top, height);
        _scene.rectangles.push_back({BoxLeft(), top, BoxWidth(), height, color});
    }

    /// The scale itself; returns the right end of its values.
    float AddBands(const g3d_ContourTable& table, float top, float height) {
        AddFrame(top, height);
        const int rows = static_cast<int>(height);
        const int bands = table.Bands();
        const bool isByRow = table.IsSmooth() || 2 * bands > rows;
        const int boxes = isByRow ? rows : bands;
        const auto edge = [&](int box) {  // box 0 is the highest
            return std::round(height * static_cast<float>(box) / static_cast<float>(boxes));
        };
        const double span = table.Maximum() - table.Minimum();
        for (int box = 0; box < boxes; ++box) {
            const double value = table.Maximum() - span * (box + 0.5) / boxes;
            const g3d_Color color = isByRow && span > 0
                                        ? table.Color(value)
                                        : table.BandColor(bands - 1 - box * bands / boxes);
            _scene.rectangles.push_back(
                {BoxLeft(), top + edge(box), BoxWidth(), edge(box + 1) - edge(box), color});
        }

        const std::vector<std::string> texts = host_BreakTexts(table);
        const float bandHeight = height / static_cast<float>(bands);
        const int step = std::max(1, static_cast<int>(std::ceil(1.15F * _size / bandHeight)));
        float right = 0;
        for (int i = 0; i <= bands; ++i) {
            const bool isShown = i == bands || (i % step == 0 && bands - i >= step);
            if (isShown && (span > 0 || i == 0)) {
                const float y = top + height - bandHeight * static_cast<float>(i);
                right = std::max(right, AddText(y, texts[static_cast<std::size_t>(i)]));
            }
        }
        return right;
    }

    [[nodiscard]] float BoxLeft() const { return std::round(_left); }
    [[nodiscard]] float BoxWidth() const { return std::round(1.4F * _size); }

    float _width;
    float _height;
    float _size;
    float _left;
    g3d_Color _textColor;
    host_Scene& _scene;
};

}  // namespace

std::vector<std::string> host_BreakTexts(const g3d_ContourTable& table) {
    const double largest = std::max(std::abs(table.Minimum()), std::abs(table.Maximum()));
    const double step = (table.Maximum() - table.Minimum()) / table.Bands();
    const int exponent = largest > 0 ? Exponent(largest) : 0;
    const int stepExponent = step > 0 ? Exponent(step) : exponent - 5;
    const bool isFixed = exponent >= -4 && exponent < 6;
    const auto format = isFixed ? std::chars_format::fixed : std::chars_format::scientific;
    const int most = std::clamp((isFixed ? 0 : exponent) - stepExponent + 2, 0, 17);

    std::vector<std::string> texts;
    for (int decimals = 0; decimals <= most; ++decimals) {
        texts.clear();
        bool isExact = true;
        for (int i = 0; i <= table.Bands(); ++i) {
            const double value = table.Break(i);
            texts.push_back(Text(value, format, decimals));
            const double shown = Number(texts.back());
            if (shown == 0) {
                texts.back() = Text(0, format, decimals);  // never -0
            }
            isExact = isExact && std::abs(shown - value) <= 1e-3 * step;
        }
        if (isExact) {
            break;
        }
    }
    return texts;
}

float host_AddLegends(const std::vector<const host_Legend*>& legends, int width, int height,
                      const g3d_Color& textColor, host_Scene& scene) {
    Layout layout(width, height, textColor, scene);
    bool isAny = false;
    for (const host_Legend* legend : legends) {
        if (layout.HasRoom()) {
            layout.Add(*legend);
            isAny = true;
        }
    }
    return isAny ? std::min(layout.Left(), static_cast<float>(width) / 3) : 0;
}
