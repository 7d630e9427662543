#pragma once

#include "CoreUtilsExport.h"

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

/// A small text output stream over a C stream or a function of the caller.
///
/// Keeps no text of its own: each << reaches the target at once. One thread at a time for a stream
/// over a function; a C stream has its own lock.
class CORE_API aio_ostream {
public:
    /// Takes \p length bytes at \p text, which has no terminator.
    using Sink = void (*)(void* context, const char* text, std::size_t length);

    /// Writes to \p file, which stays the caller's; flushes it after every << if asked to.
    explicit aio_ostream(std::FILE* file, bool flushAlways = false) noexcept;

    /// Writes to \p sink, handing it \p context each time.
    aio_ostream(Sink sink, void* context) noexcept;

    aio_ostream(const aio_ostream&) = delete;
    aio_ostream& operator=(const aio_ostream&) = delete;

    aio_ostream& operator<<(std::string_view text);
    aio_ostream& operator<<(const std::string& text) { return *this << std::string_view(text); }
    aio_ostream& operator<<(const char* text);  ///< Null writes nothing.
    aio_ostream& operator<<(char character) { return *this << std::string_view(&character, 1); }
    aio_ostream& operator<<(int value);
    aio_ostream& operator<<(unsigned value);
    aio_ostream& operator<<(double value);  ///< The text of atr_StringBase::FromDouble.

    /// Any string class of the product line (atr_String, cow_String).
    template <class Text>
    requires requires(const Text& text) { std::string_view(text.View()); }
    aio_ostream& operator<<(const Text& text) { return *this << std::string_view(text.View()); }

    /// Hands what a C stream holds back to the system.
    void Flush();

private:
    std::FILE* _file = nullptr;  // null: the sink
    bool _flushAlways = false;
    Sink _sink = nullptr;
    void* _context = nullptr;
};
