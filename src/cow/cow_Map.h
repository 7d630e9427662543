#pragma once

#include "cow_COW.h"
#include "cow_ConstMapIterator.h"
#include "cow_Direct.h"
#include "cow_Support.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <utility>

/// Map with ascending keys (order of cow_Compare) on one shared body.
///
/// Copies share the body; the first write to a shared body copies it whole. Reading never detaches.
/// A map and its copies stay in one thread; DeepCopy() gives one to hand to another. References to
/// values stay valid until the entry goes or the body is detached.
template <class K, class V>
class cow_Map {
    using Body = std::map<K, V, cow_Less>;

public:
    using key_type = K;
    using mapped_type = V;
    using value_type = cow_MapNode<K, V>;
    using const_iterator = cow_ConstMapIterator<K, V>;
    using iterator = const_iterator;

    /// Empty; nothing is allocated.
    cow_Map() noexcept = default;
    /// Of entries with the same key the first one counts.
    cow_Map(std::initializer_list<std::pair<const K, V>> entries) {
        if (entries.size() != 0) _body = Holder::Make(entries);
    }

    [[nodiscard]] int Length() const noexcept {
        return _body.IsNull() ? 0 : static_cast<int>(_body->size());
    }
    [[nodiscard]] bool IsEmpty() const noexcept { return Length() == 0; }

    /// The value of \p key for reading, or null; never detaches. Cost: logarithmic.
    [[nodiscard]] const V* Find(const K& key) const {
        if (_body.IsNull()) return nullptr;
        const auto found = _body->find(key);
        return found == _body->end() ? nullptr : &found->second;
    }
    [[nodiscard]] bool IsMember(const K& key) const { return Find(key) != nullptr; }
    /// The value of \p key for reading; never detaches. Absent key: std::out_of_range.
    [[nodiscard]] const V& ConstGet(const K& key) const {
        const V* value = Find(key);
        if (value == nullptr) cow_ThrowMissing("the map has no such key");
        return *value;
    }
    [[nodiscard]] const V& operator[](const K& key) const { return ConstGet(key); }
    /// The value of \p key for writing, a zero value being put in where it is absent; detaches.
    V& Get(const K& key) { return OwnBody().try_emplace(key).first->second; }
    /// Sets the value of \p key.
    void Put(const K& key, V value) { OwnBody().insert_or_assign(key, std::move(value)); }
    /// Puts the entry in and returns true; false, with nothing changed, when the key is present.
    bool InsertUnlessMember(const K& key, V value) {
        return !IsMember(key) && OwnBody().try_emplace(key, std::move(value)).second;
    }
    /// Removes the entry of \p key; false, with nothing changed, when there is none.
    bool Remove(const K& key) {
        if (!IsMember(key)) return false;
        Body& body = OwnBody();
        body.erase(body.find(key));
        return true;
    }
    void Clear() noexcept { _body.Reset(); }

    /// Entries with ascending keys: `for (const auto& [key, value] : map)`.
    [[nodiscard]] const_iterator begin() const noexcept {
        return _body.IsNull() ? const_iterator() : const_iterator(_body->begin());
    }
    [[nodiscard]] const_iterator end() const noexcept {
        return _body.IsNull() ? const_iterator() : const_iterator(_body->end());
    }

    void Swap(cow_Map& other) noexcept { _body.Swap(other._body); }
    friend void swap(cow_Map& a, cow_Map& b) noexcept { a.Swap(b); }
    friend bool operator==(const cow_Map& a, const cow_Map& b) {
        const auto same = [](const value_type& x, const value_type& y) {
            return cow_Compare(x.key, y.key) == 0 && x.value == y.value;
        };
        return a.Length() == b.Length() && std::equal(a.begin(), a.end(), b.begin(), same);
    }
    /// An equal map that shares nothing with this one.
    [[nodiscard]] cow_Map DeepCopy() const {
        cow_Map copy;
        for (const auto& [key, value] : *this) {
            copy.Put(cow_DeepCopyOf(key), cow_DeepCopyOf(value));
        }
        return copy;
    }
    /// Number of maps that share the body; 0 while there is none.
    [[nodiscard]] int BodyCount() const noexcept { return _body.Count(); }

private:
    using Holder = cow_COW<Body, cow_Direct<Body>>;

    [[nodiscard]] Body& OwnBody() {
        if (_body.IsNull()) _body = Holder::Make();
        return _body.Get();
    }

    Holder _body;  // null while empty from the start
};
