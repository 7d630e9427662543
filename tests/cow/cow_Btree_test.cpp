#include "cow_Btree.h"

#include "cow_List.h"
#include "cow_String.h"
#include "cow_Support.h"
#include "test_Faults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <map>
#include <memory>
#include <numeric>
#include <pthread.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using IntTree = cow_Btree<int, int>;
using IntNode = cow_BtreeNode<int, int>;
static_assert(std::is_nothrow_copy_assignable_v<IntTree> &&
              std::is_nothrow_move_assignable_v<IntTree>);
static_assert(sizeof(IntNode::Link) == sizeof(void*) && sizeof(IntNode) == 32,
              "with its count a node of ints takes 40 bytes");

// The balancing rule once more, as recursion over plain nodes: what every insertion must give.
struct Plain {
    int key;
    std::unique_ptr<Plain> left, right;
    int height = 0;
};

int PlainHeight(const std::unique_ptr<Plain>& node) { return node ? node->height : 0; }

void Measure(Plain& node) {
    node.height =
        std::max(node.left ? node.left->height + 1 : 0, node.right ? node.right->height + 1 : 0);
}

void BalancePlain(std::unique_ptr<Plain>& link) {
    const int lean = PlainHeight(link->right) - PlainHeight(link->left);
    if (lean > -2 && lean < 2) return;
    auto old = std::move(link);
    auto& rising = lean > 0 ? old->right : old->left;
    link = std::move(rising);
    auto& inner = lean > 0 ? link->left : link->right;
    rising = std::move(inner);
    Measure(*old);
    inner = std::move(old);
    Measure(*link);
}

bool InsertPlain(std::unique_ptr<Plain>& link, int key) {
    if (!link) {
        link = std::make_unique<Plain>(Plain{key, nullptr, nullptr});
        return true;
    }
    if (key == link->key) return false;
    auto& child = key - link->key < 1 ? link->left : link->right;
    const bool isLeaf = !child;
    if (!InsertPlain(child, key)) return false;
    if (!isLeaf) BalancePlain(child);
    Measure(*link);
    return true;
}

std::string ShapeOf(const std::unique_ptr<Plain>& node) {
    if (!node) return "-";
    return "(" + ShapeOf(node->left) + std::to_string(node->key) + ":" +
           std::to_string(node->height) + ShapeOf(node->right) + ")";
}

template <class Node>
std::string ShapeOf(const Node* node) {
    if (!node) return "-";
    return "(" + ShapeOf(node->Left()) + std::to_string(node->Key()) + ":" +
           std::to_string(node->Height()) + ShapeOf(node->Right()) + ")";
}

// The order of 0..n-1 in which keys are put in.
std::vector<int> Keys(const std::string& order, int n) {
    std::vector<int> keys(static_cast<std::size_t>(n));
    std::iota(keys.begin(), keys.end(), 0);
    if (order == "descending") std::reverse(keys.begin(), keys.end());
    if (order == "random") std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
    if (order == "zigzag") {
        for (int i = 0; i < n; ++i)
            keys[static_cast<std::size_t>(i)] = i % 2 ? n - 1 - i / 2 : i / 2;
    }
    return keys;
}

TEST(CowBtree, InsertionGivesTheShapeOfTheRule) {
    IntTree chain{{1, 0}, {2, 0}, {3, 0}};
    EXPECT_EQ(ShapeOf(chain.Root()), "(-1:2(-2:1(-3:0-)))") << "a leaf weighs like no child";
    chain.InsertUnlessMember(4, 0);
    EXPECT_EQ(ShapeOf(chain.Root()), "((-1:0-)2:2(-3:1(-4:0-)))");
    for (const std::string order : {"ascending", "descending", "zigzag", "random"}) {
        IntTree tree;
        std::unique_ptr<Plain> plain;
        for (const int key : Keys(order, 400)) {
            tree.InsertUnlessMember(key, key);
            if (InsertPlain(plain, key)) BalancePlain(plain);
            ASSERT_EQ(ShapeOf(tree.Root()), ShapeOf(plain)) << order << " at " << key;
        }
    }
}

