#include "cow_Btree.h"

#if defined(BENCH_HAVE_QT)
#include <QMap>
#endif
#if defined(BENCH_HAVE_ABSL)
#include <absl/container/btree_map.h>
#endif
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

/// \file
/// Ordered maps of int to int: insertion, look-up, walk, copy and removal with keys in random,
/// ascending and zigzag order (0, n - 1, 1, n - 2, ...), beside std::map, QMap and absl::btree_map.
/// The order is that of insertion and erasure; look-ups are in random order. Every workload is
/// checked before or while it is timed. Times are of all n operations.

namespace {

using Ours = cow_Btree<int, int>;
using Standard = std::map<int, int>;

// One spelling for all maps.

bool Insert(Ours& map, int key) { return map.InsertUnlessMember(key, key); }
bool Erase(Ours& map, int key) { return map.Remove(key); }
int Find(const Ours& map, int key) { return map.ConstFind(key)->Value(); }
long long Sum(const Ours& map) {
    long long sum = 0;
    for (const auto& node : map)
        sum += node.Value();
    return sum;
}

template <class Map>
bool Insert(Map& map, int key) {
    if constexpr (requires { map.try_emplace(key, key); }) {
        return map.try_emplace(key, key).second;
    } else {
        if (map.contains(key)) return false;
        map.insert(key, key);
        return true;
    }
}
template <class Map>
bool Erase(Map& map, int key) {
    if constexpr (requires { map.remove(key); }) {
        return map.remove(key) == 1;
    } else {
        return map.erase(key) == 1;
    }
}
template <class Map>
int Find(const Map& map, int key) {
    if constexpr (requires { map.find(key)->second; }) {
        return map.find(key)->second;
    } else {
        return *map.constFind(key);
    }
}
template <class Map>
long long Sum(const Map& map) {
    long long sum = 0;
    if constexpr (requires { map.begin()->second; }) {
        for (const auto& [key, value] : map)
            sum += value;
    } else {
        for (const int value : map)
            sum += value;
    }
    return sum;
}

enum class Order { kRandom, kAscending, kZigzag };

std::vector<int> Keys(Order order, int n) {
    std::vector<int> keys(static_cast<std::size_t>(n));
    std::iota(keys.begin(), keys.end(), 0);
    if (order == Order::kRandom) std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
    if (order == Order::kZigzag) {
        int i = 0;
        for (int& key : keys) {
            key = i % 2 == 0 ? i / 2 : n - 1 - i / 2;
            ++i;
        }
    }
    return keys;
}

template <class Map>
Map Filled(const std::vector<int>& keys) {
    Map map;
    for (const int key : keys)
        Insert(map, key);
    return map;
}

// Times `work()` alone; what it returns must be `expected`.
template <class Result, class Work>
void Time(benchmark::State& state, Result expected, Work work) {
    const auto start = std::chrono::steady_clock::now();
    const Result result = work();
    const auto stop = std::chrono::steady_clock::now();
    if (result != expected) state.SkipWithError("wrong result");
    state.SetIterationTime(std::chrono::duration<double>(stop - start).count());
}

// The same keys in another, random order.
std::vector<int> Shuffled(std::vector<int> keys) {
    std::shuffle(keys.begin(), keys.end(), std::mt19937(3));
    return keys;
}

// Number of keys for which `operation(key)` is true.
template <class Operation>
int CountTrue(const std::vector<int>& keys, Operation operation) {
    int count = 0;
    for (const int key : keys)
        count += operation(key);
    return count;
}

template <class Map>
struct InsertNew {
    static void Run(benchmark::State& state, const std::vector<int>& keys) {
        for (auto _ : state) {
            Map map;
            Time(state, static_cast<int>(keys.size()),
                 [&] { return CountTrue(keys, [&](int key) { return Insert(map, key); }); });
        }
    }
};

template <class Map>
struct InsertPresent {
    static void Run(benchmark::State& state, const std::vector<int>& keys) {
        Map map = Filled<Map>(keys);
        const std::vector<int> probes = Shuffled(keys);
        for (auto _ : state) {
            Time(state, 0,
                 [&] { return CountTrue(probes, [&](int key) { return Insert(map, key); }); });
        }
    }
};

template <class Map>
struct FindPresent {
    static void Run(benchmark::State& state, const std::vector<int>& keys) {
        const Map map = Filled<Map>(keys);
        const std::vector<int> probes = Shuffled(keys);
        for (auto _ : state) {
            Time(state, static_cast<int>(keys.size()),
                 [&] { return CountTrue(probes, [&](int key) { return Find(map, key) == key; }); });
        }
    }
};

template <class Map>
struct SumInOrder {
    static void Run(benchmark::State& state, const std::vector<int>& keys) {
        const Map map = Filled<Map>(keys);
        const long long n = static_cast<long long>(keys.size());
        for (auto _ : state)
            Time(state, n * (n - 1) / 2, [&] { return Sum(map); });
    }
};

template <class Map>
struct EraseAll {
    static void Run(benchmark::State& state, const std::vector<int>& keys) {
        for (auto _ : state) {
            Map map = Filled<Map>(keys);
            Time(state, static_cast<int>(keys.size()),
                 [&] { return CountTrue(keys, [&](int key) { return Erase(map, key); }); });
        }
    }
};

template <class Map>
struct CopyAndDrop {
    static void Run(benchmark::State& state, const std::vector<int>& keys) {
        const Map map = Filled<Map>(keys);
        for (auto _ : state) {
            const Map copy = map;
            benchmark::DoNotOptimize(&copy);
        }
    }
};

template <class Map>
struct CopyAndInsertOne {
    static void Run(benchmark::State& state, const std::vector<int>& keys) {
        const Map map = Filled<Map>(keys);
        std::mt19937 random(2);
        for (auto _ : state) {
            Map copy = map;
            // Between two keys there is no room: below the smallest there is.
            if (!Insert(copy, -1 - static_cast<int>(random() % 1000)))
                state.SkipWithError("present");
            benchmark::DoNotOptimize(&copy);
        }
        if (Find(map, keys.front()) != keys.front()) state.SkipWithError("the source changed");
    }
};

struct Limits {
    bool isManual = true;
    bool onlyRandom = false;
};

template <class Workload>
void Register(const std::string& name, const char* who, const Limits& limits) {
    const std::pair<Order, const char*> orders[] = {
        {Order::kRandom, "random"}, {Order::kAscending, "ascending"}, {Order::kZigzag, "zigzag"}};
    for (const auto& [order, orderName] : orders) {
        if (limits.onlyRandom && order != Order::kRandom) continue;
        auto* const added = benchmark::RegisterBenchmark(
            (name + ", " + orderName + "/" + who).c_str(), [order](benchmark::State& state) {
                Workload::Run(state, Keys(order, static_cast<int>(state.range(0))));
            });
        added->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->MinTime(0.1);
        if (limits.isManual) added->UseManualTime();
    }
}

template <template <class> class Workload>
void RegisterAll(const std::string& name, const Limits& limits = {}) {
    Register<Workload<Ours>>(name, "ours", limits);
    Register<Workload<Standard>>(name, "std_map", limits);
#if defined(BENCH_HAVE_QT)
    Register<Workload<QMap<int, int>>>(name, "qmap", limits);
#endif
#if defined(BENCH_HAVE_ABSL)
    Register<Workload<absl::btree_map<int, int>>>(name, "absl_btree_map", limits);
#endif
}

const int registered = [] {
    RegisterAll<InsertNew>("insert n");
    RegisterAll<InsertPresent>("insert n present");
    RegisterAll<FindPresent>("find n");
    RegisterAll<SumInOrder>("sum in order");
    RegisterAll<EraseAll>("erase n");
    RegisterAll<CopyAndDrop>("copy and drop", {false, true});
    RegisterAll<CopyAndInsertOne>("copy, insert one, drop", {false, true});
    return 0;
}();

}  // namespace
