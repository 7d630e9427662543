#pragma once

#include "omu_PrimEnum.h"

template <int N>
class omu_PrimBool;

/// The constants ON and OFF, with a class identity and a persistent level of their own.
template <>
class CAE_API omu_PrimBool<2> : public omu_PrimEnum<bool, 2> {
public:
    using Base = omu_PrimEnumBase;
    static constexpr cls_ClassInfo kClass{"omu_OnOffConst", 0x130025, 0x13001B, 800};
    static constexpr unsigned int TypeId() noexcept { return kClass.typeId; }

    /// ON or OFF.
    explicit omu_PrimBool(bool value) : omu_PrimEnum(value) {}
    explicit omu_PrimBool(const omu_PrimEnumBase& constant) : omu_PrimEnum(constant) {}
    explicit omu_PrimBool(const cow_String& name) : omu_PrimEnum(name) {}
    explicit omu_PrimBool(const char* name) : omu_PrimEnum(name) {}
    explicit omu_PrimBool(const cls_ReadVisitor& visitor);
    omu_PrimBool(const omu_PrimBool&) = default;
    omu_PrimBool& operator=(const omu_PrimBool&) = default;
    ~omu_PrimBool() override;

    void Accept(omu_PrimVisitor* visitor) const override;
    [[nodiscard]] omu_Primitive* Copy() const override;
    [[nodiscard]] unsigned int DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override;

    /// Gives every class level of the object a fresh persistent identity.
    void NewUid() noexcept {
        omu_PrimEnum::NewUid();
        _uid = cls_Uid::AllocateUid();
    }

    static void InitializeMetadata(cls_ClassRegistrar& registrar);

private:
    friend struct cls_Access;
    static constexpr auto Fields() { return std::tuple{}; }

    cls_Uid _uid;
};
