#pragma once

#include "cow_List.h"
#include "cow_Map.h"

/// What is made from whole maps.
class cow_MapUtils {
public:
    /// The keys of \p map, ascending.
    template <class K, class V>
    [[nodiscard]] static cow_List<K> cow_Keys(const cow_Map<K, V>& map) {
        cow_List<K> keys;
        for (const auto& [key, value] : map)
            keys.Append(key);
        return keys;
    }
    /// The values of \p map in the order of their keys.
    template <class K, class V>
    [[nodiscard]] static cow_List<V> cow_Values(const cow_Map<K, V>& map) {
        cow_List<V> values;
        for (const auto& [key, value] : map)
            values.Append(value);
        return values;
    }
};
