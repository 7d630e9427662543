#pragma once

#include "omu_PrimVisitor.h"
#include "omu_Primitive.h"

/// The operations that every concrete class of values implements alike: identity, copy, dispatch,
/// writing and registration.
///
/// Self derives from omu_PrimLevel<Self, its base class>, offers kClass and a constructor from a
/// reader, befriends cls_Access and ends with its own `cls_Uid _uid`.
template <class Self, class BaseClass>
class CAE_API omu_PrimLevel : public BaseClass {
public:
    using Base = BaseClass;
    static constexpr unsigned int TypeId() noexcept { return Self::kClass.typeId; }

    using BaseClass::BaseClass;
    omu_PrimLevel() = default;

    void Accept(omu_PrimVisitor* visitor) const override { visitor->Visit(Own()); }
    [[nodiscard]] omu_Primitive* Copy() const override { return new Self(Own()); }
    [[nodiscard]] unsigned int DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override {
        cls_WriteLevel<Self>(Own(), cls_Access::UidOf<Self>(Own()), visitor);
    }

    /// Gives every class level of the object a fresh persistent identity.
    void NewUid() noexcept {
        BaseClass::NewUid();
        cls_Access::UidOf(static_cast<Self&>(*this)) = cls_Uid::AllocateUid();
    }

    static void InitializeMetadata(cls_ClassRegistrar& registrar) {
        cls_RegisterClass<Self, omu_PrimHolder>(registrar);
    }

protected:
    /// Reads the base level of the object \p visitor stands on.
    explicit omu_PrimLevel(const cls_ReadVisitor& visitor)
        : BaseClass(*visitor.Base(BaseClass::TypeId())) {}

private:
    const Self& Own() const { return static_cast<const Self&>(*this); }
};
