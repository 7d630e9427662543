#include "host_View.h"

#include "g3d_BoundingVolume.h"
#include "host_Framing.h"
#include "omu_ErrorExceptions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

constexpr const char* kSource = "host/viewport/host_View";

[[noreturn]] void Refuse(const std::string& message, int line) {
    omu_ValueErrorException(atr_String(message)).Throw(kSource, line);
}

/// A copy of a limit that is a float: so a value on the limit is still on it when both are.
double Rounded(double limit) { return static_cast<double>(static_cast<float>(limit)); }

std::string SixDigits(double value) {
    char buffer[40];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 6);
    return {buffer, end.ptr};
}

std::string ContourTitle(const host_ContourSettings& settings, const host_Field& field) {
    constexpr const char* kSuffixes[] = {", magnitude", ", x", ", y", ", z"};
    if (!settings.title.empty() || field.components == 1) {
        return settings.title.empty() ? settings.field.Std() : settings.title;
    }
    return settings.field.Std() + kSuffixes[static_cast<int>(settings.component)];
}

/// Checks that points can be looked at, by their sphere.
void CheckReach(const g3d_Sphere& sphere) {
    if (sphere.IsEmpty()) {
        Refuse("nothing is shown", __LINE__);
    }
    if (!host_IsInReach(sphere)) {
        Refuse("what is shown reaches farther than 1e18 from the origin", __LINE__);
    }
}

/// The nearest of 1, 2 and 5 times a power of ten, for a number above 0: by ratio, so that between
/// 2 and 5 the limit is the square root of 10.
double RoundNumber(double number) {
    const double exponent = std::floor(std::log10(number));
    const double square = std::pow(number / std::pow(10, exponent), 2);
    const int digits = square < 2 ? 1 : square < 10 ? 2 : square < 50 ? 5 : 10;
    // By way of its text, which no rounding of powers touches.
    const std::string text =
        std::to_string(digits) + "e" + std::to_string(static_cast<int>(exponent));
    double rounded = number;
    std::from_chars(text.data(), text.data() + text.size(), rounded);
    return rounded;
}

void CheckDisplacement(const host_Field& field, const cow_String& name) {
    if (field.components != 3 || field.position != host_FieldPosition::Nodes) {
        Refuse("field '" + name.Std() + "' does not hold vectors at nodes", __LINE__);
    }
}

}  // namespace

host_View& host_View::Instance() {
    static host_View view;
    return view;
}

host_View::host_View() { _camera.Canned(g3d_Sphere(g3d_Point(), 1), g3d_VIEW_ISO); }

void host_View::Synchronize() {
    std::erase_if(_shown, [](Shown& shown) {
        const host_Part* part = host_Model::Instance().Look<host_Part>(shown.name);
        if (part == nullptr || part->Lineage() != shown.lineage) {
            return true;
        }
        if (part->Serial() != shown.serial) {
            Shown renewed;
            renewed.name = shown.name;
            renewed.serial = part->Serial();
            renewed.lineage = part->Lineage();
            renewed.settings = shown.settings;
            shown = std::move(renewed);
        }
        return false;
    });
}

host_View::Shown* host_View::Find(const cow_String& part) {
    const auto found = std::find_if(_shown.begin(), _shown.end(),
                                    [&](const Shown& shown) { return shown.name == part; });
    return found != _shown.end() ? &*found : nullptr;
}

host_View::Shown& host_View::FindOrAdd(const cow_String& part, const Poll& poll,
                                       std::shared_ptr<host_ViewGeometry> geometry) {
    Synchronize();
    if (Shown* shown = Find(part)) {
        return *shown;
    }
    Shown shown;
    shown.name = part;
    const host_Part& found = host_Model::Instance().Find<host_Part>(part);
    shown.serial = found.Serial();
    shown.lineage = found.Lineage();
    shown.geometry = std::move(geometry);
    const std::vector<g3d_Point> points = Points(shown, poll);
    _shown.push_back(std::move(shown));
    if (_shown.size() == 1) {
        const g3d_Sphere sphere = host_SphereOf(points);
        if (!sphere.IsEmpty() && host_IsInReach(sphere)) {
            host_Frame(_camera, points, sphere, {});
        }
    }
    return _shown.back();
}

