#include "idb_MementoRead.h"

#include "idb_ReadStore.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

using namespace idb_cbor;

/// One value that is being read: finds it, and moves what it lies in on behind it.
class idb_MementoRead::Value {
public:
    Value(const idb_MementoRead& reader, const char* name)
        : _reader(reader), _name(name), _cursor(reader._store->At(Find())) {}

    [[nodiscard]] idb_Cursor& Cursor() noexcept { return _cursor; }
    [[nodiscard]] idb_Head Head() { return _cursor.Head(); }

    /// To be called when the cursor stands behind the value.
    void Done() {
        if (idb_Sequence* sequence = _reader._sequence) {
            sequence->next = _index + 1;
            sequence->at = _cursor.At();
            if (_reader._class == nullptr && sequence->next == sequence->count) {
                _reader.EndList();
            }
        }
    }

    [[noreturn]] void Wrong(const idb_Head& head, const char* expected) const {
        idb_RaiseAt(head.at, Place() + head.Name() + " where " + expected + " is expected");
    }
    [[nodiscard]] std::string Place() const {
        if (_reader.IsRoots()) {
            return "root " + std::string(_name) + ": ";
        }
        return _reader._class == nullptr ? "element " + std::to_string(_index) + " of a list: "
                                         : _reader._class->Described() + ", field " + _name + ": ";
    }
    [[nodiscard]] std::uint64_t Index() const noexcept { return _index; }

private:
    std::size_t Find() {
        idb_ReadStore& store = *_reader._store;
        store.CheckUsable();
        if (_reader.IsRoots()) {
            const auto root = store.Roots().find(_name);
            if (root == store.Roots().end()) {
                idb_RaiseAt(0, "there is no root named " + std::string(_name));
            }
            return root->second;
        }
        idb_Sequence& sequence = *_reader._sequence;
        if (_reader._class == nullptr) {
            if (sequence.next == sequence.count) {
                idb_RaiseAt(sequence.at,
                            "a list has only " + std::to_string(sequence.count) + " elements");
            }
            _index = sequence.next;
            return sequence.at;
        }
        const int field = _reader.FieldIndex(_name);
        if (field < 0) {
            idb_RaiseAt(sequence.start,
                        _reader._class->Described() + " is stored without field " + _name);
        }
        _reader._expected = static_cast<std::size_t>(field) + 1;
        _index = _reader._class->firstField + static_cast<std::size_t>(field);
        if (sequence.next != _index) {
            store.Seek(sequence, _index);
        }
        return sequence.at;
    }

    const idb_MementoRead& _reader;
    const char* _name;
    std::uint64_t _index = 0;
    idb_Cursor _cursor;  // initialised last: it needs the place
};

idb_MementoRead::idb_MementoRead(std::span<const std::byte> bytes)
    : _own(std::make_unique<idb_ReadStore>(bytes)), _store(_own.get()) {}

idb_MementoRead::idb_MementoRead(idb_ReadStore& store) noexcept : _store(&store) {}

idb_MementoRead::~idb_MementoRead() = default;

void idb_MementoRead::Finish() const { _store->Finish(); }

std::vector<cow_String> idb_MementoRead::Roots() const {
    const auto& names = _store->RootNames();
    return {names.begin(), names.end()};
}

/// The list was read to its end: what it lies in goes on behind it.
void idb_MementoRead::EndList() const {
    if (_parent != nullptr && _parent->next == _place) {
        _parent->next = _place + 1;
        _parent->at = _sequence->at;
    }
}

int idb_MementoRead::FieldIndex(const char* name) const {
    const std::vector<idb_ReadClass::Field>& fields = _class->own;
    // Fields are mostly asked for in the order in which they lie; Has comes before Read.
    for (std::size_t tried = 0; tried < fields.size(); ++tried) {
        if (_expected >= fields.size()) {
            _expected = 0;
        }
        const idb_ReadClass::Field& field = fields[_expected];
        if (std::strcmp(field.name.c_str(), name) == 0) {
            return static_cast<int>(_expected);
        }
        ++_expected;
    }
    return -1;
}

std::unique_ptr<cls_ReadVisitor> idb_MementoRead::Base(unsigned typeId) const {
    if (_class == nullptr || _class->base == nullptr || _class->base->typeId != typeId) {
        const cls_ClassMetadata* wanted =
            omi_Singleton<cls_MetadataRegistrar>::Instance().Classes().Find(typeId);
        idb_RaiseAt(_sequence == nullptr ? 0 : _sequence->start,
                    (_class == nullptr ? std::string("what is read") : _class->Described()) +
                        " has no base level " +
                        (wanted == nullptr ? std::to_string(typeId) : wanted->Name().Std()));
    }
    std::unique_ptr<idb_MementoRead> base(new idb_MementoRead(*_store));
    base->_sequence = _sequence;
    base->_class = _class->base;
    base->_level = _level + 1;
    return base;
}

