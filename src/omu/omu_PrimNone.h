#pragma once

#include "omu_PrimLevel.h"

/// The command language's None, with a flag of its own that only persistence carries along.
class CAE_API omu_PrimNone : public omu_PrimLevel<omu_PrimNone, omu_Primitive> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimNone", 0x13001D, 0x130011, 800};

    omu_PrimNone() noexcept : omu_PrimLevel('n') {}
    explicit omu_PrimNone(const cls_ReadVisitor& visitor);
    /// A copy is a new None: the flag is not carried over.
    omu_PrimNone(const omu_PrimNone&) noexcept : omu_PrimNone() {}
    omu_PrimNone& operator=(const omu_PrimNone&) noexcept { return *this; }
    ~omu_PrimNone() override;

    [[nodiscard]] cow_String TypeString() const override { return "None"; }
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// Whether both flags are equal; false for a value of another class.
    bool operator==(const omu_Primitive& other) const override;

    [[nodiscard]] bool IsSet() const noexcept { return _isSet; }
    void SetIsSet(bool isSet) noexcept { _isSet = isSet; }

private:
    friend struct cls_Access;
    static constexpr auto Fields() { return std::tuple{cls_Field{"isSet", &omu_PrimNone::_isSet}}; }

    bool _isSet = false;
    cls_Uid _uid;
};
