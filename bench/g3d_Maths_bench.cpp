// Transforms, cameras and polygons: float storage, every product and sum in double.
//
// "ours" is what every processor runs, "ours-avx2" what those with AVX2 run; "ours-dispatched" is
// the call that users make, which chooses the loops by the processor. A peer named "double" does
// the same task from and to floats; one named "all double" keeps doubles throughout, and converts
// nothing.

#include "../src/g3d/impl/g3d_XFormKernels.cpp"
#include "g3d_Camera.h"
#include "g3d_GeomUtils.h"

#include <benchmark/benchmark.h>

#ifdef BENCH_HAVE_EIGEN
#include <Eigen/Dense>
#endif
#ifdef BENCH_HAVE_GLM
#include <glm/glm.hpp>
#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>
#endif

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kElements = 1'000'000;

/// Null where this processor has no AVX2.
const g3d_XFormKernels* Avx2() {
#ifdef G3D_HAVE_AVX2
    return __builtin_cpu_supports("avx2") ? &avx2::kKernels : nullptr;
#else
    return nullptr;
#endif
}

std::vector<float> Floats(int count, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> uniform(-1, 1);
    std::vector<float> floats(static_cast<std::size_t>(count));
    std::generate(floats.begin(), floats.end(), [&] { return uniform(random); });
    return floats;
}

/// A rotation: elements that it carries again and again keep their size.
g3d_XForm Rotation() {
    g3d_XForm xform;
    xform.SetRotate(33, g3d_Vector(1, 2, 3));
    return xform;
}

bool Near(const float* actual, const float* expected, std::size_t count) {
    return std::equal(actual, actual + count, expected, [](float a, float b) {
        return std::abs(a - b) <= 1e-5F * (1 + std::abs(b));
    });
}

/// Times \p carry(matrix, elements) over a million elements of \p width floats, in place.
template <class Element = float, class Carry>
void Carried(benchmark::State& state, int width, Carry carry) {
    const g3d_XForm xform = Rotation();
    std::vector<float> floats = Floats(kElements * width, 1);
    std::vector<Element> elements(floats.begin(), floats.end());
    for (std::size_t i = 0; i < floats.size(); i += static_cast<std::size_t>(width)) {
        float carried[4];
        for (int r = 0; r < width; ++r) {
            double sum = 0;
            for (int k = 0; k < width; ++k) {
                sum += 1.0 * xform.GetM(r, k) * floats[i + static_cast<std::size_t>(k)];
            }
            carried[r] = static_cast<float>(sum);
        }
        std::copy_n(carried, width, &floats[i]);
    }
    carry(xform, elements.data());
    const std::vector<float> result(elements.begin(), elements.end());
    if (!Near(result.data(), floats.data(), floats.size())) {
        state.SkipWithError("another result than a plain loop's");
        return;
    }
    for (auto _ : state) {
        carry(xform, elements.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kElements);
}

template <int Width>
void PlainLoop(const g3d_XForm& xform, float* elements) {
    const float* m = xform.Data();
    for (float* e = elements; e != elements + kElements * Width; e += Width) {
        const double x = e[0];
        const double y = e[1];
        const double z = e[2];
        const double w = Width == 4 ? e[Width - 1] : 0;
        for (int i = 0; i < Width; ++i) {
            const double sum = m[i * 4] * x + m[i * 4 + 1] * y + m[i * 4 + 2] * z;
            e[i] = static_cast<float>(Width == 4 ? sum + m[i * 4 + 3] * w : sum);
        }
    }
}

void OursPoints(benchmark::State& state, const g3d_XFormKernels* kernels) {
    Carried(state, 4, [kernels](const g3d_XForm& xform, float* points) {
        kernels->points(xform.Data(), points, kElements);
    });
}

void DispatchedPoints(benchmark::State& state) {
    Carried(state, 4, [](const g3d_XForm& xform, float* points) {
        xform.XForm(reinterpret_cast<g3d_Point*>(points), kElements);
    });
}

void LoopPoints(benchmark::State& state) { Carried(state, 4, PlainLoop<4>); }

/// What no transform can be faster than: every float read, multiplied once and written.
void MemoryLimit(benchmark::State& state) {
    std::vector<float> floats = Floats(kElements * 4, 1);
    float factor = 1;
    benchmark::DoNotOptimize(factor);
    const Float4 factors = {factor, factor, factor, factor};
    for (auto _ : state) {
        for (std::size_t i = 0; i < floats.size(); i += 4) {
            StoreFloats(&floats[i], LoadFloats(&floats[i]) * factors);
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kElements);
}

/// As many bytes through memory, where the cache is too small for both blocks.
void Copy(benchmark::State& state) {
    const std::vector<float> from = Floats(kElements * 4, 1);
    std::vector<float> to(from.size());
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), from.size() * sizeof(float));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kElements);
}

