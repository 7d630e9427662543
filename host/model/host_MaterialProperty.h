#pragma once

#include "mdl_PropertyTable.h"
#include "omu_RangeChecker.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// What a column of a property holds. Its numbers are finite whatever the range.
struct host_MaterialColumn {
    const char* name = nullptr;
    omu_RangeChecker range{};
};

/// A property that a material can have: a table of numbers that may depend on the temperature.
///
/// A table of it has the property's columns and, where it depends on the temperature, one column
/// more; its rows then are sorted by temperature. Each row has a temperature of its own, except
/// where the property is a curve: there the rows of one temperature are the points of a curve over
/// the last column, which begins at 0 and ascends.
struct host_MaterialProperty {
    using Row = std::vector<double>;

    const char* name;  ///< of the attribute and the parameter, and in saved models
    std::array<host_MaterialColumn, 2> allColumns;
    const char* help;
    bool isCurve = false;

    [[nodiscard]] constexpr std::span<const host_MaterialColumn> Columns() const noexcept {
        return {allColumns.data(), allColumns[1].name == nullptr ? 1U : 2U};
    }
    /// "(yield stress, plastic strain[, temperature])": what a row is.
    [[nodiscard]] std::string ColumnNames() const;
    /// Whether there is a temperature in the rows of a table of this property.
    [[nodiscard]] bool HasTemperature(const mdl_PropertyTable& table) const noexcept {
        return table.Columns() > static_cast<int>(Columns().size());
    }

    /// The table of rows as a script gives them: a sequence of rows, one row alone, or its only
    /// number; none for an empty sequence or None. Whatever does not fit raises a script error.
    [[nodiscard]] std::optional<mdl_PropertyTable> Read(const omu_Primitive& given) const;
    /// Raises a script error unless \p table is one of this property, with at least one row.
    /// \p place names it in messages.
    void Check(const mdl_PropertyTable& table, const std::string& place) const;

    /// The values at a temperature, without it: linear between the temperatures of the table,
    /// constant outside. One row, or the points of a curve, which is linear between its points and
    /// constant behind the last one.
    [[nodiscard]] std::vector<Row> At(const mdl_PropertyTable& table, double temperature) const;

private:
    void CheckNumbers(const mdl_PropertyTable& table, const std::string& place) const;
    void CheckOrder(const mdl_PropertyTable& table, const std::string& place) const;
};

inline constexpr omu_RangeChecker host_kPositive = omu_RangeChecker().Above(0);

/// All there are. Their names stand in saved models; new ones come behind the last.
inline constexpr host_MaterialProperty host_kMaterialProperties[] = {
    {"density", {{{"density", host_kPositive}}}, "mass of one unit of volume"},
    {"elastic",
     {{{"Young's modulus", host_kPositive},
       {"Poisson's ratio", omu_RangeChecker().Above(-1).Below(0.5)}}},
     "isotropic elasticity"},
    {"expansion", {{{"coefficient"}}}, "strain by thermal expansion, by degree"},
    {"conductivity", {{{"conductivity", host_kPositive}}}, "conduction of heat"},
    {"specificHeat", {{{"specific heat", host_kPositive}}}, "heat by unit of mass and degree"},
    {"plastic",
     {{{"yield stress", host_kPositive}, {"plastic strain", omu_RangeChecker().AtLeast(0)}}},
     "hardening curve: yield stress over plastic strain, from 0 upward",
     true},
};
inline constexpr std::size_t host_kMaterialPropertyCount = std::size(host_kMaterialProperties);

/// The place of a property among all. An unknown name: omu_ValueErrorException with those there
/// are.
[[nodiscard]] std::size_t host_FindMaterialProperty(const cow_String& name);
