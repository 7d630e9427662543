#pragma once

#include "CaeUtilsExport.h"
#include "cls_Fields.h"

class mdl_Repository;

/// Base of the objects that hang in a repository under a name: parts, materials, steps, loads.
///
/// Derive from it first (a stored object is found again by its address), give the class an
/// identity, and write and read it with the class system; a class that keeps its name lists
/// NameField() among its own fields, for this level stores none. One thread at a time.
class CAE_API mdl_Extension : public mem_AllocationOperators {
public:
    static constexpr cls_ClassInfo kClass{"mdl_Extension", 0x0A000D, 1, 401};
    static constexpr unsigned TypeId() noexcept { return kClass.typeId; }

    virtual ~mdl_Extension();
    [[nodiscard]] virtual unsigned DynTypeId() const = 0;
    /// Writes this level; derived classes call it for their base level.
    virtual void DBWrite(const cls_WriteVisitor& visitor) const;
    /// Gives the object a fresh persistent identity.
    virtual void NewUid();
    /// A new copy of the same class, with the same name and identity and in no repository; the
    /// caller owns it.
    [[nodiscard]] virtual mdl_Extension* Copy() const = 0;
    static void InitializeMetadata(cls_ClassRegistrar& registrar);

    /// The name under which it hangs, or is to hang. Only a repository changes it.
    [[nodiscard]] const cow_String& Name() const noexcept { return _name; }
    /// The repository that owns it, or null.
    [[nodiscard]] mdl_Repository* Owner() const noexcept { return _owner; }
    [[nodiscard]] const cls_Uid& GetUid() const noexcept { return _uid; }

protected:
    explicit mdl_Extension(cow_String name = {});
    explicit mdl_Extension(const cls_ReadVisitor& visitor);
    mdl_Extension(const mdl_Extension& other) : _name(other._name), _uid(other._uid) {}
    /// Name, owner and identity stay: an object that takes another's content keeps its place.
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is assigned
    mdl_Extension& operator=(const mdl_Extension& /*other*/) noexcept { return *this; }

    /// For the field list of a derived class.
    [[nodiscard]] static constexpr auto NameField() {
        return cls_Field("name", &mdl_Extension::_name);
    }

private:
    friend struct cls_Access;
    friend class mdl_Repository;
    static constexpr auto Fields() { return std::tuple(); }

    cow_String _name;
    mdl_Repository* _owner = nullptr;
    cls_Uid _uid;
};