void OursVectors(benchmark::State& state, const g3d_XFormKernels* kernels) {
    Carried(state, 3, [kernels](const g3d_XForm& xform, float* vectors) {
        kernels->vectors(xform.Data(), vectors, kElements);
    });
}

void DispatchedVectors(benchmark::State& state) {
    Carried(state, 3, [](const g3d_XForm& xform, float* vectors) {
        xform.XForm(reinterpret_cast<g3d_Vector*>(vectors), kElements);
    });
}

void LoopVectors(benchmark::State& state) { Carried(state, 3, PlainLoop<3>); }

/// The left factor, and what is inverted.
g3d_XForm General() {
    g3d_XForm xform = Rotation();
    xform.Translate(1, 2, 3);
    xform.M(3, 0) = 0.25F;
    return xform;
}

/// Times \p run(a, b, out) over 4x4 matrices of type Matrix; \p from and \p to convert.
template <class Matrix, class From, class To, class Run>
void Matrices(benchmark::State& state, const g3d_XForm& expected, From from, To to, Run run) {
    Matrix left = from(General());
    Matrix right = from(Rotation());
    Matrix out = left;
    run(left, right, out);
    if (!Near(to(out).Data(), expected.Data(), 16)) {
        state.SkipWithError("another result than a plain loop's");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(left);
        benchmark::DoNotOptimize(right);
        run(left, right, out);
        benchmark::DoNotOptimize(out);
    }
}

g3d_XForm PlainProduct() {
    const g3d_XForm a = General();
    const g3d_XForm b = Rotation();
    g3d_XForm product;
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            double sum = 0;
            for (int k = 0; k < 4; ++k) {
                sum += 1.0 * a.GetM(i, k) * b.GetM(k, j);
            }
            product.M(i, j) = static_cast<float>(sum);
        }
    }
    return product;
}

/// By elimination; no pivot of this matrix is small.
g3d_XForm PlainInverse() {
    const g3d_XForm a = General();
    double m[4][8] = {};
    for (int i = 0; i < 4; ++i) {
        std::copy_n(a.Data() + i * 4, 4, m[i]);
        m[i][4 + i] = 1;
    }
    for (int k = 0; k < 4; ++k) {
        const double pivot = m[k][k];
        std::transform(m[k], m[k] + 8, m[k], [&](double e) { return e / pivot; });
        for (int i = 0; i < 4; ++i) {
            const double factor = i == k ? 0 : m[i][k];
            std::transform(m[i], m[i] + 8, m[k], m[i],
                           [&](double e, double other) { return e - factor * other; });
        }
    }
    g3d_XForm inverse;
    for (int i = 0; i < 16; ++i) {
        inverse.M(i / 4, i % 4) = static_cast<float>(m[i / 4][4 + i % 4]);
    }
    return inverse;
}

const auto kSame = [](const g3d_XForm& xform) { return xform; };

