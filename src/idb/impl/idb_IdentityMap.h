#pragma once

#include "cls_Shared.h"

#include <cstdint>
#include <deque>
#include <vector>

/// The objects of a memento that may be reached again, by address and class, while it is written.
/// The class counts too: an object and its first member lie at one address.
class idb_IdentityMap {
public:
    enum class Keeping : std::uint8_t { Unknown, Owned, Shared };
    struct Identity {
        const void* object;
        unsigned typeId;
        int height = 0;  // of the object as a tree of objects and lists
        Keeping keeping = Keeping::Unknown;
        bool isOpen = false;       // being written
        bool isReached = false;    // again, or by a reference
        std::uint32_t number = 0;  // in the memento, once that is known
        const cls_HolderOps* ops = nullptr;
        alignas(void*) unsigned char holder[cls_HolderOps::kRoom] = {};  // keeps a shared one alive
    };

    idb_IdentityMap() = default;
    idb_IdentityMap(const idb_IdentityMap&) = delete;
    idb_IdentityMap& operator=(const idb_IdentityMap&) = delete;
    ~idb_IdentityMap();

    /// The index of the object, entered where it is not there yet.
    [[nodiscard]] std::uint32_t FindOrAdd(const void* object, unsigned typeId);
    [[nodiscard]] Identity& operator[](std::uint32_t index) { return _identities[index]; }
    /// Shares the object of \p index until the map goes.
    void Keep(std::uint32_t index, const cls_HolderRef& holder);

    [[nodiscard]] auto begin() noexcept { return _identities.begin(); }
    [[nodiscard]] auto end() noexcept { return _identities.end(); }

private:
    [[nodiscard]] std::size_t SlotOf(const void* object, unsigned typeId) const noexcept;
    void Rehash(std::size_t slots);

    static constexpr std::uint32_t kFree = ~0U;

    std::deque<Identity> _identities;   // they stay where they are: holders lie in them
    std::vector<std::uint32_t> _slots;  // open addressing; a power of two, at most half full
};
