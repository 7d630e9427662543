#include "idb_MementoCheck.h"

#include "idb_Crc32c.h"

#include <algorithm>
#include <limits>

using namespace idb_cbor;

namespace {

// Memory that what is stored takes once it is read, about; see idb_Charge.
constexpr std::uint64_t kRootCharge = 96;
constexpr std::uint64_t kShareableCharge = sizeof(idb_ReadStore::Shareable) + 8;
constexpr std::uint64_t kTextCharge = 32;
constexpr std::uint64_t kListTextCharge = 40;
constexpr std::uint64_t kElementCharge = 12;
constexpr std::uint64_t kMapElementCharge = 48;
constexpr std::uint64_t kReferenceCharge = 32;

constexpr const char* NameOf(int type) {
    switch (static_cast<cls_AttributeType>(type)) {
        case cls_AttributeType::Tag:
            return "a character";
        case cls_AttributeType::Int:
        case cls_AttributeType::Enum:
            return "an int";
        case cls_AttributeType::UnsignedInt:
            return "an unsigned int";
        case cls_AttributeType::Float:
            return "a float";
        case cls_AttributeType::Double:
            return "a double";
        case cls_AttributeType::String:
        case cls_AttributeType::TranslatedString:
            return "a text";
        case cls_AttributeType::Bool:
            return "a truth value";
        case cls_AttributeType::Object:
            return "an object";
    }
    return "anything";
}

constexpr bool Is(int type, cls_AttributeType wanted) { return type == static_cast<int>(wanted); }

}  // namespace

void idb_MementoCheck::Run() {
    const std::size_t size = _store._bytes.size();
    _budget.bytes = size;
    // Leaves a part of the free mebibyte to the reader itself.
    _budget.memory = 16 * static_cast<std::uint64_t>(size) + (std::uint64_t{3} << 18);

    Header();
    if (size < _cursor.At() + kTrailerSize) {
        idb_RaiseAt(size, "it ends before its checksum");
    }
    const std::size_t end = size - kTrailerSize;
    std::uint8_t trailer[kTrailerSize] = {(kBytes << 5) + 4};
    StoreBig(trailer + 1, idb_Crc32c(_store._bytes.data(), end), 4);
    if (std::memcmp(trailer, _store._bytes.data() + end, kTrailerSize) != 0) {
        idb_RaiseAt(end, "its checksum is wrong: it is cut off or altered");
    }

    _store._classes.Read(_cursor, _budget);
    const idb_Head roots = _cursor.Head();
    if (!roots.Is(kMap)) {
        idb_RaiseAt(roots.at, std::string("its roots are ") + roots.Name());
    }
    _frames.push_back({Frame::Roots, roots.value});
    while (!_frames.empty()) {
        Frame& top = _frames.back();
        if (top.left == 0) {
            Close();
        } else {
            --top.left;
            NextValue(top);
        }
    }
    if (_cursor.At() != end) {
        idb_RaiseAt(_cursor.At(), "it goes on behind its roots");
    }
    if (_farthest > _store._objects.size()) {
        idb_RaiseAt(_farthestAt, "a reference to object " + std::to_string(_farthest - 1) +
                                     ", which is not there");
    }
    _budget.objects = _objectCount;
    // Enough to pass over everything now and then where fields are asked for in another order.
    _budget.bytes = 256 * static_cast<std::uint64_t>(size) + 4096;
}

void idb_MementoCheck::Header() {
    constexpr std::uint8_t kStart[] = {0xD9, 0xD9, 0xF7, 0xA2};
    const auto bytes = _store._bytes;
    bool isOurs = bytes.size() >= std::size(kStart) &&
                  std::equal(std::begin(kStart), std::end(kStart), bytes.begin());
    if (isOurs) {
        static_cast<void>(_cursor.Head());
        static_cast<void>(_cursor.Head());
        for (const std::string_view text :
             {std::string_view("format"), kFormatName, std::string_view("version")}) {
            const idb_Head head = _cursor.Head();
            isOurs = isOurs && head.Is(kText) && _cursor.Text(head) == text;
        }
    }
    if (!isOurs) {
        idb_RaiseAt(0, "this is not a memento");
    }
    const idb_Head version = _cursor.Head();
    if (!version.Is(kUnsigned) || version.value == 0) {
        idb_RaiseAt(version.at, "the format version is no positive number");
    }
    if (version.value > kFormatVersion) {
        idb_RaiseAt(version.at, "format version " + std::to_string(version.value) +
                                    " is newer than this program's, " +
                                    std::to_string(kFormatVersion));
    }
}