void OursProduct(benchmark::State& state, const g3d_XFormKernels* kernels) {
    Matrices<g3d_XForm>(state, PlainProduct(), kSame, kSame,
                        [&](const g3d_XForm& a, const g3d_XForm& b, g3d_XForm& out) {
                            kernels->multiply(a.Data(), b.Data(), &out.M(0, 0));
                        });
}

void DispatchedProduct(benchmark::State& state) {
    Matrices<g3d_XForm>(
        state, PlainProduct(), kSame, kSame,
        [](const g3d_XForm& a, const g3d_XForm& b, g3d_XForm& out) { out = a * b; });
}

void OursInverse(benchmark::State& state, const g3d_XFormKernels* kernels) {
    Matrices<g3d_XForm>(state, PlainInverse(), kSame, kSame,
                        [&](const g3d_XForm& a, const g3d_XForm&, g3d_XForm& out) {
                            kernels->invert(a.Data(), &out.M(0, 0));
                        });
}

void DispatchedInverse(benchmark::State& state) {
    Matrices<g3d_XForm>(state, PlainInverse(), kSame, kSame,
                        [](const g3d_XForm& a, const g3d_XForm&, g3d_XForm& out) {
                            out = a;
                            out.Invert();
                        });
}

// Turns, cameras and polygons take another argument in every call: nothing is foreseen.
constexpr std::size_t kArguments = 256;

template <class Run>
void Cycled(benchmark::State& state, Run run) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(run(i++ % kArguments));
    }
}

void OursRotate(benchmark::State& state) {
    const std::vector<float> axes = Floats(kArguments * 3 + 1, 2);
    Cycled(state, [&](std::size_t i) {
        g3d_XForm xform;
        xform.SetRotate(axes[i] * 360, g3d_Vector(axes[i + 1], axes[i + 2], axes[i + 3]));
        return xform;
    });
}

/// Matrices of a camera whose eye moves, and, if asked, whose near plane moves too.
void OursCamera(benchmark::State& state, bool movesPlane) {
    const std::vector<float> places = Floats(kArguments * 3, 3);
    g3d_Camera camera;
    Cycled(state, [&](std::size_t i) {
        camera.SetLocation(g3d_Point(places[i] + 5, places[i + 1], places[i + 2]), g3d_Point(),
                           g3d_Vector(0, 1, 0));
        if (movesPlane) {
            camera.SetNearFar(1.5F + places[i], 100);
        }
        float sum = camera.ConstGetVOM().GetM(0, 0);
        sum += camera.ConstGetPM().GetM(0, 0);
        return sum;
    });
}

/// A star of a thousand vertices, so that a scan line crosses many edges.
std::vector<g3d_Point> Star() {
    std::vector<g3d_Point> star;
    const std::vector<float> radii = Floats(1000, 4);
    for (int i = 0; i < 1000; ++i) {
        const double angle = i * 0.006283185307179586;
        const double radius = 2 + radii[static_cast<std::size_t>(i)];
        star.emplace_back(static_cast<float>(radius * std::cos(angle)),
                          static_cast<float>(radius * std::sin(angle)), 0.0F);
    }
    return star;
}

bool PlainInside(const std::vector<g3d_Point>& polygon, const g3d_Point& p) {
    bool inside = false;
    for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
        const g3d_Point& a = polygon[j];
        const g3d_Point& b = polygon[i];
        if ((a.y < p.y) != (b.y < p.y) &&
            p.x < (1.0 * a.x - b.x) * (1.0 * p.y - b.y) / (1.0 * a.y - b.y) + b.x) {
            inside = !inside;
        }
    }
    return inside;
}

std::vector<g3d_Point> Places() {
    const std::vector<float> coordinates = Floats(kArguments * 2, 5);
    std::vector<g3d_Point> places;
    for (std::size_t i = 0; i < kArguments; ++i) {
        places.emplace_back(coordinates[2 * i] * 3, coordinates[2 * i + 1] * 3, 0.0F);
    }
    return places;
}

