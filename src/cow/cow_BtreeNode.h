#pragma once

#include "cow_COW.h"
#include "cow_Direct.h"
#include "cow_Support.h"

#include <algorithm>
#include <concepts>
#include <utility>

template <class K, class V>
class cow_Btree;
template <class K, class V>
class cow_BtreeNodeLink;

/// Keys that trees take: integers of at most 32 bits, or a class with `int Compare(const K&) const`
/// that is negative, zero or positive.
template <class K>
concept cow_BtreeKey = (std::integral<K> && sizeof(K) <= sizeof(int)) || requires(const K& a) {
    { a.Compare(a) } -> std::convertible_to<int>;
};

/// The tree order: key \p a goes left of \p b when this is below 1, and is \p b's when it is 0. For
/// integers the 32-bit difference, which wraps: keys 2^31 and more apart compare the other way.
template <class K>
[[nodiscard]] int cow_BtreeOrder(const K& a, const K& b) {
    static_assert(
        cow_BtreeKey<K>,
        "A tree key is an integer of at most 32 bits or has `int Compare(const K&) const`.");
    if constexpr (std::integral<K>) {
        return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
    } else {
        return a.Compare(b);
    }
}

/// One entry of a cow_Btree: key, value, links to two subtrees that other trees may share, and what
/// gives its height. With its reference count it is one allocation.
template <class K, class V>
class cow_BtreeNode {
public:
    /// Link to the root node of a subtree, or null; copies of a tree share the nodes behind it.
    using Link = cow_COW<cow_BtreeNode, cow_Direct<cow_BtreeNode>>;

    cow_BtreeNode(const K& key, const V& value) : _key(key), _value(value) {}
    /// Copies the entry and shares the subtrees.
    cow_BtreeNode(const cow_BtreeNode&) = default;
    cow_BtreeNode& operator=(const cow_BtreeNode&) = delete;
    ~cow_BtreeNode() {
        Dismantle(_links[0]);
        Dismantle(_links[1]);
    }

    [[nodiscard]] const K& Key() const noexcept { return _key; }
    [[nodiscard]] const V& Value() const noexcept { return _value; }
    /// The value for writing; a node from cow_Btree::Find belongs to that tree alone.
    [[nodiscard]] V& Value() noexcept { return _value; }

    /// Root nodes of the subtrees, null where there is none.
    [[nodiscard]] const cow_BtreeNode* Left() const noexcept { return Child(0); }
    [[nodiscard]] const cow_BtreeNode* Right() const noexcept { return Child(1); }
    /// 0 without children, else one more than the higher child's.
    [[nodiscard]] int Height() const noexcept { return std::max(_below[0], _below[1]); }

    /// The node in this subtree that holds \p key, or null; never clones.
    [[nodiscard]] const cow_BtreeNode* ConstFind(const K& key) const {
        const cow_BtreeNode* node = this;
        for (;;) {
            const int order = cow_BtreeOrder(key, node->_key);
            if (order == 0) return node;
            const Link& link = node->_links[order >= 1];
            if (link.IsNull()) return nullptr;
            node = &*link;
        }
    }

private:
    friend class cow_Btree<K, V>;
    friend class cow_BtreeNodeLink<K, V>;

    [[nodiscard]] const cow_BtreeNode* Child(int side) const noexcept {
        return _links[side].IsNull() ? nullptr : &*_links[side];
    }

    /// The link to follow for a change. A branch and no computed index: changes often come in an
    /// order that the processor predicts, and then it runs ahead of the loads.
    [[nodiscard]] Link& Toward(int order) noexcept {
#if defined(__GNUC__)
        const bool isRight = __builtin_expect_with_probability(order >= 1, 1, 0.99) != 0;
#else
        const bool isRight = order >= 1;
#endif
        return isRight ? _links[1] : _links[0];
    }
    /// Right child's height less the left one's, a missing child weighing as much as a leaf.
    [[nodiscard]] int Lean() const noexcept {
        return std::max(_below[1], 1) - std::max(_below[0], 1);
    }
    [[nodiscard]] bool IsBalanced() const noexcept { return static_cast<unsigned>(Lean() + 1) < 3; }

    static void Dismantle(Link& top) noexcept;

    K _key;
    V _value;
    Link _links[2];          // left, right
    int _below[2] = {0, 0};  // the child's height + 1; 0 where there is none
};

/// Gives the subtree behind \p top back in constant memory: nodes nobody else shares are rotated
/// until the top one has no left child, and go one by one. (Left to the links' own destructors, a
/// long chain of nodes would take a stack frame each.)
template <class K, class V>
void cow_BtreeNode<K, V>::Dismantle(Link& top) noexcept {
    while (top.Count() == 1) {
        Link& left = top.Get()._links[0];
        if (left.Count() == 1) {
            Link& inner = left.Get()._links[1];
            top.Swap(left);
            left.Swap(inner);
        } else {
            left.Reset();
            Link right = std::move(top.Get()._links[1]);
            top = std::move(right);
        }
    }
    top.Reset();
}
