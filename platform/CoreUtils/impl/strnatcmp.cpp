#include "strnatcmp.h"

#include <cstddef>

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

unsigned char AsIs(char c) { return static_cast<unsigned char>(c); }

unsigned char Folded(char c) {
    return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

template <class Number>
int Order(Number a, Number b) {
    return a < b ? -1 : (a > b ? 1 : 0);
}

/// A run of digits: moves \p text behind it.
struct Run {
    explicit Run(const char*& text) {
        const char* const start = text;
        for (; *text == '0'; ++text) {
        }
        digits = text;
        zeros = text - start;
        for (; IsDigit(*text); ++text) {
        }
        length = text - digits;
    }

    const char* digits;     // the first that is not a leading zero
    std::ptrdiff_t zeros;   // how many leading zeros there are
    std::ptrdiff_t length;  // how many digits follow them
};

int CompareValues(const Run& a, const Run& b) {
    if (a.length != b.length) {
        return Order(a.length, b.length);
    }
    for (std::ptrdiff_t i = 0; i < a.length; ++i) {
        if (a.digits[i] != b.digits[i]) {
            return Order(a.digits[i], b.digits[i]);
        }
    }
    return 0;
}

// Each text is a sequence of numbers and bytes, and all numbers lie where the digits lie among the
// bytes: the sequences compare in lexicographic order, and so do, after them, the counts of zeros.
template <unsigned char (*Key)(char)>
int Compare(const char* a, const char* b) {
    int tie = 0;
    while (*a != '\0' && *b != '\0') {
        if (IsDigit(*a) && IsDigit(*b)) {
            const Run runA(a);
            const Run runB(b);
            if (const int order = CompareValues(runA, runB)) {
                return order;
            }
            if (tie == 0) {
                tie = Order(runA.zeros, runB.zeros);
            }
            continue;
        }
        if (const int order = Order(Key(*a), Key(*b))) {
            return order;
        }
        ++a;
        ++b;
    }
    const int order = Order(*a != '\0', *b != '\0');
    return order != 0 ? order : tie;
}

}  // namespace

int strnatcmp(const char* a, const char* b) noexcept { return Compare<AsIs>(a, b); }

int strnatcasecmp(const char* a, const char* b) noexcept { return Compare<Folded>(a, b); }
