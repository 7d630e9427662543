#pragma once

#include "cow_List.h"
#include "mdl_Extension.h"
#include "omu_TarvexName.h"

#include <memory>
#include <set>
#include <vector>

/// Named objects in the order in which they were added, each owned by it; itself an object that
/// can hang in another repository.
///
/// Names are unique and obey the rules of a kind of names; upper and lower case differ. Errors are
/// those of scripts: omu_TvxNameErrorException for a name against the rules,
/// omu_ValueErrorException for a name in use, omu_KeyErrorException for one that is not there;
/// nothing has changed then. Looking a name up is logarithmic; places in the order cost a walk.
/// Members stay where they are in memory. One thread at a time.
///
/// As an object it stores nothing: its members are stored by its owner, as a field of the type
/// mdl_Repository; their classes then store their names.
class CAE_API mdl_Repository : public mdl_Extension {
public:
    static constexpr cls_ClassInfo kClass{"mdl_Repository", 0x0A0001, 0x0A000D, 507};
    static constexpr unsigned TypeId() noexcept { return kClass.typeId; }

    /// \param name  of the repository itself, not checked; \param kind  the rules of members'
    /// names.
    explicit mdl_Repository(cow_String name = {}, omu_TarvexNameEnum kind = GENERAL_NAME);
    explicit mdl_Repository(const cls_ReadVisitor& visitor);
    /// Copies every member, with their names and identities.
    mdl_Repository(const mdl_Repository& other);
    mdl_Repository& operator=(const mdl_Repository& other);
    ~mdl_Repository() override;

    [[nodiscard]] unsigned DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override;
    [[nodiscard]] mdl_Extension* Copy() const override;
    static void InitializeMetadata(cls_ClassRegistrar& registrar);

    [[nodiscard]] int Length() const noexcept { return static_cast<int>(_members.size()); }
    [[nodiscard]] bool Has(const cow_String& name) const { return Find(name) != nullptr; }
    /// The member of that name, or null.
    [[nodiscard]] const mdl_Extension* Find(const cow_String& name) const;
    [[nodiscard]] mdl_Extension* Find(const cow_String& name);
    /// The member of that name.
    [[nodiscard]] const mdl_Extension& ConstGet(const cow_String& name) const;
    [[nodiscard]] mdl_Extension& Get(const cow_String& name);
    /// Place of a member in the order.
    [[nodiscard]] int IndexOf(const cow_String& name) const;
    /// All names, and all members, in order.
    [[nodiscard]] cow_List<cow_String> Names() const;
    [[nodiscard]] const std::vector<std::unique_ptr<mdl_Extension>>& Members() const noexcept {
        return _members;
    }
    [[nodiscard]] omu_TarvexNameEnum NameKind() const noexcept { return _kind; }

    /// Adds an object, which is in no repository, under its own name behind the last one. It is
    /// taken over also when this raises.
    mdl_Extension& Add(std::unique_ptr<mdl_Extension> member);
    /// Adds it at the place \p index in [0, Length()], as to bring a removed one back. When this
    /// raises, the caller still has it.
    mdl_Extension& Insert(int index, std::unique_ptr<mdl_Extension>&& member);
    /// Renames a member, which keeps its place.
    void Rename(const cow_String& from, const cow_String& to);
    /// Adds a copy of a member, as an object of its own, under the name \p to behind the last one.
    mdl_Extension& CopyMember(const cow_String& from, const cow_String& to);
    /// Takes a member out; dropping the result deletes it.
    std::unique_ptr<mdl_Extension> Remove(const cow_String& name);
    /// Deletes all members, the last one first.
    void Clear() noexcept;
    /// Exchanges members and their rules of names.
    void SwapMembers(mdl_Repository& other) noexcept;

private:
    friend struct cls_Access;
    using Base = mdl_Extension;
    static constexpr auto Fields() { return std::tuple(); }

    /// Finds members by name; their own names are the keys.
    struct ByName {
        using is_transparent = void;
        static const cow_String& Key(const cow_String& name) { return name; }
        static const cow_String& Key(const mdl_Extension* member) { return member->Name(); }
        bool operator()(const auto& a, const auto& b) const { return Key(a) < Key(b); }
    };

    void CheckNew(const cow_String& name) const;
    void Adopt() noexcept;

    omu_TarvexNameEnum _kind = GENERAL_NAME;
    std::vector<std::unique_ptr<mdl_Extension>> _members;
    std::set<mdl_Extension*, ByName> _byName;
};

/// The members of a repository, as a field of its owner: a list of objects, to which others may
/// refer.
template <>
struct CAE_API cls_FieldTraits<mdl_Repository> {
    static constexpr cls_AttributeType kType = cls_AttributeType::Object;
    static constexpr unsigned kClassId = mdl_Extension::TypeId();
    static constexpr cls_CollectionType kCollection = cls_CollectionType::List;

    static void Write(const cls_WriteVisitor& visitor, const char* name,
                      const mdl_Repository& repository);
    /// Replaces the members; names are checked as if the members were added one by one.
    static void Read(const cls_ReadVisitor& visitor, const char* name, mdl_Repository& repository);
};
