#pragma once

#include "cow_BtreeNode.h"

/// One link of a cow_Btree as a walk over the tree sees it: the node behind it, or none, and the
/// links below. A plain pointer that holds no share.
template <class K, class V>
class cow_BtreeNodeLink {
public:
    using Node = cow_BtreeNode<K, V>;

    cow_BtreeNodeLink() noexcept = default;
    explicit cow_BtreeNodeLink(const typename Node::Link& link) noexcept
        : _node(link.IsNull() ? nullptr : &*link) {}

    [[nodiscard]] bool IsNull() const noexcept { return _node == nullptr; }
    /// The node behind the link, null when there is none.
    [[nodiscard]] const Node* Get() const noexcept { return _node; }
    /// The links below. Null link: undefined.
    [[nodiscard]] cow_BtreeNodeLink Left() const noexcept { return Below(0); }
    [[nodiscard]] cow_BtreeNodeLink Right() const noexcept { return Below(1); }

    friend bool operator==(const cow_BtreeNodeLink&, const cow_BtreeNodeLink&) = default;

private:
    [[nodiscard]] cow_BtreeNodeLink Below(int side) const noexcept {
        return cow_BtreeNodeLink(_node->_links[side]);
    }

    const Node* _node = nullptr;
};
