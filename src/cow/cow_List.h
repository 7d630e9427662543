#pragma once

#include "cow_1DArray.h"
#include "cow_1DArrayIter.h"
#include "cow_Support.h"

#include <algorithm>
#include <climits>
#include <initializer_list>
#include <span>
#include <utility>

/// List on a cow_1DArray: a count, and the array whose first elements are the list's.
///
/// Copies share storage block by block and a write copies the block it touches; reading never
/// detaches. A list and its copies stay in one thread; DeepCopy() gives a list to hand to another.
/// Indices outside raise std::out_of_range. Arguments may be own elements, or the list itself.
template <class T>
class cow_List {
public:
    using value_type = T;
    using const_iterator = cow_1DArrayIter<T>;
    using iterator = const_iterator;

    /// Empty; nothing is allocated.
    cow_List() noexcept = default;
    cow_List(std::initializer_list<T> values)
        : cow_List(std::span<const T>(values.begin(), values.size())) {}
    /// Copies of \p values, filled block by block.
    explicit cow_List(std::span<const T> values) {
        if (!values.empty()) _array.Assign(values);
        _count = _array.Length();
    }
    cow_List(const cow_List&) = default;
    cow_List(cow_List&& other) noexcept { Swap(other); }
    cow_List& operator=(const cow_List& other) {
        cow_List(other).Swap(*this);
        return *this;
    }
    cow_List& operator=(cow_List&& other) noexcept {
        cow_List(std::move(other)).Swap(*this);
        return *this;
    }
    ~cow_List() = default;

    [[nodiscard]] int Length() const noexcept { return _count; }
    [[nodiscard]] bool IsEmpty() const noexcept { return _count == 0; }

    /// Element \p index in [0, Length()) for reading; never detaches. Cost: constant.
    [[nodiscard]] const T& ConstGet(int index) const {
        CheckIndex(index);
        return *_array.ElementForReading(_array._start + index);
    }
    [[nodiscard]] const T& operator[](int index) const { return ConstGet(index); }
    /// Element \p index in [0, Length()) for writing; detaches.
    T& Get(int index) {
        CheckIndex(index);
        return *_array.ElementForWriting(_array._start + index);
    }

    /// Adds an element behind the last one. When memory is exhausted or copying \p value raises,
    /// nothing has changed.
    void Append(T value) {
        T& place = _count < _array.Length() ? _array.Get(_count) : _array.ExtendByOne();
        place = std::move(value);
        ++_count;
    }
    /// Adds the elements of \p other, which may be this list. When this raises and moves of T do
    /// not, nothing has changed.
    void Append(const cow_List& other) {
        const int added = other._count;
        if (added > INT_MAX - _count) cow_ThrowLength(1LL * _count + added);
        const int before = _count;
        try {
            for (int i = 0; i < added; ++i)
                Append(other.ConstGet(i));
        } catch (...) {
            while (_count > before)
                RemoveLast();
            throw;
        }
    }
    /// Adds an element before the first one. Cost: linear.
    void Prepend(T value) { InsertAfter(-1, std::move(value)); }
    /// Adds an element behind element \p index in [-1, Length()); -1 is before the first. Cost:
    /// linear in the elements behind. When this raises and moves of T do not, nothing has changed.
    void InsertAfter(int index, T value);
    /// Removes element \p index in [0, Length()); those behind move down by one. Cost: linear in
    /// them. The storage keeps its length. When this raises and moves of T do not, nothing has
    /// changed.
    void RemoveIndex(int index);
    /// Removes element 0. Cost: constant. Empty list: std::out_of_range.
    void RemoveFirst() {
        CheckIndex(0);
        _array.RemoveFirst();
        --_count;
    }
    /// Removes the last element. Cost: constant. Empty list: std::out_of_range.
    void RemoveLast() { RemoveIndex(_count - 1); }
    /// Empties the list and gives its storage back.
    void Clear() noexcept {
        _array.Clear();
        _count = 0;
    }

    /// Index of the first element equal to \p value, or -1. Cost: linear.
    [[nodiscard]] int IndexOf(const T& value) const {
        int index = 0;
        for (const T& element : *this) {
            if (element == value) return index;
            ++index;
        }
        return -1;
    }
    [[nodiscard]] bool IsMember(const T& value) const { return IndexOf(value) >= 0; }
    /// Same length and equal elements in the same order.
    [[nodiscard]] bool IsEqual(const cow_List& other) const {
        return _count == other._count && std::equal(begin(), end(), other.begin());
    }
    /// Negative, zero or positive as this list sorts before, with or after \p other: by the first
    /// elements that differ, else by length.
    [[nodiscard]] int Compare(const cow_List& other) const {
        const_iterator mine = begin();
        const_iterator theirs = other.begin();
        for (; mine && theirs; ++mine, ++theirs) {
            if (const int order = cow_Compare(*mine, *theirs); order != 0) return order;
        }
        return cow_Compare(_count, other._count);
    }

    [[nodiscard]] const_iterator begin() const { return const_iterator(_array, _count); }
    [[nodiscard]] const_iterator end() const noexcept { return const_iterator(); }

    /// Calls \p visit(std::span<const T>) for each run of neighbouring elements, in index order.
    template <class Visit>
    void ForEachBlock(Visit&& visit) const {
        _array.ReadRuns(_count, visit);
    }
    /// Calls \p write(std::span<T>) for each run of neighbouring elements, in index order; detaches
    /// all of them. \p write must not change the list itself.
    template <class Write>
    void ForEachBlockForWrite(Write&& write) {
        _array.WriteRuns(_count, write);
    }

    void Swap(cow_List& other) noexcept {
        _array.Swap(other._array);
        std::swap(_count, other._count);
    }
    friend void swap(cow_List& a, cow_List& b) noexcept { a.Swap(b); }
    friend bool operator==(const cow_List& a, const cow_List& b) { return a.IsEqual(b); }
    /// An equal list that shares nothing with this one.
    [[nodiscard]] cow_List DeepCopy() const {
        cow_List copy;
        copy._array = _array.DeepCopy();
        copy._count = _count;
        return copy;
    }

    /// The storage, for tests and debuggers; its length is that of the list or more.
    [[nodiscard]] const cow_1DArray<T>& Storage() const noexcept { return _array; }

private:
    void CheckIndex(int index) const { cow_1DArray<T>::CheckIndex(index, _count); }

    int _count = 0;
    cow_1DArray<T> _array;  // zero from _count on
};

template <class T>
void cow_List<T>::InsertAfter(int index, T value) {
    if (index < -1 || index >= _count) cow_ThrowIndex(index, _count);
    _array.Own(index + 1, _count);  // all that may fail for want of memory comes first
    Append(T());
    for (int i = _count - 1; i > index + 1; --i) {
        Get(i) = std::move_if_noexcept(Get(i - 1));
    }
    Get(index + 1) = std::move(value);
}

template <class T>
void cow_List<T>::RemoveIndex(int index) {
    CheckIndex(index);
    _array.Own(index, _count);
    for (int i = index + 1; i < _count; ++i) {
        Get(i - 1) = std::move_if_noexcept(Get(i));
    }
    Get(_count - 1) = T();
    --_count;
}
