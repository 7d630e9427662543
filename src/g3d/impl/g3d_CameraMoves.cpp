// The gestures: pan, zoom and rotate.

#include "g3d_CameraFrame.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace g3d_camera;

namespace {

constexpr double kSmallestAngle = 1.1920929e-07;  // [deg]
constexpr double kSmallestNumerator = 1e-5;       // of a parallel pan's window scale
constexpr double kParallelSine = 1e-9;            // below it two vectors share a line

/// What a zoom out toward a position goes about.
enum ZoomOut { AboutPosition = 1, AboutCentre = 2, TransposeCentre = 3 };

ZoomOut ReadZoomOut() {
    const char* const text = std::getenv("TVX_ZOOM_TOWARD");
    if (text == nullptr) {
        return AboutPosition;
    }
    // Reads what "%d" reads, with a defined result for numbers that no int holds; no number is 0.
    const long choice = std::strtol(text, nullptr, 10);
    const auto mode = static_cast<ZoomOut>(std::clamp(choice, 1L, 3L));
    static constexpr const char* kChoices[] = {"use start drag for zoom out origin.",
                                               "use center for zoom out origin.",
                                               "transpose center toward start drag position."};
    std::fprintf(stderr, "TVX_ZOOM_TOWARD: Zoom-out set to %s\n", kChoices[mode - 1]);
    std::fflush(stderr);
    return mode;
}

/// Size of the new window as a part of the old one.
double ZoomFactor(double percent) noexcept {
    return percent >= 0 ? 1 - std::min(percent, 99.0) * 0.01
                        : 1 / (std::max(percent, -99.0) * 0.01 + 1);
}

g3d_XForm Translation(double x, double y, double z) noexcept {
    g3d_XForm result;
    result.Translate(x, y, z);
    return result;
}

void ZoomLayer(g3d_XForm& layer, const g3d_Point& target, double factor) noexcept {
    const g3d_Point centre = target.Cartesian();
    layer.Translate(centre.x, centre.y, centre.z);
    layer.Scale(1 / factor, 1 / factor, 1 / factor);
    layer.Translate(-centre.x, -centre.y, -centre.z);
}

}  // namespace

void g3d_Camera::State::Pan(double dx, double dy, double dz, bool moveEye) noexcept {
    if (dz == 0 && Has(Perspective) && !moveEye) {
        viewOffsetX = static_cast<float>(viewOffsetX + dx);
        viewOffsetY = static_cast<float>(viewOffsetY + dy);
        return;
    }
    const Frame frame = ViewFrame();
    const double scale = Has(Perspective) ? frame.distance / nearDistance : 1;
    const g3d_Triple shift = frame.ToWorld(dx * scale, dy * scale, dz * scale);
    MoveEye(ExactEye() + shift);
    MoveTarget(ExactTarget() + shift);
    if (moveEye && !Has(Perspective)) {
        const double factor = std::max(nearDistance + dz, kSmallestNumerator) / nearDistance;
        StoreWindow(windowWidth * factor, windowHeight * factor);
    }
}

/// Resizes the window within its limits, which unlike StoreWindow's keep its ratio.
void g3d_Camera::State::ZoomWindow(double width, double height) noexcept {
    double& smaller = width <= height ? width : height;
    double& larger = width <= height ? height : width;
    const double ratio = smaller > 0 ? larger / smaller : 1;
    const double minimum = WindowMinimum();
    if (smaller <= minimum) {
        smaller = minimum;
        larger = std::min(minimum * ratio, kLargestWindow);
    } else if (smaller >= kLargestWindow) {
        return;
    } else if (larger >= kLargestWindow) {
        larger = kLargestWindow;
        smaller = kLargestWindow / ratio;
    }
    windowWidth = static_cast<float>(width);
    windowHeight = static_cast<float>(height);
}

void g3d_Camera::State::Zoom(double factor, bool dolly) noexcept {
    State resized = *this;
    resized.ZoomWindow(windowWidth * factor, windowHeight * factor);
    if (dolly && Has(Perspective)) {
        Dolly(static_cast<double>(resized.windowWidth) / windowWidth);
    } else {
        *this = resized;
    }
}

