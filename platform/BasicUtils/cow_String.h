#pragma once

#include "BasicUtilsExport.h"

#include <compare>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

class atr_String;

/// The string type of all interfaces: a sequence of bytes, by convention UTF-8.
///
/// A value with the small-string storage of std::string underneath: copies never share memory, so
/// a string may be handed between threads. Lengths and positions count bytes. Comparison is
/// bytewise (unsigned), independent of the locale.
class BASIC_API cow_String {
public:
    cow_String() noexcept = default;
    /// Copies a null-terminated text; null gives the empty string.
    cow_String(const char* text) : _text(text == nullptr ? "" : text) {}
    cow_String(std::string_view text) : _text(text) {}
    cow_String(std::string text) noexcept : _text(std::move(text)) {}
    /// The text a translatable string holds.
    explicit cow_String(const atr_String& text);

    /// Number of bytes.
    [[nodiscard]] int Length() const noexcept { return static_cast<int>(_text.size()); }
    [[nodiscard]] bool IsEmpty() const noexcept { return _text.empty(); }
    /// Null-terminated characters, valid until the string changes.
    [[nodiscard]] const char* AsCharPtr() const noexcept { return _text.c_str(); }
    [[nodiscard]] std::string_view View() const noexcept { return _text; }
    [[nodiscard]] const std::string& Std() const noexcept { return _text; }
    operator std::string_view() const noexcept { return _text; }

    /// Byte \p index, in [0, Length()); '\0' at Length(). Outside: std::out_of_range.
    [[nodiscard]] char operator[](int index) const {
        const auto at = static_cast<std::size_t>(index);
        return at == _text.size() ? '\0' : _text.at(at);
    }

    /// Negative, zero or positive as this sorts before, with or after \p other.
    [[nodiscard]] int Compare(const cow_String& other) const noexcept {
        return _text.compare(other._text);
    }

    /// Position of the first \p part at or behind \p from, or -1.
    [[nodiscard]] int Find(std::string_view part, int from = 0) const noexcept;
    [[nodiscard]] bool Contains(std::string_view part) const noexcept { return Find(part) >= 0; }
    [[nodiscard]] bool StartsWith(std::string_view part) const noexcept;
    [[nodiscard]] bool EndsWith(std::string_view part) const noexcept;
    /// The \p count bytes from \p start; both are cut to what is there.
    [[nodiscard]] cow_String SubString(int start, int count) const;
    /// This text with every \p from replaced by \p to; inserted text is not searched again.
    [[nodiscard]] cow_String ReplaceAll(std::string_view from, std::string_view to) const;

    cow_String& operator+=(std::string_view text) {
        _text += text;
        return *this;
    }
    cow_String& operator+=(char character) {
        _text += character;
        return *this;
    }

    friend cow_String operator+(cow_String left, std::string_view right) {
        left += right;
        return left;
    }
    friend bool operator==(const cow_String& left, const cow_String& right) noexcept {
        return left._text == right._text;
    }
    friend bool operator==(const cow_String& left, const char* right) noexcept {
        return left.View() == (right == nullptr ? std::string_view() : std::string_view(right));
    }
    friend std::strong_ordering operator<=>(const cow_String& left,
                                            const cow_String& right) noexcept {
        return left._text <=> right._text;
    }

private:
    std::string _text;
};

template <>
struct std::hash<cow_String> {
    std::size_t operator()(const cow_String& text) const noexcept {
        return std::hash<std::string_view>()(text.View());
    }
};
