#pragma once

#include "omu_PrimLevel.h"

/// A text that stands for code: printed into a command it reads as an expression, not as a string.
class CAE_API omu_PrimExpr : public omu_PrimLevel<omu_PrimExpr, omu_Primitive> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimExpr", 0x13001A, 0x130011, 800};

    explicit omu_PrimExpr(cow_String text = {}) noexcept
        : omu_PrimLevel('e'), _text(std::move(text)) {}
    explicit omu_PrimExpr(const cls_ReadVisitor& visitor);
    ~omu_PrimExpr() override;

    [[nodiscard]] cow_String TypeString() const override { return "expression"; }
    /// The text exactly as held, without quotes.
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// Whether the other is an expression of the same bytes.
    bool operator==(const omu_Primitive& other) const override;

private:
    friend struct cls_Access;
    static constexpr auto Fields() { return std::tuple{cls_Field{"expr", &omu_PrimExpr::_text}}; }

    cow_String _text;
    cls_Uid _uid;
};
