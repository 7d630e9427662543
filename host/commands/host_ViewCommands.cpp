#include "host_ViewCommands.h"

#include "g3d_Utils.h"
#include "host_CameraCommands.h"
#include "host_CommandTools.h"
#include "host_MemberArgument.h"
#include "host_TextCommands.h"
#include "host_View.h"
#include "omu_Get.h"

#include <algorithm>
#include <filesystem>
#include <memory>

/// Colour ramps by name.
enum class host_Ramp { Viridis, CoolWarm, Rainbow, BlueToRed, BlackToWhite, WrapAround };

template <>
struct omu_EnumTable<host_Ramp, 1> {
    static constexpr omu_EnumEntry<host_Ramp> kEntries[] = {
        {"VIRIDIS", host_Ramp::Viridis},
        {"COOL_WARM", host_Ramp::CoolWarm},
        {"RAINBOW", host_Ramp::Rainbow},
        {"BLUE_TO_RED", host_Ramp::BlueToRed},
        {"BLACK_TO_WHITE", host_Ramp::BlackToWhite},
        {"WRAP_AROUND", host_Ramp::WrapAround},
        {nullptr, host_Ramp::Viridis}};
};

namespace {

constexpr const char* kSource = "host/commands/host_ViewCommands";

using Poll = host_View::Poll;

host_View& View() { return host_View::Instance(); }

// --- Reading -----------------------------------------------------------------------------------

/// A ramp by name, or the colours that are to make one.
struct Ramp {
    host_Ramp name = host_Ramp::Viridis;
    cow_List<cow_String> colors;
    bool isNamed = true;
};

Ramp GetRamp(omu_Arguments& args, int index, const char* keyword) {
    Ramp ramp;
    if (dynamic_cast<const omu_PrimSequence*>(host_Given(args, index, keyword)) != nullptr) {
        args.Get(ramp.colors, keyword);
        ramp.isNamed = false;
    } else {
        host_GetConstant(args, ramp.name, keyword);
    }
    return ramp;
}

/// In the order of host_Ramp.
constexpr void (*kRamps[])(g3d_Color*, int, bool, float) = {
    &g3d_Utils::Viridis,
    &g3d_Utils::CoolWarm,
    &g3d_Utils::Rainbow,
    &g3d_Utils::BlueToRed,
    &g3d_Utils::BlackToWhite,
    [](g3d_Color* colors, int count, bool isReversed, float alpha) {
        g3d_Utils::WrapAround(colors, count, alpha);
        if (isReversed) {
            std::reverse(colors, colors + count);
        }
    },
};

std::vector<g3d_Color> ColorsOf(const Ramp& ramp, int count, bool isReversed) {
    std::vector<g3d_Color> colors(static_cast<std::size_t>(count));
    if (ramp.isNamed) {
        kRamps[static_cast<int>(ramp.name)](colors.data(), count, isReversed, 1);
        return colors;
    }
    if (ramp.colors.Length() == 0) {
        host_RefuseValue("ramp has no colors", kSource, __LINE__);
    }
    for (const cow_String& name : ramp.colors) {
        (void)host_ColorOf(name);
    }
    g3d_Utils::FillInColorsAndInterpolate(ramp.colors, count, colors.data());
    if (isReversed) {
        std::reverse(colors.begin(), colors.end());
    }
    return colors;
}

std::vector<std::string> MarkerNames() {
    std::vector<std::string> names;
    names.reserve(g3d_MARKER_COUNT);
    for (int kind = 0; kind < g3d_MARKER_COUNT; ++kind) {
        names.emplace_back(g3d_Bitmap::MarkerName(static_cast<g3d_MarkerEnum>(kind)));
    }
    return names;
}

// --- The commands ------------------------------------------------------------------------------

omu_Primitive* Show(omu_Arguments& args, const Poll& poll) {
    cow_String part;
    auto mode = host_DisplayMode::Shaded;
    cow_String color("Grey90");
    cow_String edgeColor("Black");
    double edgeWidth = 1;
    args.Begin();
    part = host_GetName<host_Part>(args, "part");
    args.Optional();
    host_GetConstant(args, mode, "mode");
    args.Get(color, "color");
    args.Get(edgeColor, "edgeColor");
    args.Get(edgeWidth, "edgeWidth");
    args.End();
    host_CheckRange("edgeWidth", edgeWidth, 0.1, 20.0);
    const host_DisplaySettings settings{mode, host_ColorOf(color), host_ColorOf(edgeColor),
                                        static_cast<float>(edgeWidth)};
    View().Show(part, settings, poll);
    return nullptr;
}

omu_Primitive* Hide(omu_Arguments& args) {
    View().Hide(host_GetOnlyPart(args, false));
    return nullptr;
}

omu_Primitive* Contour(omu_Arguments& args, const Poll& poll) {
    cow_String part;
    host_ContourSettings settings;
    int bands = 12;
    bool isReversed = false;
    cow_String title;
    args.Begin();
    part = host_GetName<host_Part>(args, "part");
    args.Get(settings.field, "field");
    args.Optional();
    host_GetConstant(args, settings.component, "component");
    const Ramp ramp = GetRamp(args, 3, "ramp");
    args.Get(bands, "bands");
    args.Get(settings.isSmooth, "smooth");
    settings.minimum = host_GetOrAuto(args, 6, "minimum");
    settings.maximum = host_GetOrAuto(args, 7, "maximum");
    args.Get(isReversed, "reverse");
    args.Get(settings.hasLegend, "legend");
    args.Get(title, "title");
    args.End();
    host_CheckRange("bands", bands, 1, 256);
    host_CheckRange("minimum", settings.minimum.value_or(0), -1e38, 1e38);
    host_CheckRange("maximum", settings.maximum.value_or(0), -1e38, 1e38);
    settings.colors = ColorsOf(ramp, bands, isReversed);
    settings.title = title.Std();
    View().Contour(part, settings, poll);
    return nullptr;
}

omu_Primitive* ClearContour(omu_Arguments& args) {
    View().ClearContour(host_GetOnlyPart(args, false));
    return nullptr;
}

omu_Primitive* Deform(omu_Arguments& args, const Poll& poll) {
    cow_String part;
    cow_String field;
    args.Begin();
    part = host_GetName<host_Part>(args, "part");
    args.Get(field, "field");
    args.Optional();
    const std::optional<double> scale = host_GetOrAuto(args, 2, "scale");
    args.End();
    host_CheckRange("scale", scale.value_or(0), -1e30, 1e30);
    return new omu_PrimNumber(View().Deform(part, field, scale, poll));
}

omu_Primitive* Marker(omu_Arguments& args) {
    host_Choice kind(MarkerNames());
    int size = 9;
    cow_String color("Red");
    bool isOnTop = false;
    args.Begin();
    const omu_PrimArray points = host_GetPoints(args, 0, "points");
    args.Optional();
    args.Get(kind, "kind");
    args.Get(size, "size");
    args.Get(color, "color");
    args.Get(isOnTop, "onTop");
    args.End();
    host_CheckRange("size", size, 1, 256);
    host_MarkerSet markers;
    markers.color = host_ColorOf(color);
    markers.onTop = isOnTop;
    markers.bitmap.SetMarker(static_cast<g3d_MarkerEnum>(kind.Index()), size);
    for (const host_Point& point : host_PointsOf(points, "points")) {
        markers.points.push_back(
            host_PicturePoint(point, "points[" + std::to_string(markers.points.size()) + "]"));
    }
    View().AddMarkers(std::move(markers));
    return nullptr;
}

omu_Primitive* ClearMarkers(omu_Arguments& args) {
    args.Begin();
    args.End();
    View().ClearMarkers();
    return nullptr;
}

omu_Primitive* Background(omu_Arguments& args) {
    cow_String color;
    args.Begin();
    args.Optional();
    args.Get(color, "color");
    args.End();
    if (color.IsEmpty()) {
        color = g3d_Studio().Background();
    }
    (void)host_ColorOf(color);
    View().Studio().SetBackground(color);
    return nullptr;
}

omu_Primitive* Light(omu_Arguments& args) {
    int number = 0;
    args.Begin();
    args.Get(number, "number");
    // What is not given is taken from the light, so its number must be known before.
    const bool isKnown = number >= 0 && number < g3d_Studio::kLights;
    g3d_Light light = View().Studio().Light(isKnown ? number : 0);
    bool isOn = true;
    double latitude = light.Latitude();
    double longitude = light.Longitude();
    cow_String ambient = light.Ambient();
    cow_String diffuse = light.Diffuse();
    cow_String specular = light.Specular();
    args.Optional();
    args.Get(isOn, "on");
    args.Get(latitude, "latitude");
    args.Get(longitude, "longitude");
    args.Get(ambient, "ambient");
    args.Get(diffuse, "diffuse");
    args.Get(specular, "specular");
    args.End();
    host_CheckRange("number", number, 0, g3d_Studio::kLights - 1);
    host_CheckRange("latitude", latitude, -90.0, 90.0);
    host_CheckRange("longitude", longitude, -360.0, 360.0);
    for (const cow_String& color : {ambient, diffuse, specular}) {
        (void)host_ColorOf(color);
    }
    light.SetOn(isOn);
    light.SetPositionVector(static_cast<float>(latitude), static_cast<float>(longitude));
    light.SetAmbient(ambient);
    light.SetDiffuse(diffuse);
    light.SetSpecular(specular);
    View().Studio().Light(number) = light;
    return nullptr;
}

omu_Primitive* ResetView(omu_Arguments& args) {
    args.Begin();
    args.End();
    View() = host_View();
    return nullptr;
}

omu_Primitive* SavePicture(omu_Arguments& args, const host_PictureRoom& room) {
    cow_String path;
    args.Begin();
    args.Get(path, "path");
    args.Optional();
    const host_PictureSize size = host_GetPictureSize(args);
    args.End();
    const std::string file = host_FilePath(path);
    host_Renderer& renderer = room.renderer();
    const host_Scene scene = View().MakeScene(size.width, size.height, room.poll);
    host_Image image;
    room.aside([&] { image = renderer.Draw(scene, size.width, size.height); });
    room.poll();
    room.aside([&] {
        if (const auto folder = std::filesystem::path(file).parent_path(); !folder.empty()) {
            std::filesystem::create_directories(folder);
        }
        room.write(image, file);
    });
    return nullptr;
}

omu_Primitive* ShownParts(omu_Arguments& args) {
    args.Begin();
    args.End();
    cow_1DArrayList<cow_String> names;
    for (const cow_String& name : View().ShownParts()) {
        names.Append(name);
    }
    return omu_ReturnPrim(names);
}

omu_Primitive* Legend(omu_Arguments& args, const Poll& poll) {
    const host_Legend legend = View().Legend(host_GetOnlyPart(args, true), poll);
    const g3d_ContourTable& table = legend.table;
    std::vector<double> breaks;
    for (int i = 0; i <= table.Bands(); ++i) {
        breaks.push_back(table.Break(i));
    }
    cow_1DArrayList<cow_String> colors;
    for (int i = 0; i < table.Bands(); ++i) {
        colors.Append(host_ColorText(table.BandColor(i)));
    }
    auto result = std::make_unique<omu_PrimDictionary<cow_String>>();
    result->Put("title", cow_String(legend.title));
    result->Put("minimum", table.Minimum());
    result->Put("maximum", table.Maximum());
    result->Put("breaks", omu_PrimArray(std::move(breaks)));
    result->Put("colors", omu_ReturnPrim(colors));
    return result.release();
}

// --- Their declarations ------------------------------------------------------------------------

const host_Parameter kPart = host_MemberParameter<host_Part>("part", "a part");
const host_Parameter kOnTop{
    "onTop", "ON or OFF", "whether they show through what is before them", "OFF", {}};

host_Parameter Color(const char* name, const char* help, const char* defaultText) {
    return {name, "str", help, defaultText, {}};
}

}  // namespace

