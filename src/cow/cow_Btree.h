#pragma once

#include "cow_BtreeIterator.h"
#include "cow_BtreeNode.h"
#include "cow_BtreeNodeLink.h"
#include "cow_SmallStack.h"
#include "cow_Support.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

/// Ordered map: a binary search tree of copy-on-write nodes, balanced by single rotations.
///
/// Copies share all nodes; a write clones the shared nodes on its path, so no copy ever changes. A
/// tree and its copies stay in one thread; DeepCopy() gives one to hand to another. Nothing
/// recurses, so any depth works on any stack. Pointers to nodes stay valid until the entry goes or
/// the tree has been copied and is then written.
template <class K, class V>
class cow_Btree {
public:
    using Node = cow_BtreeNode<K, V>;
    using value_type = Node;
    using const_iterator = cow_BtreeIterator<K, V>;
    using iterator = const_iterator;

    /// Empty; nothing is allocated.
    cow_Btree() noexcept = default;
    /// Of entries with the same key the first one counts.
    cow_Btree(std::initializer_list<std::pair<K, V>> entries) {
        for (const auto& [key, value] : entries)
            InsertUnlessMember(key, value);
    }

    [[nodiscard]] bool IsEmpty() const noexcept { return _root.IsNull(); }
    /// Number of entries. Cost: linear, they are counted.
    [[nodiscard]] int Length() const {
        int length = 0;
        for (auto at = begin(); at; at.Next())
            ++length;
        return length;
    }
    /// The root node, or null.
    [[nodiscard]] const Node* Root() const noexcept { return _root.IsNull() ? nullptr : &*_root; }
    /// Height of the root node; 0 for an empty tree.
    [[nodiscard]] int Height() const noexcept { return _root.IsNull() ? 0 : _root->Height(); }

    /// The node of \p key for reading, or null; never clones.
    [[nodiscard]] const Node* ConstFind(const K& key) const {
        return _root.IsNull() ? nullptr : _root->ConstFind(key);
    }
    /// The node of \p key for writing, or null. Clones the shared nodes on the path to the key,
    /// also when it is not there.
    [[nodiscard]] Node* Find(const K& key) {
        for (Link* link = &_root; !link->IsNull();) {
            Node& node = link->Get();
            const int order = cow_BtreeOrder(key, node._key);
            if (order == 0) return &node;
            link = &node._links[order >= 1];
        }
        return nullptr;
    }
    [[nodiscard]] bool IsMember(const K& key) const { return ConstFind(key) != nullptr; }

    /// Puts the entry in and returns true; false, with no entry changed, when the key is present.
    /// When memory is exhausted while a shared node is rotated the entry is in, otherwise not.
    bool InsertUnlessMember(const K& key, const V& value);
    /// Removes the entry of \p key; false, with nothing changed, when there is none. When memory is
    /// exhausted while a shared node is rotated the entry is gone, otherwise not.
    bool Remove(const K& key);
    void Clear() noexcept { cow_Btree().Swap(*this); }

    /// Nodes with ascending keys: `for (const auto& node : tree) node.Key(), node.Value()`.
    [[nodiscard]] const_iterator begin() const {
        return const_iterator(cow_BtreeNodeLink<K, V>(_root));
    }
    [[nodiscard]] const_iterator end() const noexcept { return const_iterator(); }

    void Swap(cow_Btree& other) noexcept { _root.Swap(other._root); }
    friend void swap(cow_Btree& a, cow_Btree& b) noexcept { a.Swap(b); }
    /// Equal entries in the same order, whatever the shapes.
    friend bool operator==(const cow_Btree& a, const cow_Btree& b) {
        if (a.Root() == b.Root() && a.IsEmpty()) return true;
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Node& x, const Node& y) {
            return cow_BtreeOrder(x.Key(), y.Key()) == 0 && x.Value() == y.Value();
        });
    }
    /// A tree of the same entries and shape that shares nothing with this one.
    [[nodiscard]] cow_Btree DeepCopy() const;

private:
    using Link = typename Node::Link;

    /// The links from the root down to the place of a change.
    using Path = cow_SmallStack<Link*, 64>;

    static void Unshare(Path& path);
    static void Rebalance(Path& path, const Link* changed);
    static bool UpdateHeight(Node& node, const Link* changed) noexcept;
    static void Rotate(Link& link, int risingSide);

    Link _root;
};

template <class K, class V>
bool cow_Btree<K, V>::InsertUnlessMember(const K& key, const V& value) {
    Path path;
    Link* link = &_root;
    while (!link->IsNull()) {
        Node& node = link->Get();
        const int order = cow_BtreeOrder(key, node._key);
        if (order == 0) return false;
        path.Push(link);
        link = &node.Toward(order);
    }
    *link = Link::Make(key, value);
    Rebalance(path, link);
    return true;
}

