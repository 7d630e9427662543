// Reads any bytes as a memento: it loads, or raises the memento's error; nothing else happens. What
// loads is a value like any other, and is written; that must load again and give the same bytes.
// The mutator also changes whole items, and puts the right checksum behind what it makes, or no
// mutation would get past the first checks.

#include "UTI_CaeUtils.h"
#include "idb_MementoErrorException.h"
#include "idb_Samples.h"
#include "idb_Sealed.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);
extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed);

namespace {

using Bytes = std::vector<std::byte>;

// Reading.

/// A root that was read.
struct Root {
    std::shared_ptr<const void> object;
    std::function<void(const cls_WriteVisitor&, const char* name)> write;
    std::function<void()> use;
};

Root ReadValue(const idb_MementoRead& memento, const char* name) {
    const auto value = std::make_shared<omu_PrimHolder>();
    cls_ReadShared(memento, name, omu_Primitive::TypeId(), *value);
    return {
        value,
        [value](const cls_WriteVisitor& to, const char* at) { cls_WriteShared(to, at, *value); },
        [value] {
            if (!value->IsNull()) {
                static_cast<void>((*value)->AsRepr());
            }
        }};
}

/// Reads an object of class T or derived from it, to which others may refer.
template <class T>
Root ReadObject(const idb_MementoRead& memento, const char* name) {
    const std::shared_ptr<T> object(static_cast<T*>(memento.ReadOwned(name, T::TypeId())));
    const auto use = [object] {
        if constexpr (std::is_same_v<T, mdl_PropertyTable>) {
            for (int row = 0; row < object->Rows(); ++row) {
                static_cast<void>(object->Row(row));
            }
            for (int column = 0; column < object->Columns(); ++column) {
                object->Sort({{column}});
            }
        } else if constexpr (std::is_same_v<T, nex_Exception>) {
            static_cast<void>(object->AsString());
        }
    };
    return {object,
            [object](const cls_WriteVisitor& to, const char* at) {
                to.WriteOwned(at, cls_ObjectRef::Of(object.get()));
            },
            use};
}

// The first one that takes a root gets it.
constexpr Root (*kReaders[])(const idb_MementoRead&, const char*) = {
    &ReadValue,
    &ReadObject<mdl_Extension>,
    &ReadObject<mdl_PropertyTable>,
    &ReadObject<nex_Exception>,
    &ReadObject<omu_QueryPathMsg>,
    &ReadObject<g3d_Point>,
    &ReadObject<g3d_Vector>,
    &ReadObject<mdl_PropAttr<cow_String>>,
    &ReadObject<mdl_PropAttr<int>>,
    &ReadObject<mdl_PropAttr<double>>,
    &ReadObject<mdl_PropAttr<bool>>,
    &ReadObject<mdl_PropAttr<cls_xpListInt>>,
    &ReadObject<mdl_PropAttr<cls_xp1DArrayInt>>,
    &ReadObject<mdl_PropAttr<cls_xpListString>>,
    &ReadObject<mdl_PropAttr<cls_xp1DArrayListFloat>>,
};

Root Read(const idb_MementoRead& memento, const char* name) {
    for (std::size_t i = 0;; ++i) {
        try {
            return kReaders[i](memento, name);
        } catch (const idb_MementoErrorException&) {
            if (i + 1 == std::size(kReaders)) {
                throw;
            }
        }
    }
}

/// Whether texts of what is read are about as long as the memento. Not so those of values that
/// share each other's parts, and of arrays without elements, whose other dimensions may be of any
/// length.
bool HasFiniteText(std::span<const std::byte> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return text.find("\xD8\x1D") == text.npos && text.find("omu_PrimArray") == text.npos;
}

/// All roots of a memento, read, used and written again.
Bytes Rewritten(std::span<const std::byte> bytes) {
    const idb_MementoRead memento(bytes);
    std::vector<std::pair<cow_String, Root>> roots;
    for (const cow_String& name : memento.Roots()) {
        roots.emplace_back(name, Read(memento, name.AsCharPtr()));
    }
    memento.Finish();
    idb_MementoWrite written;
    for (const auto& [name, root] : roots) {
        root.write(written, name.AsCharPtr());
    }
    Bytes again = written.Finish();
    for (const auto& [name, root] : roots) {
        if (HasFiniteText(bytes)) {
            root.use();
        }
    }
    return again;
}

// Changing.

/// An item of CBOR among the bytes, and the head of what it lies in.
struct Item {
    std::size_t begin;
    std::size_t end;
    std::size_t parent;
};

/// All items as far as the bytes are CBOR, those within others too.
std::vector<Item> Items(std::span<const std::uint8_t> bytes) {
    struct Open {
        std::size_t item;
        std::uint64_t left;
    };
    std::vector<Item> items;
    std::vector<Open> open;
    for (std::size_t at = 0; at < bytes.size();) {
        const unsigned major = bytes[at] >> 5;
        const unsigned info = bytes[at] & 0x1F;
        const std::size_t size = info < 24 ? 0 : std::size_t{1} << (info - 24);
        if (info > 27 || bytes.size() - at <= size) {
            break;
        }
        std::uint64_t value = info;
        for (std::size_t i = 0; i < size; ++i) {
            value = (i == 0 ? 0 : value << 8) | bytes[at + 1 + i];
        }
        items.push_back({at, 0, open.empty() ? at : items[open.back().item].begin});
        at += 1 + size;
        if ((major == 2 || major == 3) && value > bytes.size() - at) {
            items.pop_back();
            break;
        }
        at += major == 2 || major == 3 ? static_cast<std::size_t>(value) : 0;
        open.push_back({items.size() - 1, major == 4   ? value
                                          : major == 5 ? 2 * value
                                          : major == 6 ? 1
                                                       : 0});
        while (!open.empty() && open.back().left == 0) {
            items[open.back().item].end = at;
            open.pop_back();
        }
        if (!open.empty()) {
            --open.back().left;
        }
    }
    std::erase_if(items, [](const Item& item) { return item.end == 0; });
    return items;
}

/// Puts a copy of an item in the place of another one or before it, or takes one out, keeping the
/// count of the array around it. The new size, or 0 where nothing was changed.
std::size_t ChangeItems(std::uint8_t* data, std::size_t size, std::size_t most, unsigned seed) {
    const std::vector<std::uint8_t> old(data, data + size);
    const std::vector<Item> items = Items(old);
    if (items.empty()) {
        return 0;
    }
    std::minstd_rand random(seed);
    const auto any = [&] { return items[random() % items.size()]; };
    const Item place = any();
    const Item source = any();
    const int added = static_cast<int>(random() % 3) - 1;  // items
    const std::uint8_t around = old[place.parent];
    if (added != 0 && (around < 0x81 || around > 0x96)) {
        return 0;  // not a short array
    }
    std::vector<std::uint8_t> made(old.begin(), old.end());
    made[place.parent] = static_cast<std::uint8_t>(around + added);
    const auto at = made.begin() + static_cast<std::ptrdiff_t>(place.begin);
    const auto behind = added > 0 ? at : made.begin() + static_cast<std::ptrdiff_t>(place.end);
    const auto next = made.erase(at, behind);
    if (added >= 0) {
        made.insert(next, old.begin() + static_cast<std::ptrdiff_t>(source.begin),
                    old.begin() + static_cast<std::ptrdiff_t>(source.end));
    }
    if (made.size() > most) {
        return 0;
    }
    std::copy(made.begin(), made.end(), data);
    return made.size();
}

}  // namespace

