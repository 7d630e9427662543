#include "host_Part.h"

#include "host_Material.h"
#include "host_Model.h"
#include "host_Progress.h"
#include "omu_ErrorExceptions.h"

#include <numeric>

namespace {

constexpr const char* kSource = "host/model/host_Part";

[[noreturn]] void Refuse(const std::string& message, int line) {
    omu_ValueErrorException(atr_String(message)).Throw(kSource, line);
}

template <class Map>
const auto& FindNamed(const Map& entries, const char* noun, const cow_String& name, int line) {
    const auto found = entries.find(name);
    if (found == entries.end()) {
        omu_KeyErrorException(atr_String(std::string("no ") + noun + " '" + name.Std() + "'"))
            .Throw(kSource, line);
    }
    return found->second;
}

template <class Map>
cow_List<cow_String> NamesOf(const Map& entries) {
    cow_List<cow_String> names;
    for (const auto& entry : entries) {
        names.Append(entry.first);
    }
    return names;
}

/// Whether the numbers ascend and lie in [0, count).
bool AreAscending(const std::vector<int>& numbers, std::size_t count) {
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (numbers[i] < (i == 0 ? 0 : numbers[i - 1] + 1)) {
            return false;
        }
    }
    return numbers.empty() || static_cast<std::size_t>(numbers.back()) < count;
}

}  // namespace

// --- How it is stored --------------------------------------------------------------------------

void host_PartContent::MeshField::Write(const cls_WriteVisitor& visitor, const char* name,
                                        const Mesh& mesh) {
    const std::vector<host_Point>& points = mesh->Points();
    const auto cells = static_cast<std::size_t>(mesh->CellCount());
    std::vector<int> types;
    std::vector<int> nodes;
    types.reserve(cells);
    nodes.reserve(8 * cells);
    host_Progress progress("Writing the mesh", host_Work{cells});
    for (int cell = 0; cell < mesh->CellCount(); ++cell) {
        progress.Count();
        types.push_back(static_cast<int>(mesh->Type(cell)));
        const std::span<const int> own = mesh->Nodes(cell);
        nodes.insert(nodes.end(), own.begin(), own.end());
    }
    const auto list = visitor.List(name, 3);
    list->Write("", std::span<const double>(points.front().data(), 3 * points.size()));
    list->Write("", std::span<const int>(types));
    list->Write("", std::span<const int>(nodes));
}

void host_PartContent::MeshField::Read(const cls_ReadVisitor& visitor, const char* name,
                                       Mesh& mesh) {
    std::vector<double> coordinates;
    std::vector<int> types;
    std::vector<int> nodes;
    const auto list = visitor.List(name);
    list->Read("", coordinates);
    list->Read("", types);
    list->Read("", nodes);
    if (coordinates.size() % 3 != 0) {
        Refuse("a stored mesh has an incomplete point", __LINE__);
    }
    std::vector<host_Point> points(coordinates.size() / 3);
    for (std::size_t i = 0; i < coordinates.size(); ++i) {
        points[i / 3][i % 3] = coordinates[i];
    }
    auto made = std::make_shared<host_Mesh>(std::move(points));
    constexpr int kTypes =
        static_cast<int>(std::size(omu_EnumTable<host_CellType, 1>::kEntries)) - 1;
    // Cells of one type that follow each other are added at once.
    std::span<const int> left(nodes);
    for (std::size_t cell = 0; cell < types.size();) {
        if (types[cell] < 0 || types[cell] >= kTypes) {
            Refuse("a stored mesh has a cell of the unknown type " + std::to_string(types[cell]),
                   __LINE__);
        }
        const auto type = static_cast<host_CellType>(types[cell]);
        std::size_t end = cell;
        while (end < types.size() && types[end] == types[cell]) {
            ++end;
        }
        const std::size_t count =
            (end - cell) * static_cast<std::size_t>(host_Mesh::NodeCount(type));
        if (count > left.size()) {
            Refuse("a stored mesh lacks nodes of its cells", __LINE__);
        }
        made->AddCells(type, left.first(count));
        left = left.subspan(count);
        cell = end;
    }
    if (!left.empty()) {
        Refuse("a stored mesh has nodes without cells", __LINE__);
    }
    mesh = std::move(made);
}

void host_PartContent::FieldField::Write(const cls_WriteVisitor& visitor, const char* name,
                                         const Field& field) {
    const auto list = visitor.List(name, 3);
    list->Write("", static_cast<int>(field->position));
    list->Write("", static_cast<int>(field->components));
    list->Write("", std::span<const double>(field->values));
}

void host_PartContent::FieldField::Read(const cls_ReadVisitor& visitor, const char* name,
                                        Field& field) {
    const auto list = visitor.List(name);
    int position = 0;
    int components = 0;
    host_Field read;
    list->Read("", position);
    list->Read("", components);
    list->Read("", read.values);
    if (position < 0 || position > static_cast<int>(host_FieldPosition::Cells) ||
        (components != 1 && components != 3)) {
        Refuse("a stored field is at position " + std::to_string(position) + " with " +
                   std::to_string(components) + " components",
               __LINE__);
    }
    read.position = static_cast<host_FieldPosition>(position);
    read.components = static_cast<std::size_t>(components);
    field = std::make_shared<const host_Field>(std::move(read));
}

