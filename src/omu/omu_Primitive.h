#pragma once

#include "CaeUtilsExport.h"
#include "cls_Fields.h"
#include "cls_Uid.h"
#include "cow_ArrayCOW.h"
#include "cow_CountedHld.h"
#include "cow_String.h"
#include "cow_Virtual.h"

#include <concepts>
#include <type_traits>

class omu_PrimVisitor;

/// Root of all values that pass between the application and the command language.
///
/// A value has a one-character kind code, fixed at construction, text forms, an equality and a
/// persistent form. It is immutable once shared: containers keep values in omu_PrimHolder, which
/// shares on copy and clones through Copy() on the first write. Values and their holders stay in
/// one thread at a time. A value carries the count of its holders itself.
class CAE_API omu_Primitive : public cow_HolderCount {
public:
    static constexpr cls_ClassInfo kClass{"omu_Primitive", 0x130011, 1, 514};
    /// The identity of this class.
    static constexpr unsigned int TypeId() noexcept { return kClass.typeId; }

    virtual ~omu_Primitive();
    /// User-visible name of the value's type.
    [[nodiscard]] virtual cow_String TypeString() const;
    /// Plain text. \p depth is the nesting depth, for containers of objects; others ignore it.
    [[nodiscard]] virtual cow_String AsString(int depth) const = 0;
    /// The value as it would be typed in the command language; AsString(0) unless overridden.
    [[nodiscard]] virtual cow_String AsRepr() const;
    virtual bool operator==(const omu_Primitive& other) const = 0;
    /// Calls the visitor's operation for the concrete class.
    virtual void Accept(omu_PrimVisitor* visitor) const = 0;
    /// A new value of the same class, owned by the caller.
    [[nodiscard]] virtual omu_Primitive* Copy() const = 0;
    /// The identity of the object's own class.
    [[nodiscard]] virtual unsigned int DynTypeId() const;
    virtual void DBWrite(const cls_WriteVisitor& visitor) const;

    /// Always the negation of operator==.
    bool operator!=(const omu_Primitive& other) const { return !(*this == other); }
    /// Whether the kind code is \p code; the cheap test, which does not look at classes.
    [[nodiscard]] bool IsType(char code) const noexcept { return _kind == code; }
    [[nodiscard]] char Kind() const noexcept { return _kind; }
    /// Whether the object's class is the class \p typeId or derived from it, by the type tables.
    [[nodiscard]] bool IsA(unsigned int typeId) const;
    /// The persistent identity of this class level; none until NewUid or reading gives one.
    [[nodiscard]] const cls_Uid& Uid() const noexcept { return _uid; }
    /// Gives this class level a fresh persistent identity.
    void NewUid() noexcept { _uid = cls_Uid::AllocateUid(); }

    static void InitializeMetadata(cls_ClassRegistrar& registrar);

protected:
    explicit omu_Primitive(char kind) noexcept : _kind(kind) {}
    explicit omu_Primitive(const cls_ReadVisitor& visitor);
    omu_Primitive(const omu_Primitive&) = default;
    omu_Primitive& operator=(const omu_Primitive&) = default;

private:
    friend struct cls_Access;
    static constexpr auto Fields() { return std::tuple{cls_Field{"type", &omu_Primitive::_kind}}; }

    char _kind;
    cls_Uid _uid;
};

/// A counted, copy-on-write holder of one value: ConstGet() shares, Get() unshares first.
using omu_PrimHolder = cow_ArrayCOW<omu_Primitive, cow_Virtual<omu_Primitive>>;

/// Equality of two values by the left one's rule; spares C++20 the choice between two orders.
template <std::derived_from<omu_Primitive> Left, std::derived_from<omu_Primitive> Right>
bool operator==(const Left& left, const Right& right) {
    return static_cast<const omu_Primitive&>(left).operator==(right);
}

/// \p value as a T when its class is T (or a class that reports T's identity), else null.
///
/// Kind codes are given by callers in places and identities are not, so this, never the kind code,
/// decides on a cast.
template <class T>
[[nodiscard]] const T* omu_PrimCast(const omu_Primitive& value) {
    return value.DynTypeId() == T::TypeId() ? static_cast<const T*>(&value) : nullptr;
}
