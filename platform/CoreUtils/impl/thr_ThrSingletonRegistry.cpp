#include "thr_ThrSingletonRegistry.h"

#include <algorithm>
#include <utility>

void thr_ThrSingletonRegistry::Register(thr_DestroyFunction destroy) { FindOrAdd(destroy); }

void thr_ThrSingletonRegistry::SetDestructLevel(thr_DestroyFunction destroy, int level) {
    FindOrAdd(destroy).level = level;
}

void thr_ThrSingletonRegistry::DestroyAll() noexcept {
    // A destroy function may use, and so make anew, an object that is gone already. Two that do so
    // with each other would never end: after the last round their objects are left.
    constexpr int kMostRounds = 8;
    for (int round = 0; round < kMostRounds && !_entries.empty(); ++round) {
        std::vector<Entry> entries;
        entries.swap(_entries);
        // stable_sort does with the memory there is: it cannot fail.
        std::reverse(entries.begin(), entries.end());
        std::stable_sort(entries.begin(), entries.end(),
                         [](const Entry& a, const Entry& b) { return a.level < b.level; });
        for (const Entry& entry : entries) {
            entry.destroy();
        }
    }
    _entries.clear();
}

thr_ThrSingletonRegistry::Entry& thr_ThrSingletonRegistry::FindOrAdd(thr_DestroyFunction destroy) {
    for (Entry& entry : _entries) {
        if (entry.destroy == destroy) {
            return entry;
        }
    }
    return _entries.emplace_back(Entry{destroy, 0});
}
