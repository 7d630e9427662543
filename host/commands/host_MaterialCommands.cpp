#include "host_MaterialCommands.h"

#include "host_Material.h"
#include "host_MemberArgument.h"
#include "host_ModelRules.h"
#include "host_Part.h"
#include "host_Progress.h"
#include "host_ReportText.h"
#include "host_TextTable.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr const char* kSource = "host/commands/host_MaterialCommands";

host_Model& Model() { return host_Model::Instance(); }

omu_Primitive* AddMaterial(const omu_TarvexName& name, host_MaterialContent content) {
    return new omu_PrimWrapper(
        &Model().Add(std::make_unique<host_Material>(name.AsString(), std::move(content))));
}

omu_Primitive* Material(omu_Arguments& args) {
    omu_TarvexName name;
    host_MaterialContent content;
    std::array<omu_PrimHolder, host_kMaterialPropertyCount> given;
    args.Begin();
    args.Get(name, "name");
    args.Optional();
    args.Get(content.description, "description");
    for (std::size_t i = 0; i < given.size(); ++i) {
        args.Get(given[i], host_kMaterialProperties[i].name);
    }
    args.End();
    for (std::size_t i = 0; i < given.size(); ++i) {
        if (given[i]) {
            content.tables[i] = host_kMaterialProperties[i].Read(*given[i]);
        }
    }
    return AddMaterial(name, std::move(content));
}

omu_Primitive* CopyMaterial(omu_Arguments& args) {
    omu_TarvexName name;
    args.Begin();
    const cow_String source = host_GetName<host_Material>(args, "material");
    args.Get(name, "name");
    args.End();
    host_MaterialContent content = Model().Find<host_Material>(source).Get();
    for (auto& table : content.tables) {
        if (table) {
            table->NewUid();
        }
    }
    return AddMaterial(name, std::move(content));
}

omu_Primitive* DeleteMaterial(omu_Arguments& args) {
    host_RemoveMember(host_GetOnlyMember<host_Material>(args, "material"));
    return nullptr;
}

/// The next argument is a material, its name, or None for the empty name.
cow_String GetMaterialOrNone(omu_Arguments& args, const char* keyword) {
    const omu_Primitive* given = host_Given(args, args.Cursor(), keyword);
    if (given != nullptr && omu_PrimCast<omu_PrimNone>(*given) != nullptr) {
        omu_PrimNone none;
        args.Get(none, keyword);
        return {};
    }
    return host_GetName<host_Material>(args, keyword);
}

omu_Primitive* AssignMaterial(omu_Arguments& args) {
    cow_String group;
    args.Begin();
    const cow_String partName = host_GetName<host_Part>(args, "part");
    const cow_String material = GetMaterialOrNone(args, "material");
    args.Optional();
    args.Get(group, "group");
    args.End();
    auto& part = Model().Find<host_Part>(partName);
    (void)part.Cells(group);  // an unknown group is an error
    if (!material.IsEmpty()) {
        (void)Model().Find<host_Material>(material);
    }
    auto& assigned = part.Edit().materials;
    std::erase_if(assigned, [&](const auto& entry) { return entry[0] == group; });
    if (!material.IsEmpty()) {
        assigned.push_back({group, material});
    }
    return nullptr;
}

omu_PrimTuple* RowTuple(const host_MaterialProperty::Row& row) {
    return omu_MakeTuple(static_cast<int>(row.size()), [&](int i) {
        return new omu_PrimNumber(row[static_cast<std::size_t>(i)]);
    });
}

omu_Primitive* MaterialValue(omu_Arguments& args) {
    cow_String propertyName;
    double temperature = 0;
    args.Begin();
    const cow_String name = host_GetName<host_Material>(args, "material");
    args.Get(propertyName, "property");
    args.Get(temperature, "temperature");
    args.End();
    const auto& material = Model().Find<host_Material>(name);
    const std::size_t place = host_FindMaterialProperty(propertyName);
    const host_MaterialProperty& property = host_kMaterialProperties[place];
    if (std::isnan(temperature)) {
        host_RefuseValue("temperature is not a number", kSource, __LINE__);
    }
    const mdl_PropertyTable* table = material.Table(place);
    if (table == nullptr) {
        host_RefuseValue(material.AsString(0).Std() + " has no " + property.name, kSource,
                         __LINE__);
    }
    const auto rows = property.At(*table, temperature);
    if (!property.isCurve) {
        return RowTuple(rows.front());
    }
    return omu_MakeTuple(static_cast<int>(rows.size()),
                         [&](int i) { return RowTuple(rows[static_cast<std::size_t>(i)]); });
}

