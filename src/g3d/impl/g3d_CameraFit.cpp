// Fitting the view to the model, and the standard and saved views.

#include "g3d_BoundingVolume.h"
#include "g3d_CameraFrame.h"
#include "g3d_Sphere.h"

#include <algorithm>

using namespace g3d_camera;

namespace {

constexpr double kWindowMargin = 1.05;
// A volume smaller than floats can tell apart at its place is shown as if it had this radius, or
// this part of its distance from the origin.
constexpr double kSmallestRadius = 1e-5;
constexpr double kSmallestRelativeRadius = 2e-5;
constexpr double kSmallestNearPart = 1e-4;  // of far, for perspective
constexpr double kClippingSafety = 1e-6;    // of the depths, against rounding

struct StandardView {
    g3d_SavedViewIdEnum view;
    g3d_Vector direction;  // from the target to the eye
    g3d_Vector up;
};

constexpr StandardView kStandardViews[] = {
    {g3d_VIEW_FRONT, {0, 0, 1}, {0, 1, 0}}, {g3d_VIEW_BACK, {0, 0, -1}, {0, 1, 0}},
    {g3d_VIEW_TOP, {0, 1, 0}, {0, 0, -1}},  {g3d_VIEW_BOTTOM, {0, -1, 0}, {0, 0, 1}},
    {g3d_VIEW_LEFT, {-1, 0, 0}, {0, 1, 0}}, {g3d_VIEW_RIGHT, {1, 0, 0}, {0, 1, 0}},
    {g3d_VIEW_ISO, {1, 1, 1}, {0, 1, 0}},
};

bool AreVertexesFinite(const g3d_BoundingVolume& volume) noexcept {
    const g3d_Point* const vertexes = volume.Vertexes();
    return std::all_of(vertexes, vertexes + volume.VertexCount(),
                       [](const g3d_Point& vertex) { return IsFinite(vertex); });
}

}  // namespace

/// False for an empty sphere, and with numbers that floats cannot hold.
/// \param direction  from the sphere to the eye, of unit length.
bool g3d_Camera::State::FitSphere(const g3d_Triple& direction, const g3d_Sphere& sphere) noexcept {
    const double radius = sphere.Radius();
    const double distance = fitDistance;
    viewOffsetX = 0;
    viewOffsetY = 0;
    target = sphere.Center();
    targetRest = g3d_Vector();
    eye = g3d_Point();  // of weight 1
    MoveEye(g3d_Triple(sphere.Center()) + direction * (radius * distance));
    nearDistance = static_cast<float>((distance - 2) * radius);
    farDistance = static_cast<float>((distance + 2) * radius);
    if (!(radius >= 0) || !IsFinite()) {  // a NaN is no radius either
        return false;
    }
    LimitNearFar();
    const double side = Has(Perspective) ? 2 * (kWindowMargin / distance) * nearDistance
                                         : 2 * kWindowMargin * radius;
    StoreWindow(side, side);
    SetMode(ClippedToModel, false);
    return true;
}

/// From the window's centre to that of the part that the viewport shows.
g3d_Triple g3d_Camera::State::ShownCentre() const noexcept {
    return {(static_cast<double>(xMin) + xMax - 1) / 2 * windowWidth,
            (static_cast<double>(yMin) + yMax - 1) / 2 * windowHeight, 0};
}

/// \param aspect  width of the picture in units of its height.
void g3d_Camera::State::CorrectAspect(double aspect, double left, double right, double bottom,
                                      double top) noexcept {
    const double width = (right - left) * windowWidth;
    const double height = (top - bottom) * windowHeight;
    const double extraX = std::max(aspect * height / width, 1.0);
    const double extraY = std::max(width / (aspect * height), 1.0);
    const double x = (left + right) / 2;
    const double y = (bottom + top) / 2;
    xMin = static_cast<float>(x - (right - left) / 2 * extraX);
    xMax = static_cast<float>(x + (right - left) / 2 * extraX);
    yMin = static_cast<float>(y - (top - bottom) / 2 * extraY);
    yMax = static_cast<float>(y + (top - bottom) / 2 * extraY);
}

void g3d_Camera::Fit(const g3d_Sphere& sphere) noexcept {
    State next = _state;
    if (next.FitSphere(next.ViewFrame().z, sphere)) {
        Commit(next);
    }
}

void g3d_Camera::Fit(const g3d_BoundingVolume& volume) noexcept {
    if (volume.VertexCount() == 0 || !AreVertexesFinite(volume)) {
        return;
    }
    g3d_Sphere sphere(g3d_Point(), -1);
    volume.GetExtent(sphere);
    const g3d_Triple centre(sphere.Center());
    const double place = std::max({std::abs(centre.x), std::abs(centre.y), std::abs(centre.z)});
    const double radius = std::max(
        {static_cast<double>(sphere.Radius()), kSmallestRadius, place * kSmallestRelativeRadius});
    Fit(g3d_Sphere(sphere.Center(), static_cast<float>(radius)));
}

void g3d_Camera::Fit(const g3d_Point& corner, const g3d_Point& opposite) noexcept {
    if (!IsFinite(corner) || !IsFinite(opposite)) {
        return;
    }
    g3d_BoundingVolume box;
    box.SetToRectangleBox(corner, opposite);
    Fit(box);
}

void g3d_Camera::FitVP(float width, float height) noexcept {
    if (!AllFinite(width, height) || width <= 0 || height <= 0) {
        return;
    }
    State next = _state;
    const g3d_Triple oldCentre = next.ShownCentre();
    const double shownWidth = (static_cast<double>(next.xMax) - next.xMin) * next.windowWidth;
    const double shownHeight = (static_cast<double>(next.yMax) - next.yMin) * next.windowHeight;
    const double factor = std::max(width / shownWidth, height / shownHeight);
    next.ZoomWindow(next.windowWidth * factor, next.windowHeight * factor);
    const g3d_Triple moved = oldCentre - next.ShownCentre();
    next.viewOffsetX = static_cast<float>(next.viewOffsetX + moved.x);
    next.viewOffsetY = static_cast<float>(next.viewOffsetY + moved.y);
    Commit(next);
}

