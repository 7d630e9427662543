#include "mdl_Repository.h"

#include "cow_COW.h"
#include "cow_Virtual.h"
#include "nex_TextException.h"
#include "omu_ErrorExceptions.h"

#include <algorithm>
#include <bit>

namespace {

constexpr const char* kSource = "generated/mdl/impl/mdl_Repository";

}  // namespace

mdl_Repository::mdl_Repository(cow_String name, omu_TarvexNameEnum kind)
    : mdl_Extension(std::move(name)), _kind(kind) {}

mdl_Repository::mdl_Repository(const cls_ReadVisitor& visitor)
    : mdl_Extension(*visitor.Base(mdl_Extension::TypeId())) {}

mdl_Repository::mdl_Repository(const mdl_Repository& other)
    : mdl_Extension(other), _kind(other._kind) {
    _members.reserve(other._members.size());
    for (const auto& member : other._members) {
        std::unique_ptr<mdl_Extension> copy(member->Copy());
        copy->_name = member->_name;
        copy->_owner = this;
        _byName.insert(copy.get());
        _members.push_back(std::move(copy));
    }
}

mdl_Repository& mdl_Repository::operator=(const mdl_Repository& other) {
    mdl_Repository(other).SwapMembers(*this);
    return *this;
}

mdl_Repository::~mdl_Repository() { Clear(); }

void mdl_Repository::DBWrite(const cls_WriteVisitor& visitor) const {
    cls_WriteLevel(*this, GetUid(), visitor);
}

mdl_Extension* mdl_Repository::Copy() const { return new mdl_Repository(*this); }

void mdl_Repository::InitializeMetadata(cls_ClassRegistrar& registrar) {
    cls_RegisterClass<mdl_Repository, cow_COW<mdl_Extension, cow_Virtual<mdl_Extension>>>(
        registrar);
}

const mdl_Extension* mdl_Repository::Find(const cow_String& name) const {
    const auto found = _byName.find(name);
    return found == _byName.end() ? nullptr : *found;
}

mdl_Extension* mdl_Repository::Find(const cow_String& name) {
    return const_cast<mdl_Extension*>(std::as_const(*this).Find(name));
}

const mdl_Extension& mdl_Repository::ConstGet(const cow_String& name) const {
    const mdl_Extension* member = Find(name);
    if (member == nullptr) {
        omu_KeyErrorException(name).Throw(kSource, __LINE__);
    }
    return *member;
}

mdl_Extension& mdl_Repository::Get(const cow_String& name) {
    return const_cast<mdl_Extension&>(ConstGet(name));
}

int mdl_Repository::IndexOf(const cow_String& name) const {
    const mdl_Extension* member = &ConstGet(name);
    const auto found = std::ranges::find_if(
        _members, [member](const auto& candidate) { return candidate.get() == member; });
    return static_cast<int>(found - _members.begin());
}

cow_List<cow_String> mdl_Repository::Names() const {
    cow_List<cow_String> names;
    for (const auto& member : _members) {
        names.Append(member->Name());
    }
    return names;
}

mdl_Extension& mdl_Repository::Add(std::unique_ptr<mdl_Extension> member) {
    return Insert(Length(), std::move(member));
}

mdl_Extension& mdl_Repository::Insert(int index, std::unique_ptr<mdl_Extension>&& member) {
    if (index < 0 || index > Length()) {
        cow_ThrowIndex(index, Length() + 1LL);
    }
    if (member == nullptr || member->_owner != nullptr) {
        nex_TextException("A repository takes an object that no repository has.")
            .Throw(kSource, __LINE__);
    }
    CheckNew(member->_name);
    _members.reserve(std::max(_members.capacity(), std::bit_ceil(_members.size() + 1)));
    _byName.insert(member.get());
    member->_owner = this;
    return **_members.insert(_members.begin() + index, std::move(member));
}

void mdl_Repository::Rename(const cow_String& from, const cow_String& to) {
    mdl_Extension& member = Get(from);
    if (from == to) {
        return;
    }
    CheckNew(to);
    cow_String name(to);
    auto entry = _byName.extract(&member);  // from may be the member's own name: not used below
    member._name = std::move(name);
    _byName.insert(std::move(entry));
}

mdl_Extension& mdl_Repository::CopyMember(const cow_String& from, const cow_String& to) {
    const mdl_Extension& member = ConstGet(from);
    CheckNew(to);
    std::unique_ptr<mdl_Extension> copy(member.Copy());
    copy->_name = to;
    copy->NewUid();
    return Add(std::move(copy));
}

std::unique_ptr<mdl_Extension> mdl_Repository::Remove(const cow_String& name) {
    const int index = IndexOf(name);
    std::unique_ptr<mdl_Extension> member = std::move(_members[static_cast<std::size_t>(index)]);
    _members.erase(_members.begin() + index);
    _byName.erase(member.get());
    member->_owner = nullptr;
    return member;
}

void mdl_Repository::Clear() noexcept {
    _byName.clear();
    while (!_members.empty()) {
        // A member that asks for its owner while it ends finds it without the member.
        const std::unique_ptr<mdl_Extension> last = std::move(_members.back());
        _members.pop_back();
    }
}

void mdl_Repository::SwapMembers(mdl_Repository& other) noexcept {
    std::swap(_kind, other._kind);
    _members.swap(other._members);
    _byName.swap(other._byName);
    Adopt();
    other.Adopt();
}

void mdl_Repository::CheckNew(const cow_String& name) const {
    static_cast<void>(omu_TarvexName(name, _kind));
    if (Has(name)) {
        omu_ValueErrorException(atr_String::Format("The name '%s' is in use.", name))
            .Throw(kSource, __LINE__);
    }
}

void mdl_Repository::Adopt() noexcept {
    for (const auto& member : _members) {
        member->_owner = this;
    }
}

// Persistence.

void cls_FieldTraits<mdl_Repository>::Write(const cls_WriteVisitor& visitor, const char* name,
                                            const mdl_Repository& repository) {
    const auto list = visitor.List(name, repository.Length());
    for (const auto& member : repository.Members()) {
        list->WriteOwned("", cls_ObjectRef::Of(member.get()));
    }
}

void cls_FieldTraits<mdl_Repository>::Read(const cls_ReadVisitor& visitor, const char* name,
                                           mdl_Repository& repository) {
    mdl_Repository read(repository.Name(), repository.NameKind());
    const auto list = visitor.List(name);
    for (int left = list->Count(); left > 0; --left) {
        void* object = list->ReadOwned("", mdl_Extension::TypeId());
        read.Add(std::unique_ptr<mdl_Extension>(static_cast<mdl_Extension*>(object)));
    }
    repository.SwapMembers(read);
}
