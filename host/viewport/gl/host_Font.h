#pragma once

#include "host_Image.h"
#include "host_Scene.h"

#include <map>
#include <memory>
#include <string_view>

/// Writes lines of text into pictures: DejaVu Sans, or the font file that the environment variable
/// CAEHOST_FONT names, by FreeType.
class host_Font {
public:
    /// Raises std::runtime_error, which names the file and the cause, for a font that cannot be
    /// used.
    host_Font();
    ~host_Font();
    host_Font(const host_Font&) = delete;
    host_Font& operator=(const host_Font&) = delete;

    /// Draws a label. Bytes that are not UTF-8 show as U+FFFD; control characters are left out; a
    /// label whose place is not finite is not drawn. Sizes outside [1, 1000] raise
    /// omu_RangeErrorException.
    void Draw(host_Image& image, const host_Label& label);

private:
    /// A character in one size, shifted to the right by quarters of a pixel.
    struct Glyph {
        int left = 0;  // of the upper left pixel, from the pen
        int top = 0;   // upwards
        int width = 0;
        int height = 0;
        std::vector<std::uint8_t> coverage;  // rows from the top
    };
    struct Placed {
        unsigned index;
        double pen;  // [pixels] from the start of the line
    };
    struct Library;

    /// Glyphs of a line, and its width in \p width.
    std::vector<Placed> Layout(std::string_view text, double& width);
    const Glyph& Rendered(unsigned index, int quarter);

    std::unique_ptr<Library> _library;
    long _size = 0;                                     // in use [1/64 pixel]
    std::map<std::pair<unsigned, int>, Glyph> _glyphs;  // of that size, by index and quarter
    std::size_t _glyphBytes = 0;
};