void OursPolygon(benchmark::State& state) {
    const std::vector<g3d_Point> star = Star();
    const g3d_GeomUtils::Polygon polygon{std::span<const g3d_Point>(star)};
    const std::vector<g3d_Point> places = Places();
    for (const g3d_Point& place : places) {
        if (g3d_GeomUtils::PointInPolygon2D(polygon, place) != PlainInside(star, place)) {
            state.SkipWithError("another answer than a plain loop's");
            return;
        }
    }
    Cycled(state,
           [&](std::size_t i) { return g3d_GeomUtils::PointInPolygon2D(polygon, places[i]); });
}

void LoopPolygon(benchmark::State& state) {
    const std::vector<g3d_Point> star = Star();
    const std::vector<g3d_Point> places = Places();
    Cycled(state, [&](std::size_t i) { return PlainInside(star, places[i]); });
}

#ifdef BENCH_HAVE_EIGEN
// Column-major, which Eigen is fastest with.
Eigen::Matrix4f ToEigen(const g3d_XForm& xform) {
    return Eigen::Map<const Eigen::Matrix4f>(xform.Data()).transpose();
}
Eigen::Matrix4d ToEigenDouble(const g3d_XForm& xform) { return ToEigen(xform).cast<double>(); }
g3d_XForm FromEigen(const Eigen::Matrix4f& matrix) {
    g3d_XForm xform;
    Eigen::Map<Eigen::Matrix4f>(&xform.M(0, 0)) = matrix.transpose();
    return xform;
}
g3d_XForm FromEigenDouble(const Eigen::Matrix4d& matrix) { return FromEigen(matrix.cast<float>()); }

template <int Width, class Element>
void EigenCarried(benchmark::State& state) {
    using Vector = Eigen::Matrix<Element, Width, 1>;
    Carried<Element>(state, Width, [](const g3d_XForm& xform, Element* elements) {
        const Eigen::Matrix<double, Width, Width> m =
            ToEigenDouble(xform).template topLeftCorner<Width, Width>();
        for (Element* e = elements; e != elements + kElements * Width; e += Width) {
            Eigen::Map<Vector> vector(e);
            vector = (m * vector.template cast<double>()).template cast<Element>().eval();
        }
    });
}

void EigenProduct(benchmark::State& state) {
    Matrices<Eigen::Matrix4f>(
        state, PlainProduct(), ToEigen, FromEigen,
        [](const Eigen::Matrix4f& a, const Eigen::Matrix4f& b, Eigen::Matrix4f& out) {
            out = (a.cast<double>() * b.cast<double>()).cast<float>();
        });
}
void EigenProductDouble(benchmark::State& state) {
    Matrices<Eigen::Matrix4d>(state, PlainProduct(), ToEigenDouble, FromEigenDouble,
                              [](const Eigen::Matrix4d& a, const Eigen::Matrix4d& b,
                                 Eigen::Matrix4d& out) { out.noalias() = a * b; });
}
void EigenInverse(benchmark::State& state) {
    Matrices<Eigen::Matrix4f>(
        state, PlainInverse(), ToEigen, FromEigen,
        [](const Eigen::Matrix4f& a, const Eigen::Matrix4f&, Eigen::Matrix4f& out) {
            out = a.cast<double>().inverse().cast<float>();
        });
}
void EigenInverseDouble(benchmark::State& state) {
    Matrices<Eigen::Matrix4d>(state, PlainInverse(), ToEigenDouble, FromEigenDouble,
                              [](const Eigen::Matrix4d& a, const Eigen::Matrix4d&,
                                 Eigen::Matrix4d& out) { out = a.inverse(); });
}
#endif

