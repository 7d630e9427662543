#pragma once

#include "cow_1DArray.h"

/// \file
/// The parts of cow_1DArray that are not on a hot path.

template <class T>
cow_1DArray<T>::cow_1DArray(int length) : cow_1DArray() {
    if (length < 0) cow_ThrowLength(length);
    // The shape comes from the length as a float: its exponent E gives blocks of 2^(E - 3), and
    // its mantissa, rounded up to eighths, how many of them there are.
    const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(length));
    const int exponent = static_cast<int>(bits >> 23) - 127;
    const auto mantissa = static_cast<int>(bits & 0x7FFFFF);
    int slots = kSpareSlots;
    int shift = kSmallShift;
    if (exponent - 3 > kSmallShift) {
        shift = exponent - 3;
        slots += (mantissa + 0x8FFFFF) >> 20;
    }
    MakeTable(slots);
    _shift = shift;
    _end = length;
}

template <class T>
cow_1DArray<T>::cow_1DArray(std::span<const T> values)
    : cow_1DArray(values.size() > INT_MAX ? -1 : static_cast<int>(values.size())) {
    ForEachRun(0, _end, [&](int at, int n) {
        _table[at >> _shift] = Block::NewFrom(values.data() + at, n, _shift);
    });
}

template <class T>
bool cow_1DArray<T>::Grow(int length) {
    if (length < 0 || length > INT_MAX - _start) cow_ThrowLength(length);
    if (length == 0) {
        Clear();
        return true;
    }
    Detach();
    const int shift = _end == 0 ? kSmallShift : _shift;
    const int end = _start + length;
    const int needed = ((end - 1) >> shift) + 1;
    if (needed > _slots) {
        ResizeTable(needed + kSpareSlots);
    } else if (end < _end) {
        TrimBehind(end);
    }
    _shift = shift;
    _end = end;
    return true;
}

template <class T>
void cow_1DArray<T>::Clear() noexcept {
    // The same as detaching and then giving back every block, without the table in between.
    cow_1DArray().Swap(*this);
}

template <class T>
void cow_1DArray<T>::RemoveFirst() {
    if (IsEmpty()) cow_ThrowIndex(0, 0);
    if (((_start + 1) & Mask()) == 0) {
        Detach();
        ReleaseBlocks(_start >> _shift, _start >> _shift);
    } else if constexpr (!std::is_trivially_destructible_v<T> &&
                         std::is_nothrow_default_constructible_v<T> &&
                         std::is_nothrow_move_assignable_v<T>) {
        // Nobody sees the element any more: what it holds goes now, not with its block.
        Block* block = _table[_start >> _shift];
        if (*_tableCount == 1 && block != nullptr && block->Count() == 1) {
            block->Elements()[_start & Mask()] = T();
        }
    }
    ++_start;
}

template <class T>
cow_1DArray<T> cow_1DArray<T>::DeepCopy() const {
    cow_1DArray copy;
    if (_table == nullptr) return copy;
    copy.MakeTable(_slots);
    copy._shift = _shift;
    copy._end = _end;
    copy._start = _start;
    for (int slot = _start >> _shift; slot <= LastSlot(); ++slot) {
        if (_table[slot] == nullptr) continue;
        Block* block = Block::NewFrom(_table[slot]->Elements(), 1 << _shift, _shift);
        copy._table[slot] = block;
        if constexpr (requires(const T& value) { value.DeepCopy(); }) {
            for (int i = 0; i <= Mask(); ++i) {
                block->Elements()[i] = cow_DeepCopyOf(block->Elements()[i]);
            }
        }
    }
    return copy;
}

/// The count of the table; a cell of its own from here on.
template <class T>
int* cow_1DArray<T>::CountCell() const {
    if (_tableCount == nullptr) [[unlikely]] {
        _tableCount = ::new (mem_OperatorNewTinyThrow(sizeof(int))) int(1);
    }
    return _tableCount;
}

/// Gives an array without a table one of \p slots empty slots.
template <class T>
[[gnu::noinline]] void cow_1DArray<T>::MakeTable(int slots) {
    CountCell();
    ResizeTable(slots);
}

/// Gives the table of this array alone \p slots slots; new ones are empty.
template <class T>
[[gnu::noinline]] void cow_1DArray<T>::ResizeTable(int slots) {
    CountCell();
    if (_table == nullptr || RoomFor(slots) != RoomFor(_slots)) {
        const std::size_t size = RoomFor(slots) * sizeof(Block*);
        void* table = mem_Realloc(_table, size);
        if (table == nullptr) mem_ThrowExhausted(size);
        _table = static_cast<Block**>(table);
    }
    std::fill(_table + _slots, _table + slots, nullptr);
    _slots = slots;
}

