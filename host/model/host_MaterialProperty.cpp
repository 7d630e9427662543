#include "host_MaterialProperty.h"

#include "omu_PrimNone.h"
#include "omu_StandardTraits.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr const char* kSource = "host/model/host_MaterialProperty";
constexpr const char* kTemperature = "temperature";

using Row = host_MaterialProperty::Row;

[[noreturn]] void Refuse(const std::string& message, int line) {
    omu_ValueErrorException(atr_String(message)).Throw(kSource, line);
}

std::string Indexed(const std::string& place, int row) {
    return place + "[" + std::to_string(row) + "]";
}

double Number(const mdl_PropertyTable& table, int row, int column) {
    return table.ConstGet<double>(row, column);
}

// --- Reading -----------------------------------------------------------------------------------

/// The rows of \p given, whatever their length.
std::vector<omu_PrimTuple> RowsOf(const host_MaterialProperty& property,
                                  const omu_Primitive& given) {
    if (omu_PrimCast<omu_PrimNumber>(given) != nullptr && property.Columns().size() == 1) {
        omu_PrimTuple row(1, omu_PrimSequence::kCode);
        row.Put(given.Copy());
        return {row};
    }
    omu_PrimTuple rows('(');
    if (!omu_ValueTraits<omu_PrimTuple>::Convert(given, rows)) {
        omu_KeywordTypeErrorException(property.name, "a sequence of rows " + property.ColumnNames(),
                                      given.TypeString(), "")
            .Throw(kSource, __LINE__);
    }
    rows.SetNestedErrorStr(property.name);
    if (rows.Length() > 0 && omu_PrimCast<omu_PrimNumber>(*rows.Index(0)) != nullptr) {
        return {rows};
    }
    std::vector<omu_PrimTuple> read(static_cast<std::size_t>(rows.Length()), omu_PrimTuple('('));
    rows.Begin();
    for (omu_PrimTuple& row : read) {
        rows.Get(row);
    }
    rows.End();
    return read;
}

// --- Interpolation -----------------------------------------------------------------------------

/// The rows [begin, end) without their temperatures.
std::vector<Row> Block(const mdl_PropertyTable& table, int begin, int end, int columns) {
    std::vector<Row> rows;
    for (int row = begin; row < end; ++row) {
        Row& values = rows.emplace_back();
        for (int column = 0; column < columns; ++column) {
            values.push_back(Number(table, row, column));
        }
    }
    return rows;
}

Row Blended(const Row& low, const Row& high, double weight) {
    Row row(low.size());
    std::transform(low.begin(), low.end(), high.begin(), row.begin(),
                   [weight](double a, double b) { return std::lerp(a, b, weight); });
    return row;
}

/// Where \p value lies from \p low to \p high, in [0, 1]; halved so that nothing overflows.
double Weight(double value, double low, double high) {
    return std::clamp((value / 2 - low / 2) / (high / 2 - low / 2), 0.0, 1.0);
}

/// The point of a curve at an argument, which is not below that of its first point.
Row PointAt(const std::vector<Row>& curve, double argument) {
    const auto above = std::find_if(curve.begin(), curve.end(),
                                    [&](const Row& row) { return row.back() > argument; });
    if (above == curve.end()) {
        return curve.back();
    }
    const Row& low = *(above - 1);
    return Blended(low, *above, Weight(argument, low.back(), above->back()));
}

std::vector<Row> BlendedCurves(const std::vector<Row>& low, const std::vector<Row>& high,
                               double weight) {
    std::vector<double> arguments;
    for (const std::vector<Row>* curve : {&low, &high}) {
        for (const Row& row : *curve) {
            arguments.push_back(row.back());
        }
    }
    std::sort(arguments.begin(), arguments.end());
    arguments.erase(std::unique(arguments.begin(), arguments.end()), arguments.end());
    std::vector<Row> rows;
    for (const double argument : arguments) {
        rows.push_back(Blended(PointAt(low, argument), PointAt(high, argument), weight));
        rows.back().back() = argument;
    }
    return rows;
}

}  // namespace

std::string host_MaterialProperty::ColumnNames() const {
    std::string names;
    for (const host_MaterialColumn& column : Columns()) {
        names += (names.empty() ? "(" : ", ") + std::string(column.name);
    }
    return names + "[, " + kTemperature + "])";
}

std::optional<mdl_PropertyTable> host_MaterialProperty::Read(const omu_Primitive& given) const {
    if (omu_PrimCast<omu_PrimNone>(given) != nullptr) {
        return {};
    }
    const std::vector<omu_PrimTuple> rows = RowsOf(*this, given);
    if (rows.empty()) {
        return {};
    }
    const int columns = static_cast<int>(Columns().size());
    const int length = rows.front().Length();
    if (length != columns && length != columns + 1) {
        Refuse(Indexed(name, 0) + " has " + std::to_string(length) + " values; a row is " +
                   ColumnNames(),
               __LINE__);
    }
    std::vector<mdl_PropertyColumn> all;
    for (const host_MaterialColumn& column : Columns()) {
        all.emplace_back(column.name, mdl_ColumnType::Float);
    }
    if (length > columns) {
        all.emplace_back(kTemperature, mdl_ColumnType::Float);
    }
    mdl_PropertyTable table(all);
    for (const omu_PrimTuple& row : rows) {
        if (row.Length() != length) {
            Refuse(Indexed(name, table.Rows()) + " has " + std::to_string(row.Length()) +
                       " values and " + Indexed(name, 0) + " has " + std::to_string(length),
                   __LINE__);
        }
        table.AddRow(row);
    }
    CheckNumbers(table, name);
    if (HasTemperature(table)) {
        table.Sort({mdl_PropertyTable::SortKey{columns}});
    }
    CheckOrder(table, name);
    return table;
}

