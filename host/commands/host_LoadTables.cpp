#include "host_LoadTables.h"

#include "host_Load.h"
#include "host_Model.h"
#include "host_ReportText.h"
#include "host_TextTable.h"

namespace {

using Row = std::vector<std::string>;

/// A row: its name, and a cell for each of \p items.
template <class Items, class CellOf>
Row MakeRow(std::string name, const Items& items, const CellOf& cellOf) {
    Row row{std::move(name)};
    for (const auto& item : items) {
        row.push_back(cellOf(item));
    }
    return row;
}

template <class E>
std::string ConstantName(E value) {
    return omu_PrimEnum<E, 1>(value).GetString();
}

std::string StatusOf(const host_LoadInStep& now) { return ConstantName(now.status); }

std::string StepName(const host_Step* step) { return step->Name().Std(); }

std::string ValueText(double value) { return host_NumberText(value); }
std::string ValueText(const cow_String& value) { return "'" + value.Std() + "'"; }

constexpr const char* kLegend =
    "\ns: set in this step   c: carried over from the step before   f: freed in this step   "
    "-: no value\n";

/// A value and, behind it, its state.
template <class T>
std::string Cell(const mdl_PropAttr<T>& attribute) {
    if (attribute.IsFree()) {
        return attribute == FREED ? "f" : "-";
    }
    return ValueText(attribute.ConstGet()) + (attribute == SET ? " s" : " c");
}

/// A row of the cells of the attribute that \p attributeOf gives, blank where the load does not
/// act.
template <class AttributeOf>
Row AttributeRow(const char* name, const std::vector<host_LoadInStep>& history,
                 const AttributeOf& attributeOf) {
    return MakeRow(name, history, [&](const host_LoadInStep& now) {
        return mdl_activePropagationStatus(now.status) ? Cell(attributeOf(now.state))
                                                       : std::string();
    });
}

std::string OneLoadTable(const host_Load& load, const std::vector<host_Step*>& steps) {
    const std::vector<host_LoadInStep> history = load.History();
    std::vector<Row> rows{MakeRow("step", steps, StepName), MakeRow("status", history, StatusOf)};
    for (std::size_t i = 0; i < load.KindRow().Components().size(); ++i) {
        rows.push_back(
            AttributeRow(load.KindRow().names[i], history,
                         [i](const host_LoadState& state) { return state.components[i]; }));
    }
    rows.push_back(AttributeRow("amplitude", history,
                                [](const host_LoadState& state) { return state.amplitude; }));
    return load.AsString(0).Std() + ": " + ConstantName(load.Get().kind) + " on " +
           load.RegionText() + "\n" + host_TextTable(rows, 2);
}

}  // namespace

std::string host_StepTable() {
    const std::vector<host_Step*> steps = host_Model::Instance().All<host_Step>();
    if (steps.empty()) {
        return "The model has no steps.\n";
    }
    std::vector<Row> rows{
        MakeRow("step", steps, StepName),
        MakeRow("procedure", steps,
                [](const host_Step* step) { return ConstantName(step->Get().procedure); }),
        MakeRow("period", steps,
                [](const host_Step* step) { return host_NumberText(step->Get().period); })};
    const std::size_t headings = rows.size();
    for (const host_Load* load : host_Model::Instance().All<host_Load>()) {
        rows.push_back(MakeRow(load->Name().Std(), load->History(), StatusOf));
    }
    return host_TextTable(rows, headings);
}

std::string host_LoadTable(std::span<const host_Load* const> loads) {
    if (loads.empty()) {
        return "The model has no loads.\n";
    }
    const std::vector<host_Step*> steps = host_Model::Instance().All<host_Step>();
    std::string text;
    for (const host_Load* load : loads) {
        text += (text.empty() ? "" : "\n") + OneLoadTable(*load, steps);
    }
    return text + kLegend;
}