host_ViewGeometry& host_View::Geometry(Shown& shown, const Poll& poll) {
    if (shown.geometry == nullptr) {
        const host_Part& part = host_Model::Instance().Find<host_Part>(shown.name);
        shown.geometry = std::make_shared<host_ViewGeometry>(part.Mesh(), poll);
    }
    return *shown.geometry;
}

host_GeometryChoice host_View::Choice(const Shown& shown) {
    const host_Part& part = host_Model::Instance().Find<host_Part>(shown.name);
    host_GeometryChoice choice;
    choice.hasFeatureEdges = shown.settings.mode == host_DisplayMode::FeatureEdges;
    choice.isByCell =
        shown.contour && part.Field(shown.contour->field)->position == host_FieldPosition::Cells;
    if (!shown.displacement.IsEmpty()) {
        choice.displacement = part.Field(shown.displacement);
        CheckDisplacement(*choice.displacement, shown.displacement);
    }
    return choice;
}

double host_View::Scale(const host_ViewGeometry& geometry, const host_Field& displacement,
                        const std::optional<double>& scale) {
    const double largest = displacement.Range(host_Component::Magnitude).second;
    const double automatic =
        largest > 0 && geometry.Size() > 0
            ? RoundNumber(std::clamp(0.1 * geometry.Size() / largest, 1e-300, 1e30))
            : 1;
    const double result = scale.value_or(automatic);
    if (!(std::abs(result) * largest <= host_kFarthest)) {
        Refuse("scale " + SixDigits(result) + " moves points farther than 1e18", __LINE__);
    }
    return result;
}

void host_View::Show(const cow_String& part, const host_DisplaySettings& settings,
                     const Poll& poll) {
    FindOrAdd(part, poll).settings = settings;
}

void host_View::Hide(const cow_String& part) {
    if (part.IsEmpty()) {
        _shown.clear();
    } else {
        (void)host_Model::Instance().Find<host_Part>(part);
        std::erase_if(_shown, [&](const Shown& shown) { return shown.name == part; });
    }
}

void host_View::Contour(const cow_String& part, const host_ContourSettings& settings,
                        const Poll& poll) {
    (void)host_Model::Instance().Find<host_Part>(part).Field(settings.field);
    Shown& shown = FindOrAdd(part, poll);
    shown.contour = settings;
    shown.drawn = {};
}

void host_View::ClearContour(const cow_String& part) {
    if (!part.IsEmpty()) {
        (void)host_Model::Instance().Find<host_Part>(part);
    }
    for (Shown& shown : _shown) {
        if (part.IsEmpty() || shown.name == part) {
            shown.contour.reset();
            shown.drawn = {};
        }
    }
}

double host_View::Deform(const cow_String& part, const cow_String& field,
                         std::optional<double> scale, const Poll& poll) {
    const host_Field& displacement = *host_Model::Instance().Find<host_Part>(part).Field(field);
    CheckDisplacement(displacement, field);
    Synchronize();
    Shown added;
    added.name = part;
    Shown* known = Find(part);
    const double result =
        Scale(Geometry(known != nullptr ? *known : added, poll), displacement, scale);
    Shown& shown = FindOrAdd(part, poll, std::move(added.geometry));
    shown.displacement = result == 0 ? cow_String() : field;
    shown.scale = scale;
    return result;
}

void host_View::ReadyContour(Shown& shown, const Poll& poll) {
    const host_ContourSettings& settings = *shown.contour;
    const host_Part& part = host_Model::Instance().Find<host_Part>(shown.name);
    const std::shared_ptr<const host_Field>& field = part.Field(settings.field);
    host_ViewGeometry& geometry = Geometry(shown, poll);
    auto values = geometry.Values(Choice(shown), field, settings.component);
    if (shown.drawn.field == field && shown.drawn.values == values) {
        return;
    }
    constexpr double kMost = std::numeric_limits<float>::max();
    const auto [low, high] = field->Range(settings.component);
    const double minimum = settings.minimum.value_or(std::clamp(low, -kMost, kMost));
    const double maximum = settings.maximum.value_or(std::clamp(high, -kMost, kMost));
    auto table = std::make_shared<const g3d_ContourTable>(Rounded(minimum), Rounded(maximum),
                                                          settings.colors, settings.isSmooth);
    host_Legend legend{ContourTitle(settings, *field),
                       g3d_ContourTable(minimum, maximum, settings.colors, settings.isSmooth)};
    for (const float value : *values) {
        legend.hasBelow = legend.hasBelow || value < table->Minimum();
        legend.hasAbove = legend.hasAbove || value > table->Maximum();
        legend.hasNotANumber = legend.hasNotANumber || std::isnan(value);
    }
    shown.drawn = {field, std::move(values), std::move(table),
                   std::make_shared<const host_Legend>(std::move(legend))};
}

