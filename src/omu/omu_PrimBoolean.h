#pragma once

#include "omu_PrimLevel.h"

/// True or False.
class CAE_API omu_PrimBoolean : public omu_PrimLevel<omu_PrimBoolean, omu_Primitive> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimBoolean", 0x130031, 0x130011, 800};

    explicit omu_PrimBoolean(bool value = false) noexcept : omu_PrimLevel('b'), _value(value) {}
    explicit omu_PrimBoolean(const cls_ReadVisitor& visitor);
    ~omu_PrimBoolean() override;

    [[nodiscard]] cow_String TypeString() const override { return "Boolean"; }
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// Whether both truth values are equal; false for a value of another class.
    bool operator==(const omu_Primitive& other) const override;

    [[nodiscard]] bool Value() const noexcept { return _value; }

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple{cls_Field{"m_value", &omu_PrimBoolean::_value}};
    }

    bool _value;
    cls_Uid _uid;
};