void idb_MementoCheck::Root() {
    const idb_Head head = _cursor.Head();
    if (!head.IsText()) {
        idb_RaiseAt(head.at, std::string("the name of a root is ") + head.Name());
    }
    const std::string_view name = _cursor.Text(head);
    idb_Charge(_budget, kRootCharge, head.at);
    if (!_store._roots.emplace(name, _cursor.At()).second) {
        idb_RaiseAt(head.at, "two roots are named " + std::string(name));
    }
    _store._rootNames.push_back(name);
}

void idb_MementoCheck::NextValue(Frame& frame) {
    Expected expected;
    switch (frame.kind) {
        case Frame::Roots:
            Root();
            break;
        case Frame::Object:
            if (const cls_Attribute* attribute = frame.type->FieldAt(frame.field++).attribute) {
                expected = {static_cast<int>(attribute->type), attribute->classId,
                            attribute->collection};
            }
            break;
        case Frame::List:
            expected = frame.element;
            if (expected.collection != cls_CollectionType::Single) {
                // Keys and values in turn; an even number is left before a value.
                const bool isKey = frame.left % 2 != 0;
                if (isKey) {
                    expected.type =
                        static_cast<int>(expected.collection == cls_CollectionType::IntMap
                                             ? cls_AttributeType::Int
                                             : cls_AttributeType::String);
                    expected.classId = 1;
                }
                expected.collection = cls_CollectionType::Single;
            }
            break;
    }
    Value(expected);
}

void idb_MementoCheck::Value(const Expected& expected) {
    const idb_Head head = _cursor.Head();
    const bool isSingle = expected.collection == cls_CollectionType::Single;
    switch (head.Major()) {
        case kUnsigned:
        case kNegative:
            return Integer(head, expected);
        case kBytes:
        case kText:
            return Text(head, expected);
        case kArray:
            return Array(head, expected, idb_ReadStore::Shareable::kNone);
        case kTag:
            return Tagged(head, expected);
        case kMap:
            idb_RaiseAt(head.at, "a map stands within the roots");
        case kSimple:
            break;
    }
    const int type = expected.type;
    const bool fits =
        type == 0 || (head.first == kNull && Is(type, cls_AttributeType::Object)) ||
        (isSingle && ((head.first == kFloat && Is(type, cls_AttributeType::Float)) ||
                      (head.first == kDouble && Is(type, cls_AttributeType::Double)) ||
                      (head.first <= kTrue && Is(type, cls_AttributeType::Bool))));
    if (!fits) {
        Wrong(head, expected);
    }
}

void idb_MementoCheck::Integer(const idb_Head& head, const Expected& expected) {
    if (expected.type == 0) {
        return;
    }
    const bool isSigned =
        Is(expected.type, cls_AttributeType::Int) || Is(expected.type, cls_AttributeType::Enum);
    if (expected.collection != cls_CollectionType::Single ||
        !(isSigned || Is(expected.type, cls_AttributeType::UnsignedInt))) {
        Wrong(head, expected);
    }
    const std::uint64_t most = isSigned
                                   ? static_cast<std::uint64_t>(std::numeric_limits<int>::max())
                                   : std::numeric_limits<unsigned>::max();
    if (head.value > most || (head.Is(kNegative) && !isSigned)) {
        idb_RaiseAt(head.at, Place() + "an integer that does not fit " + NameOf(expected.type));
    }
}

void idb_MementoCheck::Text(const idb_Head& head, const Expected& expected) {
    const bool isTag = Is(expected.type, cls_AttributeType::Tag);
    if (expected.type != 0 && (expected.collection != cls_CollectionType::Single ||
                               !(isTag || Is(expected.type, cls_AttributeType::String) ||
                                 Is(expected.type, cls_AttributeType::TranslatedString)))) {
        Wrong(head, expected);
    }
    const std::string_view text = _cursor.Text(head);
    if (isTag && text.size() != 1) {
        idb_RaiseAt(head.at, Place() + "a text of " + std::to_string(text.size()) +
                                 " bytes where a character is expected");
    }
    if (head.Is(kText) && !IsUtf8(text)) {
        idb_RaiseAt(head.at, Place() + "a text that is not UTF-8");
    }
    const bool isListed = _frames.back().kind == Frame::List;
    if (isListed || (!text.empty() && !isTag)) {
        idb_Charge(_budget, text.size() + (isListed ? kListTextCharge : kTextCharge), head.at);
    }
}