template <class K, class V>
bool cow_Btree<K, V>::Remove(const K& key) {
    Path path;
    bool isShared = false;
    for (Link* link = &_root;;) {
        if (link->IsNull()) return false;
        path.Push(link);
        isShared = isShared || link->Count() > 1;
        // Not for writing yet: the key may be missing.
        Node& node = const_cast<Node&>(**link);
        const int order = cow_BtreeOrder(key, node._key);
        if (order == 0) break;
        link = &node.Toward(order);
    }
    const int at = path.Size() - 1;
    const Node& found = **path[at];
    const bool isInner = !found._links[0].IsNull() && !found._links[1].IsNull();
    // An inner node gives its place to its neighbour from the higher side.
    const int side = isInner ? static_cast<int>(found._below[1] > found._below[0])
                             : static_cast<int>(found._links[0].IsNull());
    if (isInner) {
        Link* link = const_cast<Link*>(&found._links[side]);
        for (; !link->IsNull(); link = const_cast<Link*>(&(*link)->_links[1 - side])) {
            path.Push(link);
            isShared = isShared || link->Count() > 1;
        }
    }
    if (isShared) Unshare(path);

    // Nothing below raises before the heights are put right.
    Link& gap = *path[path.Size() - 1];
    Link taken = std::move(gap.Get()._links[side]);
    taken.Swap(gap);
    const Link* changed = &gap;
    if (isInner) {
        // The neighbour, now taken out, gets the links and heights of the node it replaces.
        Link& place = *path[at];
        Node& old = place.Get();
        Node& heir = taken.Get();
        for (int i = 0; i < 2; ++i) {
            heir._links[i].Swap(old._links[i]);
            heir._below[i] = old._below[i];
        }
        taken.Swap(place);
        if (changed == &old._links[side]) {
            changed = &heir._links[side];
        } else {
            path[at + 1] = &heir._links[side];
        }
    }
    path.Pop();
    Rebalance(path, changed);
    return true;
}

/// Makes all nodes on \p path this tree's own.
template <class K, class V>
void cow_Btree<K, V>::Unshare(Path& path) {
    for (int i = 0; i < path.Size(); ++i) {
        const Node& before = **path[i];
        Node& own = path[i]->Get();
        if (i + 1 < path.Size()) path[i + 1] = &own._links[path[i + 1] == &before._links[1]];
    }
}

/// Puts heights and balance right from the bottom of \p path up, after the subtree behind
/// \p changed, a link of its last node, has changed. All nodes on the path are this tree's own.
template <class K, class V>
void cow_Btree<K, V>::Rebalance(Path& path, const Link* changed) {
    int i = path.Size() - 1;
    try {
        // Every node on the path is looked at, since a single rotation may have left one leaning.
        for (bool isNews = true; i >= 0; --i) {
            Link& link = *path[i];
            Node& node = link.Get();
            isNews = isNews && UpdateHeight(node, changed);
            if (!node.IsBalanced()) [[unlikely]] {
                Rotate(link, node.Lean() > 0);
                isNews = true;
            }
            changed = &link;
        }
    } catch (...) {
        // A rotation is left out; the heights above still have to be right.
        for (changed = path[i]; --i >= 0; changed = path[i]) {
            UpdateHeight(path[i]->Get(), changed);
        }
        throw;
    }
}

/// Takes over the height behind \p changed, one of the node's links; false when it is as known.
template <class K, class V>
bool cow_Btree<K, V>::UpdateHeight(Node& node, const Link* changed) noexcept {
    int& known = node._below[changed == &node._links[1]];
    const int below = changed->IsNull() ? 0 : (*changed)->Height() + 1;
    return std::exchange(known, below) != below;
}

/// Single rotation: the child on \p risingSide becomes the root of the subtree behind \p link.
template <class K, class V>
void cow_Btree<K, V>::Rotate(Link& link, int risingSide) {
    Node& node = link.Get();
    Link& rising = node._links[risingSide];
    // The child may lie off the path of the change, and so be shared still.
    Node& child = rising.Get();
    Link& inner = child._links[1 - risingSide];
    link.Swap(rising);
    rising.Swap(inner);
    node._below[risingSide] = child._below[1 - risingSide];
    child._below[1 - risingSide] = node.Height() + 1;
}

template <class K, class V>
cow_Btree<K, V> cow_Btree<K, V>::DeepCopy() const {
    struct Pair {
        const Link* from;
        Link* to;
    };
    cow_Btree copy;
    cow_SmallStack<Pair, 48> todo;
    todo.Push({&_root, &copy._root});
    while (todo.Size() != 0) {
        const Pair pair = todo.Pop();
        if (pair.from->IsNull()) continue;
        const Node& source = **pair.from;
        *pair.to = Link::Make(cow_DeepCopyOf(source._key), cow_DeepCopyOf(source._value));
        Node& node = pair.to->Get();
        for (int side = 0; side < 2; ++side) {
            node._below[side] = source._below[side];
            todo.Push({&source._links[side], &node._links[side]});
        }
    }
    return copy;
}
