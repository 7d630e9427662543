#pragma once

#include "cls_Shared.h"
#include "idb_MementoRead.h"
#include "idb_ReadClasses.h"

#include <deque>
#include <unordered_map>

/// What the visitors of one memento read from.
class idb_ReadStore {
public:
    /// An object that is reached more than once, by its number.
    struct Shareable {
        enum State : std::uint8_t { Unbuilt, Owned, Shared };
        static constexpr std::uint32_t kNone = ~0U;

        std::size_t offset;  // of its array, behind the tag
        const idb_ReadClass* type = nullptr;
        int height = 0;      // as a tree of objects and lists
        bool isOpen = true;  // not passed to its end yet
        State state = Unbuilt;
        std::uint32_t pending = kNone;  // first of the references that wait for it
        const cls_HolderOps* ops = nullptr;
        void* owned = nullptr;
        alignas(void*) unsigned char holder[cls_HolderOps::kRoom] = {};
    };

    /// Checks all of \p bytes, building nothing.
    explicit idb_ReadStore(std::span<const std::byte> bytes);
    idb_ReadStore(const idb_ReadStore&) = delete;
    idb_ReadStore& operator=(const idb_ReadStore&) = delete;
    ~idb_ReadStore();

    void Finish();
    void CheckUsable() const;

    [[nodiscard]] idb_Cursor At(std::size_t at) noexcept { return {_bytes, at, _budget}; }
    /// Moves \p sequence on to value \p index, which exists.
    void Seek(idb_Sequence& sequence, std::uint64_t index);
    /// Builds the object whose array \p cursor stands behind the head of; moves it to the end.
    [[nodiscard]] void* Build(idb_Cursor& cursor, const idb_Head& array, unsigned baseTypeId,
                              bool isKept);
    /// The number of the shareable object whose array begins at \p offset.
    [[nodiscard]] std::uint32_t NumberAt(std::size_t offset);
    [[nodiscard]] Shareable& Object(std::uint64_t number, std::size_t at);
    /// Makes \p holder share the object \p number, which is built if it is not there yet. Where
    /// \p inPlace stands on the object itself, it is moved on behind it.
    void Share(std::uint64_t number, unsigned baseTypeId, const cls_HolderOps& ops, void* holder,
               std::size_t at, idb_Cursor* inPlace);
    /// Raises where object \p number is not of class \p baseTypeId.
    void CheckTarget(std::uint64_t number, unsigned baseTypeId, std::size_t at);
    void SetOwned(std::uint32_t number, void* object);
    void AddReference(std::uint32_t number, void* place, void (*set)(void*, void*));

    [[nodiscard]] const std::unordered_map<std::string_view, std::size_t>& Roots() const noexcept {
        return _roots;
    }
    [[nodiscard]] const std::vector<std::string_view>& RootNames() const noexcept {
        return _rootNames;
    }

private:
    friend class idb_MementoCheck;

    struct Reference {
        void* place;
        void (*set)(void* place, void* object);
        std::uint32_t next;
    };

    void CheckType(const idb_ReadClass& type, unsigned baseTypeId, std::size_t at) const;

    std::span<const std::uint8_t> _bytes;
    idb_Budget _budget;
    idb_ReadClasses _classes;
    std::vector<std::string_view> _rootNames;
    std::unordered_map<std::string_view, std::size_t> _roots;  // byte of the value
    std::deque<Shareable> _objects;  // by number, which is also the order of offsets
    std::deque<Reference> _references;
    std::size_t _waiting = 0;       // references not set yet
    std::uint32_t _nextObject = 0;  // the one probably met next
    bool _isBroken = false;
};
