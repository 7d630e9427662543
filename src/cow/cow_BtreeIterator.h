#pragma once

#include "cow_BtreeNode.h"
#include "cow_BtreeNodeLink.h"
#include "cow_SmallStack.h"
#include "cow_Support.h"

#include <cstddef>
#include <iterator>

/// Walks the entries of a cow_Btree with ascending keys.
///
/// The current link, and a stack of the links above it that come after it. Holds no share: changing
/// the tree invalidates it (copy the tree first, which costs one count).
template <class K, class V>
class cow_BtreeIterator {
public:
    using Node = cow_BtreeNode<K, V>;
    using value_type = Node;
    using difference_type = std::ptrdiff_t;
    using pointer = const Node*;
    using reference = const Node&;
    using iterator_category = std::forward_iterator_tag;

    /// The end of any tree.
    cow_BtreeIterator() noexcept = default;
    /// On the smallest key behind \p root.
    explicit cow_BtreeIterator(cow_BtreeNodeLink<K, V> root) { Descend(root); }

    /// Goes to the smallest key of the subtree behind \p link; what was current comes after it.
    void Push(cow_BtreeNodeLink<K, V> link) {
        if (!_current.IsNull()) _above.Push(_current);
        Descend(link);
    }
    /// Goes to the next larger key; false when there is none. Behind the last one: undefined.
    bool Next() {
        if (const auto right = _current.Right(); !right.IsNull()) {
            Descend(right);
        } else {
            _current = _above.Size() == 0 ? cow_BtreeNodeLink<K, V>() : _above.Pop();
        }
        return !_current.IsNull();
    }
    /// True while on an entry.
    [[nodiscard]] explicit operator bool() const noexcept { return !_current.IsNull(); }

    /// Key and value of the current entry. Behind the last one: std::out_of_range.
    [[nodiscard]] const K& CurrentKey() const { return Current().Key(); }
    [[nodiscard]] const V& CurrentValue() const { return Current().Value(); }

    [[nodiscard]] const Node& operator*() const noexcept { return *_current.Get(); }
    [[nodiscard]] const Node* operator->() const noexcept { return _current.Get(); }
    cow_BtreeIterator& operator++() {
        Next();
        return *this;
    }
    cow_BtreeIterator operator++(int) {
        cow_BtreeIterator before = *this;
        Next();
        return before;
    }
    friend bool operator==(const cow_BtreeIterator& a, const cow_BtreeIterator& b) noexcept {
        return a._current == b._current;
    }

private:
    void Descend(cow_BtreeNodeLink<K, V> link) {
        // In a local: a member would be stored and fetched again at every level.
        auto at = link;
        if (!at.IsNull()) {
            for (auto left = at.Left(); !left.IsNull(); left = at.Left()) {
                _above.Push(at);
                at = left;
            }
        }
        _current = at;
    }
    [[nodiscard]] const Node& Current() const {
        if (_current.IsNull()) [[unlikely]]
            cow_ThrowMissing("the iterator is behind the last entry");
        return **this;
    }

    cow_BtreeNodeLink<K, V> _current;                    // null behind the last entry
    cow_SmallStack<cow_BtreeNodeLink<K, V>, 48> _above;  // whose left subtrees hold it
};
