#pragma once

#include "CoreUtilsExport.h"

#include <cstddef>
#include <new>

/// Memory is exhausted. Holds its message in itself, so that raising and copying it never
/// allocates; the runtime keeps spare memory for the exception object.
class CORE_API mem_ExhaustedException : public std::bad_alloc {
public:
    /// \param size  the number of bytes that could not be had.
    explicit mem_ExhaustedException(std::size_t size) noexcept;
    mem_ExhaustedException(const mem_ExhaustedException&) noexcept = default;
    mem_ExhaustedException& operator=(const mem_ExhaustedException&) noexcept = default;
    ~mem_ExhaustedException() override;

    /// "Memory is exhausted: 123 bytes were requested."
    [[nodiscard]] const char* what() const noexcept override { return _message; }

    /// The number of bytes that could not be had.
    [[nodiscard]] std::size_t Size() const noexcept { return _size; }

private:
    std::size_t _size;
    char _message[72];
};
