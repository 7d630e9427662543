#include "host_MeshCommands.h"

#include "host_CommandTools.h"
#include "host_MemberArgument.h"
#include "host_ModelRules.h"
#include "host_PartMass.h"
#include "host_PartReport.h"
#include "host_Progress.h"
#include "omu_Get.h"
#include "omu_RangeChecker.h"

#include <algorithm>
#include <memory>
#include <string>

namespace {

constexpr const char* kSource = "host/commands/host_MeshCommands";

[[noreturn]] void RefuseValue(const std::string& message, int line) {
    host_RefuseValue(message, kSource, line);
}

// --- Reading -----------------------------------------------------------------------------------

/// Adds an array of shape (n, nodes of a cell). Without a type the number of nodes decides.
void AddBlock(host_Mesh& mesh, const omu_PrimArray& nodes, const host_CellType* type) {
    if (nodes.ElementType() != omu_PrimNumber::INT || nodes.Dimensions() != 2) {
        RefuseValue("cells of one type are an array of int of two dimensions, cell by cell",
                    __LINE__);
    }
    if (type != nullptr && host_Mesh::NodeCount(*type) != nodes.Dims()[1]) {
        RefuseValue(std::string(host_CellTypeConstant(*type).GetString()) + " cells have " +
                        std::to_string(host_Mesh::NodeCount(*type)) + " nodes, not " +
                        std::to_string(nodes.Dims()[1]),
                    __LINE__);
    }
    mesh.AddCells(type != nullptr ? *type : host_Mesh::TypeOf(nodes.Dims()[1]), nodes.Ints());
}

/// The number that \p value is, if it is of type int, else null.
const omu_PrimNumber* IntOf(const omu_Primitive* value) {
    const auto* number = value != nullptr ? omu_PrimCast<omu_PrimNumber>(*value) : nullptr;
    return number != nullptr && number->DataType() == omu_PrimNumber::INT ? number : nullptr;
}

/// Adds cells (node, node, ...) if there is nothing else. Then no element can be of a wrong type,
/// and they are read where they are.
bool AddPlainCells(host_Mesh& mesh, const omu_PrimTuple& cells) {
    host_Progress progress("Reading cells", 2 * static_cast<std::size_t>(cells.Length()));
    for (int i = 0; i < cells.Length(); ++i) {
        progress.Count();
        const auto* cell = dynamic_cast<const omu_PrimTuple*>(cells.Index(i));
        if (cell == nullptr || cell->Length() == 2) {
            return false;
        }
        for (int j = 0; j < cell->Length(); ++j) {
            if (IntOf(cell->Index(j)) == nullptr) {
                return false;
            }
        }
    }
    std::vector<int> nodes;
    for (int i = 0; i < cells.Length(); ++i) {
        progress.Count();
        const auto& cell = static_cast<const omu_PrimTuple&>(*cells.Index(i));
        nodes.clear();
        for (int j = 0; j < cell.Length(); ++j) {
            nodes.push_back(IntOf(cell.Index(j))->AsInt());
        }
        mesh.AddCells(host_Mesh::TypeOf(cell.Length()), nodes);
    }
    return true;
}

/// Adds a sequence of blocks (TYPE, array) and cells (node, node, ...), in any mixture.
void AddSequence(host_Mesh& mesh, omu_PrimTuple& cells) {
    if (AddPlainCells(mesh, cells)) {
        return;
    }
    std::vector<omu_PrimTuple> items(static_cast<std::size_t>(cells.Length()), omu_PrimTuple('('));
    host_Progress progress("Reading cells", 2 * items.size());
    cells.Begin();
    for (omu_PrimTuple& item : items) {
        progress.Count();
        cells.Get(item);
    }
    cells.End();
    for (omu_PrimTuple& item : items) {
        progress.Count();
        item.Begin();
        if (item.Length() == 2) {
            host_CellTypeConstant type(host_CellType::Tet4);
            omu_PrimArray nodes(std::vector<int>{});
            item.Get(type);
            item.Get(nodes);
            item.End();
            const host_CellType given = type;
            AddBlock(mesh, nodes, &given);
        } else {
            std::vector<int> nodes(static_cast<std::size_t>(item.Length()));
            for (int& node : nodes) {
                item.Get(node);
            }
            item.End();
            mesh.AddCells(host_Mesh::TypeOf(item.Length()), nodes);
        }
    }
}

host_Part& FindPart(const cow_String& name) { return host_Model::Instance().Find<host_Part>(name); }

/// The part of a command that has no other parameter.
host_Part& OnlyPart(omu_Arguments& args) { return host_GetOnlyMember<host_Part>(args, "part"); }

// --- The commands ------------------------------------------------------------------------------

omu_Primitive* Part(omu_Arguments& args) {
    omu_TarvexName name;
    args.Begin();
    args.Get(name, "name");
    const omu_PrimArray points = host_GetPoints(args, 1, "points");
    omu_PrimArray block;
    omu_PrimTuple cells('(');
    const bool isSequence = !host_IsArray(args, 2, "cells");
    if (isSequence) {
        args.Get(cells, "cells");
    } else {
        args.Get(block, "cells");
    }
    args.End();

    host_Mesh mesh(host_PointsOf(points, "points"));
    if (isSequence) {
        AddSequence(mesh, cells);
    } else {
        AddBlock(mesh, block, nullptr);
    }
    host_Model& model = host_Model::Instance();
    auto part = std::make_unique<host_Part>(name.AsString(), std::move(mesh));
    if (host_Part* replaced = model.Look<host_Part>(part->Name())) {
        part->Inherit(*replaced);
        const int place = model.IndexOf<host_Part>(part->Name());
        model.Remove(*replaced);
        return new omu_PrimWrapper(&model.Add(std::move(part), place));
    }
    return new omu_PrimWrapper(&model.Add(std::move(part)));
}

omu_Primitive* DeletePart(omu_Arguments& args) {
    host_RemoveMember(OnlyPart(args));
    return nullptr;
}

omu_Primitive* LegalName(omu_Arguments& args) {
    cow_String text;
    args.Begin();
    args.Get(text, "text");
    args.End();
    // N before a leading digit, hyphens for full stops and backslashes; double quotes go, and so do
    // blanks and underscores at the ends.
    if (!omu_TarvexName::MakeLegalGuiName(text, "N.--..")) {
        RefuseValue("no legal name can be made of this text", __LINE__);
    }
    return new omu_PrimString(text);
}

/// What group and nodeSet name.
struct MemberKind {
    const char* keyword;
    std::map<cow_String, host_PartContent::Numbers> host_PartContent::*sets;
    int (*count)(const host_Mesh&);
    host_Point (*place)(const host_Mesh&, int);
};

constexpr MemberKind kCells{"cells", &host_PartContent::groups,
                            [](const host_Mesh& mesh) { return mesh.CellCount(); },
                            [](const host_Mesh& mesh, int cell) { return mesh.Middle(cell); }};
constexpr MemberKind kNodes{
    "nodes", &host_PartContent::nodeSets,
    [](const host_Mesh& mesh) { return static_cast<int>(mesh.Points().size()); },
    [](const host_Mesh& mesh, int node) { return mesh.Points()[static_cast<std::size_t>(node)]; }};

/// The numbers of what has its place in a box of two corners.
std::vector<int> Inside(const host_Mesh& mesh, const MemberKind& kind,
                        const cow_2DArray<double>& box) {
    if (box.Rows() != 2 || box.Columns() != 3) {
        RefuseValue("box must be two corners of three coordinates each", __LINE__);
    }
    std::vector<int> members;
    const int count = kind.count(mesh);
    host_Progress progress("Looking into the box", static_cast<std::size_t>(count));
    for (int member = 0; member < count; ++member) {
        progress.Count();
        const host_Point place = kind.place(mesh, member);
        bool isInside = true;
        for (int k = 0; k < 3; ++k) {
            const double at = place[static_cast<std::size_t>(k)];
            isInside = isInside && at >= box.ConstGet(0, k) && at <= box.ConstGet(1, k);
        }
        if (isInside) {
            members.push_back(member);
        }
    }
    return members;
}

/// Names cells or nodes, those given by number and those in the box, and returns their number.
omu_Primitive* NameMembers(omu_Arguments& args, const MemberKind& kind) {
    omu_TarvexName name;
    cow_1DArrayList<int> given;
    cow_2DArray<double> box;
    args.Begin();
    const cow_String partName = host_GetName<host_Part>(args, "part");
    args.Get(name, "name");
    args.Optional();
    args.Get(given, kind.keyword);
    args.Get(box, "box");
    args.End();

    host_Part& part = FindPart(partName);
    const omu_RangeChecker range = omu_RangeChecker().AtLeast(0).Below(kind.count(part.Mesh()));
    for (const int member : given) {
        range.Check(kind.keyword, member);
    }
    std::vector<int> members;
    if (box.Rows() != 0) {
        members = Inside(part.Mesh(), kind, box);
    }
    members.insert(members.end(), given.begin(), given.end());
    host_Progress sorting("Sorting numbers");
    std::sort(members.begin(), members.end(), [&](int a, int b) {
        sorting.Count();
        return a < b;
    });
    members.erase(std::unique(members.begin(), members.end()), members.end());
    const int count = static_cast<int>(members.size());
    (part.Edit().*kind.sets)[name.AsString()] =
        std::make_shared<const std::vector<int>>(std::move(members));
    return new omu_PrimNumber(count);
}

omu_Primitive* Group(omu_Arguments& args) { return NameMembers(args, kCells); }
omu_Primitive* NodeSet(omu_Arguments& args) { return NameMembers(args, kNodes); }

/// The two parameters of the commands that look something of a part up.
std::pair<host_Part*, cow_String> PartAndName(omu_Arguments& args, const char* keyword) {
    cow_String name;
    args.Begin();
    const cow_String part = host_GetName<host_Part>(args, "part");
    args.Get(name, keyword);
    args.End();
    return {&FindPart(part), name};
}

omu_Primitive* CellsOf(omu_Arguments& args) {
    const auto [part, group] = PartAndName(args, "group");
    return new omu_PrimArray(part->Cells(group));
}

omu_Primitive* NodesOf(omu_Arguments& args) {
    const auto [part, set] = PartAndName(args, "nodeSet");
    return new omu_PrimArray(part->Nodes(set));
}

/// Whether \p given is an array, or a sequence that does not begin with a number.
bool IsOfRows(const omu_Primitive* given) {
    const auto* sequence = dynamic_cast<const omu_PrimSequence*>(given);
    return sequence != nullptr && (dynamic_cast<const omu_PrimArray*>(given) != nullptr ||
                                   (sequence->Length() > 0 &&
                                    omu_PrimCast<omu_PrimNumber>(*sequence->Index(0)) == nullptr));
}

omu_PrimArray NumbersOf(omu_PrimTuple& sequence) {
    std::vector<double> values(static_cast<std::size_t>(sequence.Length()));
    host_Progress progress("Reading values", values.size());
    sequence.Begin();
    for (double& value : values) {
        progress.Count();
        sequence.Get(value);
    }
    sequence.End();
    return omu_PrimArray(std::move(values));
}

omu_Primitive* Field(omu_Arguments& args) {
    cow_String partName;
    omu_TarvexName name;
    omu_PrimArray values;
    omu_PrimTuple numbers('(');
    auto position = host_FieldPosition::Nodes;
    args.Begin();
    partName = host_GetName<host_Part>(args, "part");
    args.Get(name, "name");
    const bool isOfRows = IsOfRows(host_Given(args, 2, "values"));
    if (isOfRows) {
        values = host_GetPoints(args, 2, "values");
    } else {
        args.Get(numbers, "values");
    }
    args.Optional();
    host_GetConstant(args, position, "position");
    args.End();
    if (!isOfRows) {
        values = NumbersOf(numbers);
    }

    host_Part& part = FindPart(partName);
    const bool isAtNodes = position == host_FieldPosition::Nodes;
    const auto count =
        isAtNodes ? part.Mesh().Points().size() : static_cast<std::size_t>(part.Mesh().CellCount());
    const std::vector<int>& dims = values.Dims();
    const bool isScalar = dims.size() == 1 || (dims.size() == 2 && dims[1] == 1);
    if (static_cast<std::size_t>(dims[0]) != count ||
        !(isScalar || (dims.size() == 2 && dims[1] == 3))) {
        const std::string rows = std::to_string(count);
        RefuseValue("values is an array of shape " +
                        std::string(omu_PrimArray(dims).AsString(0).View()) + "; for the " + rows +
                        (isAtNodes ? " points" : " cells") + " of this part [" + rows + "] or [" +
                        rows + ", 3] was expected",
                    __LINE__);
    }
    host_Field field{position, isScalar ? std::size_t{1} : std::size_t{3}, values.AsDoubles()};
    part.Edit().fields[name.AsString()] = std::make_shared<const host_Field>(std::move(field));
    return nullptr;
}

omu_Primitive* BoundingBox(omu_Arguments& args) {
    const auto box = OnlyPart(args).Mesh().BoundingBox();
    return omu_MakeTuple(2, [&](int i) { return host_Triple(i == 0 ? box.low : box.high); });
}

omu_Primitive* SurfaceArea(omu_Arguments& args) {
    return new omu_PrimNumber(OnlyPart(args).Mesh().SurfaceArea());
}

constexpr const char* kNoVolume = "all these cells are surface cells, which have no volume";

omu_Primitive* Volume(omu_Arguments& args) {
    cow_String name;
    cow_String group;
    args.Begin();
    name = host_GetName<host_Part>(args, "part");
    args.Optional();
    args.Get(group, "group");
    args.End();
    const host_Part& part = FindPart(name);
    const std::vector<int> cells = part.Cells(group);
    if (host_AreSurface(part.Mesh(), cells)) {
        RefuseValue(kNoVolume, __LINE__);
    }
    return new omu_PrimNumber(part.Mesh().Moments(cells).volume);
}

/// Reads the optional parameter density; nothing for AUTO.
std::optional<double> GetDensity(omu_Arguments& args) { return host_GetOrAuto(args, 1, "density"); }

void CheckDensity(const std::optional<double>& density) {
    if (density) {
        omu_RangeChecker().Above(0).Check("density", *density);
    }
}

omu_Primitive* MassProperties(omu_Arguments& args) {
    cow_String name;
    cow_1DArrayList<double> about;
    args.Begin();
    name = host_GetName<host_Part>(args, "part");
    args.Optional();
    const std::optional<double> density = GetDensity(args);
    args.Get(about, "about");
    args.End();
    CheckDensity(density);

    const host_PartMass mass(FindPart(name), density);
    if (mass.IsSurface()) {
        RefuseValue(kNoVolume, __LINE__);
    }
    if (mass.WithoutDensity() > 0) {
        RefuseValue(std::to_string(mass.WithoutDensity()) +
                        " solid cells have no material with a density, others have one",
                    __LINE__);
    }
    host_Point point = mass.Centre();
    host_TakePoint(about, "about", point);
    const auto [xx, yy, zz, xy, yz, xz] = mass.Inertia(point);
    auto result = std::make_unique<omu_PrimDictionary<cow_String>>();
    result->Put("volume", mass.Volume());
    result->Put("mass", mass.Mass());
    result->Put("centre", host_Triple(mass.Centre()));
    result->Put("inertia", omu_PrimArray(std::vector{xx, xy, xz, xy, yy, yz, xz, yz, zz}, {3, 3}));
    return result.release();
}

omu_Primitive* ElementQuality(omu_Arguments& args) {
    cow_String name;
    cow_String group;
    host_MeasureConstant measure(host_QualityMeasure::ScaledJacobian);
    int worst = 5;
    args.Begin();
    name = host_GetName<host_Part>(args, "part");
    args.Optional();
    args.Get(measure, "measure");
    args.Get(worst, "worst");
    args.Get(group, "group");
    args.End();
    omu_RangeChecker().AtLeast(0).Check("worst", worst);

    const host_Part& part = FindPart(name);
    const std::vector<int> cells = part.Cells(group);
    if (cells.empty()) {
        RefuseValue("there are no cells to judge", __LINE__);
    }
    const host_QualitySummary quality(part.Mesh(), cells, measure, worst);
    auto result = std::make_unique<omu_PrimDictionary<cow_String>>();
    result->Put("least", quality.least);
    result->Put("mean", quality.mean);
    result->Put("greatest", quality.greatest);
    result->Put("values", omu_PrimArray(quality.values));
    cow_1DArrayList<int> worstCells;
    for (const std::size_t place : quality.worst) {
        worstCells.Append(cells[place]);
    }
    result->Put("worst", omu_ReturnPrim(worstCells));
    return result.release();
}

omu_Primitive* Report(omu_Arguments& args) {
    cow_String name;
    host_ReportOptions options;
    omu_PrimDictionary<cow_String> units;
    host_MeasureConstant measure(options.measure);
    args.Begin();
    name = host_GetName<host_Part>(args, "part");
    args.Optional();
    options.density = GetDensity(args);
    args.Get(units, "units");
    args.Get(measure, "measure");
    args.Get(options.worst, "worst");
    args.Get(options.bins, "bins");
    args.End();
    options.measure = measure;
    CheckDensity(options.density);
    omu_RangeChecker().AtLeast(0).Check("worst", options.worst);
    omu_RangeChecker().AtLeast(1).AtMost(100).Check("bins", options.bins);

    // The dictionary is read as the keywords of a list of its own, so that its errors name them.
    omu_Arguments given;
    given.SetNestedErrorStr("units");
    for (const auto& entry : units) {
        given.Put(entry.Value().ConstGet().Copy(), entry.Key());
    }
    cow_String length;
    cow_String mass;
    given.Begin();
    given.Optional();
    given.Get(length, "length");
    given.Get(mass, "mass");
    given.End();
    options.lengthUnit = length.Std();
    options.massUnit = mass.Std();
    host_Print(host_PartReport(FindPart(name), options));
    return nullptr;
}

omu_Primitive* Say(omu_Arguments& args) {
    cow_String text;
    args.Begin();
    args.Optional();
    args.Get(text, "text");
    args.End();
    host_Print(text.Std() + "\n");
    return nullptr;
}

// --- Their declarations ------------------------------------------------------------------------

const host_Parameter kPart = host_MemberParameter<host_Part>("part", "a part");
const host_Parameter kGroup{
    "group", "str", "name of a group of its cells; all cells by default", "''", {}};
const host_Parameter kDensity{"density",
                              "float or AUTO",
                              "mass of one unit of volume, above 0; AUTO: of each cell's material",
                              "AUTO",
                              {"AUTO"}};
constexpr const char* kAutoDensity =
    "A density that depends on the temperature counts at the lowest one; where no cell's\n"
    "material has a density, it is 1.0.";
const host_Parameter kWorst{"worst", "int", "how many of the worst cells to list", "5", {}};

host_Parameter Measure() {
    return {"measure", "constant", "how the shape of a cell is judged", "SCALED_JACOBIAN",
            host_Names<host_QualityMeasure>()};
}

constexpr const char* kMeasures =
    "The ideal cell has equal edges and the value 1. Of a cell's corners the least counts;\n"
    "a pyramid's apex is left out. J is the determinant of a corner's three edges, in a surface\n"
    "cell of two edges and the unit normal.\n"
    "SCALED_JACOBIAN  J over the edges' lengths, relative to the ideal; 0 or less is inverted.\n"
    "                 Stimpson and others, The Verdict Geometric Quality Library, SAND2007-1751\n"
    "MEAN_RATIO       3 det(T)^(2/3) / |T|^2, T the map from the ideal corner; 0 if inverted.\n"
    "                 In a surface 2 det(T) / |T|^2.\n"
    "                 Knupp, Finite Elements in Analysis and Design 39 (2003), 217-241\n"
    "EDGE_RATIO       longest over shortest edge. Verdict, as above";

}  // namespace

