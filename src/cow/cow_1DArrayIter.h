#pragma once

#include <concepts>
#include <cstddef>
#include <iterator>

template <class T>
class cow_1DArray;

/// Reads the elements of a cow_1DArray or cow_List in index order, block by block.
///
/// Made on a container it stands on the first element; `First`, `Next` and the test make loops, and
/// begin()/end() give it to range-for and the standard algorithms. It never detaches and holds no
/// share: changing the container invalidates it.
template <class T>
class cow_1DArrayIter {
public:
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using pointer = const T*;
    using reference = const T&;
    using iterator_category = std::forward_iterator_tag;

    /// The end of any container.
    cow_1DArrayIter() noexcept = default;
    explicit cow_1DArrayIter(const cow_1DArray<T>& array)
        : cow_1DArrayIter(array, array.Length()) {}
    /// On a container with begin(), such as cow_List<T>.
    template <class Container>
    requires requires(const Container& c) {
        { c.begin() } -> std::same_as<cow_1DArrayIter>;
    }
    explicit cow_1DArrayIter(const Container& container) : cow_1DArrayIter(container.begin()) {}

    /// Goes to logical element 0; false when there is none.
    bool First() {
        if (_array == nullptr) return false;
        _next = _array->_start;
        EnterBlock();
        return _at != nullptr;
    }
    /// Goes to the next element; false when there is none. Not to be called behind the last one.
    bool Next() {
        if (++_at == _blockEnd) EnterBlock();
        return _at != nullptr;
    }
    /// True while on an element.
    [[nodiscard]] explicit operator bool() const noexcept { return _at != nullptr; }
    /// The current element. Behind the last one: undefined.
    [[nodiscard]] const T& Value() const noexcept { return *_at; }

    [[nodiscard]] const T& operator*() const noexcept { return *_at; }
    [[nodiscard]] const T* operator->() const noexcept { return _at; }
    cow_1DArrayIter& operator++() {
        Next();
        return *this;
    }
    cow_1DArrayIter operator++(int) {
        cow_1DArrayIter before = *this;
        Next();
        return before;
    }
    friend bool operator==(const cow_1DArrayIter& a, const cow_1DArrayIter& b) noexcept {
        return a._at == b._at;
    }

private:
    template <class>
    friend class cow_1DArray;
    template <class>
    friend class cow_List;

    /// On the first \p length elements of \p array.
    cow_1DArrayIter(const cow_1DArray<T>& array, int length)
        : _array(&array), _stop(array._start + length) {
        First();
    }

    void EnterBlock() {
        if (_next >= _stop) {
            _at = _blockEnd = nullptr;
            return;
        }
        const int inBlock = (1 << _array->_shift) - (_next & _array->Mask());
        const int n = inBlock < _stop - _next ? inBlock : _stop - _next;
        _at = _array->ElementForReading(_next);
        _blockEnd = _at + n;
        _next += n;
    }

    const T* _at = nullptr;        // null behind the last element
    const T* _blockEnd = nullptr;  // one past the last element of this block that counts
    const cow_1DArray<T>* _array = nullptr;
    int _next = 0;  // absolute index of the element at _blockEnd
    int _stop = 0;  // absolute index one past the last element
};
