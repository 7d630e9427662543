#include "atr_translate.h"

#include <atomic>

namespace {

constinit std::atomic<atr_TranslationHook> translationHook{nullptr};

}  // namespace

atr_String atr_translate(std::string_view text) {
    const atr_TranslationHook hook = translationHook.load(std::memory_order_acquire);
    return hook ? atr_String(hook(text)) : atr_String(text);
}

atr_TranslationHook atr_SetTranslationHook(atr_TranslationHook hook) noexcept {
    return translationHook.exchange(hook, std::memory_order_acq_rel);
}