std::vector<g3d_Point> host_View::Points(Shown& shown, const Poll& poll) {
    host_ViewGeometry& geometry = Geometry(shown, poll);
    const host_GeometryChoice choice = Choice(shown);
    const auto drawn = geometry.Geometry(choice);
    const double scale =
        choice.displacement != nullptr ? Scale(geometry, *choice.displacement, shown.scale) : 0;
    std::vector<g3d_Point> points;
    points.reserve(drawn->points.size() + geometry.LoosePoints().size());
    for (std::size_t i = 0; i < drawn->points.size(); ++i) {
        host_Float3 at = drawn->points[i];
        for (std::size_t k = 0; k < 3 && choice.displacement != nullptr; ++k) {
            at[k] = static_cast<float>(std::clamp(
                at[k] + scale * static_cast<double>(drawn->displacements[i][k]), -3e38, 3e38));
        }
        if (std::isfinite(at[0])) {  // else of a face that is left out
            points.emplace_back(at[0], at[1], at[2]);
        }
    }
    for (const host_Float3& at : geometry.LoosePoints()) {
        points.emplace_back(at[0], at[1], at[2]);
    }
    return points;
}

std::vector<g3d_Point> host_View::AllPoints(const Poll& poll) {
    std::vector<g3d_Point> all;
    for (Shown& shown : _shown) {
        const std::vector<g3d_Point> points = Points(shown, poll);
        all.insert(all.end(), points.begin(), points.end());
    }
    for (const auto* sets : {&_markers, &_loadMarkers}) {
        for (const host_MarkerSet& markers : *sets) {
            for (const host_Float3& at : markers.points) {
                all.emplace_back(at[0], at[1], at[2]);
            }
        }
    }
    for (const host_ViewText& text : _texts) {
        if (const auto* point = std::get_if<g3d_Point>(&text.place)) {
            all.push_back(*point);
        }
    }
    return all;
}

void host_View::Fit(const cow_String& part, const Poll& poll) {
    Synchronize();
    Shown* only = nullptr;
    if (!part.IsEmpty()) {
        (void)host_Model::Instance().Find<host_Part>(part);
        only = Find(part);
        if (only == nullptr) {
            Refuse("part '" + part.Std() + "' is not shown", __LINE__);
        }
    }
    const std::vector<g3d_Point> points = only != nullptr ? Points(*only, poll) : AllPoints(poll);
    const g3d_Sphere sphere = host_SphereOf(points);
    CheckReach(sphere);
    host_Frame(_camera, points, sphere, {});
}

void host_View::SaveView(g3d_SavedViewIdEnum side) {
    if (_camera.SaveView(side)) {
        _savedViews.push_back(side);
    }
}

void host_View::LookFrom(g3d_SavedViewIdEnum side, const Poll& poll) {
    if (side >= g3d_VIEW_USER1 &&
        std::find(_savedViews.begin(), _savedViews.end(), side) == _savedViews.end()) {
        Refuse("this view was not saved", __LINE__);
    }
    Synchronize();
    const std::vector<g3d_Point> points = AllPoints(poll);
    g3d_Sphere sphere = host_SphereOf(points);
    if (sphere.IsEmpty()) {
        sphere.Set(_camera.Target(), 1);
    }
    CheckReach(sphere);
    host_Frame(_camera, points, sphere, side);
}

g3d_Camera host_View::CameraFor(int width, int height, const Poll& poll) {
    Synchronize();
    host_Scene legends;
    AddLegends(width, height, {}, legends, poll);
    return legends.camera;
}

std::vector<cow_String> host_View::ShownParts() {
    Synchronize();
    std::vector<cow_String> names;
    for (const Shown& shown : _shown) {
        names.push_back(shown.name);
    }
    return names;
}

host_Legend host_View::Legend(const cow_String& part, const Poll& poll) {
    Synchronize();
    (void)host_Model::Instance().Find<host_Part>(part);
    Shown* shown = Find(part);
    if (shown == nullptr || !shown->contour) {
        Refuse("part '" + part.Std() + "' has no contours", __LINE__);
    }
    ReadyContour(*shown, poll);
    return *shown->drawn.legend;
}

