#pragma once

#include "cow_MapNode.h"
#include "cow_Support.h"

#include <cstddef>
#include <iterator>
#include <map>

/// What begin() and end() of a cow_Map give: entries as cow_MapNode, keys ascending.
///
/// Holds no share of the map: changing the map may invalidate it.
template <class K, class V>
class cow_ConstMapIterator {
    using Position = typename std::map<K, V, cow_Less>::const_iterator;

public:
    using value_type = cow_MapNode<K, V>;
    using difference_type = std::ptrdiff_t;
    using reference = value_type;
    using iterator_category = std::input_iterator_tag;  // entries are made on the fly

    cow_ConstMapIterator() noexcept = default;
    explicit cow_ConstMapIterator(Position position) noexcept : _position(position) {}

    [[nodiscard]] value_type operator*() const noexcept {
        return {_position->first, _position->second};
    }
    cow_ConstMapIterator& operator++() noexcept {
        ++_position;
        return *this;
    }
    cow_ConstMapIterator operator++(int) noexcept { return cow_ConstMapIterator(_position++); }
    friend bool operator==(const cow_ConstMapIterator&, const cow_ConstMapIterator&) = default;

private:
    Position _position;
};
