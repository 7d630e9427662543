#pragma once

#include "cow_Map.h"

/// Walks the entries of a cow_Map with ascending keys: `for (it.First(); it; it.Next())`.
///
/// Shares the map as it was when the walk was made: the map may be changed meanwhile, which then
/// detaches it once. Stands on the first entry at the start.
template <class K, class V>
class cow_ConstMapSortedIt {
public:
    explicit cow_ConstMapSortedIt(const cow_Map<K, V>& map) : _map(map), _at(_map.begin()) {}
    cow_ConstMapSortedIt(const cow_ConstMapSortedIt&) = default;
    // The map stays with its iterator, so neither is ever moved alone.
    cow_ConstMapSortedIt& operator=(const cow_ConstMapSortedIt&) = default;
    ~cow_ConstMapSortedIt() = default;

    /// Goes to the smallest key; false when the map is empty.
    bool First() noexcept {
        _at = _map.begin();
        return _at != _map.end();
    }
    /// Goes to the next larger key; false when there is none. Not to be called behind the last one.
    bool Next() noexcept { return ++_at != _map.end(); }
    [[nodiscard]] explicit operator bool() const noexcept { return _at != _map.end(); }
    /// Key and value of the current entry. Behind the last one: undefined.
    [[nodiscard]] const K& Key() const noexcept { return (*_at).key; }
    [[nodiscard]] const V& Value() const noexcept { return (*_at).value; }

private:
    cow_Map<K, V> _map;
    cow_ConstMapIterator<K, V> _at;
};
