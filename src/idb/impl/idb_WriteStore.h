#pragma once

#include "cls_Shared.h"
#include "idb_Cbor.h"
#include "idb_IdentityMap.h"

#include <array>
#include <string>
#include <vector>

/// One entry of a memento's table of classes while it is written: a class with the fields that its
/// objects wrote. A class whose objects wrote different fields has several.
struct idb_WriteClass {
    struct Field {
        std::string name;
        unsigned level;  // 0: the object's own class, 1: its base, ...
    };

    unsigned typeId;
    unsigned index;  // in the table
    int base;        // entry of the base level, or -1
    std::string name;
    int version;
    std::vector<std::string> ownFields;
    std::vector<unsigned> levels;  // type identities, own first
    std::vector<Field> fields;     // of all levels, the outermost base's first

    [[nodiscard]] std::uint64_t Length() const noexcept {
        return 1 + levels.size() + fields.size();
    }
};

/// What the visitors of one memento write into.
///
/// The body is encoded in one pass, field by field; marks note the places where bytes come in that
/// are known only at the end: which objects are reached again, and the head of a class's first
/// object. Finish puts both together.
class idb_WriteStore {
public:
    idb_WriteStore();
    idb_WriteStore(const idb_WriteStore&) = delete;
    idb_WriteStore& operator=(const idb_WriteStore&) = delete;

    [[nodiscard]] std::vector<std::byte> Finish();

    /// Every operation that writes a value begins with this: the encoder stands where it goes.
    idb_cbor::Encoder& Value(std::size_t frame, unsigned level, const char* name) {
        Frame& top = _frames.back();
        if (_frames.size() - 1 == frame && top.kind == Frame::Kind::Object &&
            top.shape != nullptr && top.field < top.shape->fields.size()) [[likely]] {
            const idb_WriteClass::Field& expected = top.shape->fields[top.field];
            if (expected.level == level && std::strcmp(expected.name.c_str(), name) == 0)
                [[likely]] {
                ++top.field;
                return _body;
            }
        }
        return UnexpectedValue(frame, level, name);
    }

    void Start(std::size_t frame, unsigned level, unsigned typeId, const cls_Uid& uid);
    void CheckBase(std::size_t frame, unsigned level, unsigned typeId);
    /// The frame of a new list.
    std::size_t OpenList(std::size_t frame, unsigned level, const char* name, int count);
    void CloseList(std::size_t frame) noexcept;
    void Object(std::size_t frame, unsigned level, const char* name, const cls_ObjectRef& object);
    // The objects of the following three are not null.
    void Shared(std::size_t frame, unsigned level, const char* name, const cls_ObjectRef& object,
                const cls_HolderRef& holder);
    void Owned(std::size_t frame, unsigned level, const char* name, const cls_ObjectRef& object);
    void Reference(std::size_t frame, unsigned level, const char* name,
                   const cls_ObjectRef& object);

private:
    /// What a class's object wrote so far, where that is not yet known from another object.
    struct Learned {
        std::vector<unsigned> levels;
        std::vector<std::pair<unsigned, std::string>> fields;  // level and name, in writing order
    };
    struct Frame {
        enum class Kind : std::uint8_t { Roots, Object, List };
        Kind kind;
        idb_WriteClass* shape = nullptr;  // null: being learned
        std::size_t field = 0;            // values written, or elements left of a list
        unsigned level = 0;               // levels started
        int height = 0;                   // of the objects and lists within
        unsigned typeId = 0;
        std::size_t headAt = 0;
        std::size_t mark = 0;  // of the head, where the class is being learned
        std::size_t learned = 0;
    };
    struct Mark {
        enum Kind : std::uint8_t { Define, Share, Refer, Head };
        std::size_t offset;
        std::uint32_t target;  // an identity, or for Head an entry of the table of classes
        Kind kind;
        std::uint8_t dropped;  // bytes of the body that the mark takes the place of
    };

    idb_cbor::Encoder& UnexpectedValue(std::size_t frame, unsigned level, const char* name);
    /// Begins the value \p name, and gives the index of the object that it shall be.
    [[nodiscard]] std::uint32_t Identify(std::size_t frame, unsigned level, const char* name,
                                         const cls_ObjectRef& object);
    void NewRoot(const char* name);
    void WriteBody(const cls_ObjectRef& object);
    void EndObject();
    void Learn(Frame& frame);
    [[nodiscard]] int Resolve(const Learned& learned);
    [[nodiscard]] int Entry(unsigned typeId, int base, std::vector<std::string> ownFields);
    void Define(std::uint32_t identity, const cls_ObjectRef& object);
    void Repeat(std::uint32_t identity);
    [[nodiscard]] std::string ClassName(unsigned typeId) const;
    void CheckTurn(std::size_t frame);
    [[noreturn]] void Fail(std::string text);

    idb_cbor::Encoder _body;
    std::vector<Frame> _frames;
    std::vector<Mark> _marks;
    std::vector<Learned> _learned;  // one for each open frame that is being learned
    std::vector<std::unique_ptr<idb_WriteClass>> _classes;
    // The entry that objects of a class had last; the array finds most at once.
    std::array<idb_WriteClass*, 64> _recent{};
    std::vector<std::pair<unsigned, idb_WriteClass*>> _last;
    idb_IdentityMap _identities;
    std::vector<std::string> _roots;
    std::string _fault;  // what went wrong, once something has
    bool _isFinished = false;
};