host_Item host_View::Item(Shown& shown, const Poll& poll) {
    host_ViewGeometry& geometry = Geometry(shown, poll);
    const host_GeometryChoice choice = Choice(shown);
    const host_DisplaySettings& settings = shown.settings;
    const bool isWireframe = settings.mode == host_DisplayMode::Wireframe;
    host_Item item;
    item.geometry = geometry.Geometry(choice);
    item.showFaces = !isWireframe;
    item.showEdges = settings.mode != host_DisplayMode::Shaded;
    item.faceColor = settings.faceColor;
    item.edgeColor = isWireframe ? settings.faceColor : settings.edgeColor;
    item.edgeWidth = settings.edgeWidth;
    if (HasContours(shown)) {
        ReadyContour(shown, poll);
        item.values = shown.drawn.values;
        item.contours = shown.drawn.table;
    }
    if (choice.displacement != nullptr) {
        item.deformation = static_cast<float>(Scale(geometry, *choice.displacement, shown.scale));
    }
    return item;
}

void host_View::AddDeformationLabel(int width, int height, const g3d_Color& color,
                                    host_Scene& scene, const Poll& poll) {
    std::vector<std::string> scales;
    for (Shown& shown : _shown) {
        if (const auto displacement = Choice(shown).displacement) {
            const std::string text =
                SixDigits(Scale(Geometry(shown, poll), *displacement, shown.scale));
            if (std::find(scales.begin(), scales.end(), text) == scales.end()) {
                scales.push_back(text);
            }
        }
    }
    std::string text;
    for (const std::string& scale : scales) {
        text += (text.empty() ? "Displacements x " : ", ") + scale;
    }
    const float size = host_TextSize(width, height);
    if (!text.empty() && static_cast<float>(height) > 3 * size) {
        scene.labels.push_back(
            {size, static_cast<float>(height) - size, size, text, color, host_Align::Left});
    }
}

void host_View::AddLegends(int width, int height, const g3d_Color& color, host_Scene& scene,
                           const Poll& poll) {
    std::vector<const host_Legend*> legends;
    for (Shown& shown : _shown) {
        if (HasContours(shown) && shown.contour->hasLegend &&
            Geometry(shown, poll).LoosePoints().empty()) {
            ReadyContour(shown, poll);
            legends.push_back(shown.drawn.legend.get());
        }
    }
    const float column = host_AddLegends(legends, width, height, color, scene);
    scene.camera = _camera;
    host_ShowBeside(scene.camera, width, height, column);
}

host_Scene host_View::MakeScene(int width, int height, const Poll& poll) {
    Synchronize();
    host_Scene scene;
    scene.studio = _studio;
    scene.markers = _markers;
    scene.markers.insert(scene.markers.end(), _loadMarkers.begin(), _loadMarkers.end());
    for (Shown& shown : _shown) {
        scene.items.push_back(Item(shown, poll));
        const std::vector<host_Float3>& loose = shown.geometry->LoosePoints();
        if (!loose.empty()) {
            g3d_Bitmap dot;
            dot.SetMarker(g3d_MARKER_FILLED_CIRCLE, 5);
            scene.markers.push_back({loose, std::move(dot), shown.settings.faceColor, false});
        }
        poll();
    }

    const g3d_Color background = _studio.BackgroundColor();
    const g3d_Color black;
    const g3d_Color white(1, 1, 1, 1);
    const bool isDark =
        g3d_Color::ContrastRatio(white, background) >= g3d_Color::ContrastRatio(black, background);
    const g3d_Color color = (isDark ? white : black).GetContrastingColor(background);
    AddLegends(width, height, color, scene, poll);
    AddDeformationLabel(width, height, color, scene, poll);

    if (const std::vector<g3d_Point> points = AllPoints(poll); !points.empty()) {
        host_BackOff(scene.camera, points);
        const g3d_BoundingVolume volume(points.data(), static_cast<unsigned>(points.size()));
        scene.camera.SetModelBoundingVolume(volume, 0.02F);
    }
    for (const auto* texts : {&_texts, &_loadTexts}) {
        for (const host_ViewText& text : *texts) {
            host_AddText(text, width, height, color, scene);
        }
    }
    return scene;
}