void idb_MementoCheck::Tagged(const idb_Head& head, const Expected& expected) {
    if (head.value == kTagInts || head.value == kTagFloats || head.value == kTagDoubles) {
        return Numbers(head, expected);
    }
    if (expected.type != 0 && !Is(expected.type, cls_AttributeType::Object)) {
        Wrong(head, expected);
    }
    if (head.value == kTagShareable) {
        const idb_Head array = _cursor.Head();
        if (!array.Is(kArray)) {
            idb_RaiseAt(array.at, Place() + "an object is " + array.Name());
        }
        idb_Charge(_budget, kShareableCharge, head.at);
        const auto number = static_cast<std::uint32_t>(_store._objects.size());
        _store._objects.push_back({array.at});
        return Array(array, expected, number);
    }
    if (head.value != kTagSharedRef && head.value != kTagIdentifier) {
        idb_RaiseAt(head.at, Place() + "tag " + std::to_string(head.value) + " is not used");
    }
    const idb_Head number = _cursor.Head();
    if (!number.Is(kUnsigned)) {
        idb_RaiseAt(number.at, Place() + "the number of an object is " + number.Name());
    }
    const auto& objects = _store._objects;
    const bool isThere = number.value < objects.size();
    const auto name = [&] { return "object " + std::to_string(number.value); };
    if (head.value == kTagIdentifier) {
        idb_Charge(_budget, kReferenceCharge, head.at);
        if (number.value >= idb_ReadStore::Shareable::kNone) {
            idb_RaiseAt(head.at, Place() + "a reference to " + name() + ", which is not there");
        }
        if (number.value >= _farthest) {
            _farthest = number.value + 1;
            _farthestAt = head.at;
        }
        if (isThere) {
            CheckClass(*objects[number.value].type, expected, head.at);
        }
        return;
    }
    if (!isThere) {
        idb_RaiseAt(head.at, Place() + name() + " is shared before it is there");
    }
    const idb_ReadStore::Shareable& shared = objects[number.value];
    if (shared.isOpen) {
        idb_RaiseAt(head.at, Place() + name() + " contains itself");
    }
    CheckClass(*shared.type, expected, head.at);
    if (_frames.size() + static_cast<std::size_t>(shared.height) > kMaxDepth) {
        idb_RaiseAt(head.at, "objects and lists lie in each other more than " +
                                 std::to_string(kMaxDepth) + " deep");
    }
    _frames.back().height = std::max(_frames.back().height, shared.height);
}

void idb_MementoCheck::Numbers(const idb_Head& tag, const Expected& expected) {
    const bool fits =
        expected.type == 0 || Is(expected.type, cls_AttributeType::Object) ||
        (expected.collection == cls_CollectionType::List &&
         ((tag.value == kTagInts && Is(expected.type, cls_AttributeType::Int)) ||
          (tag.value == kTagFloats && Is(expected.type, cls_AttributeType::Float)) ||
          (tag.value == kTagDoubles && Is(expected.type, cls_AttributeType::Double))));
    if (!fits) {
        Wrong(tag, expected);
    }
    const idb_Head head = _cursor.Head();
    if (!head.Is(kBytes) || head.value % (tag.value == kTagDoubles ? 8 : 4) != 0) {
        idb_RaiseAt(head.at, Place() + "a block of numbers is no byte string of whole numbers");
    }
    static_cast<void>(_cursor.Text(head));
    idb_Charge(_budget, head.value + kTextCharge, head.at);
}

void idb_MementoCheck::Array(const idb_Head& head, const Expected& expected, std::uint32_t number) {
    if (_frames.size() >= kMaxDepth) {
        idb_RaiseAt(head.at, "objects and lists lie in each other more than " +
                                 std::to_string(kMaxDepth) + " deep");
    }
    if (head.value == 0) {
        idb_RaiseAt(head.at, Place() + "an empty array is neither object nor list");
    }
    const idb_Head first = _cursor.Head();
    if (first.Is(kUnsigned)) {
        OpenObject(head, first, expected, number);
    } else if (first.first == kNull && number == idb_ReadStore::Shareable::kNone) {
        OpenList(head, expected);
    } else {
        idb_RaiseAt(first.at, Place() + "an array that begins with " + first.Name() +
                                  " is neither object nor list");
    }
}

