#include "idb_Cursor.h"

#include "idb_MementoErrorException.h"

using namespace idb_cbor;

void idb_RaiseAt(std::size_t at, const std::string& text) {
    idb_MementoErrorException(atr_String("Memento, byte " + std::to_string(at) + ": " + text), at)
        .Throw("generated/idb/impl/idb_MementoRead", __LINE__);
}

const char* idb_Head::Name() const noexcept {
    switch (Major()) {
        case kUnsigned:
        case kNegative:
            return "an integer";
        case kBytes:
        case kText:
            return "a text";
        case kArray:
            return "an object or list";
        case kMap:
            return "a map";
        case kTag:
            switch (value) {
                case kTagShareable:
                    return "an object";
                case kTagSharedRef:
                    return "a shared object";
                case kTagIdentifier:
                    return "a reference";
                case kTagInts:
                    return "a block of integers";
                case kTagFloats:
                    return "a block of floats";
                case kTagDoubles:
                    return "a block of doubles";
                default:
                    return "something tagged";
            }
        case kSimple:
            break;
    }
    switch (first) {
        case kFalse:
        case kTrue:
            return "a truth value";
        case kNull:
            return "null";
        case kFloat:
            return "a float";
        default:
            return "a double";
    }
}

idb_Head idb_Cursor::LongHead() {
    if (_at >= _bytes.size()) {
        idb_RaiseAt(_at, "it ends within an item");
    }
    const std::size_t start = _at;
    const std::uint8_t first = _bytes[_at++];
    const unsigned info = first & 0x1F;
    idb_Head head{info, start, first};
    if (info >= 28) {
        idb_RaiseAt(start, "items of unknown length and reserved heads are not used");
    }
    std::size_t size = 0;
    if (info >= 24) {
        size = std::size_t{1} << (info - 24);
        if (Left() < size) {
            idb_RaiseAt(start, "it ends within an item");
        }
        head.value = 0;
        for (std::size_t i = 0; i < size; ++i) {
            head.value = head.value << 8 | _bytes[_at++];
        }
    }
    Spend(size + 1);
    switch (head.Major()) {
        case kBytes:
        case kText:
            if (head.value > Left()) {
                idb_RaiseAt(start, "a text of " + std::to_string(head.value) +
                                       " bytes, where only " + std::to_string(Left()) +
                                       " are left");
            }
            break;
        case kArray:
        case kMap:
            // Each item takes a byte at least.
            if (head.value > Left()) {
                idb_RaiseAt(start, std::to_string(head.value) + " items, where only " +
                                       std::to_string(Left()) + " bytes are left");
            }
            break;
        case kSimple:
            if (first != kFalse && first != kTrue && first != kNull && first != kFloat &&
                first != kDouble) {
                idb_RaiseAt(start, "a simple value that is not used");
            }
            break;
        default:
            break;
    }
    return head;
}

void idb_Cursor::Skip() {
    for (std::uint64_t left = 1; left > 0; --left) {
        const idb_Head head = Head();
        switch (head.Major()) {
            case kBytes:
            case kText:
                static_cast<void>(Text(head));
                break;
            case kArray:
                left += head.value;
                break;
            case kMap:
                left += 2 * head.value;
                break;
            case kTag:
                ++left;
                break;
            default:
                break;
        }
    }
}

void idb_Cursor::RaiseSpent() const {
    idb_RaiseAt(_at, "fields lie in an order that takes too much work to read");
}
