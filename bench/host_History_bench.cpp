// Changes of one property of a model as steps that can be undone, with models of 1,000 to 1,000,000
// elements; what the steps keep; saving and opening.

#include <benchmark/benchmark.h>

#ifdef BENCH_HAVE_HOST

#include "host_Changes.h"
#include "host_Material.h"
#include "host_Model.h"
#include "host_Part.h"
#include "host_Step.h"
#include "host_initialize.h"
#include "idb_FileLoad.h"
#include "idb_FileSave.h"
#include "omu_PrimNumber.h"

#include <filesystem>
#include <malloc.h>
#include <numeric>

namespace {

/// The model's file, for the life of the process.
struct File {
    const std::string path =
        (std::filesystem::temp_directory_path() / "host_History_bench.cae").string();
    ~File() {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
};
const File theFile;
constexpr int kSteps = 1000;

host_Model& Model() { return host_Model::Instance(); }
host_Changes& Changes() { return host_Changes::Instance(); }

/// A bar of \p elements bricks, a hundred in each layer.
host_Mesh Bar(int elements) {
    constexpr int kSide = 10;
    constexpr int kRow = kSide + 1;
    const int layers = elements / (kSide * kSide);
    std::vector<host_Point> points;
    for (int z = 0; z <= layers; ++z) {
        for (int y = 0; y <= kSide; ++y) {
            for (int x = 0; x <= kSide; ++x) {
                points.push_back({x * 0.1, y * 0.1, z * 0.1});
            }
        }
    }
    std::vector<int> nodes;
    for (int cell = 0; cell < elements; ++cell) {
        const int z = cell / (kSide * kSide);
        const int at = z * kRow * kRow + cell / kSide % kSide * kRow + cell % kSide;
        for (const int base : {at, at + kRow * kRow}) {
            nodes.insert(nodes.end(), {base, base + 1, base + kRow + 1, base + kRow});
        }
    }
    host_Mesh mesh(std::move(points));
    mesh.AddCells(host_CellType::Hex8, nodes);
    return mesh;
}

/// A part with ten groups and a field, two materials, a step: the model, and no history.
void MakeModel(int elements) {
    static int count = 0;
    if (count == 0) {
        host_initialize(count);
    }
    Changes().Forget();
    host_Transaction making("model");
    Model().Clear();
    host_Part& part = Model().Add(std::make_unique<host_Part>("bar", Bar(elements)));
    for (int group = 0; group < 10; ++group) {
        std::vector<int> cells(static_cast<std::size_t>(elements / 10));
        std::iota(cells.begin(), cells.end(), group * elements / 10);
        part.Edit().groups["group " + std::to_string(group)] =
            std::make_shared<const std::vector<int>>(std::move(cells));
    }
    std::vector<double> values(part.Mesh().Points().size());
    std::iota(values.begin(), values.end(), 0.5);
    part.Edit().fields["field"] = std::make_shared<const host_Field>(
        host_Field{host_FieldPosition::Nodes, 1, std::move(values)});
    Model().Add(std::make_unique<host_Material>("steel", host_MaterialContent()));
    Model().Add(std::make_unique<host_Material>("copper", host_MaterialContent()));
    Model().Add(std::make_unique<host_Step>("load", host_StepContent()));
    making.Commit();
    Changes().Forget();
}

/// A change of a small object, through its attribute, as scripts make it.
void SetPeriod(int i) {
    host_Transaction step("period");
    Model().Find<host_Step>("load").SetAttribute("period", omu_PrimNumber(1.0 + i));
    step.Commit();
}

/// A change of the object that has the mesh.
void AssignMaterial(int i) {
    host_Transaction step("assignMaterial");
    auto& materials = Model().Find<host_Part>("bar").Edit().materials;
    materials.clear();
    materials.push_back({"", i % 2 == 0 ? "steel" : "copper"});
    step.Commit();
}

std::size_t Used() {
    const auto all = mallinfo2();
    return all.uordblks + all.hblkhd;
}

template <void (*change)(int)>
void Change(benchmark::State& state) {
    MakeModel(static_cast<int>(state.range(0)));
    int i = 0;
    for (auto _ : state) {
        change(++i);
    }
}

template <void (*change)(int)>
void UndoAndRedo(benchmark::State& state) {
    MakeModel(static_cast<int>(state.range(0)));
    change(1);
    for (auto _ : state) {
        Changes().Undo(1);
        Changes().Redo(1);
    }
}

template <void (*change)(int)>
void Kept(benchmark::State& state) {
    MakeModel(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        Changes().Forget();
        const std::size_t before = Used();
        for (int i = 0; i < kSteps; ++i) {
            change(i);
        }
        state.counters["bytes/step"] = static_cast<double>(Used() - before) / kSteps;
        state.counters["bytes/model"] = static_cast<double>(before);
    }
}

void Save(benchmark::State& state) {
    MakeModel(static_cast<int>(state.range(0)));
    std::size_t size = 0;
    for (auto _ : state) {
        const std::vector<std::byte> memento = Model().Memento();
        idb_FileSave(theFile.path, memento);
        size = memento.size();
    }
    state.counters["bytes"] = static_cast<double>(size);
}

void Open(benchmark::State& state) {
    MakeModel(static_cast<int>(state.range(0)));
    const std::vector<std::byte> memento = Model().Memento();
    idb_FileSave(theFile.path, memento);
    for (auto _ : state) {
        host_Transaction step("openModel");
        Model().Open(idb_FileLoad(theFile.path, std::uint64_t{1} << 36));
        step.Commit();
        state.PauseTiming();
        if (Model().Memento() != memento) {
            state.SkipWithError("opened something else");
        }
        Changes().Forget();
        state.ResumeTiming();
    }
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("elements")->Arg(1'000)->Arg(100'000)->Arg(1'000'000);
}

BENCHMARK(Change<&SetPeriod>)->Name("change a step's period")->Apply(Sizes)->Iterations(20'000);
BENCHMARK(Change<&AssignMaterial>)
    ->Name("change a part's material")
    ->Apply(Sizes)
    ->Iterations(20'000);
BENCHMARK(UndoAndRedo<&SetPeriod>)->Name("undo and redo a step's period")->Apply(Sizes);
BENCHMARK(UndoAndRedo<&AssignMaterial>)->Name("undo and redo a part's material")->Apply(Sizes);
BENCHMARK(Kept<&SetPeriod>)->Name("kept of 1,000 periods")->Apply(Sizes)->Iterations(1);
BENCHMARK(Kept<&AssignMaterial>)->Name("kept of 1,000 materials")->Apply(Sizes)->Iterations(1);
BENCHMARK(Save)->Name("save")->Apply(Sizes)->Unit(benchmark::kMillisecond);
BENCHMARK(Open)->Name("open")->Apply(Sizes)->Unit(benchmark::kMillisecond);

}  // namespace

#endif
