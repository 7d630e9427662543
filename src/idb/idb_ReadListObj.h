#pragma once

#include "CaeUtilsExport.h"
#include "cls_Shared.h"

#include <concepts>
#include <memory>
#include <vector>

/// \file
/// Lists of objects, read and written through the class system's visitors. An element is either a
/// std::unique_ptr, whose object the list owns and to which others may refer, or a copy-on-write
/// holder, which shares its object. Null elements are kept.

/// What lists and maps of objects hold: a std::unique_ptr or a holder of a persistent class.
template <class Entry>
struct idb_ObjectEntry {
    using Class = std::remove_cvref_t<decltype(*std::declval<const Entry&>())>;
    static constexpr bool kIsOwned = requires(Entry entry) { entry.release(); };

    static void Write(const cls_WriteVisitor& to, const Entry& entry) {
        if constexpr (kIsOwned) {
            to.WriteOwned("", cls_ObjectRef::Of(entry.get()));
        } else {
            cls_WriteShared(to, "", entry);
        }
    }
    [[nodiscard]] static Entry Read(const cls_ReadVisitor& from) {
        Entry entry;
        if constexpr (kIsOwned) {
            entry.reset(static_cast<Class*>(from.ReadOwned("", Class::TypeId())));
        } else {
            cls_ReadShared(from, "", Class::TypeId(), entry);
        }
        return entry;
    }
};

/// Reads the list \p name: std::vector<std::unique_ptr<T>>, or with a holder for T a vector of
/// holders. Raises the store's error where the field holds something else.
template <class T>
[[nodiscard]] auto idb_ReadListObj(const cls_ReadVisitor& visitor, const char* name) {
    constexpr bool kIsHolder = requires(const T& holder) { holder.IsNull(); };
    using Entry = std::conditional_t<kIsHolder, T, std::unique_ptr<T>>;
    const auto list = visitor.List(name);
    std::vector<Entry> read;
    read.reserve(static_cast<std::size_t>(list->Count()));
    for (int left = list->Count(); left > 0; --left) {
        read.push_back(idb_ObjectEntry<Entry>::Read(*list));
    }
    return read;
}

/// Writes \p entries, a sized range of std::unique_ptr or of holders, as the list \p name.
template <class Range>
void idb_WriteListObj(const cls_WriteVisitor& visitor, const char* name, const Range& entries) {
    using Entry = std::remove_cvref_t<decltype(*std::begin(entries))>;
    const auto list = visitor.List(name, static_cast<int>(std::size(entries)));
    for (const Entry& entry : entries) {
        idb_ObjectEntry<Entry>::Write(*list, entry);
    }
}
