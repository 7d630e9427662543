#pragma once

#include "cow_Btree.h"
#include "cow_List.h"
#include "omu_PrimDictionaryBase.h"
#include "omu_PrimLevel.h"
#include "omu_ValueTraits.h"

#include <type_traits>
#include <utility>

/// A dictionary of values by int or cow_String keys, in ascending order of keys.
///
/// Copies share entries and cost one count; a write copies the path it touches. A dictionary and
/// its copies stay in one thread. Integer keys follow the tree's order: two keys 2^31 or more apart
/// compare the other way around, and one may hide the other.
template <class Key>
class CAE_API omu_PrimDictionary
    : public omu_PrimLevel<omu_PrimDictionary<Key>, omu_PrimDictionaryBase> {
    static_assert(std::is_same_v<Key, int> || std::is_same_v<Key, cow_String>,
                  "The keys of a dictionary are of type int or cow_String.");
    using Level = omu_PrimLevel<omu_PrimDictionary<Key>, omu_PrimDictionaryBase>;
    using Tree = cow_Btree<Key, omu_PrimHolder>;

public:
    static constexpr bool kHasIntKeys = std::is_same_v<Key, int>;
    static constexpr cls_ClassInfo kClass =
        kHasIntKeys ? cls_ClassInfo{"omu_PrimIntDictionary", 0x130013, 0x130012, 800}
                    : cls_ClassInfo{"omu_PrimStrDictionary", 0x130014, 0x130012, 800};
    using const_iterator = typename Tree::const_iterator;

    explicit omu_PrimDictionary(char code = omu_PrimDictionaryBase::kCode);
    explicit omu_PrimDictionary(const cls_ReadVisitor& visitor);
    omu_PrimDictionary(const omu_PrimDictionary&) = default;
    /// The other may be an entry of this dictionary.
    omu_PrimDictionary& operator=(const omu_PrimDictionary& other) {
        return *this = omu_PrimDictionary(other);
    }
    /// The source is empty afterwards.
    omu_PrimDictionary(omu_PrimDictionary&& other) noexcept
        : Level(other),
          _dict(std::move(other._dict)),
          _length(std::exchange(other._length, 0)),
          _uid(other._uid) {}
    omu_PrimDictionary& operator=(omu_PrimDictionary&& other) noexcept {
        omu_PrimDictionary taken(std::move(other));
        Level::operator=(taken);
        std::swap(_dict, taken._dict);
        std::swap(_length, taken._length);
        _uid = taken._uid;
        return *this;
    }
    ~omu_PrimDictionary() override;

    /// "dictionary with integer keys" or "dictionary with string keys".
    [[nodiscard]] cow_String TypeString() const override;
    /// "{1: 'a', 2: 2.0}": string keys quoted, values by AsString(0).
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// The same with each value's AsRepr.
    [[nodiscard]] cow_String AsRepr() const override;
    /// Whether the other is a dictionary with the same keys and equal values.
    bool operator==(const omu_Primitive& other) const override;

    [[nodiscard]] int Length() const override { return _length; }
    void Clear() override;

    /// Stores a value under \p key, in the place of one that is there. The pointer is taken over,
    /// null counts as None; a holder is shared; all else is copied or converted.
    void Put(const Key& key, omu_Primitive* owned);
    void Put(const Key& key, const omu_PrimHolder& value);
    void Put(const Key& key, const char* text);
    template <omu_Puttable T>
    void Put(const Key& key, const T& value) {
        Put(key, omu_ValueTraits<T>::Make(value));
    }

    /// Converts the value of \p key into \p target; false, and the target kept, when there is none
    /// or it is not accepted.
    template <omu_Gettable T>
    bool Get(const Key& key, T& target) const {
        const omu_Primitive* value = Find(key);
        return value != nullptr && omu_ValueTraits<T>::Convert(*value, target);
    }
    /// The value of \p key, owned by the dictionary, or null. Never copies.
    [[nodiscard]] const omu_Primitive* Find(const Key& key) const;
    [[nodiscard]] bool Has(const Key& key) const { return Find(key) != nullptr; }
    /// Removes the entry of \p key; false when there is none.
    bool Remove(const Key& key);
    /// The keys, ascending.
    [[nodiscard]] cow_List<Key> Keys() const;

    /// Entries with ascending keys: entry.Key(), entry.Value().ConstGet().
    [[nodiscard]] const_iterator begin() const { return _dict.begin(); }
    [[nodiscard]] const_iterator end() const noexcept { return _dict.end(); }

private:
    friend struct cls_Access;

    /// A collection of key, value, key, value...
    struct DictField {
        static constexpr cls_AttributeType kType = cls_AttributeType::Object;
        static constexpr unsigned kClassId = omu_Primitive::TypeId();
        static constexpr cls_CollectionType kCollection =
            kHasIntKeys ? cls_CollectionType::IntMap : cls_CollectionType::StringMap;

        static void Write(const cls_WriteVisitor& visitor, const char* name, const Tree& dict);
        static void Read(const cls_ReadVisitor& visitor, const char* name, Tree& dict);
    };
    static constexpr auto Fields() {
        using Self = omu_PrimDictionary;
        return std::tuple{cls_Field<Self, Tree, DictField>{"dict", &Self::_dict}};
    }
    [[nodiscard]] cow_String Text(bool asRepr) const;

    Tree _dict;
    int _length = 0;
    cls_Uid _uid;
};

extern template class CAE_API omu_PrimDictionary<int>;
extern template class CAE_API omu_PrimDictionary<cow_String>;