int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    static int count = 0;
    UTI_CaeUtils_initialize(count);
    idb_TestMember::Know();
    return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                    unsigned seed) {
    constexpr std::size_t kTrailer = 5;
    if (most <= kTrailer) {
        return size;
    }
    const std::size_t body = size < kTrailer ? size : size - kTrailer;
    std::size_t changed = 0;
    if (seed % 2 == 0) {
        changed = ChangeItems(data, body, most - kTrailer, seed / 2);
    }
    if (changed == 0) {
        changed = LLVMFuzzerMutate(data, body, most - kTrailer);
    }
    if (seed % 128 == 1) {
        return changed;  // without a checksum
    }
    const auto* const first = reinterpret_cast<const std::byte*>(data);
    const Bytes sealed = idb_Sealed(Bytes(first, first + changed));
    std::memcpy(data, sealed.data(), sealed.size());
    return sealed.size();
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A copy of exactly this size, so that reading past its end is seen.
    const auto* const first = reinterpret_cast<const std::byte*>(data);
    const Bytes bytes(first, first + size);
    Bytes once;
    try {
        once = Rewritten(bytes);
    } catch (const idb_MementoErrorException&) {
        return 0;
    }
    if (Rewritten(once) != once) {
        std::abort();
    }
    return 0;
}