void g3d_Camera::FitCenterVP(float x, float y, float z, bool moveEye) noexcept {
    if (!AllFinite(x, y, z)) {
        return;
    }
    const g3d_Triple point(x, y, z);
    const g3d_Triple shown = _state.ShownCentre();
    State next = _state;
    if (moveEye && !IsLayerXForm()) {
        next.MoveEye(next.ExactEye() + (point - next.ExactTarget()));
        next.MoveTarget(point);
        next.viewOffsetX = static_cast<float>(-shown.x);
        next.viewOffsetY = static_cast<float>(-shown.y);
        Commit(next);
        return;
    }

    const g3d_XForm& vom = ConstGetVOM();
    const auto eyeCoordinate = [&](int row) {
        return g3d_Triple(vom.M(row, 0), vom.M(row, 1), vom.M(row, 2)).Dot(point) + vom.M(row, 3);
    };
    const double depth = -eyeCoordinate(2);
    if (IsPerspective() && depth <= 0) {
        return;
    }
    const double scale = IsPerspective() ? next.nearDistance / depth : 1;
    const double offsetX = eyeCoordinate(0) * scale - shown.x;
    const double offsetY = eyeCoordinate(1) * scale - shown.y;
    if (moveEye) {
        Pan(static_cast<float>(offsetX - next.viewOffsetX),
            static_cast<float>(offsetY - next.viewOffsetY), 0, false);
        return;
    }
    next.viewOffsetX = static_cast<float>(offsetX);
    next.viewOffsetY = static_cast<float>(offsetY);
    Commit(next);
}

void g3d_Camera::Canned(const g3d_Sphere& sphere, g3d_SavedViewIdEnum view) noexcept {
    g3d_Vector direction;
    g3d_Vector up;
    if (view >= g3d_VIEW_USER1 && view <= g3d_VIEW_USER4) {
        const SavedView& saved = _savedViews[static_cast<std::size_t>(view - g3d_VIEW_USER1)];
        direction = saved.direction;
        up = saved.up;
    }
    for (const StandardView& standard : kStandardViews) {
        if (standard.view == view) {
            direction = standard.direction;
            up = standard.up;
        }
    }
    const double length = g3d_Triple(direction).Length();
    if (length == 0) {
        return;
    }
    State next = _state;
    next.TurnUp(g3d_Triple(up));
    if (next.FitSphere(g3d_Triple(direction) * (1 / length), sphere)) {
        Commit(next);
    }
}

bool g3d_Camera::SaveView(g3d_SavedViewIdEnum view) noexcept {
    if (view < g3d_VIEW_USER1 || view > g3d_VIEW_USER4) {
        return false;
    }
    _savedViews[static_cast<std::size_t>(view - g3d_VIEW_USER1)] = {Rounded(_state.ViewFrame().z),
                                                                    _state.up};
    return true;
}

void g3d_Camera::CorrectAspect(float width, float height, float pixelAspect, float xMin, float xMax,
                               float yMin, float yMax) noexcept {
    if (!AllFinite(width, height, pixelAspect, xMin, xMax, yMin, yMax) || width <= 0 ||
        height <= 0 || pixelAspect <= 0 || xMin >= xMax || yMin >= yMax) {
        return;
    }
    State next = _state;
    next.CorrectAspect(static_cast<double>(width) * pixelAspect / height, xMin, xMax, yMin, yMax);
    Commit(next);
}

void g3d_Camera::SetModelBoundingVolume(const g3d_BoundingVolume& volume, float margin) noexcept {
    if (volume.VertexCount() == 0 || !AreVertexesFinite(volume) || !AllFinite(margin)) {
        return;
    }
    const g3d_XForm& vom = ConstGetVOM();
    const g3d_Triple toward(vom.M(2, 0), vom.M(2, 1), vom.M(2, 2));
    double nearest = HUGE_VAL;
    double farthest = -HUGE_VAL;
    for (unsigned i = 0; i < volume.VertexCount(); ++i) {
        const double depth = -toward.Dot(g3d_Triple(volume.Vertexes()[i])) - vom.M(2, 3);
        nearest = std::min(nearest, depth);
        farthest = std::max(farthest, depth);
    }
    const double gap = std::max(margin, 0.0F) * (farthest - nearest) +
                       kClippingSafety * std::max(std::abs(nearest), std::abs(farthest));
    State next = _state;
    const double oldNear = next.nearDistance;
    nearest -= gap;
    farthest += gap;
    if (IsPerspective()) {
        if (farthest <= 0) {
            return;  // all of it is behind the eye
        }
        nearest = std::max(nearest, farthest * kSmallestNearPart);
    }
    next.nearDistance = static_cast<float>(nearest);
    next.farDistance = static_cast<float>(farthest);
    if (!next.IsFinite()) {
        return;
    }
    next.LimitNearFar();
    if (IsPerspective() && oldNear > 0) {
        // The window lies in the near plane and goes with it.
        const double scale = next.nearDistance / oldNear;
        next.viewOffsetX = static_cast<float>(next.viewOffsetX * scale);
        next.viewOffsetY = static_cast<float>(next.viewOffsetY * scale);
        next.StoreWindow(next.windowWidth * scale, next.windowHeight * scale);
    }
    next.SetMode(ClippedToModel, true);
    Commit(next);
}