void host_RegisterViewCommands(host_CommandTable& table, const host_PictureRoom& room) {
    const Poll& poll = room.poll;
    table.Add(
        {"show",
         "Shows a part: the outer faces of its cells.\n"
         "Showing a shown part again changes how; its contours and deformation stay. The first\n"
         "part in an empty view is fitted into it. A part without faces shows as its points.\n"
         "SHADED         faces under the lights\n"
         "SHADED_EDGES   and the edges of the cells\n"
         "FEATURE_EDGES  and the edges at which the surface bends by more than 40 degrees\n"
         "WIREFRAME      the edges of the cells alone, without contours\n"
         "Colours are names ('Red', 'Sky blue') or '#RRGGBB'.",
         {kPart,
          {"mode", "constant", "what is drawn of it", "SHADED", host_Names<host_DisplayMode>()},
          Color("color", "colour of the faces, and of a wireframe", "'Grey90'"),
          Color("edgeColor", "colour of the edges on faces", "'Black'"),
          {"edgeWidth", "float", "width of edges [pixels], 0.1 to 20", "1.0", {}}},
         [poll](omu_Arguments& args) { return Show(args, poll); }});
    table.Add({"hide",
               "Shows a part no longer, or no part at all. Contours and deformation are forgotten.",
               {host_MemberParameter<host_Part>("part", "a part; all parts by default", "''")},
               Hide});
    table.Add(
        {"contour",
         "Colours a part by the values of a field, which command field gives it, and shows it.\n"
         "The range from minimum to maximum is cut into bands of equal width and one colour\n"
         "each. A lower bound belongs to its band, the last band holds its upper bound too.\n"
         "Values below and above the range and values that are no number have colours of their\n"
         "own; where there are such values the legend says so.\n"
         "VIRIDIS        perceptually uniform, dark blue over green to yellow\n"
         "COOL_WARM      perceptually diverging, blue over grey to red\n"
         "RAINBOW, BLUE_TO_RED, BLACK_TO_WHITE\n"
         "WRAP_AROUND    ends in the colour it starts with, for angles and phases\n"
         "A sequence of colour names makes a ramp of its own: ('Blue', 'White', 'Red').",
         {kPart,
          {"field", "str", "name of a field of the part", "", {}},
          {"component", "constant", "what is shown of a field of vectors", "MAGNITUDE",
           host_Names<host_Component>()},
          {"ramp", "constant or sequence of str", "the colours, from low to high", "VIRIDIS",
           host_Names<host_Ramp>()},
          {"bands", "int", "number of bands, 1 to 256", "12", {}},
          {"smooth", "ON or OFF", "whether colours run into each other", "OFF", {}},
          {"minimum",
           "float or AUTO",
           "lower end; that of the finite values by default",
           "AUTO",
           {"AUTO"}},
          {"maximum",
           "float or AUTO",
           "upper end; that of the finite values by default",
           "AUTO",
           {"AUTO"}},
          {"reverse", "ON or OFF", "whether the colours run from high to low", "OFF", {}},
          {"legend", "ON or OFF", "whether the picture explains the colours", "ON", {}},
          {"title", "str", "of the legend; field and component by default", "''", {}}},
         [poll](omu_Arguments& args) { return Contour(args, poll); }});
    table.Add({"clearContour",
               "Shows a part in its own colour again, or all parts.",
               {host_MemberParameter<host_Part>("part", "a part; all parts by default", "''")},
               ClearContour});
    table.Add(
        {"deform",
         "Shows a part displaced by a field of vectors at its nodes, and returns the scale.\n"
         "AUTO makes the largest displacement about a tenth of the part's size, by a scale of 1, "
         "2\n"
         "or 5 times a power of ten. A scale of 0 shows the part as it is.",
         {kPart,
          {"field", "str", "name of a field of the part: NODES, 3 components", "", {}},
          {"scale", "float or AUTO", "what displacements are multiplied with", "AUTO", {"AUTO"}}},
         [poll](omu_Arguments& args) { return Deform(args, poll); }});
    table.Add(
        {"marker",
         "Puts a symbol at points. Symbols keep their size in pixels and face the viewer.",
         {{"points", "array", "coordinates, of shape (n, 3), or a sequence of triples", "", {}},
          {"kind", "constant", "the symbol", "FILLED_CIRCLE", MarkerNames()},
          {"size", "int", "[pixels], 1 to 256", "9", {}},
          Color("color", "colour of the symbol", "'Red'"),
          kOnTop},
         Marker});
    table.Add({"clearMarkers", "Removes all symbols.", {}, ClearMarkers});
    table.Add({"background",
               "Sets the colour behind everything. Text takes black or white, what stands out.",
               {Color("color", "colour of the background; the one at the start by default", "''")},
               Background});
    table.Add(
        {"light",
         "Sets one of eight lights, which move with the viewer. What is not given stays as it is.\n"
         "Light 0 and light 1 are on at the start. A light's direction is that of a place on\n"
         "a globe around the model: latitude 90 is straight above, longitude 90 on the right.",
         {{"number", "int", "0 to 7", "", {}},
          {"on", "ON or OFF", "whether it shines", "ON", {}},
          {"latitude", "float", "[deg], -90 to 90", "unchanged", {}},
          {"longitude", "float", "[deg], -360 to 360", "unchanged", {}},
          Color("ambient", "colour that reaches every face alike", "unchanged"),
          Color("diffuse", "colour on faces, the more they face the light", "unchanged"),
          Color("specular", "colour of highlights", "unchanged")},
         Light});
    table.Add({"resetView",
               "Puts everything of the view back to the start: parts, markers, labels, camera,\n"
               "saved views, lights, background.",
               {},
               ResetView});
    table.Add(
        {"savePicture",
         "Draws the view and writes it as PNG file.\n"
         "A file of that name is replaced when the new one is complete; folders that are missing\n"
         "are made.",
         host_WithPictureSize(
             {{"path", "str", "name of the file, relative to the working directory", "", {}}},
             "[pixels], 1 to 32768"),
         [room](omu_Arguments& args) { return SavePicture(args, room); }});
    table.Add(
        {"shownParts", "Returns the names of the parts that are shown.", {}, ShownParts, false});
    table.Add({"legend",
               "Returns the contours of a part: a dictionary of title, minimum, maximum, breaks\n"
               "(one more than bands) and colors ('#RRGGBB' of each band, from low to high).",
               {kPart},
               [poll](omu_Arguments& args) { return Legend(args, poll); },
               false});
    host_RegisterTextCommands(table);
    host_RegisterCameraCommands(table, poll);
}