void host_PartContent::MaterialsField::Write(const cls_WriteVisitor& visitor, const char* name,
                                             const Materials& assigned) {
    const auto list = visitor.List(name, static_cast<int>(2 * assigned.size()));
    for (const auto& [group, material] : assigned) {
        list->Write("", group);
        list->Write("", material);
    }
}

void host_PartContent::MaterialsField::Read(const cls_ReadVisitor& visitor, const char* name,
                                            Materials& assigned) {
    const auto list = visitor.List(name);
    for (int left = list->Count(); left > 0; left -= 2) {
        auto& [group, material] = assigned.emplace_back();
        list->Read("", group);
        list->Read("", material);
    }
}

// --- The part ----------------------------------------------------------------------------------

template class host_MemberOf<host_Part, host_PartContent>;

host_Part::host_Part(cow_String name, host_Mesh mesh)
    : host_MemberOf(std::move(name),
                    {std::make_shared<const host_Mesh>(std::move(mesh)), {}, {}, {}, {}}) {}

host_Part::host_Part(const cls_ReadVisitor& visitor) : host_MemberOf(visitor) { Check(); }

void host_Part::Check() const {
    const std::string of = " of the stored part '" + Name().Std() + "'";
    if (Get().mesh == nullptr) {
        Refuse("there is no mesh" + of, __LINE__);
    }
    const std::size_t points = Mesh().Points().size();
    const auto cells = static_cast<std::size_t>(Mesh().CellCount());
    const auto check = [&of](const auto& sets, std::size_t count, const char* what) {
        for (const auto& [name, numbers] : sets) {
            if (!AreAscending(*numbers, count)) {
                Refuse(what + (" '" + name.Std()) + "'" + of + " does not fit its mesh", __LINE__);
            }
        }
    };
    check(Get().groups, cells, "group");
    check(Get().nodeSets, points, "node set");
    for (const auto& [group, material] : Get().materials) {
        if (!group.IsEmpty() && !Get().groups.contains(group)) {
            Refuse("material '" + material.Std() + "'" + of + " is assigned to the group '" +
                       group.Std() + "', which is not there",
                   __LINE__);
        }
    }
    for (const auto& [name, field] : Get().fields) {
        const std::size_t count = field->position == host_FieldPosition::Nodes ? points : cells;
        if (field->values.size() != count * field->components) {
            Refuse("field '" + name.Std() + "'" + of + " does not fit its mesh", __LINE__);
        }
    }
}

const omu_InterfaceType& host_Part::StaticType() {
    static const omu_InterfaceType type =
        omu_InterfaceType("Part", &host_Member::StaticType())
            .Help("A part of the model: a mesh under a name. Commands take it, or its name.")
            .Attribute("points", &host_Part::PointCount)
            .Help("number of its points")
            .Attribute("cells", &host_Part::CellCount)
            .Help("number of its cells")
            .Attribute("groups", &host_Part::GroupNames)
            .Help("names of its groups of cells")
            .Attribute("nodeSets", &host_Part::NodeSetNames)
            .Help("names of its sets of nodes")
            .Attribute("fields", &host_Part::FieldNames)
            .Help("names of its fields")
            .Attribute("materials", &host_Part::Materials)
            .Help(
                "its materials: (group, material) in the order of assignment, '' for the whole\n"
                "part; the last one that has a cell counts");
    return type;
}

std::vector<int> host_Part::Cells(const cow_String& group) const {
    if (group.IsEmpty()) {
        std::vector<int> all(static_cast<std::size_t>(Mesh().CellCount()));
        std::iota(all.begin(), all.end(), 0);
        return all;
    }
    return *FindNamed(Get().groups, "group", group, __LINE__);
}

const std::vector<int>& host_Part::Nodes(const cow_String& set) const {
    return *FindNamed(Get().nodeSets, "node set", set, __LINE__);
}

const std::shared_ptr<const host_Field>& host_Part::Field(const cow_String& field) const {
    return FindNamed(Get().fields, "field", field, __LINE__);
}

cow_List<cow_String> host_Part::GroupNames() const { return NamesOf(Get().groups); }
cow_List<cow_String> host_Part::NodeSetNames() const { return NamesOf(Get().nodeSets); }
cow_List<cow_String> host_Part::FieldNames() const { return NamesOf(Get().fields); }

omu_PrimTuple host_Part::Materials() const {
    omu_PrimTuple materials(static_cast<int>(Get().materials.size()), omu_PrimSequence::kCode);
    for (const auto& [group, material] : Get().materials) {
        omu_PrimTuple pair(2, omu_PrimSequence::kCode);
        pair.Put(group);
        pair.Put(&host_Model::Instance().Find<host_Material>(material));
        materials.Put(pair);
    }
    return materials;
}

unsigned long long host_Part::NextSerial() noexcept {
    static unsigned long long last = 0;
    return ++last;
}