/// Takes a table of its own, whose blocks are shared with the others' table.
template <class T>
[[gnu::noinline]] void cow_1DArray<T>::DetachTable() {
    cow_1DArray own;
    if (_table == nullptr) {
        own.CountCell();
    } else {
        own.MakeTable(_slots);
        std::copy_n(_table, _slots, own._table);
        for (int slot = _start >> _shift; slot <= LastSlot(); ++slot) {
            if (_table[slot] != nullptr) _table[slot]->Share();
        }
    }
    own._shift = _shift;
    own._end = _end;
    own._start = _start;
    Swap(own);
    ++cow_detachCount;
}

/// Gives the blocks in the slots [first, last] of a table of its own back.
template <class T>
void cow_1DArray<T>::ReleaseBlocks(int first, int last) noexcept {
    // From the back: the last blocks are those that the processor still has at hand, and the pool
    // then gives them out again with ascending addresses.
    for (int slot = last; slot >= first; --slot) {
        if (Block* block = std::exchange(_table[slot], nullptr)) block->Release(_shift);
    }
}

/// Makes all behind \p end, the coming smaller end, read as zero: blocks go, and the one that \p
/// end lies in is replaced when others share it.
template <class T>
[[gnu::noinline]] void cow_1DArray<T>::TrimBehind(int end) {
    const int kept = ((end - 1) & Mask()) + 1;
    Block*& last = _table[(end - 1) >> _shift];
    if (last != nullptr && kept <= Mask()) {
        if (last->Count() == 1 && std::is_nothrow_default_constructible_v<T> &&
            std::is_nothrow_move_assignable_v<T>) {
            const int used = std::min(kept + (_end - end), Mask() + 1);
            std::for_each(last->Elements() + kept, last->Elements() + used,
                          [](T& element) { element = T(); });
        } else {
            Block* block = Block::NewFrom(last->Elements(), kept, _shift);
            std::exchange(last, block)->Release(_shift);
        }
    }
    ReleaseBlocks(((end - 1) >> _shift) + 1, LastSlot());
}

/// What the last sharer of the table does.
template <class T>
[[gnu::noinline]] void cow_1DArray<T>::Destroy() noexcept {
    if (_table != nullptr) {
        ReleaseBlocks(_start >> _shift, LastSlot());
        mem_Free(_table);
    }
    mem_Free(_tableCount);
}

/// Allocates the block of \p slot in the table, also when that is shared: all see the same zeros.
template <class T>
[[gnu::noinline]] cow_1DArrayBlock<T>* cow_1DArray<T>::TouchBlock(int slot) const {
    // The usual size as a constant makes clearing the block a handful of instructions.
    if (_shift == kSmallShift) [[likely]]
        return _table[slot] = Block::New(kSmallShift);
    return _table[slot] = Block::New(_shift);
}

/// The block of \p slot in a table of this array alone, made this array's own.
template <class T>
[[gnu::noinline]] cow_1DArrayBlock<T>* cow_1DArray<T>::OwnBlock(int slot) {
    Block*& block = _table[slot];
    if (block == nullptr) {
        TouchBlock(slot);
    } else if (block->Count() > 1) {
        Block* own = Block::NewFrom(block->Elements(), 1 << _shift, _shift);
        std::exchange(block, own)->Release(_shift);
        ++cow_detachCount;
    }
    return block;
}

/// Get behind the end: grows, and shrinks again should the element's block not be had.
template <class T>
[[gnu::noinline]] void cow_1DArray<T>::Extend(int index) {
    if (index < 0 || index == INT_MAX) cow_ThrowIndex(index, Length());
    const int end = _end;
    Grow(index + 1);
    try {
        ElementForWriting(_start + index);
    } catch (...) {
        _end = end;
        throw;
    }
}

/// Makes table and blocks of the elements [first, last) this array's own: writing them then
/// allocates nothing.
template <class T>
void cow_1DArray<T>::Own(int first, int last) {
    ForEachRun(first, last, [this](int at, int) { ElementForWriting(at); });
}

/// Adds an element that begins a block, or one whose block is missing or shared.
template <class T>
[[gnu::noinline]] T& cow_1DArray<T>::ExtendIntoBlock() {
    // The usual case without the detours of Extend: the table is ours and has an empty slot.
    if (_tableCount != nullptr && *_tableCount == 1 && _end != 0 && (_end & Mask()) == 0 &&
        (_end >> _shift) < _slots) [[likely]] {
        Block* block = TouchBlock(_end >> _shift);
        ++_end;
        return block->Elements()[0];
    }
    const int length = Length();
    Extend(length);
    return *ElementForWriting(_start + length);
}
