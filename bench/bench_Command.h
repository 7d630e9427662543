#pragma once

#include "omu_Arguments.h"
#include "omu_PrimEnum.h"

/// The constants of the measured command.
enum class bench_Mode { Coarse, Medium, Fine };

template <>
struct omu_EnumTable<bench_Mode, 1> {
    static constexpr omu_EnumEntry<bench_Mode> kEntries[] = {{"COARSE", bench_Mode::Coarse},
                                                             {"MEDIUM", bench_Mode::Medium},
                                                             {"FINE", bench_Mode::Fine},
                                                             {nullptr, bench_Mode::Coarse}};
};

/// The parameters of the measured command, f(count, size, name, points, mode, flag = True).
struct bench_Command {
    int count = 0;
    double size = 0.0;
    cow_String name;
    cow_1DArrayList<double> points;
    omu_PrimEnum<bench_Mode, 1> mode{bench_Mode::Coarse};
    bool flag = true;

    void Read(omu_Arguments& arguments) {
        arguments.Begin();
        arguments.Get(count, "count");
        arguments.Get(size, "size");
        arguments.Get(name, "name");
        arguments.Get(points, "points");
        arguments.Get(mode, "mode");
        arguments.Optional();
        arguments.Get(flag, "flag");
        arguments.End();
    }
};
