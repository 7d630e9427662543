#pragma once

#include "cow_String.h"

#include <memory>

/// The matches of a regular expression in a text, from left to right.
///
///     for (rgx_match match("[0-9]+", text); !match.AtEnd(); match.Next()) { use(match.Text()); }
///
/// Patterns follow ECMAScript's grammar and match bytes, whatever the locale. Pattern and text are
/// copied. An ill-formed pattern raises nex_TextException naming the pattern and the fault.
class BASIC_API rgx_match {
public:
    rgx_match(const cow_String& pattern, const cow_String& text);
    rgx_match(rgx_match&&) noexcept;
    rgx_match& operator=(rgx_match&&) noexcept;
    ~rgx_match();

    /// True when there is no (further) match; Position, Length and Text are meaningless then.
    [[nodiscard]] bool AtEnd() const noexcept;
    void Next();
    /// First byte of the match.
    [[nodiscard]] int Position() const;
    [[nodiscard]] int Length() const;
    [[nodiscard]] cow_String Text() const;

private:
    struct State;
    std::unique_ptr<State> _state;
};
