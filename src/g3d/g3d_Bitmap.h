#pragma once

#include "CaeUtilsExport.h"
#include "g3d_MarkerEnum.h"
#include "mem_Allocation.h"
#include "mem_AllocationOperators.h"

#include <cstddef>
#include <cstdint>
#include <memory>

/// A raster of one bit per pixel, such as the symbol of a marked point.
///
/// Column 0 is the left one, row 0 the lowest: y runs up. The pixels lie row by row, without gaps,
/// in 32-bit words (lowest bit first) or in bytes (highest bit first), or are not stored at all and
/// then all 0. A value: copies share nothing; what was moved from is empty. An operation that
/// raises changes nothing.
class CAE_API g3d_Bitmap : public mem_AllocationOperators {
public:
    /// Empty: no pixels, all numbers 0.
    g3d_Bitmap() noexcept = default;
    g3d_Bitmap(const g3d_Bitmap& other);
    g3d_Bitmap(g3d_Bitmap&& other) noexcept;
    g3d_Bitmap& operator=(const g3d_Bitmap& other);
    g3d_Bitmap& operator=(g3d_Bitmap&& other) noexcept;
    ~g3d_Bitmap() = default;

    /// Sets width and height [pixels] and clears all pixels; origin and move stay. Sizes below 1
    /// are kept as they are given, and make a bitmap without pixels.
    /// \param wordStorage  words, otherwise bytes.
    /// \param allocate  false: nothing is stored, Length() becomes 0.
    /// \throws mem_ExhaustedException  also for a bitmap of more than 2^31 - 1 units.
    void SetSize(int width, int height, bool wordStorage, bool allocate);

    /// Draws a symbol into words: \p size pixels wide and high, one more where a symbol that has a
    /// middle pixel would be even; its centre is the origin, the move is (Width(), 0).
    /// A size below 1 or an unknown kind gives 8 x 1 pixels that are not stored.
    /// \throws mem_ExhaustedException  as SetSize.
    void SetMarker(g3d_MarkerEnum kind, int size);

    /// Name of a kind of marker, like "FILLED_CIRCLE"; the empty text for an unknown kind.
    [[nodiscard]] static const char* MarkerName(g3d_MarkerEnum kind) noexcept;

    [[nodiscard]] int Width() const noexcept { return _width; }
    [[nodiscard]] int Height() const noexcept { return _height; }

    /// The pixel that lies on the marked point.
    [[nodiscard]] float XOrigin() const noexcept { return _xOrigin; }
    [[nodiscard]] float YOrigin() const noexcept { return _yOrigin; }
    void SetOrigin(float x, float y) noexcept;
    /// Where drawing goes on after this bitmap, as a displacement [pixels].
    [[nodiscard]] float XMove() const noexcept { return _xMove; }
    [[nodiscard]] float YMove() const noexcept { return _yMove; }
    void SetMove(float x, float y) noexcept;

    /// 1 if the pixel is set; 0 otherwise, and outside the bitmap, and where nothing is stored.
    [[nodiscard]] int GetBit(int x, int y) const noexcept;
    /// Sets or clears the pixel; does nothing outside the bitmap and where nothing is stored.
    void SetBit(int x, int y, bool on = true) noexcept;

    /// Number of words or bytes that are stored.
    [[nodiscard]] int Length() const noexcept { return _length; }
    /// The stored words: pixel i is bit i % 32, from the lowest, of word i / 32. Null for bytes.
    [[nodiscard]] const std::uint32_t* Words() const noexcept { return _words.get(); }
    /// The stored bytes: pixel i is bit 0x80 >> i % 8 of byte i / 8. Null for words.
    [[nodiscard]] const std::uint8_t* Bytes() const noexcept { return _bytes.get(); }

    /// Compares all numbers, the storage in use and the pixels.
    friend CAE_API bool operator==(const g3d_Bitmap& left, const g3d_Bitmap& right) noexcept;

private:
    struct Free {
        void operator()(void* block) const noexcept { mem_Free(block); }
    };

    // The pixel's place in the storage, or -1 where it has none.
    [[nodiscard]] std::int64_t IndexOf(int x, int y) const noexcept;

    int _width = 0;
    int _height = 0;
    float _xOrigin = 0;
    float _yOrigin = 0;
    float _xMove = 0;
    float _yMove = 0;
    int _length = 0;
    std::unique_ptr<std::uint32_t[], Free> _words;  // null while _bytes is in use
    std::unique_ptr<std::uint8_t[], Free> _bytes;
};
