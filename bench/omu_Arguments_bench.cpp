// One command call in C++ only: fill an argument list, read it as the command does, End().
//     f(count: int, size: float, name: str, points: ten floats, mode: one of three, flag = True)

#include "bench_Command.h"
#include "mem_Allocation.h"
#include "omu_ErrorExceptions.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <new>

namespace {

/// Allocations so far, by the library's allocators and by the language's.
long allocations = 0;

bool CountAllocation(std::size_t) {
    ++allocations;
    return false;
}

}  // namespace

// Not inlined: the compiler would take the pair of malloc and free for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

using ModeConstant = omu_PrimEnum<bench_Mode, 1>;

void Fill(omu_Arguments& call, const cow_1DArrayList<double>& points, const ModeConstant& mode) {
    call.Put(7);
    call.Put(2.5);
    call.Put("bracket", "name");
    call.Put(points, "points");
    call.Put(mode, "mode");
}

double Read(omu_Arguments& call) {
    bench_Command read;
    read.Read(call);
    return read.count * read.size + read.points.ConstGet(9) + read.name.Length() +
           (read.mode == bench_Mode::Fine ? 1 : 0);
}

void FillAndRead(benchmark::State& state) {
    cow_1DArrayList<double> points;
    for (int i = 0; i < 10; ++i) {
        points.Append(0.5 * i);
    }
    const ModeConstant mode(bench_Mode::Fine);
    mem_SetFaultHook(&CountAllocation);
    const long before = allocations;
    {
        omu_Arguments call;
        Fill(call, points, mode);
        if (Read(call) != 7 * 2.5 + 4.5 + 7 + 1) {
            state.SkipWithError("the call was misread");
        }
    }
    const long perCall = allocations - before;
    mem_SetFaultHook(nullptr);
    for (auto _ : state) {
        omu_Arguments call;
        Fill(call, points, mode);
        benchmark::DoNotOptimize(Read(call));
    }
    state.counters["allocations"] = static_cast<double>(perCall);
}
BENCHMARK(FillAndRead)->Name("command in C++: fill, read, End/ours");

void WrongType(benchmark::State& state) {
    cow_1DArrayList<double> points{0.5};
    for (auto _ : state) {
        omu_Arguments call;
        call.Put("seven");
        call.Put(2.5);
        call.Begin();
        int count = 0;
        double size = 0.0;
        call.Get(count, "count");
        call.Get(size, "size");
        try {
            call.End();
        } catch (const omu_TypeErrorException& error) {
            benchmark::DoNotOptimize(error.JournalMessage());
        }
    }
}
BENCHMARK(WrongType)->Name("wrong type in C++: read, raise, message/ours");

}  // namespace
