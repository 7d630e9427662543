#include "g3d_ColorArray.h"

#include "mem_Allocation.h"
#include "mem_ExhaustedException.h"

#include <algorithm>
#include <cstdint>
#include <utility>

struct g3d_ColorArray::Entry {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
    std::uint8_t alpha;

    friend bool operator==(const Entry&, const Entry&) noexcept = default;

    static Entry Of(const g3d_Color& color) noexcept {
        const unsigned rgba = color.GetRGBA();
        const auto byte = [rgba](int shift) { return static_cast<std::uint8_t>(rgba >> shift); };
        return {byte(24), byte(16), byte(8), byte(0)};
    }
    [[nodiscard]] g3d_Color Color() const noexcept {
        return IntToFloatColor(red | unsigned{green} << 8 | unsigned{blue} << 16 |
                               unsigned{alpha} << 24);
    }
};

g3d_ColorArray::g3d_ColorArray(const g3d_ColorArray& other) {
    if (other._count == 0) return;
    _entries = Resized(nullptr, other._count);
    std::copy_n(other._entries, other._count, _entries);
    _count = other._count;
}

g3d_ColorArray& g3d_ColorArray::operator=(const g3d_ColorArray& other) {
    g3d_ColorArray copy(other);
    std::swap(_entries, copy._entries);
    std::swap(_count, copy._count);
    return *this;
}

g3d_ColorArray::~g3d_ColorArray() { mem_Free(_entries); }

g3d_ColorArray::Entry* g3d_ColorArray::Resized(Entry* entries, unsigned count) {
    const std::size_t size = count * sizeof(Entry);
    void* const memory = mem_Realloc(entries, size);
    if (memory == nullptr) throw mem_ExhaustedException(size);
    return static_cast<Entry*>(memory);
}

unsigned g3d_ColorArray::CheckColor(const g3d_Color& color) {
    Entry entry = Entry::Of(color);
    entry.alpha = 255;
    const auto index =
        static_cast<unsigned>(std::find(_entries, _entries + _count, entry) - _entries);
    if (index < _count || _count == kCapacity) return index;
    _entries = Resized(_entries, _count + 1);
    _entries[_count] = entry;
    return _count++;
}

g3d_Color g3d_ColorArray::GetColor(unsigned index) const noexcept {
    return index < _count ? _entries[index].Color() : g3d_Color(1, 1, 1, 1);
}

void g3d_ColorArray::GetColor(unsigned index, float& red, float& green,
                              float& blue) const noexcept {
    if (index > _count) return;
    const g3d_Color color = GetColor(index);
    red = color.Red();
    green = color.Green();
    blue = color.Blue();
}

g3d_Color g3d_ColorArray::IntToFloatColor(unsigned abgr) noexcept {
    const auto component = [abgr](int shift) {
        return static_cast<float>(abgr >> shift & 0xFF) / 255.0F;
    };
    return {component(0), component(8), component(16), component(24)};
}

void g3d_ColorArray::SetAlpha(float alpha) noexcept {
    const std::uint8_t byte = Entry::Of(g3d_Color(0, 0, 0, alpha)).alpha;
    for (unsigned i = 0; i < _count; ++i)
        _entries[i].alpha = byte;
}

void g3d_ColorArray::ContrastColors(const g3d_Color& background) noexcept {
    for (unsigned i = 0; i < _count; ++i) {
        Entry& entry = _entries[i];
        const std::uint8_t alpha = entry.alpha;
        entry = Entry::Of(entry.Color().GetContrastingColor(background));
        entry.alpha = alpha;
    }
}

void g3d_ColorArray::Cleanup() noexcept {
    mem_Free(_entries);
    _entries = nullptr;
    _count = 0;
}
