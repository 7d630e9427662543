// From a mesh to a picture in a file: a part of 200,000 outer triangles at 1280 x 960, with a
// contour, edges and a legend. Each step is timed apart.

#include <benchmark/benchmark.h>

#ifdef BENCH_HAVE_HOST
#include "UTI_CaeUtils.h"
#include "g3d_BoundingVolume.h"
#include "g3d_Sphere.h"
#include "g3d_Utils.h"
#include "host_Renderer.h"
#include "host_ViewGeometry.h"

#include <chrono>
#include <cmath>
#include <filesystem>
#endif

#if defined(BENCH_HAVE_HOST) && CAEHOST_HAVE_VIEWPORT

namespace {

constexpr int kSide = 222;
constexpr int kLayers = 2;
constexpr std::size_t kTriangles = 4 * kSide * (kSide + 2 * kLayers);  // 200,688
constexpr int kWidth = 1280;
constexpr int kHeight = 960;

class Clock {
public:
    [[nodiscard]] double Seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - _start).count();
    }

private:
    std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
};

/// A wavy plate of hexahedra.
host_Mesh Plate() {
    std::vector<host_Point> points;
    std::vector<int> nodes;
    const auto node = [](int i, int j, int k) { return (i * (kSide + 1) + j) * (kLayers + 1) + k; };
    for (int i = 0; i <= kSide; ++i) {
        for (int j = 0; j <= kSide; ++j) {
            for (int k = 0; k <= kLayers; ++k) {
                const double x = i * 0.1;
                const double y = j * 0.1;
                points.push_back({x, y, k * 0.2 + std::sin(x * 0.5) * std::cos(y * 0.4)});
                if (i < kSide && j < kSide && k < kLayers) {
                    nodes.insert(nodes.end(),
                                 {node(i, j, k), node(i + 1, j, k), node(i + 1, j + 1, k),
                                  node(i, j + 1, k), node(i, j, k + 1), node(i + 1, j, k + 1),
                                  node(i + 1, j + 1, k + 1), node(i, j + 1, k + 1)});
                }
            }
        }
    }
    host_Mesh mesh(std::move(points));
    mesh.AddCells(host_CellType::Hex8, nodes);
    return mesh;
}

/// The plate, and the scene that shows its height.
class Workload {
public:
    Workload() : mesh(Plate()), view(mesh, [] {}) {
        const host_GeometryChoice choice;
        auto field = std::make_shared<host_Field>();
        for (const host_Point& point : mesh.Points()) {
            field->values.push_back(point[2]);
        }
        std::array<g3d_Color, 12> ramp;
        g3d_Utils::Rainbow(ramp.data(), 12, false, 1);
        const auto table = std::make_shared<const g3d_ContourTable>(-1, 1.4, ramp);
        host_Item item;
        item.geometry = view.Geometry(choice);
        item.values = view.Values(choice, field, host_Component::Magnitude);
        item.contours = table;
        item.showEdges = true;
        scene.items = {item};
        for (int i = 0; i < 12; ++i) {
            const float top = 40 + 20 * static_cast<float>(11 - i);
            scene.rectangles.push_back({20, top, 20, 20, table->BandColor(i)});
            scene.labels.push_back(
                {48, top + 5, 14, std::to_string(table->Break(i + 1)), g3d_Color{1, 1, 1, 1}});
        }
        scene.labels.push_back({20, 30, 16, "Height [mm]", g3d_Color{1, 1, 1, 1}});
        scene.camera.SetLocation({11, -30, 25}, {11, 11, 0}, {0, 0, 1});
        scene.camera.Fit(g3d_Sphere({11.1F, 11.1F, 0.2F}, 14));
        scene.camera.CorrectAspect(kWidth, kHeight, 1, 0, 1, 0, 1);
        image = host_Renderer::Instance().Draw(scene, kWidth, kHeight);
    }

    /// What is wrong with what will be timed; else null.
    [[nodiscard]] const char* Fault() {
        if (scene.items[0].geometry->triangles.size() != kTriangles) {
            return "the part has another number of triangles";
        }
        const std::uint8_t* middle = image.Pixel(kWidth / 2, kHeight / 2);
        const std::uint8_t* corner = image.Pixel(kWidth - 1, 0);
        if (std::equal(middle, middle + 3, corner)) {
            return "the part is not in the picture";
        }
        const std::size_t sent = host_Renderer::Instance().BytesSent();
        scene.camera.Rotate(1, {0, 0, 1}, false);
        host_Renderer::Instance().Draw(scene, kWidth, kHeight);
        return host_Renderer::Instance().BytesSent() == sent
                   ? nullptr
                   : "geometry was sent again after a move of the camera";
    }

    host_Mesh mesh;
    host_ViewGeometry view;
    host_Scene scene;
    host_Image image;
};

Workload& Shared() {
    static int modules = 0;
    static Workload& workload = (UTI_CaeUtils_initialize(modules), *new Workload);
    return workload;
}

/// Times \p step, which returns seconds.
template <class Step>
void Time(benchmark::State& state, Step step) {
    Workload& workload = Shared();
    if (const char* fault = workload.Fault()) {
        state.SkipWithError(fault);
    }
    for ([[maybe_unused]] auto _ : state) {
        state.SetIterationTime(step(workload));
    }
}

host_DrawTimes Draw(Workload& workload) {
    workload.scene.camera.Rotate(1, {0, 0, 1}, false);
    workload.image = host_Renderer::Instance().Draw(workload.scene, kWidth, kHeight);
    return host_Renderer::Instance().Times();
}

double OuterFaces(Workload& workload) {
    const Clock clock;
    const auto faces = workload.mesh.OuterFaces();
    benchmark::DoNotOptimize(faces.data());
    return clock.Seconds();
}

/// Outer faces too, and their points, normals and edges.
double Geometry(Workload& workload) {
    const Clock clock;
    host_ViewGeometry view(workload.mesh, [] {});
    benchmark::DoNotOptimize(view.Geometry({}));
    return clock.Seconds();
}

/// All that a first picture sends.
double Buffers(Workload& workload) {
    host_Item& item = workload.scene.items[0];
    item.geometry = std::make_shared<const host_Geometry>(*item.geometry);
    item.values = std::make_shared<const host_Values>(*item.values);
    return Draw(workload).buffers;
}

double Png(Workload& workload) {
    static const std::string path =
        std::filesystem::temp_directory_path() / "host_Drawing_bench.png";
    const Clock clock;
    host_WritePng(workload.image, path);
    const double seconds = clock.Seconds();
    std::filesystem::remove(path);
    return seconds;
}

void Drawing(benchmark::State& state, double (*step)(Workload&)) { Time(state, step); }
void Drawing(benchmark::State& state, double host_DrawTimes::*part) {
    Time(state, [part](Workload& workload) { return Draw(workload).*part; });
}

// A step is a small part of what each iteration does, so their number is set.
#define DRAWING(name, step)                \
    BENCHMARK_CAPTURE(Drawing, name, step) \
        ->UseManualTime()                  \
        ->Iterations(5)                    \
        ->Unit(benchmark::kMillisecond)

DRAWING(outer_faces, &OuterFaces);
DRAWING(geometry, &Geometry);
DRAWING(buffers, &Buffers);
DRAWING(renderer, &host_DrawTimes::renderer);
DRAWING(read_back, &host_DrawTimes::readBack);
DRAWING(legend, &host_DrawTimes::overlay);
DRAWING(png, &Png);

}  // namespace

#endif