void host_MaterialProperty::Check(const mdl_PropertyTable& table, const std::string& place) const {
    const auto columns = static_cast<int>(Columns().size());
    const auto isColumn = [&table](int column, const char* title) {
        return table.Column(column).name == title &&
               table.Column(column).Type() == mdl_ColumnType::Float;
    };
    bool isRight = table.Rows() > 0 && !table.AllowsEmptyFirstRow() &&
                   (table.Columns() == columns ||
                    (table.Columns() == columns + 1 && isColumn(columns, kTemperature)));
    for (int column = 0; isRight && column < columns; ++column) {
        isRight = isColumn(column, Columns()[static_cast<std::size_t>(column)].name);
    }
    if (!isRight) {
        Refuse(place + " is not a table of " + ColumnNames(), __LINE__);
    }
    CheckNumbers(table, place);
    CheckOrder(table, place);
}

void host_MaterialProperty::CheckNumbers(const mdl_PropertyTable& table,
                                         const std::string& place) const {
    for (int column = 0; column < table.Columns(); ++column) {
        const bool isTemperature = static_cast<std::size_t>(column) == Columns().size();
        const omu_RangeChecker range =
            isTemperature ? omu_RangeChecker() : Columns()[static_cast<std::size_t>(column)].range;
        for (int row = 0; row < table.Rows(); ++row) {
            const double number = Number(table, row, column);
            if (std::isfinite(number) && range.Accepts(number)) {
                continue;
            }
            const bool isOnly = !isTemperature && Columns().size() == 1;
            const std::string what =
                (isOnly ? "" : table.Column(column).name.Std() + " of ") + Indexed(place, row);
            if (!std::isfinite(number)) {
                Refuse(what + " is not finite", __LINE__);
            }
            range.Check(atr_String(what), number);
        }
    }
}

void host_MaterialProperty::CheckOrder(const mdl_PropertyTable& table,
                                       const std::string& place) const {
    const int last = static_cast<int>(Columns().size()) - 1;
    const bool hasTemperature = HasTemperature(table);
    const auto text = [](double number) { return atr_StringBase::FromDouble(number); };
    for (int row = 0; row < table.Rows(); ++row) {
        const double temperature = hasTemperature ? Number(table, row, last + 1) : 0;
        const double before = hasTemperature && row > 0 ? Number(table, row - 1, last + 1) : 0;
        const bool isFirst = row == 0 || temperature != before;
        const auto at = [&] {
            return hasTemperature ? " at temperature " + text(temperature) : std::string();
        };
        if (row > 0 && temperature < before) {
            Refuse(place + " is not sorted by temperature", __LINE__);
        }
        if (!isCurve) {
            if (!isFirst) {
                Refuse(place + " has several rows" +
                           (hasTemperature ? at()
                                           : ", but no temperatures; a row is " + ColumnNames()),
                       __LINE__);
            }
            continue;
        }
        const double argument = Number(table, row, last);
        const auto what = [&] { return Columns().back().name + (" of " + place) + at(); };
        if (isFirst && argument != 0) {
            Refuse(what() + " begins with " + text(argument) + ", not with 0", __LINE__);
        }
        if (!isFirst && !(argument > Number(table, row - 1, last))) {
            Refuse(what() + " does not ascend: " + text(argument) + " comes after " +
                       text(Number(table, row - 1, last)),
                   __LINE__);
        }
    }
}

std::vector<Row> host_MaterialProperty::At(const mdl_PropertyTable& table,
                                           double temperature) const {
    const int columns = static_cast<int>(Columns().size());
    const int rows = table.Rows();
    if (!HasTemperature(table)) {
        return Block(table, 0, rows, columns);
    }
    const auto temperatureOf = [&](int row) { return Number(table, row, columns); };
    const auto endOf = [&](int row) {  // of the rows that have its temperature
        int end = row + 1;
        while (end < rows && temperatureOf(end) == temperatureOf(row)) {
            ++end;
        }
        return end;
    };
    int low = 0;
    int high = endOf(low);
    while (high < rows && temperatureOf(high) <= temperature) {
        low = high;
        high = endOf(low);
    }
    std::vector<Row> below = Block(table, low, high, columns);
    if (high == rows || temperature <= temperatureOf(low)) {
        return below;
    }
    const std::vector<Row> above = Block(table, high, endOf(high), columns);
    const double weight = Weight(temperature, temperatureOf(low), temperatureOf(high));
    if (isCurve) {
        return BlendedCurves(below, above, weight);
    }
    return {Blended(below.front(), above.front(), weight)};
}

std::size_t host_FindMaterialProperty(const cow_String& name) {
    std::string known;
    for (const host_MaterialProperty& property : host_kMaterialProperties) {
        if (name == property.name) {
            return static_cast<std::size_t>(&property - host_kMaterialProperties);
        }
        known += (known.empty() ? "" : ", ") + std::string(property.name);
    }
    Refuse("materials have no property '" + name.Std() + "'; there are " + known, __LINE__);
}
