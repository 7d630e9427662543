#include "host_PartReport.h"

#include "host_PartMass.h"
#include "host_Progress.h"
#include "host_ReportText.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numeric>

namespace {

std::string Texts(std::initializer_list<double> values, double scale) {
    for (const double value : values) {
        scale = std::max(scale, std::abs(value));
    }
    std::string text;
    for (const double value : values) {
        // What is nothing beside its neighbours, or beside scale, is rounding.
        text += (text.empty() ? "" : ", ") +
                host_NumberText(std::abs(value) < 1e-12 * scale ? 0 : value);
    }
    return text;
}

std::string Texts(const host_Point& point, double scale) {
    return "(" + Texts({point[0], point[1], point[2]}, scale) + ")";
}

std::string Line(const char* label, const std::string& value, const std::string& unit = {}) {
    return "  " + host_PadRight(label, 18) + value + (unit.empty() ? "" : " " + unit) + "\n";
}

std::string Power(const std::string& unit, const char* exponent) {
    return unit.empty() ? unit : unit + exponent;
}

template <class E>
std::string ConstantName(E value) {
    return omu_PrimEnum<E, 1>(value).GetString();
}

/// The longest side of the bounding box, beside which coordinates are judged.
double Size(const host_Mesh& mesh) {
    const auto [low, high] = mesh.BoundingBox();
    return std::max({high[0] - low[0], high[1] - low[1], high[2] - low[2]});
}

/// "8723 (8700 TET4, 23 HEX8)".
std::string CellCounts(const host_Mesh& mesh) {
    std::string kinds;
    for (const auto* entry = omu_EnumTable<host_CellType, 1>::kEntries; entry->name; ++entry) {
        int count = 0;
        for (int cell = 0; cell < mesh.CellCount(); ++cell) {
            count += mesh.Type(cell) == entry->value ? 1 : 0;
        }
        if (count > 0) {
            kinds += (kinds.empty() ? "" : ", ") + std::to_string(count) + " " + entry->name;
        }
    }
    return std::to_string(mesh.CellCount()) + (kinds.empty() ? "" : " (" + kinds + ")");
}

/// Bars from the least possible value of a measure (the least there is, if it is unbounded or
/// below) to the greatest.
std::string Histogram(const host_QualitySummary& quality, host_QualityMeasure measure, int bins) {
    const bool isRatio = measure == host_QualityMeasure::EdgeRatio;
    const double low = isRatio ? 1 : std::min(0.0, quality.least);
    double high = isRatio ? quality.greatest : 1;
    if (!(high > low) || !std::isfinite(high)) {
        high = low + 1;
    }
    std::vector<int> counts(static_cast<std::size_t>(bins));
    for (const double value : quality.values) {
        const double place = std::floor((value - low) / (high - low) * bins);
        ++counts[static_cast<std::size_t>(std::clamp(place, 0.0, bins - 1.0))];
    }
    const int most = *std::max_element(counts.begin(), counts.end());
    std::string text;
    for (int bin = 0; bin < bins; ++bin) {
        const int count = counts[static_cast<std::size_t>(bin)];
        const auto bar = static_cast<std::size_t>((40LL * count + most - 1) / most);
        text += "    " + host_PadLeft(host_NumberText(low + (high - low) * bin / bins), 8) +
                " to " + host_PadRight(host_NumberText(low + (high - low) * (bin + 1) / bins), 8) +
                " " + host_PadLeft(std::to_string(count), 7) + (bar > 0 ? " " : "") +
                std::string(bar, '#') + "\n";
    }
    return text;
}

std::string QualityText(const host_Mesh& mesh, const std::vector<int>& cells,
                        const host_ReportOptions& options) {
    const host_QualitySummary quality(mesh, cells, options.measure, options.worst);
    const double size = Size(mesh);
    std::string text = "\n  Quality of cells by " + ConstantName(options.measure) +
                       ", 1 is ideal\n" + Line("least", host_NumberText(quality.least)) +
                       Line("mean", host_NumberText(quality.mean)) +
                       Line("greatest", host_NumberText(quality.greatest)) +
                       Histogram(quality, options.measure, options.bins);
    if (!quality.worst.empty()) {
        text += "  The worst cells, numbered from 0\n";
    }
    for (const std::size_t place : quality.worst) {
        const int cell = cells[place];
        text += "    cell " + host_PadLeft(std::to_string(cell), 7) + "  " +
                host_PadRight(host_NumberText(quality.values[place]), 10) + " about " +
                Texts(mesh.Middle(cell), size) + "\n";
    }
    return text;
}

/// Volume, mass, centre and inertia; surface cells have none.
std::string SolidText(const host_Part& part, const host_ReportOptions& options) {
    const host_PartMass found(part, options.density);
    if (found.IsSurface()) {
        return Line("volume", "none, all cells are surface cells");
    }
    const double size = Size(part.Mesh());
    const std::string& length = options.lengthUnit;
    const std::string& mass = options.massUnit;
    std::string text = Line("volume", host_NumberText(found.Volume()), Power(length, "^3"));
    if (found.WithoutDensity() > 0) {
        return text + Line("mass", "none, " + std::to_string(found.WithoutDensity()) +
                                       " solid cells have no material with a density");
    }
    const std::string inertiaUnit =
        mass.empty() || length.empty() ? "" : mass + " " + length + "^2";
    const auto [xx, yy, zz, xy, yz, xz] = found.Inertia(found.Centre());
    return text + Line("mass", host_NumberText(found.Mass()), mass) +
           Line("centre of mass", Texts(found.Centre(), size), length) +
           Line("inertia about it", "Ixx, Iyy, Izz = " + Texts({xx, yy, zz}, xx + yy + zz),
                inertiaUnit) +
           Line("", "Ixy, Iyz, Ixz = " + Texts({xy, yz, xz}, xx + yy + zz), inertiaUnit);
}

std::string MaterialText(const host_Part& part) {
    std::string text =
        part.Get().materials.empty() ? "" : "\n  Materials, of which the last counts\n";
    for (const auto& [group, material] : part.Get().materials) {
        text += "    " + host_PadRight(group.IsEmpty() ? "(whole part)" : group.Std(), 18) +
                material.Std() + "\n";
    }
    return text;
}

std::string FieldText(const host_Part& part) {
    std::string text = part.Get().fields.empty() ? "" : "\n  Fields\n";
    for (const auto& [name, field] : part.Get().fields) {
        const auto [low, high] = field->Range(host_Component::Magnitude);
        text += "    " + host_PadRight(name.Std(), 18) +
                host_PadRight(ConstantName(field->position), 6) +
                (field->components == 1 ? "numbers, " : "vectors of length ") +
                host_NumberText(low) + " to " + host_NumberText(high) + "\n";
    }
    return text;
}

std::string GroupText(const host_Part& part, const std::string& volumeUnit) {
    std::string text = part.Get().groups.empty() ? "" : "\n  Groups of cells\n";
    std::size_t width = 16;
    for (const auto& group : part.Get().groups) {
        width = std::max(width, group.first.Std().size() + 2);
    }
    for (const auto& [name, cells] : part.Get().groups) {
        text += "    " + host_PadRight(name.Std(), width) +
                host_PadLeft(std::to_string(cells->size()), 7) + " cells, volume " +
                host_NumberText(part.Mesh().Moments(*cells).volume) +
                (volumeUnit.empty() ? "" : " " + volumeUnit) + "\n";
    }
    return text;
}

}  // namespace

