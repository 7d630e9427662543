#include "atr_String.h"

#include "atr_translate.h"
#include "mem_Allocation.h"

#include <atomic>
#include <charconv>
#include <climits>
#include <cstring>
#include <new>
#include <optional>
#include <stdexcept>

struct atr_String::Body {
    std::atomic<unsigned> references;
    unsigned length;
    // The text and its terminator follow.

    [[nodiscard]] char* Text() noexcept { return reinterpret_cast<char*>(this + 1); }
};

atr_String::atr_String(const char* text) : atr_String(std::string_view(text ? text : "")) {}

atr_String::atr_String(std::string_view text) {
    if (text.empty()) {
        return;
    }
    if (text.size() >= INT_MAX) {
        throw std::length_error("A text of 2 GB or more");
    }
    void* const memory = mem_OperatorNewTinyThrow(sizeof(Body) + text.size() + 1);
    _body = ::new (memory) Body{1, static_cast<unsigned>(text.size())};
    std::memcpy(_body->Text(), text.data(), text.size());
    _body->Text()[text.size()] = '\0';
}

atr_String::atr_String(const atr_String& other) noexcept : _body(other._body) {
    if (_body) {
        _body->references.fetch_add(1, std::memory_order_relaxed);
    }
}

atr_String& atr_String::operator=(const atr_String& other) noexcept {
    atr_String copy(other);
    std::swap(_body, copy._body);
    return *this;
}

atr_String& atr_String::operator=(atr_String&& other) noexcept {
    atr_String taken(std::move(other));
    std::swap(_body, taken._body);
    return *this;
}

atr_String::~atr_String() {
    if (_body && _body->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        mem_Free(_body);
    }
}

const char* atr_String::AsCharPtr() const noexcept { return _body ? _body->Text() : ""; }

std::string_view atr_String::View() const noexcept {
    return _body ? std::string_view(_body->Text(), _body->length) : std::string_view();
}

int atr_String::Length() const noexcept { return _body ? static_cast<int>(_body->length) : 0; }

atr_String::FormatArg::FormatArg(int number) noexcept
    : _digitCount(static_cast<std::size_t>(
          std::to_chars(_digits, _digits + sizeof _digits, number).ptr - _digits)) {}

atr_String::FormatArg::FormatArg(unsigned number) noexcept
    : _digitCount(static_cast<std::size_t>(
          std::to_chars(_digits, _digits + sizeof _digits, number).ptr - _digits)) {}

namespace {

enum class Piece { Text, Percent, TextPlace, NumberPlace };

/// Takes the next piece off \p rest: a place or %% (two characters), or a stretch of plain text,
/// in which a % before any other character stands for itself.
Piece NextPiece(std::string_view& rest, std::string_view& piece) {
    const auto kindAt = [&rest](std::size_t at) {
        if (rest[at] != '%' || at + 1 == rest.size()) {
            return Piece::Text;
        }
        switch (rest[at + 1]) {
            case '%':
                return Piece::Percent;
            case 's':
                return Piece::TextPlace;
            case 'd':
            case 'u':
                return Piece::NumberPlace;
            default:
                return Piece::Text;
        }
    };
    const Piece kind = kindAt(0);
    std::size_t length = 2;
    if (kind == Piece::Text) {
        length = 1;
        while (length < rest.size() && kindAt(length) == Piece::Text) {
            ++length;
        }
    }
    piece = rest.substr(0, length);
    rest.remove_prefix(length);
    return kind;
}

/// The format with its places filled; nothing when they do not fit the arguments and \p strict.
template <class Arg>
std::optional<std::string> Fill(std::string_view format, const Arg* args, std::size_t count,
                                bool strict) {
    std::string text;
    std::size_t used = 0;
    std::string_view piece;
    while (!format.empty()) {
        const Piece kind = NextPiece(format, piece);
        const bool isPlace = kind == Piece::TextPlace || kind == Piece::NumberPlace;
        if (isPlace && strict &&
            (used == count || args[used].IsNumber() != (kind == Piece::NumberPlace))) {
            return std::nullopt;
        }
        if (isPlace && used < count) {
            text += args[used++].Text();
        } else {
            text += kind == Piece::Percent ? piece.substr(1) : piece;
        }
    }
    if (strict && used != count) {
        return std::nullopt;
    }
    return text;
}

}  // namespace

atr_String atr_String::FormatList(std::string_view format, const FormatArg* args,
                                  std::size_t count) {
    const atr_String translation = atr_translate(format);
    if (const auto text = Fill(translation.View(), args, count, true)) {
        return atr_String(*text);
    }
    return atr_String(*Fill(format, args, count, false));
}
