#pragma once

#include "omu_PrimLevel.h"

class omu_PrimEnumBase;

/// A string.
class CAE_API omu_PrimString : public omu_PrimLevel<omu_PrimString, omu_Primitive> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimString", 0x130018, 0x130011, 800};

    omu_PrimString() noexcept : omu_PrimLevel('s') {}
    /// The text itself.
    explicit omu_PrimString(cow_String text) noexcept
        : omu_PrimLevel('s'), _text(std::move(text)) {}
    explicit omu_PrimString(const char* text) : omu_PrimString(cow_String(text)) {}
    /// The constant's name.
    explicit omu_PrimString(const omu_PrimEnumBase& constant);
    /// The decimal text.
    explicit omu_PrimString(int value);
    explicit omu_PrimString(unsigned int value);
    /// The text a float number prints: "2.0", "1e+20".
    explicit omu_PrimString(double value);
    explicit omu_PrimString(const cls_ReadVisitor& visitor);
    ~omu_PrimString() override;

    [[nodiscard]] cow_String TypeString() const override { return "string"; }
    /// The quoted text.
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// Whether the other is a string of the same bytes.
    bool operator==(const omu_Primitive& other) const override;

    [[nodiscard]] const cow_String& Text() const noexcept { return _text; }
    [[nodiscard]] const char* AsCharPtr() const noexcept { return _text.AsCharPtr(); }
    /// Number of bytes.
    [[nodiscard]] int Length() const noexcept { return _text.Length(); }
    /// Byte \p index, in [0, Length()); '\0' at Length(). Outside: std::out_of_range.
    [[nodiscard]] char operator[](int index) const { return _text[index]; }
    /// Appends the other's text.
    void Concat(const omu_PrimString& other) { _text += other._text.View(); }

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple{cls_Field{"string", &omu_PrimString::_text}};
    }

    cow_String _text;
    cls_Uid _uid;
};
