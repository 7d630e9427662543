#include "cow_1DArray.h"
#include "cow_List.h"

#if defined(BENCH_HAVE_QT)
#include <QList>
#endif
#include <benchmark/benchmark.h>

#include <algorithm>
#include <deque>
#include <numeric>
#include <random>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

/// \file
/// Sequences: append, read, write, copy and remove, for the block array grown by append or built
/// with its length, and for the list, beside std::vector, std::deque and QList. Every workload is
/// checked against a plain computation before it is timed.

namespace {

// One spelling for all containers.

template <class C, class T>
void Append(C& c, T value) {
    if constexpr (requires { c.Append(value); }) {
        c.Append(value);
    } else {
        c.push_back(value);
    }
}
template <class C>
auto Read(const C& c, int i) {
    if constexpr (requires { c.ConstGet(i); }) {
        return c.ConstGet(i);
    } else {
        return c[static_cast<typename C::size_type>(i)];
    }
}
template <class C>
auto& Write(C& c, int i) {
    if constexpr (requires { c.Get(i); }) {
        return c.Get(i);
    } else {
        return c[static_cast<typename C::size_type>(i)];
    }
}
template <class C>
void RemoveFirst(C& c) {
    if constexpr (requires { c.RemoveFirst(); }) {
        c.RemoveFirst();
    } else {
        c.pop_front();
    }
}

template <class T>
std::vector<T> Values(int n) {
    std::vector<T> values(static_cast<std::size_t>(n));
    std::iota(values.begin(), values.end(), T(1));
    return values;
}

template <class C>
C FromValues(const std::vector<typename C::value_type>& values) {
    if constexpr (std::is_constructible_v<C, std::span<const typename C::value_type>>) {
        return C(std::span(values));
    } else {
        return C(values.begin(), values.end());
    }
}

// A container of n values appended one by one; ours also constructed with its length and written.
template <class C, bool kBuilt>
C Make(int n) {
    using T = typename C::value_type;
    if constexpr (kBuilt && requires(C & c) { c.Get(0); }) {
        C c(n);
        for (int i = 0; i < n; ++i)
            Write(c, i) = T(i + 1);
        return c;
    } else {
        C c;
        for (int i = 0; i < n; ++i)
            Append(c, T(i + 1));
        return c;
    }
}

// The loops that are timed stand in functions of their own, as they would in a program.

template <class C>
[[gnu::noinline]] typename C::value_type Sum(const C& c) {
    typename C::value_type sum = 0;
    for (const auto& value : c)
        sum += value;
    return sum;
}
template <class C>
[[gnu::noinline]] typename C::value_type SumFirst(const C& c, int n) {
    typename C::value_type sum = 0;
    for (int i = 0; i < n; ++i)
        sum += Read(c, i);
    return sum;
}
template <class C>
[[gnu::noinline]] typename C::value_type SumAt(const C& c, const std::vector<int>& at) {
    typename C::value_type sum = 0;
    for (const int i : at)
        sum += Read(c, i);
    return sum;
}
template <class C>
[[gnu::noinline]] void WriteFirst(C& c, int n) {
    for (int i = 0; i < n; ++i)
        Write(c, i) = typename C::value_type(i + 1);
}

template <class C>
bool IsRight(benchmark::State& state, const C& c,
             const std::vector<typename C::value_type>& values) {
    if (std::equal(c.begin(), c.end(), values.begin(), values.end())) return true;
    state.SkipWithError("wrong result");
    return false;
}

// The workloads.

template <class C, bool kBuilt>
struct AppendAll {
    static void Run(benchmark::State& state) {
        const int n = static_cast<int>(state.range(0));
        using T = typename C::value_type;
        if (!IsRight(state, Make<C, kBuilt>(n), Values<T>(n))) return;
        for (auto _ : state) {
            const C c = Make<C, kBuilt>(n);
            benchmark::DoNotOptimize(&c);
        }
    }
};

template <class C, bool kBuilt>
struct BuildFromValues {
    static void Run(benchmark::State& state) {
        const auto values = Values<typename C::value_type>(static_cast<int>(state.range(0)));
        if (!IsRight(state, FromValues<C>(values), values)) return;
        for (auto _ : state) {
            const C c = FromValues<C>(values);
            benchmark::DoNotOptimize(&c);
        }
    }
};

// Sums what `read(container, step)` gives for n steps, after one checked pass.
template <class C, bool kBuilt, class Total>
void SumBy(benchmark::State& state, typename C::value_type expected, Total total) {
    const C c = Make<C, kBuilt>(static_cast<int>(state.range(0)));
    if (total(c) != expected) return state.SkipWithError("wrong result");
    for (auto _ : state) {
        const C* seen = &c;
        benchmark::DoNotOptimize(seen);
        auto sum = total(*seen);
        benchmark::DoNotOptimize(sum);
    }
}

template <class C, bool kBuilt>
struct SumByIterator {
    static void Run(benchmark::State& state) {
        const auto values = Values<typename C::value_type>(static_cast<int>(state.range(0)));
        SumBy<C, kBuilt>(state, Sum(values), [](const C& c) { return Sum(c); });
    }
};

template <class C, bool kBuilt>
struct SumByIndex {
    static void Run(benchmark::State& state) {
        const int n = static_cast<int>(state.range(0));
        SumBy<C, kBuilt>(state, Sum(Values<typename C::value_type>(n)),
                         [n](const C& c) { return SumFirst(c, n); });
    }
};

template <class C, bool kBuilt>
struct ReadAtRandom {
    static void Run(benchmark::State& state) {
        using T = typename C::value_type;
        const int n = static_cast<int>(state.range(0));
        std::vector<int> at(1000000);
        std::mt19937 random(1);
        for (int& i : at)
            i = static_cast<int>(random() % static_cast<unsigned>(n));
        T expected = 0;
        for (const int i : at)
            expected += T(i + 1);
        SumBy<C, kBuilt>(state, expected, [&at](const C& c) { return SumAt(c, at); });
    }
};

template <class C, bool kBuilt>
struct WriteEach {
    static void Run(benchmark::State& state) {
        using T = typename C::value_type;
        const int n = static_cast<int>(state.range(0));
        C c = Make<C, kBuilt>(n);
        WriteFirst(c, n);
        if (!IsRight(state, c, Values<T>(n))) return;
        for (auto _ : state) {
            WriteFirst(c, n);
            benchmark::ClobberMemory();
        }
    }
};

template <class C, bool kBuilt>
struct WriteByBlock {
    static void Run(benchmark::State& state) {
        using T = typename C::value_type;
        C c = Make<C, kBuilt>(static_cast<int>(state.range(0)));
        const auto write = [&c] {
            int next = 0;
            const auto fill = [&next](auto&& run) {
                for (T& value : run)
                    value = T(++next);
            };
            if constexpr (requires { c.ForEachBlockForWrite(fill); }) {
                c.ForEachBlockForWrite(fill);
            } else {
                fill(c);
            }
        };
        write();
        if (!IsRight(state, c, Values<T>(static_cast<int>(state.range(0))))) return;
        for (auto _ : state) {
            write();
            benchmark::ClobberMemory();
        }
    }
};

template <class C, bool kBuilt>
struct CopyAndDrop {
    static void Run(benchmark::State& state) {
        const C c = Make<C, kBuilt>(static_cast<int>(state.range(0)));
        for (auto _ : state) {
            const C copy = c;
            benchmark::DoNotOptimize(&copy);
        }
    }
};

template <class C, bool kBuilt, int kStep>
struct CopyAndWrite {
    static void Run(benchmark::State& state) {
        using T = typename C::value_type;
        const int n = static_cast<int>(state.range(0));
        const int step = kStep == 0 ? n : kStep;
        const C c = Make<C, kBuilt>(n);
        for (auto _ : state) {
            C copy = c;
            for (int i = step / 2; i < n; i += step)
                Write(copy, i) = T(0);
            benchmark::DoNotOptimize(&copy);
        }
        IsRight(state, c, Values<T>(n));
    }
};

template <class C, bool kBuilt>
struct RemoveFromTheFront {
    static void Run(benchmark::State& state) {
        constexpr int kRemoved = 100000;
        const int n = static_cast<int>(state.range(0));
        for (auto _ : state) {
            state.PauseTiming();
            C c = Make<C, kBuilt>(n);
            state.ResumeTiming();
            for (int i = 0; i < kRemoved; ++i)
                RemoveFirst(c);
            state.PauseTiming();
            if (Read(c, 0) != kRemoved + 1) state.SkipWithError("wrong result");
            { const C dropped = std::move(c); }
            state.ResumeTiming();
        }
    }
};

template <class C, bool kBuilt>
using CopyAndWriteOne = CopyAndWrite<C, kBuilt, 0>;
template <class C, bool kBuilt>
using CopyAndWriteEvery64th = CopyAndWrite<C, kBuilt, 64>;

template <class T>
using Vector = std::vector<T>;
template <class T>
using Deque = std::deque<T>;

struct Limits {
    std::vector<int> sizes = {1000, 1000000};
    double seconds = 0.05;
};

template <class Workload>
void Register(const std::string& name, const char* who, const Limits& limits) {
    auto* const added = benchmark::RegisterBenchmark((name + "/" + who).c_str(), &Workload::Run);
    for (const int n : limits.sizes)
        added->Arg(n);
    added->MinTime(limits.seconds);
}

// One workload for ours, the standard's peer and Qt's.
template <template <class, bool> class Workload, class Ours, bool kBuilt,
          template <class> class Peer>
void RegisterBeside(const std::string& name, const Limits& limits) {
    using T = typename Ours::value_type;
    Register<Workload<Ours, kBuilt>>(name, "ours", limits);
    Register<Workload<Peer<T>, kBuilt>>(name, "std", limits);
#if defined(BENCH_HAVE_QT)
    Register<Workload<QList<T>, kBuilt>>(name, "qlist", limits);
#endif
}

template <template <class, bool> class Workload, template <class> class Peer = Vector>
void RegisterAll(const std::string& name, const Limits& limits = {}) {
    RegisterBeside<Workload, cow_1DArray<double>, false, Peer>(name + ", double, grown", limits);
    RegisterBeside<Workload, cow_1DArray<double>, true, Peer>(name + ", double, built", limits);
    RegisterBeside<Workload, cow_List<double>, false, Peer>(name + ", double, list", limits);
    RegisterBeside<Workload, cow_1DArray<int>, false, Peer>(name + ", int, grown", limits);
    RegisterBeside<Workload, cow_1DArray<int>, true, Peer>(name + ", int, built", limits);
}

const int registered = [] {
    RegisterAll<AppendAll>("append one by one");
    RegisterAll<BuildFromValues>("build from values");
    RegisterAll<SumByIterator>("sum by iterator");
    RegisterAll<SumByIndex>("sum by index");
    RegisterAll<ReadAtRandom>("1e6 random reads", {{1000000}});
    RegisterAll<ReadAtRandom, Deque>("1e6 random reads beside a deque", {{1000000}});
    RegisterAll<WriteEach>("write each by index");
    RegisterAll<WriteByBlock>("write each by block");
    RegisterAll<CopyAndDrop>("copy and drop");
    RegisterAll<CopyAndWriteOne>("copy, write one, drop");
    RegisterAll<CopyAndWriteEvery64th>("copy, write every 64th, drop");
    RegisterAll<RemoveFromTheFront, Deque>("remove 1e5 from the front", {{1000000}, 0.005});
    return 0;
}();

}  // namespace
