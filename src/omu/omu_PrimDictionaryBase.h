#pragma once

#include "omu_Primitive.h"

/// A dictionary of values, whatever its keys.
class CAE_API omu_PrimDictionaryBase : public omu_Primitive {
public:
    using Base = omu_Primitive;
    static constexpr cls_ClassInfo kClass{"omu_PrimDictionaryBase", 0x130012, 0x130011, 800};
    static constexpr unsigned int TypeId() noexcept { return kClass.typeId; }

    /// The kind code of every dictionary that this library makes.
    static constexpr char kCode = '{';

    ~omu_PrimDictionaryBase() override;
    [[nodiscard]] cow_String TypeString() const override { return "dictionary"; }
    [[nodiscard]] unsigned int DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override;

    /// Number of entries. Cost: constant.
    [[nodiscard]] virtual int Length() const = 0;
    /// Removes all entries.
    virtual void Clear() = 0;

    /// What the dictionary stands for in the command language: the code it was made with.
    [[nodiscard]] char Represents() const noexcept { return _represents; }

    /// Gives every class level of the object a fresh persistent identity.
    void NewUid() noexcept {
        omu_Primitive::NewUid();
        _uid = cls_Uid::AllocateUid();
    }

    static void InitializeMetadata(cls_ClassRegistrar& registrar);

protected:
    explicit omu_PrimDictionaryBase(char code) noexcept : omu_Primitive(code), _represents(code) {}
    explicit omu_PrimDictionaryBase(const cls_ReadVisitor& visitor);
    omu_PrimDictionaryBase(const omu_PrimDictionaryBase&) = default;
    omu_PrimDictionaryBase& operator=(const omu_PrimDictionaryBase&) = default;

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple{cls_Field{"m_Represents", &omu_PrimDictionaryBase::_represents}};
    }

    char _represents;
    cls_Uid _uid;
};
