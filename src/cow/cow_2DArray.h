#pragma once

#include "cow_1DArrayList.h"
#include "cow_Support.h"

#include <algorithm>
#include <climits>
#include <initializer_list>
#include <span>
#include <utility>

/// Two-dimensional array, stored row by row in one shared body.
///
/// Copies share the body; the first write to a shared body copies it whole. Reading never detaches.
/// An array and its copies stay in one thread; DeepCopy() gives one to hand to another. Indices
/// outside raise std::out_of_range.
template <class T>
class cow_2DArray {
public:
    using value_type = T;
    using const_iterator = typename cow_1DArrayList<T>::const_iterator;
    using iterator = const_iterator;

    /// 0 x 0; nothing is allocated.
    cow_2DArray() noexcept = default;
    /// \p rows x \p columns zero elements.
    cow_2DArray(int rows, int columns)
        : _elements(Product(rows, columns)), _rows(rows), _columns(columns) {}
    /// One list a row; shorter rows are filled with zeros.
    cow_2DArray(std::initializer_list<std::initializer_list<T>> rows);
    cow_2DArray(const cow_2DArray&) = default;
    cow_2DArray(cow_2DArray&& other) noexcept { Swap(other); }
    cow_2DArray& operator=(const cow_2DArray& other) {
        cow_2DArray(other).Swap(*this);
        return *this;
    }
    cow_2DArray& operator=(cow_2DArray&& other) noexcept {
        cow_2DArray(std::move(other)).Swap(*this);
        return *this;
    }
    ~cow_2DArray() = default;

    [[nodiscard]] int Rows() const noexcept { return _rows; }
    [[nodiscard]] int Columns() const noexcept { return _columns; }
    [[nodiscard]] bool IsEmpty() const noexcept { return _elements.IsEmpty(); }

    /// Element at \p row in [0, Rows()) and \p column in [0, Columns()) for reading; never
    /// detaches.
    [[nodiscard]] const T& ConstGet(int row, int column) const {
        return _elements.ConstGet(Index(row, column));
    }
    /// The same for writing; detaches.
    T& Get(int row, int column) { return _elements.Get(Index(row, column)); }
    /// Row \p row for reading (not for bool).
    [[nodiscard]] std::span<const T> Row(int row) const {
        if (row < 0 || row >= _rows) cow_ThrowIndex(row, _rows);
        const auto width = static_cast<std::size_t>(_columns);
        return _elements.Values().subspan(static_cast<std::size_t>(row) * width, width);
    }

    /// Changes the shape; elements in both shapes stay, new ones are zero. When this raises,
    /// nothing has changed.
    void Resize(int rows, int columns);
    void Clear() noexcept { cow_2DArray().Swap(*this); }

    /// All elements, row by row.
    [[nodiscard]] const_iterator begin() const noexcept { return _elements.begin(); }
    [[nodiscard]] const_iterator end() const noexcept { return _elements.end(); }

    void Swap(cow_2DArray& other) noexcept {
        _elements.Swap(other._elements);
        std::swap(_rows, other._rows);
        std::swap(_columns, other._columns);
    }
    friend void swap(cow_2DArray& a, cow_2DArray& b) noexcept { a.Swap(b); }
    /// Same shape and equal elements.
    friend bool operator==(const cow_2DArray& a, const cow_2DArray& b) {
        return a._rows == b._rows && a._columns == b._columns && a._elements == b._elements;
    }
    /// An equal array that shares nothing with this one.
    [[nodiscard]] cow_2DArray DeepCopy() const {
        cow_2DArray copy;
        copy._elements = _elements.DeepCopy();
        copy._rows = _rows;
        copy._columns = _columns;
        return copy;
    }
    /// Number of arrays that share the body; 0 while there is none.
    [[nodiscard]] int BodyCount() const noexcept { return _elements.BodyCount(); }

private:
    [[nodiscard]] static int Product(int rows, int columns) {
        if (rows < 0 || columns < 0) cow_ThrowLength(std::min(rows, columns));
        const long long product = 1LL * rows * columns;
        if (product > INT_MAX) cow_ThrowLength(product);
        return static_cast<int>(product);
    }
    [[nodiscard]] int Index(int row, int column) const {
        if (static_cast<unsigned>(row) >= static_cast<unsigned>(_rows)) cow_ThrowIndex(row, _rows);
        if (static_cast<unsigned>(column) >= static_cast<unsigned>(_columns)) {
            cow_ThrowIndex(column, _columns);
        }
        return row * _columns + column;
    }

    cow_1DArrayList<T> _elements;
    int _rows = 0;
    int _columns = 0;
};

template <class T>
cow_2DArray<T>::cow_2DArray(std::initializer_list<std::initializer_list<T>> rows) {
    std::size_t width = 0;
    for (const auto& row : rows)
        width = std::max(width, row.size());
    Resize(static_cast<int>(rows.size()), static_cast<int>(width));
    int at = 0;
    for (const auto& row : rows) {
        int column = 0;
        for (const T& value : row)
            Get(at, column++) = value;
        ++at;
    }
}

template <class T>
void cow_2DArray<T>::Resize(int rows, int columns) {
    if (rows == _rows && columns == _columns) return;
    cow_2DArray resized(rows, columns);
    for (int row = 0; row < std::min(rows, _rows); ++row) {
        for (int column = 0; column < std::min(columns, _columns); ++column) {
            resized.Get(row, column) = ConstGet(row, column);
        }
    }
    Swap(resized);
}
