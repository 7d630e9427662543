#include "mem_ExhaustedException.h"

#include <charconv>
#include <cstring>

mem_ExhaustedException::mem_ExhaustedException(std::size_t size) noexcept : _size(size) {
    static constexpr char kBefore[] = "Memory is exhausted: ";
    static constexpr char kAfter[] = " bytes were requested.";
    constexpr std::size_t kMostDigits = 20;
    static_assert(sizeof kBefore + kMostDigits + sizeof kAfter <= sizeof _message);
    std::memcpy(_message, kBefore, sizeof kBefore);
    char* const digits = _message + sizeof kBefore - 1;
    char* const end = std::to_chars(digits, digits + kMostDigits, size).ptr;
    std::memcpy(end, kAfter, sizeof kAfter);
}

mem_ExhaustedException::~mem_ExhaustedException() = default;
