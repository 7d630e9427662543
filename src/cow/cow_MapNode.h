#pragma once

/// One entry of a cow_Map as its iterators show it: a view, valid while the map is not changed.
template <class K, class V>
struct cow_MapNode {
    const K& key;
    const V& value;

    [[nodiscard]] const K& Key() const noexcept { return key; }
    [[nodiscard]] const V& Value() const noexcept { return value; }
};
