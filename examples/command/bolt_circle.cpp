// A command of two required and three optional parameters, one of them with an alternative form
// and one that used to have another keyword; and calls of it, as a script would make them.

#include "UTI_CaeUtils.h"
#include "nex_CommandException.h"
#include "omu_Get.h"
#include "omu_PrimBool.h"
#include "omu_RangeChecker.h"

#include <cmath>
#include <cstdio>
#include <memory>
#include <numbers>

namespace {

/// \p count points of a circle, from the angle \p start on, \p turn apart [deg].
cow_2DArray<double> Circle(const cow_1DArrayList<double>& center, double radius, int count,
                           double start, double turn) {
    cow_2DArray<double> points(count, 2);
    for (int i = 0; i < count; ++i) {
        const double angle = (start + turn * i) * std::numbers::pi / 180;
        points.Get(i, 0) = center[0] + radius * std::cos(angle);
        points.Get(i, 1) = center[1] + radius * std::sin(angle);
    }
    return points;
}

/// boltCircle(center, radius, count=6, start=0.0, clockwise=OFF): the places of the holes. The
/// radius is a number, or a point of the circle. Angles are in degrees.
omu_Primitive* BoltCircle(omu_Arguments& args) {
    cow_1DArrayList<double> center;
    double radius = 0;
    cow_1DArrayList<double> point;
    int count = 6;
    double start = 0;
    bool isClockwise = false;

    args.Begin();
    args.Get(center, "center");
    args.Get(radius, "radius");
    if (args.ErrorOnPrevious() && args.Alternative()) {
        args.Get(point, "radius");
    }
    args.Optional();
    args.Get(count, "count");
    if (args.Keywords().Has("number")) {
        args.DeprecatedGet(count, "number", "the keyword until version 2");
    }
    args.Get(start, "start");
    args.Get(isClockwise, "clockwise");
    args.End();

    if (center.Length() != 2 || (!point.IsEmpty() && point.Length() != 2)) {
        omu_ValueErrorException("a point has two coordinates").Throw("bolt_circle", __LINE__);
    }
    if (!point.IsEmpty()) {
        radius = std::hypot(point[0] - center[0], point[1] - center[1]);
    }
    omu_RangeChecker().Above(0).Check("radius", radius);
    omu_RangeChecker().AtLeast(1).AtMost(360).Check("count", count);

    const double turn = (isClockwise ? -360.0 : 360.0) / count;
    return omu_ReturnPrim(Circle(center, radius, count, start, turn));
}

/// Calls the command with the arguments that \p fill puts, and prints what comes of it.
template <class Fill>
void Call(Fill fill) {
    omu_Arguments args;
    fill(args);
    std::printf("boltCircle%s\n", args.AsRepr().AsCharPtr());
    try {
        const std::unique_ptr<omu_Primitive> places(BoltCircle(args));
        std::printf("    %s\n", places->AsRepr().AsCharPtr());
    } catch (const nex_CommandException& error) {
        std::printf("    %s: %s\n", error.PythonType().AsCharPtr(),
                    error.JournalMessage().AsCharPtr());
    }
    for (const cow_String& keyword : args.DeprecatedKeywords()) {
        std::printf("    note: the keyword %s is deprecated\n", keyword.AsCharPtr());
    }
}

}  // namespace

int main() {
    int modules = 0;
    UTI_CaeUtils_initialize(modules);

    const cow_List<int> center{10, 20};
    const cow_List<int> point{13, 24};
    // By position, by keyword, in the alternative form, by the old keyword.
    Call([&](omu_Arguments& args) {
        args.Put(center);
        args.Put(8);
        args.Put(2);
    });
    Call([&](omu_Arguments& args) {
        args.Put(center);
        args.Put(0.5, "radius");
        args.Put(1, "count");
        args.Put(180.0, "start");
        args.Put(omu_PrimBool<2>(true), "clockwise");
    });
    Call([&](omu_Arguments& args) {
        args.Put(center);
        args.Put(point);
        args.Put(1, "count");
    });
    Call([&](omu_Arguments& args) {
        args.Put(center);
        args.Put(8);
        args.Put(1, "number");
    });
    // What a user may do wrong.
    Call([&](omu_Arguments& args) { args.Put(center); });
    Call([&](omu_Arguments& args) {
        args.Put(center);
        args.Put("wide");
    });
    Call([&](omu_Arguments& args) {
        args.Put(center);
        args.Put(8);
        args.Put(2.5, "count");
    });
    Call([&](omu_Arguments& args) {
        args.Put(center);
        args.Put(8);
        args.Put(6, "holes");
    });
    Call([&](omu_Arguments& args) {
        args.Put(center);
        args.Put(-8);
    });

    UTI_CaeUtils_finalize(modules);
    return modules;
}
