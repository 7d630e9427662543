#pragma once

#include "CoreUtilsExport.h"
#include "atr_StringBase.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

/// Translatable text for the user's eyes: an immutable UTF-8 string.
///
/// Copies share one body, counted atomically: a text and its copies may be used and dropped in
/// different threads. A moved-from text is empty. Constructors take texts as they are;
/// atr_translate and Format translate.
class CORE_API atr_String : public atr_StringBase {
public:
    /// Empty; never allocates.
    constexpr atr_String() noexcept = default;

    /// Copies \p text; null counts as empty.
    explicit(false) atr_String(const char* text);
    explicit(false) atr_String(std::string_view text);
    explicit(false) atr_String(const std::string& text) : atr_String(std::string_view(text)) {}

    atr_String(const atr_String& other) noexcept;
    atr_String(atr_String&& other) noexcept : _body(std::exchange(other._body, nullptr)) {}
    atr_String& operator=(const atr_String& other) noexcept;
    atr_String& operator=(atr_String&& other) noexcept;
    ~atr_String();

    /// The text with a terminator, valid as long as this object or a copy of it.
    [[nodiscard]] const char* AsCharPtr() const noexcept;

    [[nodiscard]] std::string_view View() const noexcept;

    /// Number of bytes.
    [[nodiscard]] int Length() const noexcept;

    [[nodiscard]] bool IsEmpty() const noexcept { return _body == nullptr; }

    /// Below, equal to or above 0 as this text sorts before, with or after \p other, by bytes.
    [[nodiscard]] int Compare(const atr_String& other) const noexcept {
        return View().compare(other.View());
    }

    [[nodiscard]] friend bool operator==(const atr_String& a, const atr_String& b) noexcept {
        return a._body == b._body || a.View() == b.View();
    }

    /// Translates \p format, then puts \p args, in their order, in the place of its %s (a text), %d
    /// and %u (an int or unsigned, in plain decimal); %% gives %. Texts of arguments are copied as
    /// they are. A translation whose places do not fit the arguments is not used; a place without
    /// an argument stays as written.
    template <class... Args>
    [[nodiscard]] static atr_String Format(std::string_view format, const Args&... args) {
        const std::array<FormatArg, sizeof...(Args)> list{FormatArg(args)...};
        return FormatList(format, list.data(), list.size());
    }

private:
    struct Body;

    /// One argument of Format: a text or a number written out.
    class CORE_API FormatArg {
    public:
        explicit FormatArg(std::string_view text) noexcept : _text(text) {}
        explicit FormatArg(const std::string& text) noexcept : _text(text) {}
        explicit FormatArg(const char* text) noexcept : _text(text ? text : "") {}
        explicit FormatArg(int number) noexcept;
        explicit FormatArg(unsigned number) noexcept;
        template <class Text>
        requires requires(const Text& text) { std::string_view(text.View()); }
        explicit FormatArg(const Text& text) noexcept : _text(text.View()) {}

        [[nodiscard]] bool IsNumber() const noexcept { return _digitCount != 0; }

        [[nodiscard]] std::string_view Text() const noexcept {
            return IsNumber() ? std::string_view(_digits, _digitCount) : _text;
        }

    private:
        std::string_view _text;
        char _digits[12] = {};
        std::size_t _digitCount = 0;  // 0: a text
    };

    static atr_String FormatList(std::string_view format, const FormatArg* args, std::size_t count);

    Body* _body = nullptr;  // null: empty
};
