#pragma once

#include "CoreUtilsExport.h"
#include "atr_String.h"

#include <string>
#include <string_view>

/// Gives the user's language for a text of the program, or the text itself when it knows none.
/// Called from any thread.
using atr_TranslationHook = std::string (*)(std::string_view text);

/// \p text in the user's language: through the hook; unchanged while there is none.
[[nodiscard]] CORE_API atr_String atr_translate(std::string_view text);

/// Installs \p hook (null: none) for all threads and returns the one before it.
CORE_API atr_TranslationHook atr_SetTranslationHook(atr_TranslationHook hook) noexcept;
