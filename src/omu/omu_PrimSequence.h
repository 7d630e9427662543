#pragma once

#include "omu_Primitive.h"

/// A sequence of values: what tuples, lists and numeric arrays have in common.
class CAE_API omu_PrimSequence : public omu_Primitive {
public:
    using Base = omu_Primitive;
    static constexpr cls_ClassInfo kClass{"omu_PrimSequence", 0x130020, 0x130011, 800};
    static constexpr unsigned int TypeId() noexcept { return kClass.typeId; }

    /// The kind code of every sequence that this library makes.
    static constexpr char kCode = '(';

    [[nodiscard]] cow_String TypeString() const override;
    [[nodiscard]] unsigned int DynTypeId() const override;
    void DBWrite(const cls_WriteVisitor& visitor) const override;

    /// Number of elements.
    [[nodiscard]] virtual int Length() const = 0;
    /// Element \p index, in [0, Length()), owned by the sequence; null where there is none.
    [[nodiscard]] virtual const omu_Primitive* Index(int index) const = 0;
    /// A new sequence of copies of the elements [begin, end); negative places count from the end.
    /// The caller owns it.
    [[nodiscard]] virtual omu_PrimSequence* Slice(int begin, int end) const = 0;
    /// A new sequence holding copies of all elements \p count times over. The caller owns it.
    [[nodiscard]] virtual omu_PrimSequence* Repeat(int count) const = 0;
    /// A new sequence of copies of this one's elements, then the other's. The caller owns it.
    [[nodiscard]] virtual omu_PrimSequence* Concat(omu_PrimSequence* other) const = 0;

    /// Gives every class level of the object a fresh persistent identity.
    void NewUid() noexcept {
        omu_Primitive::NewUid();
        _uid = cls_Uid::AllocateUid();
    }

    static void InitializeMetadata(cls_ClassRegistrar& registrar);

protected:
    explicit omu_PrimSequence(char code) noexcept : omu_Primitive(code) {}
    explicit omu_PrimSequence(const cls_ReadVisitor& visitor);
    omu_PrimSequence(const omu_PrimSequence&) = default;
    omu_PrimSequence& operator=(const omu_PrimSequence&) = default;

private:
    friend struct cls_Access;
    static constexpr auto Fields() { return std::tuple{}; }

    cls_Uid _uid;
};
