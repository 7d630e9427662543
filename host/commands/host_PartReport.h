#pragma once

#include "host_Part.h"

#include <optional>
#include <string>

/// What a report shows beside the part itself.
struct host_ReportOptions {
    std::optional<double> density;  ///< nothing: that of each cell's material, see host_PartMass
    std::string lengthUnit;         ///< empty: numbers stand alone
    std::string massUnit;
    host_QualityMeasure measure = host_QualityMeasure::ScaledJacobian;
    int worst = 5;  ///< how many of the worst cells are listed
    int bins = 10;  ///< bars of the histogram
};

/// Quality of all \p cells by one measure.
struct host_QualitySummary {
    std::vector<double> values;  ///< in the order of the cells
    double least, mean, greatest;
    std::vector<std::size_t> worst;  ///< places in values, worst first

    /// \p cells is not empty; \p worstCount is cut to their number. Of equal cells the first in
    /// order counts as worse.
    host_QualitySummary(const host_Mesh& mesh, const std::vector<int>& cells,
                        host_QualityMeasure measure, int worstCount);
};

/// A readable text, lines ended by '\n'. Numbers have six significant digits.
[[nodiscard]] std::string host_PartReport(const host_Part& part, const host_ReportOptions& options);