/// Brings the eye to \p factor times its distance; what is seen at the centre of the window, at the
/// target's depth, stays there.
void g3d_Camera::State::Dolly(double factor) noexcept {
    const Frame frame = ViewFrame();
    const double forward = (1 - factor) * frame.distance;
    const double keptOffset = Has(KeepOffset) ? 1 : factor;
    const double sideways = (1 - factor * keptOffset) * frame.distance / nearDistance;
    const g3d_Triple shift = frame.ToWorld(viewOffsetX * sideways, viewOffsetY * sideways, 0);
    MoveEye(ExactEye() + shift - frame.z * forward);
    if (Has(KeepOffset)) {
        MoveTarget(ExactEye() - frame.z * (factor * frame.distance));
    } else {
        MoveTarget(ExactTarget() + shift);
        viewOffsetX = static_cast<float>(viewOffsetX * factor);
        viewOffsetY = static_cast<float>(viewOffsetY * factor);
    }
    if (Has(KeepFarPlane)) {
        farDistance = static_cast<float>(farDistance - forward);
        LimitNearFar();
    }
}

void g3d_Camera::State::Rotate(double angle, const g3d_Triple& axis, const g3d_Triple& centre,
                               bool carryEye, bool carryTarget) noexcept {
    SetMode(ClippedToModel, false);
    const double length = axis.Length();
    if (length == 0) {
        return;
    }
    const g3d_Triple unit = axis * (1 / length);
    const double c = std::cos(angle * kRadians);
    const double s = std::sin(angle * kRadians);
    const auto turned = [&](const g3d_Triple& v) {
        return v * c + unit.Cross(v) * s + unit * (unit.Dot(v) * (1 - c));
    };
    // A point of weight 0 is a direction: what moves the centre to the origin does not move it.
    const auto carried = [&](const g3d_Triple& place, float weight) {
        return weight == 0 ? turned(place) : centre + turned(place - centre);
    };
    if (carryEye) {
        MoveEye(carried(ExactEye(), eye.w));
    }
    if (carryTarget) {
        MoveTarget(carried(ExactTarget(), target.w));
    }
    TurnUp(turned(ExactUp()));
}

void g3d_Camera::Pan(float dx, float dy, float dz, bool moveEye) noexcept {
    if (!AllFinite(dx, dy, dz)) {
        return;
    }
    if (IsLayerXForm()) {
        CommitLayer(Translation(-dx, -dy, -dz) * _vom);
        return;
    }
    State next = _state;
    next.Pan(dx, dy, dz, moveEye);
    Commit(next);
}

void g3d_Camera::Zoom(float percent, bool dolly) noexcept {
    if (!AllFinite(percent)) {
        return;
    }
    const double factor = ZoomFactor(percent);
    if (IsLayerXForm()) {
        g3d_XForm next = _vom;
        ZoomLayer(next, _state.target, factor);
        CommitLayer(next);
        return;
    }
    State next = _state;
    next.Zoom(factor, dolly);
    Commit(next);
}

void g3d_Camera::Zoom(float x0, float y0, float x1, float y1, bool dolly) noexcept {
    const double width = std::abs(static_cast<double>(x1) - x0);
    const double height = std::abs(static_cast<double>(y1) - y0);
    if (!AllFinite(x0, y0, x1, y1) || width == 0 || height == 0 || _state.windowWidth == 0 ||
        _state.windowHeight == 0) {
        return;
    }
    const double x = (static_cast<double>(x0) + x1) / 2;
    const double y = (static_cast<double>(y0) + y1) / 2;
    State next = _state;
    const double partX = width / next.windowWidth;
    const double partY = height / next.windowHeight;
    if (IsLayerXForm()) {
        g3d_XForm zoom = Translation(next.viewOffsetX, next.viewOffsetY, 0);
        zoom.Scale(1 / partX, 1 / partY, 1);
        zoom.Translate(-next.viewOffsetX - x, -next.viewOffsetY - y, 0);
        CommitLayer(zoom * _vom);
        return;
    }
    next.Pan(x, y, 0, false);
    if (dolly && IsPerspective()) {
        const double part = std::max(partX, partY);
        next.Zoom(part, true);
        next.StoreWindow(width / part, height / part);
    } else {
        next.ZoomWindow(width, height);
    }
    Commit(next);
}

