#pragma once

#include "cow_1DArrayBlock.h"
#include "cow_1DArrayIter.h"
#include "cow_Support.h"
#include "mem_Allocation.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <span>
#include <type_traits>
#include <utility>

/// One-dimensional array in blocks of 2^shift elements under a table of block pointers.
///
/// A copy shares the table with all its blocks. A write first takes a table of its own and then
/// copies the one block it touches, so references stay valid while no shared block is written.
/// Reading never detaches; reading a block nobody has touched allocates it, for all sharers of the
/// table. Counts are plain integers: an array and its copies stay in one thread; DeepCopy() gives
/// an array to hand to another thread. Indices outside raise std::out_of_range.
template <class T>
class cow_1DArray {
    using Block = cow_1DArrayBlock<T>;

public:
    using value_type = T;
    using const_iterator = cow_1DArrayIter<T>;
    using iterator = const_iterator;

    /// Empty: no table, no block, nothing allocated.
    cow_1DArray() noexcept = default;
    /// \p length zero elements in blocks that hold an eighth of it (16 elements at least); no block
    /// is allocated before it is touched.
    explicit cow_1DArray(int length);
    cow_1DArray(std::initializer_list<T> values)
        : cow_1DArray(std::span<const T>(values.begin(), values.size())) {}
    /// Copies of \p values, filled block by block, shaped like one constructed with that length.
    explicit cow_1DArray(std::span<const T> values);
    /// Shares the table and every block.
    cow_1DArray(const cow_1DArray& other)
        : _slots(other._slots),
          _shift(other._shift),
          _end(other._end),
          _start(other._start),
          _tableCount(other.CountCell()),
          _table(other._table) {
        ++*_tableCount;
    }
    cow_1DArray(cow_1DArray&& other) noexcept { Swap(other); }
    cow_1DArray& operator=(const cow_1DArray& other) {
        cow_1DArray(other).Swap(*this);
        return *this;
    }
    cow_1DArray& operator=(cow_1DArray&& other) noexcept {
        cow_1DArray(std::move(other)).Swap(*this);
        return *this;
    }
    ~cow_1DArray() {
        if (_tableCount != nullptr && --*_tableCount == 0) Destroy();
    }

    [[nodiscard]] int Length() const noexcept { return _end - _start; }
    [[nodiscard]] bool IsEmpty() const noexcept { return _end == _start; }

    /// Element \p index in [0, Length()) for reading; never detaches. Cost: constant.
    [[nodiscard]] const T& ConstGet(int index) const {
        CheckIndex(index, Length());
        return *ElementForReading(_start + index);
    }
    [[nodiscard]] const T& operator[](int index) const { return ConstGet(index); }
    /// Element \p index for writing; detaches. Behind the end it extends the array to index + 1
    /// elements, zero in between. When memory is exhausted no element has changed.
    T& Get(int index) {
        if (!IsIn(index, Length())) [[unlikely]]
            Extend(index);
        return *ElementForWriting(_start + index);
    }
    /// Adds an element behind the last one; \p value may be an own element. When memory is
    /// exhausted or copying \p value raises, nothing has changed.
    void Append(T value) {
        T& place = ExtendByOne();
        if constexpr (std::is_nothrow_move_assignable_v<T>) {
            place = std::move(value);
        } else {
            try {
                place = std::move(value);
            } catch (...) {
                Grow(Length() - 1);
                throw;
            }
        }
    }
    /// Replaces the content by copies of \p values (own elements too), block by block. When this
    /// raises, nothing has changed.
    void Assign(std::span<const T> values) { cow_1DArray(values).Swap(*this); }

    /// Sets the length to \p length: new elements are zero, blocks behind a smaller end go. 0 gives
    /// everything back. Returns true. When memory is exhausted, nothing has changed.
    bool Grow(int length);
    void Clear() noexcept;
    /// Removes element 0; the others move down by one. Cost: constant. Empty: std::out_of_range.
    void RemoveFirst();

    [[nodiscard]] const_iterator begin() const { return const_iterator(*this); }
    [[nodiscard]] const_iterator end() const noexcept { return const_iterator(); }
    /// Calls \p visit(std::span<const T>) for each run of neighbouring elements, in index order.
    template <class Visit>
    void ForEachBlock(Visit&& visit) const {
        ReadRuns(Length(), visit);
    }
    /// Calls \p write(std::span<T>) for each run of neighbouring elements, in index order; detaches
    /// all of them. \p write must not change the array itself.
    template <class Write>
    void ForEachBlockForWrite(Write&& write) {
        WriteRuns(Length(), write);
    }

    void Swap(cow_1DArray& other) noexcept {
        std::swap(_slots, other._slots);
        std::swap(_shift, other._shift);
        std::swap(_end, other._end);
        std::swap(_start, other._start);
        std::swap(_tableCount, other._tableCount);
        std::swap(_table, other._table);
    }
    friend void swap(cow_1DArray& a, cow_1DArray& b) noexcept { a.Swap(b); }
    friend bool operator==(const cow_1DArray& a, const cow_1DArray& b) {
        return a.Length() == b.Length() && std::equal(a.begin(), a.end(), b.begin());
    }
    /// An equal array that shares nothing with this one, down to elements that have a DeepCopy().
    [[nodiscard]] cow_1DArray DeepCopy() const;

    // What tests and debuggers look at.

