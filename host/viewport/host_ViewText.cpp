#include "host_ViewText.h"

#include "host_Framing.h"

#include <algorithm>
#include <cmath>

float host_TextSize(int width, int height) {
    const auto side = std::min(static_cast<float>(height), 0.75F * static_cast<float>(width));
    return std::max(11.0F, std::round(side * 0.019F));
}

void host_AddText(const host_ViewText& text, int width, int height, const g3d_Color& color,
                  host_Scene& scene) {
    constexpr float kLine = 1.3F;          // from one baseline to the next, over the size
    constexpr float kHalfCapital = 0.36F;  // its height, over the size
    constexpr double kFarthest = 1e6;      // outside of every picture
    std::array<double, 2> at{};
    if (const auto* place = std::get_if<host_PicturePlace>(&text.place)) {
        at = {double{place->x} / 100 * width, double{place->y} / 100 * height};
    } else if (const auto pixel =
                   host_PixelOf(scene.camera, width, height, std::get<g3d_Point>(text.place))) {
        at = *pixel;
    } else {
        return;
    }
    if (!(std::abs(at[0]) < kFarthest && std::abs(at[1]) < kFarthest)) {
        return;
    }
    const float size = text.size.value_or(host_TextSize(width, height));
    const auto lines = static_cast<float>(1 + std::count(text.text.begin(), text.text.end(), '\n'));
    const float x = static_cast<float>(at[0]) + text.offset[0];
    float y = static_cast<float>(at[1]) - text.offset[1] +
              (kHalfCapital - kLine * (lines - 1) / 2) * size;
    for (std::size_t start = 0; start <= text.text.size();) {
        const std::size_t end = std::min(text.text.find('\n', start), text.text.size());
        scene.labels.push_back({x, y, size, text.text.substr(start, end - start),
                                text.color.value_or(color), text.align});
        y += kLine * size;
        start = end + 1;
    }
}
