#pragma once

#include "idb_ReadStore.h"

/// The first pass over a memento: checks all of it and notes where things are. It does not recurse
/// and builds no object.
class idb_MementoCheck {
public:
    explicit idb_MementoCheck(idb_ReadStore& store) noexcept
        : _store(store), _budget(store._budget), _cursor(store.At(0)) {}

    void Run();

private:
    /// What may stand in a place. Type 0 is anything.
    struct Expected {
        int type = 0;  // a cls_AttributeType
        unsigned classId = 1;
        cls_CollectionType collection = cls_CollectionType::Single;
    };
    struct Frame {
        enum Kind : std::uint8_t { Roots, Object, List };
        Kind kind;
        std::uint64_t left = 0;
        const idb_ReadClass* type = nullptr;  // of an object, or that of the list's field
        std::size_t field = 0;
        Expected element{};  // of a list
        int height = 0;
        std::uint32_t number = idb_ReadStore::Shareable::kNone;
    };

    void Header();
    void Root();
    void NextValue(Frame& frame);
    void Value(const Expected& expected);
    void Integer(const idb_Head& head, const Expected& expected);
    void Text(const idb_Head& head, const Expected& expected);
    void Tagged(const idb_Head& head, const Expected& expected);
    void Numbers(const idb_Head& tag, const Expected& expected);
    void Array(const idb_Head& head, const Expected& expected, std::uint32_t number);
    void OpenList(const idb_Head& head, const Expected& expected);
    void OpenObject(const idb_Head& head, const idb_Head& index, const Expected& expected,
                    std::uint32_t number);
    void Close();
    void CheckClass(const idb_ReadClass& type, const Expected& expected, std::size_t at);
    [[nodiscard]] std::string Place() const;
    [[noreturn]] void Wrong(const idb_Head& head, const Expected& expected) const;

    idb_ReadStore& _store;
    idb_Budget& _budget;
    idb_Cursor _cursor;
    std::vector<Frame> _frames;
    std::uint64_t _objectCount = 0;
    std::uint64_t _farthest = 0;  // one more than the highest number that a reference names
    std::size_t _farthestAt = 0;
};
