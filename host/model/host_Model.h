#pragma once

#include "host_Member.h"
#include "mdl_Model.h"
#include "mdl_Repository.h"

#include <array>
#include <cstddef>
#include <set>
#include <span>
#include <vector>

/// The model that the commands work on: settings, and named members in order.
///
/// A class T of members says which it is by kKind. Changes are
/// made within a host_Transaction and can be taken back. For the main thread.
class host_Model {
public:
    /// The model of the process.
    static host_Model& Instance();

    [[nodiscard]] const mdl_Model& Settings() const noexcept { return *_contents.settings; }
    [[nodiscard]] mdl_Model& EditSettings();

    /// The member of that name, or null.
    template <class T>
    [[nodiscard]] T* Look(const cow_String& name) {
        return static_cast<T*>(Repository(T::kKind).Find(name));
    }
    /// The member of that name. omu_AccessErrorException for one that was removed,
    /// omu_KeyErrorException for one that never was.
    template <class T>
    [[nodiscard]] T& Find(const cow_String& name) {
        return static_cast<T&>(FindMember(T::kKind, name));
    }
    /// All members of a kind, in order.
    template <class T>
    [[nodiscard]] std::vector<T*> All() {
        std::vector<T*> all;
        for (const auto& member : Repository(T::kKind).Members()) {
            all.push_back(static_cast<T*>(member.get()));
        }
        return all;
    }
    template <class T>
    [[nodiscard]] int IndexOf(const cow_String& name) {
        return Repository(T::kKind).IndexOf(name);
    }

    /// Adds a member behind the last of its kind, or at place \p index. Errors as of
    /// mdl_Repository: a name against the rules or in use.
    template <class T>
    T& Add(std::unique_ptr<T> member, int index = -1) {
        T& added = *member;
        AddMember(T::kKind, std::move(member), index);
        return added;
    }
    /// Takes a member out of the model.
    template <class T>
    void Remove(T& member) {
        RemoveMember(T::kKind, member);
    }
    /// Renames a member in its repository; others that name it are not told.
    void Rename(host_Member& member, const cow_String& name);

    /// Empties the model; its settings become the default.
    void Clear();
    /// The model as a memento. Equal models, made by the same commands, give equal bytes.
    [[nodiscard]] std::vector<std::byte> Memento() const;
    /// Puts the model of a memento in place of this one. idb_MementoErrorException or a script
    /// error when the bytes are not one, and nothing has changed then.
    void Open(std::span<const std::byte> stored);

    /// Number of the identity given last within the model.
    [[nodiscard]] std::uint64_t& LastUid() noexcept { return _contents.lastUid; }

private:
    using SettingsHolder = cow_COW<mdl_Model, cow_Direct<mdl_Model>>;
    struct Contents {
        SettingsHolder settings = SettingsHolder::Make();
        std::array<mdl_Repository, host_kMemberKinds> members;
        std::uint64_t lastUid = 0;
    };

    host_Model();

    [[nodiscard]] mdl_Repository& Repository(host_MemberKind kind) noexcept {
        return _contents.members[static_cast<std::size_t>(kind)];
    }
    host_Member& FindMember(host_MemberKind kind, const cow_String& name);
    void AddMember(host_MemberKind kind, std::unique_ptr<host_Member> member, int index);
    void RemoveMember(host_MemberKind kind, host_Member& member);
    void Exchange(Contents& other);
    void Replace(const std::shared_ptr<Contents>& contents);

    Contents _contents;
    std::array<std::set<cow_String>, host_kMemberKinds> _removed;  // names, for clearer errors
};