cls_Uid idb_MementoRead::GetUid() const {
    if (_class == nullptr) {
        return {};
    }
    idb_Cursor cursor = _store->At(_sequence->uids);
    for (unsigned level = 0; level < _level; ++level) {
        static_cast<void>(cursor.Head());
    }
    return cls_Uid(cursor.Head().value);
}

bool idb_MementoRead::Has(const char* name) const {
    if (IsRoots()) {
        return _store->Roots().count(name) != 0;
    }
    return _class == nullptr ? _sequence->next < _sequence->count : FieldIndex(name) >= 0;
}

// Plain values.

void idb_MementoRead::Read(const char* name, char& value) const {
    Value stored(*this, name);
    const idb_Head head = stored.Head();
    if (!head.IsText() || head.value != 1) {
        stored.Wrong(head, "a character");
    }
    value = stored.Cursor().Text(head).front();
    stored.Done();
}

void idb_MementoRead::Read(const char* name, bool& value) const {
    Value stored(*this, name);
    const idb_Head head = stored.Head();
    if (head.first != kFalse && head.first != kTrue) {
        stored.Wrong(head, "a truth value");
    }
    value = head.first == kTrue;
    stored.Done();
}

void idb_MementoRead::Read(const char* name, int& value) const {
    Value stored(*this, name);
    const idb_Head head = stored.Head();
    if (head.Major() > kNegative ||
        head.value > static_cast<std::uint64_t>(std::numeric_limits<int>::max())) {
        stored.Wrong(head, "an int");
    }
    const int low = static_cast<int>(head.value);
    value = head.Is(kNegative) ? ~low : low;
    stored.Done();
}

void idb_MementoRead::Read(const char* name, unsigned int& value) const {
    Value stored(*this, name);
    const idb_Head head = stored.Head();
    if (!head.Is(kUnsigned) || head.value > std::numeric_limits<unsigned>::max()) {
        stored.Wrong(head, "an unsigned int");
    }
    value = static_cast<unsigned>(head.value);
    stored.Done();
}

void idb_MementoRead::Read(const char* name, float& value) const {
    Value stored(*this, name);
    const idb_Head head = stored.Head();
    if (head.first != kFloat) {
        stored.Wrong(head, "a float");
    }
    value = std::bit_cast<float>(static_cast<std::uint32_t>(head.value));
    stored.Done();
}

void idb_MementoRead::Read(const char* name, double& value) const {
    Value stored(*this, name);
    const idb_Head head = stored.Head();
    if (head.first != kDouble) {
        stored.Wrong(head, "a double");
    }
    value = std::bit_cast<double>(head.value);
    stored.Done();
}

template <class Text>
void idb_MementoRead::ReadText(const char* name, Text& value) const {
    Value stored(*this, name);
    const idb_Head head = stored.Head();
    if (!head.IsText()) {
        stored.Wrong(head, "a text");
    }
    value = Text(stored.Cursor().Text(head));
    stored.Done();
}

void idb_MementoRead::Read(const char* name, cow_String& value) const { ReadText(name, value); }

void idb_MementoRead::Read(const char* name, atr_String& value) const { ReadText(name, value); }

template <class N>
void idb_MementoRead::ReadNumbers(const char* name, std::uint64_t tag, std::vector<N>& values,
                                  const char* expected) const {
    Value stored(*this, name);
    const idb_Head head = stored.Head();
    if (!head.IsTag(tag)) {
        stored.Wrong(head, expected);
    }
    const idb_Head block = stored.Head();
    const std::string_view bytes = stored.Cursor().Text(block);
    std::vector<N> read(bytes.size() / sizeof(N));
    if (!read.empty()) {
        std::memcpy(read.data(), bytes.data(), read.size() * sizeof(N));
    }
    if constexpr (std::endian::native != std::endian::little) {
        for (N& value : read) {
            auto raw = std::bit_cast<std::array<std::uint8_t, sizeof(N)>>(value);
            std::reverse(raw.begin(), raw.end());
            value = std::bit_cast<N>(raw);
        }
    }
    values = std::move(read);
    stored.Done();
}

void idb_MementoRead::Read(const char* name, std::vector<int>& values) const {
    ReadNumbers(name, kTagInts, values, "a block of integers");
}

