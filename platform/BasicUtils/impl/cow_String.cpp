#include "cow_String.h"

#include "atr_String.h"

#include <algorithm>

cow_String::cow_String(const atr_String& text) : _text(text.View()) {}

int cow_String::Find(std::string_view part, int from) const noexcept {
    const auto at = _text.find(part, static_cast<std::size_t>(std::max(from, 0)));
    return at == std::string::npos ? -1 : static_cast<int>(at);
}

bool cow_String::StartsWith(std::string_view part) const noexcept {
    return View().starts_with(part);
}

bool cow_String::EndsWith(std::string_view part) const noexcept { return View().ends_with(part); }

cow_String cow_String::SubString(int start, int count) const {
    const int first = std::clamp(start, 0, Length());
    const int size = std::clamp(count, 0, Length() - first);
    return View().substr(static_cast<std::size_t>(first), static_cast<std::size_t>(size));
}

cow_String cow_String::ReplaceAll(std::string_view from, std::string_view to) const {
    if (from.empty()) {
        return *this;
    }
    std::string result;
    std::size_t start = 0;
    for (auto at = _text.find(from); at != std::string::npos; at = _text.find(from, start)) {
        result.append(_text, start, at - start).append(to);
        start = at + from.size();
    }
    return result.append(_text, start);
}