// --- The table ---------------------------------------------------------------------------------

std::string TableText(const mdl_PropertyTable& table) {
    std::vector<std::vector<std::string>> lines(static_cast<std::size_t>(table.Rows()) + 1);
    for (int column = 0; column < table.Columns(); ++column) {
        lines[0].push_back(table.Column(column).name.Std());
        for (int row = 0; row < table.Rows(); ++row) {
            lines[static_cast<std::size_t>(row) + 1].push_back(
                host_NumberText(table.ConstGet<double>(row, column)));
        }
    }
    return host_TextTable(lines, 1);
}

omu_Primitive* MaterialTable(omu_Arguments& args) {
    const auto& material = host_GetOnlyMember<host_Material>(args, "material");
    std::string text = material.AsString(0).Std() + "\n";
    if (const std::string about = material.Get().description.Std(); !about.empty()) {
        text += "  " + about + "\n";
    }
    const std::size_t headLength = text.size();
    for (std::size_t i = 0; i < host_kMaterialPropertyCount; ++i) {
        if (const mdl_PropertyTable* table = material.Table(i)) {
            const host_MaterialProperty& property = host_kMaterialProperties[i];
            text +=
                std::string("\n") + property.name + ", " + property.help + "\n" + TableText(*table);
        }
    }
    host_Print(text.size() > headLength ? text : text + "  no properties\n");
    return nullptr;
}

// --- Declarations ------------------------------------------------------------------------------

std::vector<host_Parameter> MaterialParameters() {
    std::vector<host_Parameter> parameters = {
        {"name", "str", "a legal name; legalName makes one", "", {}},
        {"description", "str", "what the material is", "''", {}}};
    for (const host_MaterialProperty& property : host_kMaterialProperties) {
        parameters.push_back(
            {property.name, "rows " + property.ColumnNames(), property.help, "()", {}});
    }
    return parameters;
}

}  // namespace

void host_RegisterMaterialCommands(host_CommandTable& table) {
    const host_Parameter material = host_MemberParameter<host_Material>("material", "a material");
    const host_Parameter part = host_MemberParameter<host_Part>("part", "a part");
    const host_Parameter name{"name", "str", "a legal name", "", {}};
    std::string properties;
    for (const host_MaterialProperty& property : host_kMaterialProperties) {
        properties += (properties.empty() ? "" : ", ") + std::string(property.name);
    }
    table.AddChange(
        {"material",
         "Makes a material and returns it.\n"
         "A property is a sequence of rows; one row may stand alone, and so may its only number.\n"
         "Where it depends on the temperature, each row has that as one value more, and the rows\n"
         "are sorted by it; no temperature comes twice. Points of a hardening curve begin at a\n"
         "plastic strain of 0, which ascends; rows of one temperature make one curve.",
         MaterialParameters(), Material});
    table.AddChange({"copyMaterial",
                     "Makes a material like another one, under a name of its own, and returns it.",
                     {material, name},
                     CopyMaterial});
    table.AddChange({"deleteMaterial",
                     "Removes a material, which must not be assigned to a part.",
                     {material},
                     DeleteMaterial});
    table.AddChange(
        {"assignMaterial",
         "Assigns a material to a part or to a group of its cells.\n"
         "Of several assignments that have a cell the last one made counts. Where a group, or\n"
         "the part, has one already, that is replaced.",
         {part,
          host_MemberParameter<host_Material>("material", "a material; None or '' takes it away"),
          {"group", "str", "name of a group of its cells; the whole part by default", "''", {}}},
         AssignMaterial});
    table.Add({"materialValue",
               "Returns a property at a temperature: a tuple of its row, without the temperature.\n"
               "Values are linear between the temperatures given and constant outside. Of a\n"
               "hardening curve: its points, a tuple of rows.",
               {material,
                {"property", "str", properties, "", {}},
                {"temperature", "float", "the temperature", "", {}}},
               MaterialValue,
               false});
    table.Add({"materialTable", "Prints the properties of a material.", {material}, MaterialTable});
}
