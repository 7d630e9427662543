#include "rgx_match.h"

#include "nex_TextException.h"

#include <locale>
#include <regex>

struct rgx_match::State {
    State(const cow_String& pattern, const cow_String& searched) : text(searched.Std()) {
        // The classic locale, so that classes and ranges do not follow the host's.
        regex.imbue(std::locale::classic());
        regex.assign(pattern.Std(), std::regex::ECMAScript);
        at = std::sregex_iterator(text.begin(), text.end(), regex);
    }

    std::string text;
    std::regex regex;
    std::sregex_iterator at;
};

rgx_match::rgx_match(const cow_String& pattern, const cow_String& text) {
    try {
        _state = std::make_unique<State>(pattern, text);
    } catch (const std::regex_error& error) {
        nex_TextException(atr_String::Format("invalid regular expression '%s': %s", pattern,
                                             static_cast<const char*>(error.what())))
            .Throw("generated/platform/BasicUtils/impl/rgx_match", __LINE__);
    }
}

rgx_match::rgx_match(rgx_match&&) noexcept = default;
rgx_match& rgx_match::operator=(rgx_match&&) noexcept = default;
rgx_match::~rgx_match() = default;

bool rgx_match::AtEnd() const noexcept { return _state->at == std::sregex_iterator(); }

void rgx_match::Next() { ++_state->at; }

int rgx_match::Position() const { return static_cast<int>(_state->at->position()); }

int rgx_match::Length() const { return static_cast<int>(_state->at->length()); }

cow_String rgx_match::Text() const { return _state->at->str(); }
