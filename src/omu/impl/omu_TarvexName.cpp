#include "omu_TarvexName.h"

#include "omu_ErrorExceptions.h"

#include <array>
#include <string>
#include <string_view>

namespace {

constexpr const char* kSource = "generated/omu/impl/omu_TarvexName";
constexpr int kShortLength = 38;
constexpr int kLongLength = 80;

// The rules as patterns, kept by each name; the checks below use the same sets directly.
const char* const kLeadingPattern = "^[^0-9]";
const char* const kJobPattern = R"([:\$\\&\*~! \(\)\[\]\{\}\|;\'\`\< >\?\/. ])";
const char* const kModelPattern = R"([\$\\&\*~!\(\)\[\]\{\}\|;\'\`\<>\?\/.])";

// No set of forbidden characters holds a digit, hyphen, underscore or control character.
constexpr std::string_view kGeneralForbidden = "\".\\";
constexpr std::string_view kJobForbidden = "\":$\\&*~! ()[]{}|;'`<>?/.";
constexpr std::string_view kModelForbidden = "\"$\\&*~!()[]{}|;'`<>?/.";
constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kBlanks = "_ ";

struct Rules {
    int maxLength;
    omu_TvxNameErrorEnm error;
    std::string_view leadForbidden;
    std::string_view forbidden;
    std::string_view endForbidden;  // at the start as well
    bool refusesControl;
};

constexpr Rules kShortGeneral = {
    kShortLength, omu_TvxNameErrorEnm::InvalidName, kDigits, kGeneralForbidden, kBlanks, true};

// By kind. All rules of a kind report the same error, so only the empty name's comes first.
constexpr std::array<Rules, 7> kRules = {{
    {kLongLength, omu_TvxNameErrorEnm::InvalidName, kDigits, kGeneralForbidden, "", false},
    {kLongLength, omu_TvxNameErrorEnm::InvalidJobName, "-", kJobForbidden, "", false},
    {kLongLength, omu_TvxNameErrorEnm::InvalidModelName, "", kModelForbidden, "", false},
    kShortGeneral,
    {kShortLength, omu_TvxNameErrorEnm::InvalidJobName, "-", kJobForbidden, "_", true},
    {kShortLength, omu_TvxNameErrorEnm::InvalidModelName, "", kModelForbidden, kBlanks, false},
    kShortGeneral,
}};

constexpr bool IsIn(char character, std::string_view set) {
    return set.find(character) != std::string_view::npos;
}

bool IsControl(char character) { return static_cast<unsigned char>(character) < 32; }

bool Obeys(std::string_view text, const Rules& rules) {
    if (text.size() > static_cast<std::size_t>(rules.maxLength) ||
        IsIn(text.front(), rules.leadForbidden) || IsIn(text.front(), rules.endForbidden) ||
        IsIn(text.back(), rules.endForbidden)) {
        return false;
    }
    for (const char character : text) {
        if (IsIn(character, rules.forbidden) || (rules.refusesControl && IsControl(character))) {
            return false;
        }
    }
    return true;
}

/// Checks \p text by kind and returns it.
const cow_String& Validated(const cow_String& text, omu_TarvexNameEnum kind) {
    const auto index = static_cast<unsigned>(kind);
    if (index < kRules.size()) {
        if (text.IsEmpty()) {
            omu_TvxNameErrorException(omu_TvxNameErrorEnm::EmptyName).Throw(kSource, __LINE__);
        }
        if (!Obeys(text, kRules[index])) {
            omu_TvxNameErrorException(kRules[index].error).Throw(kSource, __LINE__);
        }
    }
    return text;
}

/// Puts \p replacement in the place of byte \p at, or deletes it for '.'.
void Mend(std::string& text, std::size_t at, char replacement) {
    if (replacement == '.') {
        text.erase(at, 1);
    } else {
        text[at] = replacement;
    }
}

/// Mends the first fault of a text that is not empty; false when it has none.
bool MendFirstFault(std::string& text, const char* replacements) {
    if (IsIn(text.front(), kDigits)) {
        if (replacements[0] == '.') {
            text.erase(0, 1);
        } else {
            text.insert(text.begin(), replacements[0]);
        }
        return true;
    }
    for (int fault = 1; const char forbidden : kGeneralForbidden) {
        if (const std::size_t at = text.find(forbidden); at != std::string::npos) {
            Mend(text, at, replacements[fault]);
            return true;
        }
        ++fault;
    }
    if (IsIn(text.front(), kBlanks)) {
        Mend(text, 0, replacements[4]);
        return true;
    }
    if (IsIn(text.back(), kBlanks)) {
        Mend(text, text.size() - 1, replacements[5]);
        return true;
    }
    return false;
}

}  // namespace

omu_TarvexName::omu_TarvexName(const cow_String& text, omu_TarvexNameEnum kind)
    : _text(Validated(text, kind).View()) {
    // Names share the three pattern texts.
    static const std::array<atr_String, 3> patterns = {kLeadingPattern, kJobPattern, kModelPattern};
    _leadingPattern = patterns[0];
    _jobPattern = patterns[1];
    _modelPattern = patterns[2];
}

omu_TarvexName::omu_TarvexName(const char* text, omu_TarvexNameEnum kind) {
    static_cast<void>(omu_TarvexName(cow_String(text), kind));
}

cow_String omu_TarvexName::QuoteIfNeeded(const cow_String& text) {
    const bool quoted = text.Length() >= 3 && text.StartsWith("\"") && text.EndsWith("\"");
    if (quoted || text.View().find_first_of(" '=,") == std::string_view::npos) {
        return text;
    }
    return cow_String("\"") + text + "\"";
}

bool omu_TarvexName::MakeLegalGuiName(cow_String& name, const char* replacements) {
    std::string text(name.View().substr(0, kShortLength));
    while (!text.empty()) {
        if (!MendFirstFault(text, replacements)) {
            name = cow_String(std::move(text));
            return true;
        }
    }
    return false;
}
