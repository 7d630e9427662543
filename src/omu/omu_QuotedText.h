#pragma once

#include "CaeUtilsExport.h"
#include "cow_String.h"

#include <string>
#include <string_view>

/// \p text as a string literal of the command language.
///
/// Backslashes are doubled and newlines written as \n; other bytes stay. The quotes are single,
/// with single quotes in the text escaped, unless the text has single quotes and no double ones:
/// then the quotes are double and nothing else is escaped. Allocates once at most.
[[nodiscard]] CAE_API cow_String omu_QuotedText(std::string_view text);
/// Appends the same to \p target.
CAE_API void omu_AppendQuotedText(std::string& target, std::string_view text);
