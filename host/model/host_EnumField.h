#pragma once

#include "cls_Fields.h"
#include "omu_PrimEnum.h"

#include <algorithm>
#include <string>

/// An enumeration stored as its number. One that is not in the table of its names raises
/// omu_ValueErrorException.
template <class E>
struct host_EnumField : cls_FieldTraits<E> {
    static void Read(const cls_ReadVisitor& visitor, const char* name, E& value) {
        E read{};
        cls_FieldTraits<E>::Read(visitor, name, read);
        const auto& entries = omu_EnumTable<E, 1>::kEntries;
        const auto end = std::prev(std::end(entries));  // the one without a name
        if (std::none_of(std::begin(entries), end,
                         [read](const auto& entry) { return entry.value == read; })) {
            omu_ValueErrorException(atr_String::Format("a stored %s is %d, which has no meaning",
                                                       name, static_cast<int>(read)))
                .Throw("host/model/host_EnumField", __LINE__);
        }
        value = read;
    }
};