#ifdef BENCH_HAVE_GLM
// GLM's matrices are column by column: the transposed of ours.
glm::mat4 ToGlm(const g3d_XForm& xform) { return glm::transpose(glm::make_mat4(xform.Data())); }
glm::dmat4 ToGlmDouble(const g3d_XForm& xform) { return glm::dmat4(ToGlm(xform)); }
g3d_XForm FromGlm(const glm::mat4& matrix) {
    const glm::mat4 rows = glm::transpose(matrix);
    g3d_XForm xform;
    std::copy_n(glm::value_ptr(rows), 16, &xform.M(0, 0));
    return xform;
}
g3d_XForm FromGlmDouble(const glm::dmat4& matrix) { return FromGlm(glm::mat4(matrix)); }

void GlmPoints(benchmark::State& state) {
    Carried(state, 4, [](const g3d_XForm& xform, float* points) {
        const glm::dmat4 m = ToGlmDouble(xform);
        for (float* p = points; p != points + kElements * 4; p += 4) {
            const glm::vec4 carried(m * glm::dvec4(p[0], p[1], p[2], p[3]));
            std::copy_n(glm::value_ptr(carried), 4, p);
        }
    });
}
void GlmProduct(benchmark::State& state) {
    Matrices<glm::mat4>(state, PlainProduct(), ToGlm, FromGlm,
                        [](const glm::mat4& a, const glm::mat4& b, glm::mat4& out) {
                            out = glm::mat4(glm::dmat4(a) * glm::dmat4(b));
                        });
}
void GlmProductDouble(benchmark::State& state) {
    Matrices<glm::dmat4>(
        state, PlainProduct(), ToGlmDouble, FromGlmDouble,
        [](const glm::dmat4& a, const glm::dmat4& b, glm::dmat4& out) { out = a * b; });
}
void GlmInverse(benchmark::State& state) {
    Matrices<glm::mat4>(state, PlainInverse(), ToGlm, FromGlm,
                        [](const glm::mat4& a, const glm::mat4&, glm::mat4& out) {
                            out = glm::mat4(glm::inverse(glm::dmat4(a)));
                        });
}
void GlmInverseDouble(benchmark::State& state) {
    Matrices<glm::dmat4>(
        state, PlainInverse(), ToGlmDouble, FromGlmDouble,
        [](const glm::dmat4& a, const glm::dmat4&, glm::dmat4& out) { out = glm::inverse(a); });
}

void GlmRotate(benchmark::State& state) {
    const std::vector<float> axes = Floats(kArguments * 3 + 1, 2);
    const auto rotated = [&](std::size_t i) {
        return glm::mat4(glm::rotate(glm::dmat4(1), glm::radians(360.0 * axes[i]),
                                     glm::dvec3(axes[i + 1], axes[i + 2], axes[i + 3])));
    };
    for (std::size_t i = 0; i < kArguments; ++i) {
        g3d_XForm ours;
        ours.SetRotate(axes[i] * 360, g3d_Vector(axes[i + 1], axes[i + 2], axes[i + 3]));
        if (!Near(FromGlm(rotated(i)).Data(), ours.Data(), 16)) {
            state.SkipWithError("another rotation than ours");
            return;
        }
    }
    Cycled(state, rotated);
}

