#pragma once

#include "g3d_Color.h"
#include "mem_AllocationOperators.h"

/// A palette of up to 254 colours, four bytes each: red, green, blue, alpha.
///
/// A value: copies have their own storage. Where memory is exhausted mem_ExhaustedException is
/// raised and nothing has changed.
class CAE_API g3d_ColorArray : public mem_AllocationOperators {
public:
    static constexpr unsigned kCapacity = 254;

    g3d_ColorArray() noexcept = default;
    g3d_ColorArray(const g3d_ColorArray& other);
    g3d_ColorArray& operator=(const g3d_ColorArray& other);
    virtual ~g3d_ColorArray();

    /// Index of the entry that has the bytes of \p color, taken as opaque; it is added if there is
    /// none. 254, with nothing added, when the palette is full.
    unsigned CheckColor(const g3d_Color& color);

    /// Entry \p index, bytes over 255; opaque white for any index that is none of an entry.
    [[nodiscard]] g3d_Color GetColor(unsigned index) const noexcept;
    /// The same without alpha; an index above the number of entries leaves all three untouched.
    void GetColor(unsigned index, float& red, float& green, float& blue) const noexcept;

    /// From bytes over 255, red in bits 0 to 7, then green, blue, alpha: the reverse of the order
    /// that g3d_Color::Set(unsigned) takes.
    [[nodiscard]] static g3d_Color IntToFloatColor(unsigned abgr) noexcept;

    /// Gives every entry this \p alpha, as a byte (see g3d_Color::GetRGBA).
    void SetAlpha(float alpha) noexcept;
    /// Replaces every entry by its g3d_Color::GetContrastingColor to \p background; alphas stay.
    void ContrastColors(const g3d_Color& background) noexcept;
    /// Empties the palette and gives its storage back.
    void Cleanup() noexcept;

    [[nodiscard]] unsigned Length() const noexcept { return _count; }

private:
    struct Entry;

    [[nodiscard]] static Entry* Resized(Entry* entries, unsigned count);

    Entry* _entries = nullptr;
    unsigned _count = 0;
};
