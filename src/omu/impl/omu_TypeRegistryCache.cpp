#include "omu_TypeRegistryCache.h"

#include "cls_MetadataRegistrar.h"
#include "omi_Singleton.h"

#include <compare>
#include <tuple>

namespace {

constexpr unsigned kRoot = 1;

}  // namespace

int omu_TypeRegistryCache::Question::Compare(const Question& other) const noexcept {
    const auto own = std::tie(typeId, baseTypeId);
    const auto others = std::tie(other.typeId, other.baseTypeId);
    return own < others ? -1 : (others < own ? 1 : 0);
}

bool omu_TypeRegistryCache::Inherits(unsigned typeId, unsigned baseTypeId) {
    const Question question{typeId, baseTypeId};
    if (const auto* known = _inherits.ConstFind(question)) {
        return known->Value();
    }
    const bool answer = cls_ClassRegistrar::Inherits(typeId, baseTypeId);
    // A chain of bases that ends before the root goes on when a further module starts.
    if (answer || cls_ClassRegistrar::Inherits(typeId, kRoot)) {
        _inherits.InsertUnlessMember(question, answer);
    }
    return answer;
}

unsigned omu_TypeRegistryCache::TypeIdOf(const cow_String& storedName) {
    if (const auto* known = _typeIds.ConstFind(storedName)) {
        return known->Value();
    }
    const auto* metadata =
        omi_Singleton<cls_MetadataRegistrar>::Instance().Classes().Find(storedName);
    if (metadata == nullptr) {
        return 0;
    }
    _typeIds.InsertUnlessMember(storedName, metadata->TypeId());
    return metadata->TypeId();
}

void omu_TypeRegistryCache::Clear() noexcept {
    _inherits.Clear();
    _typeIds.Clear();
}

int omu_TypeRegistryCache::Count() const { return _inherits.Length() + _typeIds.Length(); }