void idb_MementoRead::Read(const char* name, std::vector<float>& values) const {
    ReadNumbers(name, kTagFloats, values, "a block of floats");
}

void idb_MementoRead::Read(const char* name, std::vector<double>& values) const {
    ReadNumbers(name, kTagDoubles, values, "a block of doubles");
}

// Lists.

std::unique_ptr<cls_ReadVisitor> idb_MementoRead::List(const char* name) const {
    Value stored(*this, name);
    const idb_Head head = stored.Head();
    if (!head.Is(kArray)) {
        stored.Wrong(head, "a list");
    }
    const idb_Head first = stored.Head();
    if (first.first != kNull) {
        idb_RaiseAt(head.at, stored.Place() + "an object where a list is expected");
    }
    std::unique_ptr<idb_MementoRead> list(new idb_MementoRead(*_store));
    list->_elements.start = list->_elements.at = stored.Cursor().At();
    list->_elements.count = head.value - 1;
    list->_elements.isKept = IsRoots() || _sequence->isKept;
    list->_sequence = &list->_elements;
    list->_parent = _sequence;
    list->_place = stored.Index();
    if (list->_elements.count == 0) {
        list->EndList();
    }
    return list;
}

int idb_MementoRead::Count() const {
    return _sequence == nullptr || _class != nullptr ? 0 : static_cast<int>(_sequence->count);
}

// Objects.

void* idb_MementoRead::ReadObject(const char* name, unsigned baseTypeId) const {
    Value stored(*this, name);
    const idb_Head head = stored.Head();
    void* object = nullptr;
    if (head.first != kNull) {
        if (!head.Is(kArray)) {
            stored.Wrong(head, "an object of its own");
        }
        object = _store->Build(stored.Cursor(), head, baseTypeId, false);
    }
    stored.Done();
    return object;
}

void idb_MementoRead::ReadShared(const char* name, unsigned baseTypeId, const cls_HolderOps& ops,
                                 void* holder) const {
    Value stored(*this, name);
    const idb_Head head = stored.Head();
    if (head.first == kNull) {
        ops.adopt(holder, nullptr);
    } else if (head.Is(kArray)) {
        ops.adopt(holder, _store->Build(stored.Cursor(), head, baseTypeId, false));
    } else if (head.IsTag(kTagSharedRef)) {
        const idb_Head number = stored.Head();
        _store->Share(number.value, baseTypeId, ops, holder, head.at, nullptr);
    } else if (head.IsTag(kTagShareable)) {
        const std::uint32_t number = _store->NumberAt(stored.Cursor().At());
        _store->Share(number, baseTypeId, ops, holder, head.at, &stored.Cursor());
    } else {
        stored.Wrong(head, "an object");
    }
    stored.Done();
}

void* idb_MementoRead::ReadOwned(const char* name, unsigned baseTypeId) const {
    Value stored(*this, name);
    // What lies in an object that its owner may move, or drop, does not stay either.
    const bool isKept = IsRoots() || _sequence->isKept;
    const idb_Head head = stored.Head();
    void* object = nullptr;
    if (head.IsTag(kTagShareable)) {
        if (!isKept) {
            idb_RaiseAt(head.at,
                        stored.Place() + "something refers to an object in one that may be moved");
        }
        const std::uint32_t number = _store->NumberAt(stored.Cursor().At());
        if (_store->Object(number, head.at).state != idb_ReadStore::Shareable::Unbuilt) {
            stored.Wrong(head, "an object of its own");
        }
        const idb_Head array = stored.Head();
        object = _store->Build(stored.Cursor(), array, baseTypeId, isKept);
        _store->SetOwned(number, object);
    } else if (head.Is(kArray)) {
        object = _store->Build(stored.Cursor(), head, baseTypeId, isKept);
    } else if (head.first != kNull) {
        stored.Wrong(head, "an object of its own");
    }
    stored.Done();
    return object;
}

void idb_MementoRead::ReadReference(const char* name, unsigned baseTypeId, void* place,
                                    void (*set)(void* place, void* object)) const {
    Value stored(*this, name);
    const idb_Head head = stored.Head();
    if (head.first != kNull) {
        if (!head.IsTag(kTagIdentifier)) {
            stored.Wrong(head, "a reference");
        }
        if (_sequence != nullptr && !_sequence->isKept) {
            idb_RaiseAt(head.at, stored.Place() + "a reference in an object that may be moved");
        }
        const idb_Head number = stored.Head();
        _store->CheckTarget(number.value, baseTypeId, head.at);
        _store->AddReference(static_cast<std::uint32_t>(number.value), place, set);
    }
    stored.Done();
}