    /// Capacity of the block table.
    [[nodiscard]] int Slots() const noexcept { return _slots; }
    /// log2 of the block size.
    [[nodiscard]] int Shift() const noexcept { return _shift; }
    /// Absolute index one past the last element.
    [[nodiscard]] int End() const noexcept { return _end; }
    /// Absolute index of element 0.
    [[nodiscard]] int Start() const noexcept { return _start; }
    /// Number of arrays that share the table.
    [[nodiscard]] int TableCount() const noexcept {
        return _tableCount == nullptr ? 1 : *_tableCount;
    }
    /// Number of tables that share the block in \p slot; 0 where no block is.
    [[nodiscard]] int BlockCount(int slot) const noexcept {
        const bool isIn = slot >= 0 && slot < _slots && _table[slot] != nullptr;
        return isIn ? _table[slot]->Count() : 0;
    }

private:
    friend class cow_1DArrayIter<T>;
    template <class>
    friend class cow_List;

    static constexpr int kSmallShift = 4;
    static constexpr int kSpareSlots = 16;

    /// Number of slots that memory is taken for. Ahead of the slots in use, so that a table which
    /// grows by 16 slots at a time is moved only when its size doubles.
    [[nodiscard]] static std::size_t RoomFor(int slots) noexcept {
        return std::bit_ceil(static_cast<std::size_t>(std::max(slots, kSpareSlots)));
    }

    [[nodiscard]] int Mask() const noexcept { return (1 << _shift) - 1; }
    /// Slot of the last element, or one less than the first element's when there is none in it.
    [[nodiscard]] int LastSlot() const noexcept { return (_end - 1) >> _shift; }
    /// Calls \p visit(at, n) for each run of n elements from the absolute index at that lie in one
    /// block; together they are the elements [first, last).
    template <class Visit>
    void ForEachRun(int first, int last, Visit&& visit) const {
        for (int at = _start + first; at < _start + last;) {
            const int n = std::min(_start + last - at, (1 << _shift) - (at & Mask()));
            visit(at, n);
            at += n;
        }
    }
    /// The work of ForEachBlock and ForEachBlockForWrite on the first \p length elements.
    template <class Visit>
    void ReadRuns(int length, Visit& visit) const {
        ForEachRun(0, length, [&](int at, int n) {
            visit(std::span<const T>(ElementForReading(at), static_cast<std::size_t>(n)));
        });
    }
    template <class Write>
    void WriteRuns(int length, Write& write) {
        ForEachRun(0, length, [&](int at, int n) {
            write(std::span<T>(ElementForWriting(at), static_cast<std::size_t>(n)));
        });
    }

    int* CountCell() const;
    void MakeTable(int slots);
    void ResizeTable(int slots);

    void Detach() {
        if (_tableCount != nullptr && *_tableCount != 1) [[unlikely]]
            DetachTable();
    }
    void DetachTable();
    void ReleaseBlocks(int first, int last) noexcept;
    void TrimBehind(int end);
    void Destroy() noexcept;

    [[nodiscard]] static bool IsIn(int index, int length) noexcept {
        return static_cast<unsigned>(index) < static_cast<unsigned>(length);
    }
    static void CheckIndex(int index, int length) {
        if (!IsIn(index, length)) [[unlikely]]
            cow_ThrowIndex(index, length);
    }
    // Slot of the absolute index at, and its place in the block there: unsigned, and the slot wide,
    // so that nothing is extended on the way to an address.
    [[nodiscard]] std::size_t SlotOf(int at) const noexcept {
        return std::size_t{static_cast<unsigned>(at)} >> _shift;
    }
    [[nodiscard]] unsigned InBlock(int at, std::size_t slot) const noexcept {
        return static_cast<unsigned>(at) - (static_cast<unsigned>(slot) << _shift);
    }

    // In both look-ups the unusual ways join the usual one before the address is put together,
    // which then becomes part of the instruction that reads or writes.
    [[nodiscard]] const T* ElementForReading(int at) const {
        const std::size_t slot = SlotOf(at);
        const Block* block = _table[slot];
        if (block == nullptr) [[unlikely]]
            block = TouchBlock(static_cast<int>(slot));
        return block->Elements() + InBlock(at, slot);
    }
    T* ElementForWriting(int at) {
        // A length above 0 means that there is a table with its count.
        if (*_tableCount != 1) [[unlikely]]
            DetachTable();
        const std::size_t slot = SlotOf(at);
        Block* block = _table[slot];
        if (block == nullptr || block->Count() != 1) [[unlikely]]
            block = OwnBlock(static_cast<int>(slot));
        return block->Elements() + InBlock(at, slot);
    }
    Block* TouchBlock(int slot) const;
    Block* OwnBlock(int slot);
    void Extend(int index);
    void Own(int first, int last);

    T& ExtendByOne() {
        const std::size_t slot = SlotOf(_end);
        const unsigned inBlock = InBlock(_end, slot);
        // Inside a block the table has its slot already.
        if (inBlock != 0 && *_tableCount == 1) [[likely]] {
            Block* block = _table[slot];
            if (block != nullptr && block->Count() == 1) [[likely]] {
                ++_end;
                return block->Elements()[inBlock];
            }
        }
        return ExtendIntoBlock();
    }
    T& ExtendIntoBlock();

    int _slots = 0;
    int _shift = 0;
    int _end = 0;                        // absolute index one past the last element
    int _start = 0;                      // absolute index of element 0
    mutable int* _tableCount = nullptr;  // null stands for 1, until there is a table or a copy
    Block** _table = nullptr;            // blocks lie in the slots of [_start, _end) only
};

#include "cow_1DArrayImpl.h"
