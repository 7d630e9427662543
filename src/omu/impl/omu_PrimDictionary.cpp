#include "omu_PrimDictionary.h"

#include "cls_Shared.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimString.h"
#include "omu_QuotedText.h"

#include <charconv>
#include <string>
#include <utility>

namespace {

void AppendKey(std::string& text, int key) {
    char buffer[omu_PrimNumber::kTextRoom];
    text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, key).ptr);
}

void AppendKey(std::string& text, const cow_String& key) { text += omu_QuotedText(key).View(); }

}  // namespace

template <class Key>
omu_PrimDictionary<Key>::omu_PrimDictionary(char code) : Level(code) {}

template <class Key>
omu_PrimDictionary<Key>::omu_PrimDictionary(const cls_ReadVisitor& visitor)
    : Level(visitor), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimDictionary>(*this, visitor);
    _length = _dict.Length();
}

template <class Key>
omu_PrimDictionary<Key>::~omu_PrimDictionary() = default;

template <class Key>
cow_String omu_PrimDictionary<Key>::TypeString() const {
    return kHasIntKeys ? "dictionary with integer keys" : "dictionary with string keys";
}

template <class Key>
cow_String omu_PrimDictionary<Key>::Text(bool asRepr) const {
    std::string text = "{";
    for (const auto& entry : *this) {
        if (text.size() > 1) {
            text += ", ";
        }
        AppendKey(text, entry.Key());
        text += ": ";
        const omu_Primitive& value = *entry.Value();
        text += (asRepr ? value.AsRepr() : value.AsString(0)).View();
    }
    return text + '}';
}

template <class Key>
cow_String omu_PrimDictionary<Key>::AsString(int) const {
    return Text(false);
}

template <class Key>
cow_String omu_PrimDictionary<Key>::AsRepr() const {
    return Text(true);
}

template <class Key>
bool omu_PrimDictionary<Key>::operator==(const omu_Primitive& other) const {
    // Also those of interpreter objects, whose class is derived.
    const auto* dictionary = dynamic_cast<const omu_PrimDictionary*>(&other);
    return dictionary != nullptr && _length == dictionary->_length && _dict == dictionary->_dict;
}

template <class Key>
void omu_PrimDictionary<Key>::Clear() {
    _dict.Clear();
    _length = 0;
}

template <class Key>
void omu_PrimDictionary<Key>::Put(const Key& key, omu_Primitive* owned) {
    Put(key, omu_PrimHolder(owned));
}

template <class Key>
void omu_PrimDictionary<Key>::Put(const Key& key, const omu_PrimHolder& value) {
    if (value.IsNull()) {
        Put(key, omu_PrimHolder(new omu_PrimNone));
    } else if (_dict.InsertUnlessMember(key, value)) {
        ++_length;
    } else {
        _dict.Find(key)->Value() = value;
    }
}

template <class Key>
void omu_PrimDictionary<Key>::Put(const Key& key, const char* text) {
    Put(key, new omu_PrimString(text));
}

template <class Key>
const omu_Primitive* omu_PrimDictionary<Key>::Find(const Key& key) const {
    const auto* entry = _dict.ConstFind(key);
    return entry != nullptr ? &entry->Value().ConstGet() : nullptr;
}

template <class Key>
bool omu_PrimDictionary<Key>::Remove(const Key& key) {
    const bool removed = _dict.Remove(key);
    _length -= static_cast<int>(removed);
    return removed;
}

template <class Key>
cow_List<Key> omu_PrimDictionary<Key>::Keys() const {
    cow_List<Key> keys;
    for (const auto& entry : _dict) {
        keys.Append(entry.Key());
    }
    return keys;
}

template <class Key>
void omu_PrimDictionary<Key>::DictField::Write(const cls_WriteVisitor& visitor, const char* name,
                                               const Tree& dict) {
    const auto entries = visitor.List(name, 2 * dict.Length());
    for (const auto& entry : dict) {
        entries->Write("", entry.Key());
        cls_WriteShared(*entries, "", entry.Value());
    }
}

template <class Key>
void omu_PrimDictionary<Key>::DictField::Read(const cls_ReadVisitor& visitor, const char* name,
                                              Tree& dict) {
    Tree read;
    const auto entries = visitor.List(name);
    for (int left = entries->Count(); left > 0; left -= 2) {
        Key key{};
        entries->Read("", key);
        omu_PrimHolder value;
        cls_ReadShared(*entries, "", omu_Primitive::TypeId(), value);
        read.InsertUnlessMember(key, value.IsNull() ? omu_PrimHolder(new omu_PrimNone) : value);
    }
    dict = std::move(read);
}

template class omu_PrimDictionary<int>;
template class omu_PrimDictionary<cow_String>;
