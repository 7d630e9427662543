#include "cow_1DArray.h"

#include "cow_1DArrayIter.h"
#include "cow_List.h"
#include "cow_Support.h"
#include "test_Tracked.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

/// \file
/// Counters, growth and sharing of the block array, and what the list makes of them.

namespace {

struct Shape {
    int slots, shift, end, start;
    friend bool operator==(const Shape&, const Shape&) = default;
    friend void PrintTo(const Shape& s, std::ostream* out) {
        *out << s.slots << " slots, shift " << s.shift << ", end " << s.end << ", start "
             << s.start;
    }
};

template <class T>
Shape ShapeOf(const cow_1DArray<T>& array) {
    return {array.Slots(), array.Shift(), array.End(), array.Start()};
}

template <class T>
std::vector<int> BlockCounts(const cow_1DArray<T>& array, int slots) {
    std::vector<int> counts;
    for (int slot = 0; slot < slots; ++slot)
        counts.push_back(array.BlockCount(slot));
    return counts;
}

cow_1DArray<int> Iota(int length) {
    cow_1DArray<int> array;
    for (int i = 0; i < length; ++i)
        array.Append(i);
    return array;
}

using Counts = std::vector<int>;

TEST(Cow1DArray, ShapeFollowsTheLengthAsASingle) {
    const struct {
        int length, slots, shift;
    } cases[] = {
        {0, 16, 4},         {1, 16, 4},           {255, 16, 4},
        {256, 24, 5},       {257, 25, 5},         {1000, 32, 6},
        {1024, 24, 7},      {1000000, 32, 16},    {16777217, 24, 21},  // rounds down to 2^24
        {16777219, 25, 21}, {2147483647, 24, 28},
    };
    for (const auto& [length, slots, shift] : cases) {
        const cow_1DArray<int> array(length);
        EXPECT_EQ(ShapeOf(array), (Shape{slots, shift, length, 0}));
        EXPECT_EQ(BlockCounts(array, slots), Counts(static_cast<std::size_t>(slots), 0));
    }
    EXPECT_EQ(ShapeOf(cow_1DArray<int>()), (Shape{0, 0, 0, 0}));
    EXPECT_EQ(cow_1DArray<int>().TableCount(), 1);
}

TEST(Cow1DArray, GrowsByNeedAndSixteenSlots) {
    cow_1DArray<int> array;
    array.Get(20) = 7;
    EXPECT_EQ(ShapeOf(array), (Shape{18, 4, 21, 0}));
    EXPECT_EQ(BlockCounts(array, 3), (Counts{0, 1, 0}));
    EXPECT_EQ(array.ConstGet(3), 0);
    EXPECT_EQ(BlockCounts(array, 3), (Counts{1, 1, 0})) << "reading allocates the block";
    array.Grow(18 * 16);
    EXPECT_EQ(array.Slots(), 18);
    array.Append(1);
    EXPECT_EQ(array.Slots(), 19 + 16);

    cow_1DArray<int> built(1000);
    built.Grow(32 * 64 + 1);
    EXPECT_EQ(ShapeOf(built), (Shape{33 + 16, 6, 32 * 64 + 1, 0}));
}

TEST(Cow1DArray, GrowToZeroGivesAllBackAndStartsOver) {
    cow_1DArray<int> array = Iota(40);
    for (int i = 0; i < 20; ++i)
        array.RemoveFirst();
    const cow_1DArray<int> other = array;
    array.Grow(0);
    EXPECT_EQ(ShapeOf(array), (Shape{0, 0, 0, 0}));
    EXPECT_EQ(array.TableCount(), 1);
    EXPECT_EQ(other.TableCount(), 1);
    EXPECT_EQ(other.ConstGet(0), 20);
    array.Append(5);
    EXPECT_EQ(ShapeOf(array), (Shape{17, 4, 1, 0}));
}

TEST(Cow1DArray, AWriteCopiesTheTableAndOneBlock) {
    const cow_1DArray<int> source = Iota(40);
    cow_1DArray<int> copy = source;
    EXPECT_EQ(copy.TableCount(), 2);
    EXPECT_EQ(BlockCounts(copy, 3), (Counts{1, 1, 1})) << "the shared table counts once";
    copy.Get(5) = -5;
    EXPECT_EQ(source.ConstGet(5), 5);
    EXPECT_EQ(copy.ConstGet(5), -5);
    EXPECT_EQ(source.TableCount(), 1);
    EXPECT_EQ(BlockCounts(source, 4), (Counts{1, 2, 2, 0}));
    EXPECT_EQ(BlockCounts(copy, 4), (Counts{1, 2, 2, 0}));
    EXPECT_NE(&source.ConstGet(5), &copy.ConstGet(5));
    EXPECT_EQ(&source.ConstGet(16), &copy.ConstGet(16));
}

TEST(Cow1DArray, ReadingNeverDetaches) {
    cow_1DArray<int> array = Iota(100);
    cow_1DArray<int> copy = array;
    const auto before = cow_detachCount;
    int sum = 0;
    for (const int value : copy)
        sum += value;
    for (cow_1DArrayIter<int> at(copy); at; at.Next())
        sum += at.Value();
    for (int i = 0; i < copy.Length(); ++i)
        sum += copy[i];
    copy.ForEachBlock(
        [&](std::span<const int> run) { sum += std::reduce(run.begin(), run.end()); });
    EXPECT_EQ(sum, 4 * 4950);
    EXPECT_TRUE(copy == array);
    EXPECT_EQ(cow_detachCount, before);
    copy.ForEachBlockForWrite([](std::span<int> run) {
        for (int& value : run)
            value *= 2;
    });
    EXPECT_EQ(cow_detachCount, before + 1 + 7) << "the table and each block once";
    EXPECT_EQ(std::accumulate(copy.begin(), copy.end(), 0), 2 * 4950);
    EXPECT_EQ(std::accumulate(array.begin(), array.end(), 0), 4950);
}

TEST(Cow1DArray, AReadOfASharedTableAllocatesForAllSharers) {
    const cow_1DArray<int> array(100);
    const cow_1DArray<int> copy = array;
    EXPECT_EQ(copy.ConstGet(99), 0);
    EXPECT_EQ(array.BlockCount(6), 1);
    EXPECT_EQ(&array.ConstGet(99), &copy.ConstGet(99));
    EXPECT_EQ(array.TableCount(), 2);
}

TEST(Cow1DArray, RemovingTheFirstDetachesWhenItLeavesABlock) {
    cow_1DArray<int> array = Iota(40);
    const cow_1DArray<int> copy = array;
    for (int i = 0; i < 15; ++i)
        array.RemoveFirst();
    EXPECT_EQ(array.TableCount(), 2);
    array.RemoveFirst();
    EXPECT_EQ(ShapeOf(array), (Shape{17, 4, 40, 16}));
    EXPECT_EQ(BlockCounts(array, 3), (Counts{0, 2, 2}));
    EXPECT_EQ(BlockCounts(copy, 3), (Counts{1, 2, 2}));
    EXPECT_EQ(array.ConstGet(0), 16);
    EXPECT_EQ(copy.ConstGet(0), 0);
    array.Grow(3);
    EXPECT_EQ(array.Start(), 16) << "only Grow(0) starts over";
}

TEST(Cow1DArray, BlocksBehindASmallerEndGoAndReadAsZero) {
    cow_1DArray<int> array = Iota(100);
    const cow_1DArray<int> copy = array;
    array.Grow(20);
    EXPECT_EQ(BlockCounts(array, 7), (Counts{2, 1, 0, 0, 0, 0, 0}));
    EXPECT_EQ(BlockCounts(copy, 7), (Counts{2, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(array.Slots(), copy.Slots());
    array.Grow(100);
    EXPECT_EQ(array[19], 19);
    for (int i = 20; i < 100; ++i)
        EXPECT_EQ(array[i], 0);
    EXPECT_EQ(std::accumulate(copy.begin(), copy.end(), 0), 4950);
}

TEST(Cow1DArray, RemovedElementsLetGoOfWhatTheyHold) {
    cow_1DArray<std::shared_ptr<int>> array;
    const auto held = std::make_shared<int>(1);
    for (int i = 0; i < 3; ++i)
        array.Append(held);
    array.RemoveFirst();
    EXPECT_EQ(held.use_count(), 3);
    array.Grow(1);
    EXPECT_EQ(held.use_count(), 2);
}

TEST(Cow1DArray, DeepCopySharesNothing) {
    cow_1DArray<cow_List<int>> nested{{1, 2}, {3}};
    const cow_1DArray<cow_List<int>> copy = nested.DeepCopy();
    EXPECT_TRUE(copy == nested);
    EXPECT_EQ(nested.TableCount(), 1);
    EXPECT_EQ(nested.BlockCount(0), 1);
    EXPECT_EQ(nested[0].Storage().TableCount(), 1);
}

TEST(CowList, RemovingTouchesNoBlockBehindTheList) {
    cow_List<int> list;
    for (int i = 0; i < 10000; ++i)
        list.Append(i);
    while (list.Length() > 20)
        list.RemoveLast();
    cow_List<int> copy = list;
    const auto before = cow_detachCount;
    copy.RemoveIndex(0);
    copy.RemoveLast();
    EXPECT_EQ(cow_detachCount, before + 1 + 2) << "the table and the two blocks of the list";
    EXPECT_EQ(list.ConstGet(0), 0);
    EXPECT_EQ(copy.ConstGet(0), 1);
}

TEST(CowList, RemoveIndexLeavesAZeroAndTheLength) {
    cow_List<int> list{1, 2, 3};
    list.RemoveIndex(2);
    EXPECT_EQ(list.Length(), 2);
    EXPECT_EQ(list.Storage().Length(), 3);
    EXPECT_EQ(list.Storage().ConstGet(2), 0);
    list.RemoveIndex(0);
    EXPECT_TRUE(list == cow_List<int>{2});
    list.Append(7);
    EXPECT_EQ(list.Storage().Length(), 3) << "the place left is taken first";
    EXPECT_TRUE(list == (cow_List<int>{2, 7}));
}

TEST(CowList, AppendGrowsByOneElementAndSixteenSlots) {
    cow_List<int> list;
    for (int i = 0; i < 17 * 16; ++i)
        list.Append(i);
    EXPECT_EQ(ShapeOf(list.Storage()), (Shape{17, 4, 17 * 16, 0}));
    list.Append(0);
    EXPECT_EQ(ShapeOf(list.Storage()), (Shape{34, 4, 17 * 16 + 1, 0}));
}

TEST(CowList, ServesAsAQueueAcrossBlocks) {
    cow_List<int> queue;
    int next = 0;
    int first = 0;
    for (int round = 0; round < 200; ++round) {
        for (int i = 0; i < 7; ++i)
            queue.Append(next++);
        for (int i = 0; i < 6; ++i) {
            ASSERT_EQ(queue.ConstGet(0), first++);
            queue.RemoveFirst();
        }
    }
    EXPECT_EQ(queue.Length(), 200);
    queue.Prepend(-1);
    EXPECT_EQ(queue[0], -1);
    EXPECT_EQ(queue.IndexOf(first), 1);
    EXPECT_FALSE(queue.IsMember(0));
}

TEST(CowList, ComparesByTheFirstDifferenceThenByLength) {
    using List = cow_List<test_Movable>;
    const auto make = [](std::initializer_list<int> values) {
        List list;
        for (const int value : values)
            list.Append(test_Movable(value));
        return list;
    };
    EXPECT_EQ(make({}).Compare(make({})), 0);
    EXPECT_EQ(make({1, 2}).Compare(make({1, 2})), 0);
    EXPECT_LT(make({1}).Compare(make({1, 2})), 0);
    EXPECT_GT(make({2}).Compare(make({1, 2})), 0);
    EXPECT_LT((cow_List<double>{1, -0.5}).Compare({1, 0.5}), 0);
}

}  // namespace
