#include "g3d_Bitmap.h"

#include "g3d_MarkerShapes.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

// All clear; null for none.
template <class Unit>
Unit* NewUnits(int count) {
    return count > 0 ? new (mem_BuiltInAlloc{}) Unit[static_cast<std::size_t>(count)]() : nullptr;
}

template <class Unit>
Unit* CopyUnits(const Unit* units, int count) {
    Unit* const copy = units == nullptr ? nullptr : NewUnits<Unit>(count);
    if (copy != nullptr) {
        std::copy_n(units, count, copy);
    }
    return copy;
}

template <class Unit>
bool EqualUnits(const Unit* left, const Unit* right, int count) noexcept {
    if (left == nullptr || right == nullptr) {
        return left == right;
    }
    return std::equal(left, left + count, right);
}

constexpr std::uint32_t WordMask(std::int64_t pixel) noexcept {
    return std::uint32_t{1} << (pixel % 32);
}

constexpr std::uint8_t ByteMask(std::int64_t pixel) noexcept {
    return static_cast<std::uint8_t>(0x80 >> (pixel % 8));
}

template <class Unit>
void Assign(Unit& unit, Unit mask, bool on) noexcept {
    unit = static_cast<Unit>(on ? unit | mask : unit & ~mask);
}

}  // namespace

g3d_Bitmap::g3d_Bitmap(const g3d_Bitmap& other)
    : _width(other._width),
      _height(other._height),
      _xOrigin(other._xOrigin),
      _yOrigin(other._yOrigin),
      _xMove(other._xMove),
      _yMove(other._yMove),
      _length(other._length),
      _words(CopyUnits(other._words.get(), other._length)),
      _bytes(CopyUnits(other._bytes.get(), other._length)) {}

g3d_Bitmap::g3d_Bitmap(g3d_Bitmap&& other) noexcept
    : _width(std::exchange(other._width, 0)),
      _height(std::exchange(other._height, 0)),
      _xOrigin(std::exchange(other._xOrigin, 0.0F)),
      _yOrigin(std::exchange(other._yOrigin, 0.0F)),
      _xMove(std::exchange(other._xMove, 0.0F)),
      _yMove(std::exchange(other._yMove, 0.0F)),
      _length(std::exchange(other._length, 0)),
      _words(std::move(other._words)),
      _bytes(std::move(other._bytes)) {}

g3d_Bitmap& g3d_Bitmap::operator=(const g3d_Bitmap& other) {
    if (this != &other) {
        *this = g3d_Bitmap(other);
    }
    return *this;
}

g3d_Bitmap& g3d_Bitmap::operator=(g3d_Bitmap&& other) noexcept {
    g3d_Bitmap taken(std::move(other));  // safe for self-assignment
    std::swap(_width, taken._width);
    std::swap(_height, taken._height);
    std::swap(_xOrigin, taken._xOrigin);
    std::swap(_yOrigin, taken._yOrigin);
    std::swap(_xMove, taken._xMove);
    std::swap(_yMove, taken._yMove);
    std::swap(_length, taken._length);
    std::swap(_words, taken._words);
    std::swap(_bytes, taken._bytes);
    return *this;
}

void g3d_Bitmap::SetSize(int width, int height, bool wordStorage, bool allocate) {
    int length = 0;
    if (allocate && width > 0 && height > 0) {
        const std::int64_t bits = wordStorage ? 32 : 8;
        const std::int64_t units = (std::int64_t{width} * height + bits - 1) / bits;
        if (units > std::numeric_limits<int>::max()) {
            mem_ThrowExhausted(static_cast<std::size_t>(units * bits / 8));
        }
        length = static_cast<int>(units);
    }

    const bool fits = length == _length && wordStorage == (_words != nullptr);
    if (fits && wordStorage) {
        std::fill_n(_words.get(), length, std::uint32_t{0});
    } else if (fits && _bytes != nullptr) {
        std::fill_n(_bytes.get(), length, std::uint8_t{0});
    } else {
        std::uint32_t* const words = wordStorage ? NewUnits<std::uint32_t>(length) : nullptr;
        std::uint8_t* const bytes = wordStorage ? nullptr : NewUnits<std::uint8_t>(length);
        _words.reset(words);
        _bytes.reset(bytes);
    }
    _length = length;
    _width = width;
    _height = height;
}

void g3d_Bitmap::SetMarker(g3d_MarkerEnum kind, int size) {
    g3d_Bitmap marker;
    const g3d_MarkerShape* const shape = g3d_FindMarkerShape(kind);
    if (shape == nullptr || size < 1) {
        marker.SetSize(8, 1, true, false);
    } else {
        const int side = shape->hasMiddlePixel ? size | 1 : size;
        marker.SetSize(side, side, true, true);
        shape->draw({side, marker._words.get()});
        const float center = static_cast<float>(0.5 * side - 0.5);
        marker.SetOrigin(center, center);
        marker.SetMove(static_cast<float>(side), 0);
    }
    *this = std::move(marker);
}

const char* g3d_Bitmap::MarkerName(g3d_MarkerEnum kind) noexcept {
    const g3d_MarkerShape* const shape = g3d_FindMarkerShape(kind);
    return shape == nullptr ? "" : shape->name;
}

void g3d_Bitmap::SetOrigin(float x, float y) noexcept {
    _xOrigin = x;
    _yOrigin = y;
}

void g3d_Bitmap::SetMove(float x, float y) noexcept {
    _xMove = x;
    _yMove = y;
}

int g3d_Bitmap::GetBit(int x, int y) const noexcept {
    const std::int64_t pixel = IndexOf(x, y);
    if (pixel < 0) {
        return 0;
    }
    return _words != nullptr ? (_words[static_cast<std::size_t>(pixel / 32)] & WordMask(pixel)) != 0
                             : (_bytes[static_cast<std::size_t>(pixel / 8)] & ByteMask(pixel)) != 0;
}

void g3d_Bitmap::SetBit(int x, int y, bool on) noexcept {
    const std::int64_t pixel = IndexOf(x, y);
    if (pixel < 0) {
        return;
    }
    if (_words != nullptr) {
        Assign(_words[static_cast<std::size_t>(pixel / 32)], WordMask(pixel), on);
    } else {
        Assign(_bytes[static_cast<std::size_t>(pixel / 8)], ByteMask(pixel), on);
    }
}

std::int64_t g3d_Bitmap::IndexOf(int x, int y) const noexcept {
    const bool inside = x >= 0 && x < _width && y >= 0 && y < _height;
    return inside && _length > 0 ? std::int64_t{_width} * y + x : -1;
}

bool operator==(const g3d_Bitmap& left, const g3d_Bitmap& right) noexcept {
    return left._width == right._width && left._height == right._height &&
           left._xOrigin == right._xOrigin && left._yOrigin == right._yOrigin &&
           left._xMove == right._xMove && left._yMove == right._yMove &&
           left._length == right._length &&
           EqualUnits(left._words.get(), right._words.get(), left._length) &&
           EqualUnits(left._bytes.get(), right._bytes.get(), left._length);
}
