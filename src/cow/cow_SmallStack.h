#pragma once

#include "mem_Allocation.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>

/// Stack of plain values, the first N of them without an allocation. What replaces recursion in the
/// trees, whose depth has no bound.
template <class T, std::size_t N>
class cow_SmallStack {
    static_assert(std::is_trivially_copyable_v<T>, "The stack moves its elements as bytes.");

public:
    cow_SmallStack() noexcept = default;
    cow_SmallStack(const cow_SmallStack& other) { *this = other; }
    cow_SmallStack& operator=(const cow_SmallStack& other) {
        if (this != &other) {
            Reserve(other._size);
            std::copy_n(other._values, other._size, _values);
            _size = other._size;
        }
        return *this;
    }
    ~cow_SmallStack() {
        if (_values != _inside) mem_Free(_values);
    }

    [[nodiscard]] int Size() const noexcept { return _size; }
    [[nodiscard]] T& operator[](int index) noexcept { return _values[index]; }
    [[nodiscard]] const T& Top() const noexcept { return _values[_size - 1]; }
    /// Raises mem_ExhaustedException with nothing changed.
    void Push(T value) {
        if (_size == _room) [[unlikely]]
            Reserve(2 * _size);
        _values[_size++] = value;
    }
    T Pop() noexcept { return _values[--_size]; }
    void Clear() noexcept { _size = 0; }

private:
    [[gnu::noinline]] void Reserve(int room) {
        if (room <= _room) return;
        // NOLINTNEXTLINE(bugprone-sizeof-expression): elements may well be pointers
        const std::size_t size = static_cast<std::size_t>(room) * sizeof(T);
        void* values = mem_Realloc(_values == _inside ? nullptr : _values, size);
        if (values == nullptr) mem_ThrowExhausted(size);
        if (_values == _inside) std::memcpy(values, _inside, sizeof(_inside));
        _values = static_cast<T*>(values);
        _room = room;
    }

    T* _values = _inside;
    int _size = 0;
    int _room = static_cast<int>(N);
    T _inside[N];
};
