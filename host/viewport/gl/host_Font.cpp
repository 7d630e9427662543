#include "host_Font.h"

#include "host_Overlay.h"
#include "omu_RangeChecker.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <cmath>
#include <cstdlib>
#include <stdexcept>

struct host_Font::Library {
    ~Library() {
        FT_Done_Face(face);
        FT_Done_FreeType(library);
    }

    FT_Library library = nullptr;
    FT_Face face = nullptr;
};

namespace {

constexpr char32_t kReplacement = 0xFFFD;
// Hinted upwards only: lines are crisp, and letters keep their distances.
constexpr FT_Int32 kLoad = FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_LIGHT;

std::string FontFile() {
    const char* named = std::getenv("CAEHOST_FONT");
    return named != nullptr && *named != '\0' ? named : CAEHOST_FONT_FILE;
}

/// Takes the next character off \p text, which is not empty.
char32_t NextCharacter(std::string_view& text) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byteAt(0);
    std::size_t length = 1;
    char32_t character = lead;
    char32_t least = 0;
    if (lead >= 0xC0 && lead < 0xF8) {
        length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        character = lead & (0xFFU >> (length + 1));
        least = length == 2 ? 0x80 : length == 3 ? 0x800 : 0x10000;
    } else if (lead >= 0x80) {
        character = kReplacement;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (i >= text.size() || (byteAt(i) & 0xC0U) != 0x80U) {
            text.remove_prefix(i);
            return kReplacement;
        }
        character = (character << 6U) | (byteAt(i) & 0x3FU);
    }
    text.remove_prefix(length);
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    return character < least || character > 0x10FFFF || isSurrogate ? kReplacement : character;
}

bool IsControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

}  // namespace

host_Font::host_Font() : _library(std::make_unique<Library>()) {
    const std::string file = FontFile();
    FT_Error error = FT_Init_FreeType(&_library->library);
    if (error == 0) {
        error = FT_New_Face(_library->library, file.c_str(), 0, &_library->face);
    }
    if (error == 0 && FT_IS_SCALABLE(_library->face) == 0) {
        error = FT_Err_Invalid_File_Format;
    }
    if (error != 0) {
        const char* cause = FT_Error_String(error);
        throw std::runtime_error(
            "No text can be drawn: the font file '" + file + "' cannot be used (" +
            (cause != nullptr ? cause : "FreeType error " + std::to_string(error)) +
            "). On Debian: apt-get install fonts-dejavu-core; or name another file in the "
            "environment variable CAEHOST_FONT.");
    }
}

host_Font::~host_Font() = default;

std::vector<host_Font::Placed> host_Font::Layout(std::string_view text, double& width) {
    const FT_Face face = _library->face;
    std::vector<Placed> placed;
    width = 0;
    unsigned previous = 0;
    while (!text.empty()) {
        const char32_t character = NextCharacter(text);
        if (IsControl(character)) {
            continue;
        }
        const unsigned index = FT_Get_Char_Index(face, character);
        FT_Vector kerning{};
        if (previous != 0 &&
            FT_Get_Kerning(face, previous, index, FT_KERNING_UNFITTED, &kerning) == 0) {
            width += static_cast<double>(kerning.x) / 64;
        }
        placed.push_back({index, width});
        if (FT_Load_Glyph(face, index, kLoad) == 0) {
            width += static_cast<double>(face->glyph->linearHoriAdvance) / 65536;
        }
        previous = index;
    }
    return placed;
}

const host_Font::Glyph& host_Font::Rendered(unsigned index, int quarter) {
    if (const auto found = _glyphs.find({index, quarter}); found != _glyphs.end()) {
        return found->second;
    }
    Glyph glyph;
    const FT_Face face = _library->face;
    FT_GlyphSlot slot = face->glyph;
    const bool isLoaded = FT_Load_Glyph(face, index, kLoad) == 0;
    if (isLoaded) {
        FT_Outline_Translate(&slot->outline, quarter * 16, 0);
    }
    if (isLoaded && FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) == 0) {
        const FT_Bitmap& bitmap = slot->bitmap;
        glyph.left = slot->bitmap_left;
        glyph.top = slot->bitmap_top;
        glyph.width = static_cast<int>(bitmap.width);
        glyph.height = static_cast<int>(bitmap.rows);
        for (int row = 0; row < glyph.height; ++row) {
            const unsigned char* start = bitmap.buffer + std::ptrdiff_t{row} * bitmap.pitch;
            glyph.coverage.insert(glyph.coverage.end(), start, start + glyph.width);
        }
    }
    // As many as fit: a glyph may have a million pixels.
    constexpr std::size_t kMostBytes = std::size_t{1} << 24;
    _glyphBytes += sizeof(Glyph) + glyph.coverage.size();
    if (_glyphBytes > kMostBytes) {
        _glyphs.clear();
        _glyphBytes = sizeof(Glyph) + glyph.coverage.size();
    }
    return _glyphs.insert_or_assign({index, quarter}, std::move(glyph)).first->second;
}

void host_Font::Draw(host_Image& image, const host_Label& label) {
    omu_RangeChecker().AtLeast(1).AtMost(1000).Check("size", static_cast<double>(label.size));
    if (!(std::abs(label.x) < 1e6F && std::abs(label.y) < 1e6F)) {
        return;  // outside every picture, or nowhere
    }
    const long size = std::lround(label.size * 64);
    if (size != _size) {
        _glyphs.clear();
        _glyphBytes = 0;
        _size = size;
        // Pixels are points at 72 dots an inch.
        FT_Set_Char_Size(_library->face, 0, size, 72, 72);
    }
    double width = 0;
    const std::vector<Placed> line = Layout(label.text, width);
    const double start =
        static_cast<double>(label.x) - (label.align == host_Align::Left     ? 0
                                        : label.align == host_Align::Center ? width / 2
                                                                            : width);
    const std::int64_t baseline = std::lround(label.y);
    const host_Brush brush(image, label.color);
    for (const Placed& placed : line) {
        const auto quarters = static_cast<std::int64_t>(std::floor((start + placed.pen) * 4 + 0.5));
        const std::int64_t pen = quarters >> 2;
        // Nothing reaches further than a few sizes from its pen.
        const auto reach = static_cast<std::int64_t>(4 * label.size) + 1;
        if (pen < -reach || pen > image.width + reach || baseline < -reach ||
            baseline > image.height + reach) {
            continue;
        }
        const Glyph& glyph = Rendered(placed.index, static_cast<int>(quarters & 3));
        const std::uint8_t* coverage = glyph.coverage.data();
        for (int y = 0; y < glyph.height; ++y) {
            for (int x = 0; x < glyph.width; ++x, ++coverage) {
                if (*coverage != 0) {
                    brush.Paint(pen + glyph.left + x, baseline - glyph.top + y,
                                static_cast<float>(*coverage) / 255);
                }
            }
        }
    }
}
