#include "aio_ostream.h"

#include "atr_StringBase.h"

#include <charconv>

namespace {

template <class Integer>
aio_ostream& WriteDecimal(aio_ostream& stream, Integer value) {
    char digits[12];
    const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    return stream << std::string_view(digits, static_cast<std::size_t>(end - digits));
}

}  // namespace

aio_ostream::aio_ostream(std::FILE* file, bool flushAlways) noexcept
    : _file(file), _flushAlways(flushAlways) {}

aio_ostream::aio_ostream(Sink sink, void* context) noexcept : _sink(sink), _context(context) {}

aio_ostream& aio_ostream::operator<<(std::string_view text) {
    if (text.empty()) {
        return *this;
    }
    if (_file) {
        std::fwrite(text.data(), 1, text.size(), _file);
        if (_flushAlways) {
            std::fflush(_file);
        }
    } else if (_sink) {
        _sink(_context, text.data(), text.size());
    }
    return *this;
}

aio_ostream& aio_ostream::operator<<(const char* text) {
    return text ? *this << std::string_view(text) : *this;
}

aio_ostream& aio_ostream::operator<<(int value) { return WriteDecimal(*this, value); }

aio_ostream& aio_ostream::operator<<(unsigned value) { return WriteDecimal(*this, value); }

aio_ostream& aio_ostream::operator<<(double value) {
    char text[atr_StringBase::kDoubleRoom];
    return *this << std::string_view(text, atr_StringBase::FormatDouble15(value, text));
}

void aio_ostream::Flush() {
    if (_file) {
        std::fflush(_file);
    }
}
