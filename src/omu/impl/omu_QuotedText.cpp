#include "omu_QuotedText.h"

#include <cstring>

void omu_AppendQuotedText(std::string& target, std::string_view text) {
    std::size_t apostrophes = 0;
    std::size_t others = 0;  // characters that take an escape whatever the quotes are
    bool hasDoubleQuote = false;
    for (const char character : text) {
        apostrophes += character == '\'' ? 1U : 0U;
        others += character == '\\' || character == '\n' ? 1U : 0U;
        hasDoubleQuote |= character == '"';
    }
    const bool escapesApostrophes = hasDoubleQuote || apostrophes == 0;
    const std::size_t escapes = others + (escapesApostrophes ? apostrophes : 0);

    const std::size_t start = target.size();
    target.resize(start + text.size() + escapes + 2, escapesApostrophes ? '\'' : '"');
    char* to = target.data() + start + 1;
    if (escapes == 0) {
        if (!text.empty()) {
            std::memcpy(to, text.data(), text.size());
        }
        return;
    }
    for (const char character : text) {
        if (character == '\\' || character == '\n' || (character == '\'' && escapesApostrophes)) {
            *to++ = '\\';
        }
        *to++ = character == '\n' ? 'n' : character;
    }
}

cow_String omu_QuotedText(std::string_view text) {
    std::string quoted;
    omu_AppendQuotedText(quoted, text);
    return quoted;
}
