#pragma once

#include "host_Progress.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

/// For each of \p keys the place of the first one equal to it, itself if there is none before.
/// Their first elements are in [0, \p count), like the least nodes of faces and edges.
///
/// Linear: keys are dealt out by their first element, which in meshes leaves a handful to compare
/// with each other and keeps to memory nearby, as a hash of the whole would not. Where a great
/// many have the same first element, they are hashed. \p progress counts each key three times.
template <std::size_t N>
std::vector<std::uint32_t> host_FirstEqual(const std::vector<std::array<int, N>>& keys,
                                           std::size_t count, host_Progress& progress) {
    using Key = std::array<int, N>;
    struct Hash {
        std::size_t operator()(const Key& key) const noexcept {
            std::uint64_t hash = 0;
            for (const int part : key) {
                hash = (hash ^ static_cast<std::uint32_t>(part)) * 0x9E3779B97F4A7C15U;
                hash ^= hash >> 29;
            }
            return hash;
        }
    };
    constexpr std::size_t kMany = 32;

    std::vector<std::uint32_t> ends(count + 1);  // at first where the keys of an element begin
    for (const Key& key : keys) {
        ++ends[static_cast<std::size_t>(key[0]) + 1];
        progress.Count();
    }
    for (std::size_t i = 1; i <= count; ++i) {
        ends[i] += ends[i - 1];
    }
    std::vector<std::uint32_t> dealt(keys.size());
    for (std::uint32_t i = 0; i < keys.size(); ++i) {
        dealt[ends[static_cast<std::size_t>(keys[i][0])]++] = i;
        progress.Count();
    }

    std::vector<std::uint32_t> first(keys.size());
    std::uint32_t begin = 0;
    for (std::size_t element = 0; element < count; ++element) {
        const std::uint32_t end = ends[element];
        if (end - begin > kMany) {
            std::unordered_map<Key, std::uint32_t, Hash> seen;
            for (std::uint32_t i = begin; i < end; ++i) {
                first[dealt[i]] = seen.try_emplace(keys[dealt[i]], dealt[i]).first->second;
                progress.Count();
            }
        } else {
            for (std::uint32_t i = begin; i < end; ++i) {
                std::uint32_t j = begin;
                while (keys[dealt[j]] != keys[dealt[i]]) {
                    ++j;
                }
                first[dealt[i]] = dealt[j];
            }
            progress.Count(end - begin);
        }
        begin = end;
    }
    return first;
}
