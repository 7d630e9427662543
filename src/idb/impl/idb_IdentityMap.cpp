#include "idb_IdentityMap.h"

#include <bit>

idb_IdentityMap::~idb_IdentityMap() {
    for (Identity& identity : _identities) {
        if (identity.ops != nullptr) {
            identity.ops->destroy(identity.holder);
        }
    }
}

std::size_t idb_IdentityMap::SlotOf(const void* object, unsigned typeId) const noexcept {
    const std::size_t mask = _slots.size() - 1;
    // Fibonacci hashing: the high bits of the product depend on all bits of the address.
    const std::uint64_t product =
        (std::bit_cast<std::uintptr_t>(object) + typeId) * 0x9E3779B97F4A7C15U;
    auto slot = static_cast<std::size_t>(product >> 24) & mask;
    while (_slots[slot] != kFree) {
        const Identity& held = _identities[_slots[slot]];
        if (held.object == object && held.typeId == typeId) {
            break;
        }
        slot = (slot + 1) & mask;
    }
    return slot;
}

std::uint32_t idb_IdentityMap::FindOrAdd(const void* object, unsigned typeId) {
    if (_slots.size() <= 2 * _identities.size()) {
        Rehash(_slots.empty() ? 64 : _slots.size() * 4);
    }
    const std::size_t slot = SlotOf(object, typeId);
    if (_slots[slot] == kFree) {
        _identities.push_back({object, typeId});
        _slots[slot] = static_cast<std::uint32_t>(_identities.size() - 1);
    }
    return _slots[slot];
}

void idb_IdentityMap::Keep(std::uint32_t index, const cls_HolderRef& holder) {
    Identity& identity = _identities[index];
    holder.ops->share(identity.holder, holder.holder);
    identity.ops = holder.ops;
}

void idb_IdentityMap::Rehash(std::size_t slots) {
    _slots.assign(slots, kFree);
    for (std::uint32_t i = 0; i < _identities.size(); ++i) {
        _slots[SlotOf(_identities[i].object, _identities[i].typeId)] = i;
    }
}