host_QualitySummary::host_QualitySummary(const host_Mesh& mesh, const std::vector<int>& cells,
                                         host_QualityMeasure measure, int worstCount) {
    values.reserve(cells.size());
    host_Progress progress("Judging cells", cells.size());
    for (const int cell : cells) {
        progress.Count();
        values.push_back(mesh.Quality(cell, measure));
    }
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    least = *low;
    greatest = *high;
    mean = std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());

    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const std::size_t count = std::min(order.size(), static_cast<std::size_t>(worstCount));
    const auto middle = order.begin() + static_cast<std::ptrdiff_t>(count);
    const double sign = measure == host_QualityMeasure::EdgeRatio ? -1 : 1;
    host_Progress sorting("Sorting cells");
    std::partial_sort(order.begin(), middle, order.end(), [&](std::size_t a, std::size_t b) {
        sorting.Count();
        return values[a] == values[b] ? a < b : sign * values[a] < sign * values[b];
    });
    worst.assign(order.begin(), middle);
}

std::string host_PartReport(const host_Part& part, const host_ReportOptions& options) {
    const host_Mesh& mesh = part.Mesh();
    const std::vector<int> cells = part.Cells({});
    const auto box = mesh.BoundingBox();
    const double size = Size(mesh);
    const std::string& length = options.lengthUnit;

    std::string text =
        "Part '" + part.Name().Std() + "'\n" +
        Line("points", std::to_string(mesh.Points().size())) + Line("cells", CellCounts(mesh)) +
        Line("outer faces", std::to_string(mesh.OuterFaces().size())) +
        Line("bounding box", Texts(box.low, size) + " to " + Texts(box.high, size), length) +
        Line("surface area", host_NumberText(mesh.SurfaceArea()), Power(length, "^2")) +
        SolidText(part, options);
    if (!cells.empty()) {
        text += QualityText(mesh, cells, options);
    }
    return text + GroupText(part, Power(options.lengthUnit, "^3")) + MaterialText(part) +
           FieldText(part);
}
