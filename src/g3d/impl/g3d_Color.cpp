#include "g3d_Color.h"

#include <cstdio>

void g3d_Color::Set(const cow_String& text, float alpha) {
    if (!text.StartsWith("#")) {
        return;
    }
    unsigned red = 0;
    unsigned green = 0;
    unsigned blue = 0;
    static_cast<void>(std::sscanf(text.AsCharPtr(), "#%02X%02X%02X", &red, &green, &blue));
    *this = g3d_Color(static_cast<float>(red) / 255.0F, static_cast<float>(green) / 255.0F,
                      static_cast<float>(blue) / 255.0F, alpha);
}