void g3d_Camera::ZoomTo(float x, float y, float percent, bool towardMode, bool dolly) noexcept {
    static const ZoomOut zoomOut = ReadZoomOut();
    if (!AllFinite(x, y, percent)) {
        return;
    }
    if (towardMode && percent <= 0 && zoomOut == AboutCentre) {
        Zoom(percent, dolly);
        return;
    }
    const double factor = ZoomFactor(percent);
    State next = _state;
    g3d_XForm layer = _vom;
    double ratio = 1;
    if (IsLayerXForm()) {
        layer = Translation(-x, -y, 0) * layer;
        ZoomLayer(layer, next.target, factor);
    } else {
        next.Pan(x, y, 0, false);
        next.Zoom(factor, dolly);
        ratio = static_cast<double>(next.windowWidth) / _state.windowWidth;
    }
    if (towardMode && percent >= 0) {
        ratio *= ratio;
    } else if (towardMode && zoomOut == TransposeCentre) {
        ratio = std::min(ratio * ratio, 1 + ratio);
    }
    if (IsLayerXForm()) {
        CommitLayer(Translation(ratio * x, ratio * y, 0) * layer);
    } else {
        next.Pan(-ratio * x, -ratio * y, 0, false);
        Commit(next);
    }
}

void g3d_Camera::Rotate(float angle, const g3d_Vector& axis, bool aboutEye) noexcept {
    if (AllFinite(angle) && IsFinite(axis)) {
        Turn(angle, g3d_Triple(axis), nullptr, aboutEye);
    }
}

void g3d_Camera::Rotate(float angle, const g3d_Vector& axis, const g3d_Point& centre) noexcept {
    if (AllFinite(angle) && IsFinite(axis) && IsFinite(centre)) {
        Turn(angle, g3d_Triple(axis), &centre, false);
    }
}

void g3d_Camera::Rotate(const g3d_Vector& from, const g3d_Vector& to, bool aboutEye) noexcept {
    if (IsFinite(from) && IsFinite(to)) {
        Turn(from, to, nullptr, aboutEye);
    }
}

void g3d_Camera::Rotate(const g3d_Vector& from, const g3d_Vector& to,
                        const g3d_Point& centre) noexcept {
    if (IsFinite(from) && IsFinite(to) && IsFinite(centre)) {
        Turn(from, to, &centre, false);
    }
}

/// About \p centre, or if that is null about the eye or the target.
void g3d_Camera::Turn(double angle, const g3d_Triple& axis, const g3d_Point* centre,
                      bool aboutEye) noexcept {
    if (angle > 360) {
        angle -= 360;
    }
    if (std::abs(angle) <= kSmallestAngle) {
        return;
    }
    if (IsLayerXForm()) {
        const g3d_Triple about(centre != nullptr ? *centre
                                                 : (aboutEye ? _state.eye : _state.target));
        g3d_XForm next = _vom;
        next.Translate(about.x, about.y, about.z);
        next.Rotate(-angle, Rounded(axis));
        next.Translate(-about.x, -about.y, -about.z);
        CommitLayer(next);
        return;
    }
    const g3d_Triple own = aboutEye ? _state.ExactEye() : _state.ExactTarget();
    const g3d_Triple about = centre != nullptr ? g3d_Triple(*centre) : own;
    State next = _state;
    next.Rotate(angle, axis, about, centre != nullptr || !aboutEye, centre != nullptr || aboutEye);
    Commit(next);
}

void g3d_Camera::Turn(const g3d_Vector& from, const g3d_Vector& to, const g3d_Point* centre,
                      bool aboutEye) noexcept {
    const g3d_Triple fullFrom(from);
    const g3d_Triple fullTo(to);
    if (fullFrom.Length() == 0 || fullTo.Length() == 0) {
        return;
    }
    const g3d_Triple start = fullFrom * (1 / fullFrom.Length());
    const g3d_Triple end = fullTo * (1 / fullTo.Length());
    const g3d_Triple axis = start.Cross(end);
    if (axis.Length() > kParallelSine) {
        const double angle = std::atan2(axis.Length(), start.Dot(end)) * kDegrees;
        Turn(angle, axis, centre, aboutEye);
        return;
    }
    if (start.Dot(end) > 0) {
        return;
    }
    // Half a turn, about any direction across the start: up if it can be, else the view's own
    // x or y, of which at least one is far from the start.
    const Frame frame = _state.ViewFrame();
    const g3d_Triple upward = Across(g3d_Triple(_state.up), start);
    g3d_Triple pole = upward;
    if (upward.Length() <= 1e-6 * g3d_Triple(_state.up).Length()) {
        const bool xIsFarther = std::abs(start.Dot(frame.x)) <= std::abs(start.Dot(frame.y));
        pole = Across(xIsFarther ? frame.x : frame.y, start);
    }
    Turn(180, pole * (1 / pole.Length()), centre, aboutEye);
}