void GlmCamera(benchmark::State& state, bool movesPlane) {
    const std::vector<float> places = Floats(kArguments * 3, 3);
    glm::mat4 view;
    glm::mat4 projection;
    // Like our camera's: floats in memory, of which the compiler knows nothing.
    glm::vec3 target(0);
    glm::vec3 up(0, 1, 0);
    float window[] = {-0.5F, 0.5F, -0.5F, 0.5F};
    float nearPlane = 1;
    float farPlane = movesPlane ? 100.0F : 10000.0F;
    const auto move = [&](std::size_t i) {
        if (movesPlane) {
            nearPlane = 1.5F + places[i];
        }
        benchmark::DoNotOptimize(target);
        benchmark::DoNotOptimize(up);
        benchmark::DoNotOptimize(window);
        benchmark::DoNotOptimize(nearPlane);
        benchmark::DoNotOptimize(farPlane);
        view = glm::mat4(glm::lookAt(glm::dvec3(places[i] + 5, places[i + 1], places[i + 2]),
                                     glm::dvec3(target), glm::dvec3(up)));
        projection = glm::mat4(
            glm::frustum<double>(window[0], window[1], window[2], window[3], nearPlane, farPlane));
        benchmark::DoNotOptimize(view);
        benchmark::DoNotOptimize(projection);
        return view[0][0] + projection[0][0];
    };
    for (std::size_t i = 0; i < kArguments; ++i) {
        g3d_Camera camera;
        camera.SetLocation(g3d_Point(places[i] + 5, places[i + 1], places[i + 2]), g3d_Point(),
                           g3d_Vector(0, 1, 0));
        if (movesPlane) {
            camera.SetNearFar(1.5F + places[i], 100);
        }
        static_cast<void>(move(i));
        if (!Near(FromGlm(view).Data(), camera.ConstGetVOM().Data(), 16) ||
            !Near(FromGlm(projection).Data(), camera.ConstGetPM().Data(), 16)) {
            state.SkipWithError("other matrices than ours");
            return;
        }
    }
    Cycled(state, move);
}
#endif

const bool registered = [] {
    const auto add = [](const char* name, auto run, auto... arguments) {
        auto* one = benchmark::RegisterBenchmark(name, run, arguments...);
        if (std::string_view(name).starts_with("1e6")) {
            one->Unit(benchmark::kMicrosecond);
        }
    };
    // What is known only at run time is called, not inlined, as in the library.
    const auto addOurs = [&](const std::string& workload, auto run) {
        add((workload + "/ours").c_str(), run, &g3d_XFormKernels::Baseline());
        if (Avx2() != nullptr) {
            add((workload + "/ours-avx2").c_str(), run, Avx2());
        }
    };
    addOurs("1e6 points", OursPoints);
    add("1e6 points/ours-dispatched", DispatchedPoints);
    addOurs("1e6 vectors", OursVectors);
    add("1e6 vectors/ours-dispatched", DispatchedVectors);
    addOurs("product", OursProduct);
    add("product/ours-dispatched", DispatchedProduct);
    addOurs("inverse", OursInverse);
    add("inverse/ours-dispatched", DispatchedInverse);
    add("rotation about an axis/ours", OursRotate);
    add("camera, eye moved/ours", OursCamera, false);
    add("camera, eye and plane moved/ours", OursCamera, true);
    add("point in polygon of 1000/ours", OursPolygon);

    add("1e6 points/plain loop", LoopPoints);
    add("1e6 points/memory limit", MemoryLimit);
    add("1e6 points/memcpy", Copy);
    add("1e6 vectors/plain loop", LoopVectors);
    add("point in polygon of 1000/plain loop", LoopPolygon);
#ifdef BENCH_HAVE_EIGEN
    add("1e6 points/Eigen double", EigenCarried<4, float>);
    add("1e6 points/Eigen all double", EigenCarried<4, double>);
    add("1e6 vectors/Eigen double", EigenCarried<3, float>);
    add("1e6 vectors/Eigen all double", EigenCarried<3, double>);
    add("product/Eigen double", EigenProduct);
    add("product/Eigen all double", EigenProductDouble);
    add("inverse/Eigen double", EigenInverse);
    add("inverse/Eigen all double", EigenInverseDouble);
#endif
#ifdef BENCH_HAVE_GLM
    add("1e6 points/GLM double", GlmPoints);
    add("product/GLM double", GlmProduct);
    add("product/GLM all double", GlmProductDouble);
    add("inverse/GLM double", GlmInverse);
    add("inverse/GLM all double", GlmInverseDouble);
    add("rotation about an axis/GLM double", GlmRotate);
    add("camera, eye moved/GLM double", GlmCamera, false);
    add("camera, eye and plane moved/GLM double", GlmCamera, true);
#endif
    return true;
}();

}  // namespace
