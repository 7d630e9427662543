#pragma once

#include "cow_String.h"

#include <string>
#include <string_view>

/// Builds a text from pieces; numbers are written as the C locale writes them.
///
///     utl_Catenator text;
///     text << "node " << 7 << " at " << 0.5;
class BASIC_API utl_Catenator {
public:
    utl_Catenator& operator<<(std::string_view text) {
        _text += text;
        return *this;
    }
    utl_Catenator& operator<<(const char* text) { return *this << std::string_view(text); }
    utl_Catenator& operator<<(const cow_String& text) { return *this << text.View(); }
    utl_Catenator& operator<<(const atr_String& text);
    utl_Catenator& operator<<(char character) {
        _text += character;
        return *this;
    }
    utl_Catenator& operator<<(int value);
    utl_Catenator& operator<<(unsigned int value);
    /// Fifteen significant digits at most ("%.15g").
    utl_Catenator& operator<<(double value);

    void Reserve(std::size_t bytes) { _text.reserve(bytes); }
    [[nodiscard]] std::string_view View() const noexcept { return _text; }
    [[nodiscard]] cow_String AsString() const& { return cow_String(_text); }
    /// Hands the text out and leaves the catenator empty.
    [[nodiscard]] cow_String AsString() && { return cow_String(std::move(_text)); }

private:
    std::string _text;
};
