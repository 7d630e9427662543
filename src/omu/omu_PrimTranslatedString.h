#pragma once

#include "omu_PrimLevel.h"

/// A translatable string; never equal to a plain one.
class CAE_API omu_PrimTranslatedString
    : public omu_PrimLevel<omu_PrimTranslatedString, omu_Primitive> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimTranslatedString", 0x130030, 0x130011, 800};

    omu_PrimTranslatedString() noexcept : omu_PrimLevel('l') {}
    explicit omu_PrimTranslatedString(atr_String text) noexcept
        : omu_PrimLevel('l'), _text(std::move(text)) {}
    explicit omu_PrimTranslatedString(const cls_ReadVisitor& visitor);
    ~omu_PrimTranslatedString() override;

    [[nodiscard]] cow_String TypeString() const override { return "tran_string"; }
    /// The text quoted as a plain string's is.
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// Whether the other is a translated string of the same bytes.
    bool operator==(const omu_Primitive& other) const override;

    [[nodiscard]] const char* AsCharPtr() const noexcept { return _text.AsCharPtr(); }
    [[nodiscard]] const atr_String& AsTranslatedString() const noexcept { return _text; }

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple{cls_Field{"string", &omu_PrimTranslatedString::_text}};
    }

    atr_String _text;
    cls_Uid _uid;
};
