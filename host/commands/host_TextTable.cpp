#include "host_TextTable.h"

#include <algorithm>

namespace {

constexpr std::size_t kWidth = 100;   // of the table
constexpr std::size_t kLongest = 30;  // of a cell
constexpr std::size_t kGap = 2;       // between columns

bool BeginsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

std::size_t Length(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), BeginsCharacter));
}

/// Byte at which the character of that number begins.
std::size_t PlaceOf(const std::string& text, std::size_t character) {
    std::size_t at = 0;
    while (at < text.size() && (!BeginsCharacter(text[at]) || character-- > 0)) {
        ++at;
    }
    return at;
}

std::string Shortened(const std::string& text) {
    constexpr std::size_t kHead = kLongest / 2;
    constexpr std::size_t kTail = kLongest - kHead - 2;
    const std::size_t length = Length(text);
    return length <= kLongest ? text
                              : text.substr(0, PlaceOf(text, kHead)) + ".." +
                                    text.substr(PlaceOf(text, length - kTail));
}

/// The cells of a row in the first column and in columns [first, end).
std::string Line(const std::vector<std::string>& row, const std::vector<std::size_t>& widths,
                 std::size_t first, std::size_t end) {
    std::string line = row[0];
    std::size_t start = 0;  // of the last cell
    std::size_t last = 0;
    for (std::size_t column = first; column < end; ++column) {
        start += widths[last] + kGap;
        line.append(start - Length(line), ' ');
        line += row[column];
        last = column;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

}  // namespace

std::string host_TextTable(const std::vector<std::vector<std::string>>& rows,
                           std::size_t headings) {
    std::vector<std::vector<std::string>> cells(rows);
    std::vector<std::size_t> widths(rows.front().size());
    for (std::vector<std::string>& row : cells) {
        for (std::size_t column = 0; column < widths.size(); ++column) {
            row[column] = Shortened(row[column]);
            widths[column] = std::max(widths[column], Length(row[column]));
        }
    }
    std::string text;
    std::size_t first = 1;
    do {
        std::size_t end = first;
        std::size_t used = widths[0];
        while (end < widths.size() && used + kGap + widths[end] <= kWidth) {
            used += kGap + widths[end];
            ++end;
        }
        text += text.empty() ? "" : "\n";
        for (std::size_t row = 0; row < cells.size(); ++row) {
            text += row == headings ? std::string(used, '-') + "\n" : "";
            text += Line(cells[row], widths, first, end);
        }
        first = end;
    } while (first < widths.size());
    return text;
}
