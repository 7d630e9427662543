#pragma once

#include "mem_Allocation.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>

/// Storage block of cow_1DArray: 2^shift elements of T behind a reference count, one allocation.
///
/// The owning array knows the shift and passes it in. All elements are always constructed. Arrays
/// that share a block count it; the count is a plain integer, for one thread at a time.
template <class T>
class cow_1DArrayBlock {
    static_assert(alignof(T) <= alignof(std::max_align_t),
                  "The allocator aligns to std::max_align_t: over-aligned elements do not fit.");

public:
    cow_1DArrayBlock(const cow_1DArrayBlock&) = delete;
    cow_1DArrayBlock& operator=(const cow_1DArrayBlock&) = delete;

    /// A block of 2^shift zero elements, count 1.
    [[nodiscard]] static cow_1DArrayBlock* New(int shift) { return NewFrom(nullptr, 0, shift); }
    /// A block that starts with copies of \p values[0, n); the rest is zero. Count 1.
    [[nodiscard]] static cow_1DArrayBlock* NewFrom(const T* values, int n, int shift) {
        Building building(shift);
        building.Copy(values, static_cast<std::size_t>(n));
        building.Zero(Size(shift) - static_cast<std::size_t>(n));
        return building.Finish();
    }

    [[nodiscard]] int Count() const noexcept { return _count; }
    void Share() noexcept { ++_count; }
    /// Gives one share back; the last one destroys and frees the block.
    void Release(int shift) noexcept {
        if (--_count == 0) {
            std::destroy_n(Elements(), Size(shift));
            mem_Free(this);
        }
    }

    [[nodiscard]] T* Elements() noexcept {
        return reinterpret_cast<T*>(reinterpret_cast<std::byte*>(this) + kHeader);
    }
    [[nodiscard]] const T* Elements() const noexcept {
        return reinterpret_cast<const T*>(reinterpret_cast<const std::byte*>(this) + kHeader);
    }

private:
    static constexpr std::size_t kHeader = (sizeof(int) + alignof(T) - 1) / alignof(T) * alignof(T);

    [[nodiscard]] static std::size_t Size(int shift) noexcept { return std::size_t{1} << shift; }

    /// A block under construction; goes away again when an element's constructor raises.
    class Building {
    public:
        explicit Building(int shift)
            : _block(::new (mem_OperatorNewTinyThrow(kHeader + (sizeof(T) << shift)))
                         cow_1DArrayBlock) {}
        Building(const Building&) = delete;
        Building& operator=(const Building&) = delete;
        ~Building() {
            if (_block != nullptr) {
                std::destroy_n(_block->Elements(), _built);
                mem_Free(_block);
            }
        }
        void Copy(const T* values, std::size_t n) {
            std::uninitialized_copy_n(values, n, _block->Elements());
            _built = n;
        }
        void Zero(std::size_t n) {
            T* rest = _block->Elements() + _built;
            if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T> || std::is_pointer_v<T>) {
                Clear(rest, n * sizeof(T));
            } else {
                std::uninitialized_value_construct_n(rest, n);
            }
        }
        [[nodiscard]] cow_1DArrayBlock* Finish() noexcept { return std::exchange(_block, nullptr); }

    private:
        /// Small blocks in pieces that the compiler turns into a few stores, without a call.
        static void Clear(void* place, std::size_t size) noexcept {
            constexpr std::size_t kPiece = 64;
            auto* at = static_cast<std::byte*>(place);
            if (size <= 4 * kPiece) {
                for (; size >= kPiece; size -= kPiece, at += kPiece)
                    std::memset(at, 0, kPiece);
            }
            std::memset(at, 0, size);
        }

        cow_1DArrayBlock* _block;
        std::size_t _built = 0;
    };

    cow_1DArrayBlock() = default;

    int _count = 1;
};