void host_RegisterMeshCommands(host_CommandTable& table) {
    table.AddChange(
        {"part",
         "Makes a part of a mesh of solid and surface cells and returns it.\n"
         "cells is an array, one row of nodes a cell, or a sequence of (TYPE, array) and of\n"
         "cells given as (node, node, ...). Solids have 4, 5, 6 or 8 nodes: the base first,\n"
         "then the apex or the opposite face. Surface cells have 3 nodes, or as QUAD4 4: where\n"
         "no type is given, 4 nodes make a TET4. Points and cells are numbered from 0. A part\n"
         "of the same name is replaced.",
         {{"name", "str", "a legal name; legalName makes one", "", {}},
          {"points", "array", "coordinates, of shape (n, 3), or a sequence of triples", "", {}},
          {"cells", "array or sequence", "the nodes of each cell", "",
           host_Names<host_CellType>()}},
         Part});
    table.AddChange({"deletePart", "Removes a part.", {kPart}, DeletePart});
    table.Add(
        {"legalName",
         "Returns the text made a legal name: at most 38 bytes, no double quote, full stop or\n"
         "backslash, no digit at the start, no blank or underscore at either end.",
         {{"text", "str", "any text", "", {}}},
         LegalName});
    table.AddChange({"group",
                     "Names some of a part's cells and returns their number.\n"
                     "Both forms may be given together; a group of the same name is replaced.",
                     {kPart,
                      {"name", "str", "a legal name", "", {}},
                      {"cells", "sequence of int", "numbers of cells", "()", {}},
                      {"box",
                       "two points",
                       "lowest and highest corner: the cells whose middle is inside",
                       "()",
                       {}}},
                     Group});
    table.AddChange(
        {"nodeSet",
         "Names some of a part's nodes and returns their number.\n"
         "Both forms may be given together; a set of the same name is replaced.",
         {kPart,
          {"name", "str", "a legal name", "", {}},
          {"nodes", "sequence of int", "numbers of points", "()", {}},
          {"box", "two points", "lowest and highest corner: the points inside", "()", {}}},
         NodeSet});
    table.Add({"cellsOf",
               "Returns the numbers of a group's cells, ascending.",
               {kPart, {"group", "str", "name of a group; '' is all cells", "", {}}},
               CellsOf,
               false});
    table.Add({"nodesOf",
               "Returns the numbers of a set's nodes, ascending.",
               {kPart, {"nodeSet", "str", "name of a set of nodes", "", {}}},
               NodesOf,
               false});
    table.AddChange(
        {"field",
         "Gives a part values at its nodes or cells, to be shown by contour and deform.\n"
         "A value is a number or a vector of three; NaN and infinities may be among them. A\n"
         "field of the same name is replaced.",
         {kPart,
          {"name", "str", "a legal name", "", {}},
          {"values", "array", "of shape (n,) or (n, 3), or a sequence like that", "", {}},
          {"position", "constant", "what each value belongs to", "NODES",
           host_Names<host_FieldPosition>()}},
         Field});
    table.Add({"boundingBox",
               "Returns the lowest and the highest corner of a part's points.",
               {kPart},
               BoundingBox});
    table.Add({"surfaceArea",
               "Returns the area of the faces that belong to one solid only, and of surface cells.",
               {kPart},
               SurfaceArea});
    table.Add({"volume",
               "Returns the volume of a part or of a group of its cells.\n"
               "Surface cells count nothing; where there are no others, that is an error.",
               {kPart, kGroup},
               Volume});
    table.Add(
        {"massProperties",
         "Returns a dictionary of a part's volume, mass, centre of mass and tensor of inertia\n"
         "(a 3x3 array; its element xy is minus the integral of density x y). Surface cells\n"
         "count nothing; where there are no others, that is an error.\n" +
             std::string(kAutoDensity),
         {kPart,
          kDensity,
          {"about",
           "point",
           "where the inertia is taken; the centre of mass by default",
           "()",
           {}}},
         MassProperties});
    table.Add({"elementQuality",
               std::string("Returns a dictionary: least, mean and greatest quality, the values of\n"
                           "all cells, the numbers of the worst.\n") +
                   kMeasures,
               {kPart, Measure(), kWorst, kGroup},
               ElementQuality});
    table.Add(
        {"report",
         std::string("Prints what there is to know of a part.\n") + kAutoDensity + "\n" + kMeasures,
         {kPart,
          kDensity,
          {"units", "dictionary", "names to print: {'length': 'mm', 'mass': 'kg'}", "{}", {}},
          Measure(),
          kWorst,
          {"bins", "int", "bars of the histogram, 1 to 100", "10", {}}},
         Report});
    table.Add({"say", "Prints a line of text.", {{"text", "str", "the line", "''", {}}}, Say});
}