void idb_MementoCheck::OpenList(const idb_Head& head, const Expected& expected) {
    const bool isMap = expected.collection == cls_CollectionType::IntMap ||
                       expected.collection == cls_CollectionType::StringMap;
    const bool isList = isMap || expected.collection == cls_CollectionType::List;
    // How an object-valued field lays out its collection is the class's own affair.
    if (expected.type != 0 && !isList && !Is(expected.type, cls_AttributeType::Object)) {
        Wrong(head, expected);
    }
    const std::uint64_t count = head.value - 1;
    if (count > static_cast<std::uint64_t>(std::numeric_limits<int>::max()) ||
        (isMap && count % 2 != 0)) {
        idb_RaiseAt(head.at, Place() + "a list of " + std::to_string(count) + " elements");
    }
    idb_Charge(_budget, count * (isMap ? kMapElementCharge : kElementCharge), head.at);
    const idb_ReadClass* type = _frames.back().type;
    const std::size_t field = _frames.back().field;
    _frames.push_back({Frame::List, count, type, field});
    if (isList) {
        _frames.back().element = expected;
        if (!isMap) {
            _frames.back().element.collection = cls_CollectionType::Single;
        }
    }
}

void idb_MementoCheck::OpenObject(const idb_Head& head, const idb_Head& index,
                                  const Expected& expected, std::uint32_t number) {
    if (expected.type != 0 && !Is(expected.type, cls_AttributeType::Object)) {
        Wrong(head, expected);
    }
    if (index.value >= _store._classes.Count()) {
        idb_RaiseAt(index.at, Place() + "an object of class " + std::to_string(index.value) +
                                  ", which is not in the table of classes");
    }
    const idb_ReadClass& type = _store._classes[static_cast<std::size_t>(index.value)];
    if (type.metadata == nullptr || !type.metadata->IsConcrete()) {
        idb_RaiseAt(index.at, Place() + "an object of the abstract " + type.Described());
    }
    CheckClass(type, expected, index.at);
    if (head.value != 1 + type.levels + type.FieldCount()) {
        idb_RaiseAt(head.at, Place() + "an object of " + type.Described() + " has " +
                                 std::to_string(head.value) + " items, not " +
                                 std::to_string(1 + type.levels + type.FieldCount()));
    }
    idb_Charge(_budget, type.charge, head.at);
    ++_objectCount;
    for (std::size_t level = 0; level < type.levels; ++level) {
        const idb_Head uid = _cursor.Head();
        if (!uid.Is(kUnsigned)) {
            idb_RaiseAt(uid.at, type.Described() + ": an identity is " + uid.Name());
        }
    }
    if (number != idb_ReadStore::Shareable::kNone) {
        _store._objects[number].type = &type;
    }
    _frames.push_back({Frame::Object, type.FieldCount(), &type});
    _frames.back().number = number;
}

void idb_MementoCheck::Close() {
    const Frame closed = _frames.back();
    _frames.pop_back();
    const int height = closed.height + 1;
    if (closed.number != idb_ReadStore::Shareable::kNone) {
        _store._objects[closed.number].height = height;
        _store._objects[closed.number].isOpen = false;
    }
    if (!_frames.empty()) {
        _frames.back().height = std::max(_frames.back().height, height);
    }
}

void idb_MementoCheck::CheckClass(const idb_ReadClass& type, const Expected& expected,
                                  std::size_t at) {
    if (!type.Inherits(expected.classId)) {
        const cls_ClassMetadata* wanted =
            omi_Singleton<cls_MetadataRegistrar>::Instance().Classes().Find(expected.classId);
        idb_RaiseAt(at, Place() + "an object of " + type.Described() + " where class " +
                            (wanted == nullptr ? std::to_string(expected.classId >> 16) + "." +
                                                     std::to_string(expected.classId & 0xFFFFU)
                                               : wanted->Name().Std()) +
                            " is expected");
    }
}

/// Where the check is, as the beginning of a message.
std::string idb_MementoCheck::Place() const {
    if (_frames.empty() || _frames.back().type == nullptr) {
        return _store._rootNames.empty() ? std::string()
                                         : "root " + std::string(_store._rootNames.back()) + ": ";
    }
    const Frame& top = _frames.back();
    return top.type->Described() + ", field " + top.type->FieldAt(top.field - 1).name + ": ";
}

void idb_MementoCheck::Wrong(const idb_Head& head, const Expected& expected) const {
    idb_RaiseAt(head.at,
                Place() + head.Name() + " where " +
                    (expected.collection == cls_CollectionType::Single ? "" : "a list of ") +
                    NameOf(expected.type) + " is expected");
}
