#pragma once

#include "host_Model.h"
#include "host_Part.h"
#include "host_ViewGeometry.h"
#include "host_ViewLegend.h"
#include "host_ViewText.h"

#include <optional>

/// What is drawn of a part.
enum class host_DisplayMode { Shaded, ShadedEdges, FeatureEdges, Wireframe };

template <>
struct omu_EnumTable<host_DisplayMode, 1> {
    static constexpr omu_EnumEntry<host_DisplayMode> kEntries[] = {
        {"SHADED", host_DisplayMode::Shaded},
        {"SHADED_EDGES", host_DisplayMode::ShadedEdges},
        {"FEATURE_EDGES", host_DisplayMode::FeatureEdges},
        {"WIREFRAME", host_DisplayMode::Wireframe},
        {nullptr, host_DisplayMode::Shaded}};
};

struct host_DisplaySettings {
    host_DisplayMode mode = host_DisplayMode::Shaded;
    g3d_Color faceColor{0.9F, 0.9F, 0.9F, 1};
    g3d_Color edgeColor;
    float edgeWidth = 1;  ///< [pixels]
};

struct host_ContourSettings {
    cow_String field;
    host_Component component = host_Component::Magnitude;
    std::vector<g3d_Color> colors;  ///< of the bands, from low to high; at least one
    bool isSmooth = false;
    std::optional<double> minimum, maximum;  ///< within the range of float; none: of the values
    bool hasLegend = true;
    std::string title;  ///< empty: made of field and component
};

/// What the viewport shows, and from where.
///
/// Parts are shown by name. One that is removed is no longer shown; one that is replaced is shown
/// as it was, but without contours and deformation, since its fields are gone. What is sent to a
/// renderer is made when it is needed and kept as long as it holds. For the interpreter's thread.
/// An operation that raises changes nothing. \p poll is called from time to time by what may take
/// long; what it raises goes through.
class host_View {
public:
    using Poll = host_ViewGeometry::Poll;

    /// The view of the process.
    static host_View& Instance();

    /// Nothing is shown; the camera looks at the origin from (1, 1, 1).
    host_View();

    [[nodiscard]] g3d_Camera& Camera() noexcept { return _camera; }
    [[nodiscard]] g3d_Studio& Studio() noexcept { return _studio; }

    /// Shows a part, or changes how it is shown. The first one is fitted into the view.
    void Show(const cow_String& part, const host_DisplaySettings& settings, const Poll& poll);
    /// Shows a part no longer; of an empty name, no part at all.
    void Hide(const cow_String& part);
    /// Colours a part by a field, and shows it if it is not.
    void Contour(const cow_String& part, const host_ContourSettings& settings, const Poll& poll);
    /// Forgets the contours of a part; of an empty name, of all.
    void ClearContour(const cow_String& part);
    /// Displaces a part, and shows it if it is not; no scale makes it 1, 2 or 5 times a power of
    /// ten that moves points by about a tenth of the part's size. Returns the scale. A field of
    /// anything but vectors at nodes, or a scale that carries points out of the range of float,
    /// raises omu_ValueErrorException.
    double Deform(const cow_String& part, const cow_String& field, std::optional<double> scale,
                  const Poll& poll);
    void AddMarkers(host_MarkerSet markers) { _markers.push_back(std::move(markers)); }
    void ClearMarkers() noexcept {
        _markers.clear();
        _loadMarkers.clear();
    }
    void AddText(host_ViewText text) { _texts.push_back(std::move(text)); }
    void ClearTexts() noexcept {
        _texts.clear();
        _loadTexts.clear();
    }
    /// Marks loads, in place of those marked before; they are cleared with the other markers and
    /// texts.
    void SetLoadMarks(std::vector<host_MarkerSet> markers, std::vector<host_ViewText> texts) {
        _loadMarkers = std::move(markers);
        _loadTexts = std::move(texts);
    }

    /// Frames a part; of an empty name, all that is shown. Nothing to frame, or what reaches too
    /// far, raises omu_ValueErrorException.
    void Fit(const cow_String& part, const Poll& poll);
    /// Keeps the present direction as one of the user's views.
    void SaveView(g3d_SavedViewIdEnum side);
    /// Looks at all that is shown from a standard or saved side. A view that was not saved raises
    /// omu_ValueErrorException.
    void LookFrom(g3d_SavedViewIdEnum side, const Poll& poll);
    /// The camera as it is for a picture of that size [pixels], in which the window is right of the
    /// legends. Errors as for MakeScene.
    [[nodiscard]] g3d_Camera CameraFor(int width, int height, const Poll& poll);

    /// The parts that are shown, in the order in which they were.
    [[nodiscard]] std::vector<cow_String> ShownParts();
    /// The contours of a part. One without: omu_ValueErrorException.
    [[nodiscard]] host_Legend Legend(const cow_String& part, const Poll& poll);

    /// Everything for a picture of that size [pixels]; near and far hold all of it. A field that
    /// was replaced by one that no longer fits raises omu_ValueErrorException.
    [[nodiscard]] host_Scene MakeScene(int width, int height, const Poll& poll);

private:
    /// Contours made ready, as long as field and values are these.
    struct DrawnContour {
        std::shared_ptr<const host_Field> field;
        std::shared_ptr<const host_Values> values;
        std::shared_ptr<const g3d_ContourTable> table;  // with limits that are floats
        std::shared_ptr<const host_Legend> legend;
    };
    struct Shown {
        cow_String name;
        unsigned long long serial = 0;  // of the part, as is the next
        unsigned long long lineage = 0;
        host_DisplaySettings settings;
        std::optional<host_ContourSettings> contour;
        cow_String displacement;  // a field; empty: none
        std::optional<double> scale;
        std::shared_ptr<host_ViewGeometry> geometry;
        DrawnContour drawn;
    };

    /// Whether contours are to be seen: they are on faces.
    static bool HasContours(const Shown& shown) {
        return shown.contour && shown.settings.mode != host_DisplayMode::Wireframe;
    }
    void Synchronize();
    Shown* Find(const cow_String& part);
    /// \p geometry is the part's, if it is made already.
    Shown& FindOrAdd(const cow_String& part, const Poll& poll,
                     std::shared_ptr<host_ViewGeometry> geometry = nullptr);
    static host_ViewGeometry& Geometry(Shown& shown, const Poll& poll);
    static host_GeometryChoice Choice(const Shown& shown);
    static double Scale(const host_ViewGeometry& geometry, const host_Field& displacement,
                        const std::optional<double>& scale);
    static host_Item Item(Shown& shown, const Poll& poll);
    static void ReadyContour(Shown& shown, const Poll& poll);
    static std::vector<g3d_Point> Points(Shown& shown, const Poll& poll);
    [[nodiscard]] std::vector<g3d_Point> AllPoints(const Poll& poll);
    /// Adds the legends, and the camera that leaves them free.
    void AddLegends(int width, int height, const g3d_Color& color, host_Scene& scene,
                    const Poll& poll);
    void AddDeformationLabel(int width, int height, const g3d_Color& color, host_Scene& scene,
                             const Poll& poll);

    g3d_Camera _camera;
    g3d_Studio _studio;
    std::vector<Shown> _shown;
    std::vector<host_MarkerSet> _markers, _loadMarkers;
    std::vector<host_ViewText> _texts, _loadTexts;
    std::vector<g3d_SavedViewIdEnum> _savedViews;
};
