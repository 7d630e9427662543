#pragma once

#include "CaeUtilsExport.h"
#include "atr_String.h"
#include "cow_String.h"

/// What a name is for, which decides the rules it must obey.
enum omu_TarvexNameEnum : int {
    GENERAL_NAME = 0,
    JOB_NAME = 1,
    MODEL_NAME = 2,
    SHORT_GENERAL_NAME = 3,
    SHORT_JOB_NAME = 4,
    SHORT_MODEL_NAME = 5,
    SHORT_GENERAL_NAME_2 = 6,  ///< the same rules as SHORT_GENERAL_NAME
};

/// The validated name of an object that users refer to in the command language.
///
/// Building one checks the text against the rules of its kind and raises omu_TvxNameErrorException
/// for the first rule broken: at most 80 bytes (38 for the short kinds), a first character and
/// characters anywhere that the kind allows; the short kinds also restrict the last character and,
/// but for models, refuse control characters. Lengths count bytes; control characters are the
/// bytes 0 to 31, never those of UTF-8 text.
class CAE_API omu_TarvexName {
public:
    /// An empty name.
    omu_TarvexName() = default;
    /// A kind outside the enumeration checks nothing.
    omu_TarvexName(const cow_String& text, omu_TarvexNameEnum kind);
    /// Checks \p text in the same way, but leaves the object empty: it never holds the text.
    omu_TarvexName(const char* text, omu_TarvexNameEnum kind);

    [[nodiscard]] cow_String AsString() const { return cow_String(_text); }

    /// The rules as regular expressions, empty in an empty name: what a name may begin with, and
    /// what a job or model name may not hold.
    [[nodiscard]] const atr_String& LeadingPattern() const noexcept { return _leadingPattern; }
    [[nodiscard]] const atr_String& JobPattern() const noexcept { return _jobPattern; }
    [[nodiscard]] const atr_String& ModelPattern() const noexcept { return _modelPattern; }

    /// \p text as it is shown in a command: in double quotes if it has a space, apostrophe, equals
    /// sign or comma and is not in double quotes already. Nothing inside is escaped.
    [[nodiscard]] static cow_String QuoteIfNeeded(const cow_String& text);

    /// Repairs \p name into a legal general name, cut to 38 bytes (39 when a digit at the start
    /// gets a prefix). \p replacements has six characters, in turn for: the prefix before a
    /// leading digit, a double quote, a full stop, a backslash, a first and a last character that
    /// is an underscore or a space; '.' deletes instead. False, with the uncut name restored,
    /// when nothing is left.
    /// \pre No replacement is itself such a fault in its place: the repair would never end.
    static bool MakeLegalGuiName(cow_String& name, const char* replacements);

private:
    atr_String _leadingPattern;
    atr_String _jobPattern;
    atr_String _modelPattern;
    atr_String _text;
};
