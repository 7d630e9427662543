#include "host_ReportText.h"

#include <charconv>

std::string host_NumberText(double value) {
    char buffer[40];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value == 0 ? 0.0 : value /* never -0 */,
                      std::chars_format::general, 6);
    return {buffer, end.ptr};
}

std::string host_PadLeft(const std::string& text, std::size_t width) {
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string host_PadRight(const std::string& text, std::size_t width) {
    return text.size() < width ? text + std::string(width - text.size(), ' ') : text;
}