TEST(CowBtree, PresentKeysKeepTheirValue) {
    IntTree tree{{1, 10}};
    EXPECT_FALSE(tree.InsertUnlessMember(1, 11));
    EXPECT_EQ(tree.ConstFind(1)->Value(), 10);
    EXPECT_EQ(tree.ConstFind(2), nullptr);
    tree.Find(1)->Value() = 12;
    EXPECT_EQ(tree.begin().CurrentValue(), 12);
}

// Heights follow from the children; returns the node's height.
template <class Node>
int CheckedHeight(const Node* node) {
    int height = 0;
    for (const Node* child : {node->Left(), node->Right()}) {
        if (child != nullptr) height = std::max(height, CheckedHeight(child) + 1);
    }
    EXPECT_EQ(node->Height(), height);
    return height;
}

// Trees that copy each other and change, beside std::map; with faults injected or not.
template <class Value>
void RunRandomly(unsigned seed, bool faulty) {
    struct Pair {
        cow_Btree<int, Value> actual;
        std::map<int, int> expected;
    };
    std::mt19937 random(seed);
    const auto below = [&](int n) { return std::uniform_int_distribution<>(0, n - 1)(random); };
    Pair pairs[3];
    for (int step = 0; step < 6000; ++step) {
        auto& [actual, expected] = pairs[below(3)];
        const int key = below(80);
        const auto holds = [](const Pair& pair) {
            auto at = pair.expected.begin();
            for (const auto& node : pair.actual) {
                if (at == pair.expected.end() || node.Key() != at->first ||
                    !(node.Value() == Value(at->second))) {
                    return false;
                }
                ++at;
            }
            return at == pair.expected.end();
        };
        std::map<int, int> changed = expected;
        const int what = below(16);
        const bool raised = [&] {
            const int copy = faulty && below(2) ? 1 + below(8) : 0;
            const test_Faults faults(copy, faulty && copy == 0 ? 1 + below(8) : 0);
            return test_Faults::Raises([&, &tree = actual] {
                if (what < 7) {
                    const bool isNew = changed.emplace(key, step).second;
                    EXPECT_EQ(tree.InsertUnlessMember(key, Value(step)), isNew);
                } else if (what < 14) {
                    const bool isThere = changed.erase(key) == 1;
                    EXPECT_EQ(tree.Remove(key), isThere);
                } else if (auto* const node = tree.Find(key); node != nullptr) {
                    changed[key] = step;
                    node->Value() = Value(step);
                }
            });
        }();
        if (!raised || !holds({actual, expected})) expected = changed;
        if (below(20) == 0) {
            const Pair copy = pairs[below(3)];
            actual = copy.actual;
            expected = copy.expected;
        }
        for (const Pair& pair : pairs) {
            ASSERT_TRUE(holds(pair)) << "seed " << seed << " step " << step;
            if (!pair.actual.IsEmpty()) CheckedHeight(pair.actual.Root());
        }
    }
}

TEST(CowBtree, DoesWhatAMapDoesWhileCopiesKeepTheirs) {
    for (unsigned seed = 1; seed <= 3; ++seed)
        RunRandomly<int>(seed, false);
}

TEST(CowBtree, SurvivesFailingCopiesAndAllocations) {
    for (unsigned seed = 1; seed <= 3; ++seed)
        RunRandomly<test_Movable>(seed, true);
    EXPECT_EQ(test_Movable::live, 0);
}

TEST(CowBtree, OnlyTheTouchedPathIsCloned) {
    IntTree tree;
    for (int key = 0; key < 2000; key += 2)
        tree.InsertUnlessMember(key, key);
    IntTree copy = tree;
    const auto detaches = [](auto&& action) {
        const auto before = cow_detachCount;
        action();
        return static_cast<int>(cow_detachCount - before);
    };
    EXPECT_EQ(detaches([&] { (void)copy.ConstFind(1000); }), 0);
    EXPECT_EQ(detaches([&] { copy.Remove(1001); }), 0);
    EXPECT_EQ(detaches([&] { EXPECT_EQ(copy.Length(), 1000); }), 0);
    const int cloned = detaches([&] { EXPECT_EQ(copy.Find(1001), nullptr); });
    EXPECT_GT(cloned, 2) << "a miss clones its path as well";
    EXPECT_LE(cloned, tree.Height() + 1);
    EXPECT_EQ(detaches([&] { EXPECT_EQ(copy.Find(1001), nullptr); }), 0);
    EXPECT_TRUE(copy == tree);
}

TEST(CowBtree, AChildThatRisesOffThePathStaysWithTheOtherTree) {
    IntTree tree;
    for (int key = 0; key < 64; ++key)
        tree.InsertUnlessMember(key, key);
    const std::string shape = ShapeOf(tree.Root());
    IntTree copy = tree;
    // Emptied from the left, the right children rise although nothing was put in there.
    for (int key = 0; key < 60; ++key) {
        ASSERT_TRUE(copy.Remove(key));
        ASSERT_EQ(ShapeOf(tree.Root()), shape) << key;
    }
    EXPECT_EQ(copy.Length(), 4);
    const IntTree deep = tree.DeepCopy();
    EXPECT_EQ(ShapeOf(deep.Root()), shape);
    EXPECT_NE(deep.Root(), tree.Root());
}

TEST(CowBtree, KeysFarApartWrapAround) {
    IntTree tree;
    // INT_MIN - INT_MAX wraps to 1: right of it, although smaller.
    EXPECT_TRUE(tree.InsertUnlessMember(INT_MAX, 1));
    EXPECT_TRUE(tree.InsertUnlessMember(INT_MIN, 2));
    EXPECT_TRUE(tree.InsertUnlessMember(0, 3));
    EXPECT_EQ(ShapeOf(tree.Root()), "((-0:0-)2147483647:1(--2147483648:0-))");
    for (const int key : Keys("random", 500)) {
        tree.InsertUnlessMember(static_cast<int>(8589935U * static_cast<unsigned>(key)), key);
    }
    int removed = 0;
    while (!tree.IsEmpty())
        removed += tree.Remove(tree.Root()->Key());
    EXPECT_GE(removed, 500);
}

TEST(CowBtree, TextsAndListsOfTextsAreKeys) {
    cow_Btree<cow_String, int> texts{{"b", 2}, {"", 0}, {"a", 1}, {"ab", 3}, {"a", 9}};
    std::string joined;
    for (const auto& node : texts)
        joined += node.Key().Std() + std::to_string(node.Value()) + " ";
    EXPECT_EQ(joined, "0 a1 ab3 b2 ");
    cow_Btree<cow_List<cow_String>, int> lists{{{"a", "b"}, 1}, {{"a"}, 2}, {{}, 3}, {{"b"}, 4}};
    EXPECT_EQ(lists.ConstFind({"a", "b"})->Value(), 1);
    std::vector<int> values;
    for (cow_BtreeIterator at(lists.begin()); at; at.Next())
        values.push_back(at.CurrentValue());
    EXPECT_EQ(values, (std::vector{3, 2, 1, 4}));
    EXPECT_THROW((void)lists.end().CurrentValue(), std::out_of_range);
}

// All operations on a million entries, in each order.
void* WorkOnAMillion(void* /*unused*/) {
    constexpr int kCount = 1000000;
    for (const std::string order : {"ascending", "descending", "zigzag", "random"}) {
        const std::vector<int> keys = Keys(order, kCount);
        IntTree tree;
        for (const int key : keys)
            tree.InsertUnlessMember(key, key);
        EXPECT_LE(tree.Height(), 40) << order;
        IntTree copy = tree;
        for (int i = 0; i < kCount; i += 2)
            copy.Remove(keys[static_cast<std::size_t>(i)]);
        int next = 0;
        for (const IntNode& node : tree)
            next += node.Key() == next;
        EXPECT_EQ(next, kCount) << order;
        EXPECT_EQ(copy.Length(), kCount / 2) << order;
        EXPECT_TRUE(tree.DeepCopy() == tree) << order;
    }
    return nullptr;
}

TEST(CowBtree, AMillionEntriesInAnyOrderFitASmallStack) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 512 * 1024), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, &WorkOnAMillion, nullptr), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

}  // namespace
