#include "g3d_Camera.h"

#include "g3d_CameraFrame.h"

#include <algorithm>
#include <limits>
#include <numbers>

using namespace g3d_camera;

namespace {

constexpr double kLargestFloat = std::numeric_limits<float>::max();
constexpr double kSmallestNear = 1e-5;
constexpr double kSmallestDepth = 1e-5;  // of far - near, as a part of near
constexpr double kSmallestWindow = 0.0001;
constexpr double kSmallestResize = 1e-4;
constexpr float kSmallestFitDistance = 3.3F;
constexpr double kLayerReferenceSize = 1;

/// Moves \p point, which keeps its weight. Returns what rounding took from it.
g3d_Vector Place(g3d_Point& point, const g3d_Triple& position) noexcept {
    const double weight = point.w == 0 ? 1 : point.w;
    const g3d_Vector scaled = Rounded(position * weight);
    point = g3d_Point(scaled.x, scaled.y, scaled.z, point.w);
    return Rounded(position - g3d_Triple(point));
}

/// No infinity may leave the matrices of an extreme view.
void Saturate(g3d_XForm& xform) noexcept {
    for (int i = 0; i < 16; ++i) {
        float& element = xform.M(i / 4, i % 4);
        element = static_cast<float>(std::clamp<double>(element, -kLargestFloat, kLargestFloat));
    }
}

}  // namespace

// The state: what its fields mean together.

bool g3d_Camera::State::IsFinite() const noexcept {
    using g3d_camera::IsFinite;
    return IsFinite(eye) && IsFinite(target) && IsFinite(up) &&
           AllFinite(windowWidth, windowHeight, nearDistance, farDistance) &&
           AllFinite(viewOffsetX, viewOffsetY, xMin, xMax, yMin, yMax, fitDistance) &&
           IsFinite(eyeRest) && IsFinite(targetRest) && IsFinite(upRest);
}

bool g3d_Camera::State::SameLocation(const State& other) const noexcept {
    return eye == other.eye && target == other.target && up == other.up;
}

bool g3d_Camera::State::SameProjection(const State& other) const noexcept {
    return Has(Perspective) == other.Has(Perspective) && windowWidth == other.windowWidth &&
           windowHeight == other.windowHeight && nearDistance == other.nearDistance &&
           farDistance == other.farDistance && viewOffsetX == other.viewOffsetX &&
           viewOffsetY == other.viewOffsetY && xMin == other.xMin && xMax == other.xMax &&
           yMin == other.yMin && yMax == other.yMax;
}

g3d_Triple g3d_Camera::State::ExactEye() const noexcept {
    return g3d_Triple(eye) + g3d_Triple(eyeRest);
}

g3d_Triple g3d_Camera::State::ExactTarget() const noexcept {
    return g3d_Triple(target) + g3d_Triple(targetRest);
}

g3d_Triple g3d_Camera::State::ExactUp() const noexcept {
    return g3d_Triple(up) + g3d_Triple(upRest);
}

void g3d_Camera::State::MoveEye(const g3d_Triple& position) noexcept {
    eyeRest = Place(eye, position);
}

void g3d_Camera::State::MoveTarget(const g3d_Triple& position) noexcept {
    targetRest = Place(target, position);
}

void g3d_Camera::State::TurnUp(const g3d_Triple& direction) noexcept {
    up = Rounded(direction);
    upRest = Rounded(direction - g3d_Triple(up));
}

/// Up is within a millionth of the line of sight, where rounding would tilt x out of square, or
/// says nothing at all; or the eye is at the target.
g3d_Camera::Frame g3d_Camera::State::DegenerateFrame() const noexcept {
    g3d_Triple sight = g3d_Triple(eye) - g3d_Triple(target);
    const double distance = sight.Length();
    if (distance == 0) {
        sight = g3d_Triple(0, 0, 1);
    }
    const g3d_Triple z = sight * (1 / sight.Length());
    const g3d_Triple upward(up);
    g3d_Triple across = upward.Cross(sight);
    // Each of its terms is rounded: less than that, of what they were, is no direction.
    const double terms = g3d_Triple(std::hypot(upward.y * sight.z, upward.z * sight.y),
                                    std::hypot(upward.z * sight.x, upward.x * sight.z),
                                    std::hypot(upward.x * sight.y, upward.y * sight.x))
                             .Length();
    if (!(across.Length() > 1e-14 * terms)) {
        across = (std::abs(z.y) < 0.9 ? g3d_Triple(0, 1, 0) : g3d_Triple(0, 0, 1)).Cross(z);
    }
    across = Across(across * (1 / across.Length()), z);
    const g3d_Triple x = across * (1 / across.Length());
    return {x, z.Cross(x), z, distance};
}

double g3d_Camera::State::WindowMinimum() const noexcept {
    if (!Has(Perspective)) {
        return kSmallestWindow;
    }
    const double distance = (g3d_Triple(eye) - g3d_Triple(target)).Length();
    if (distance == 0) {
        return kSmallestWindow;
    }
    return std::clamp(nearDistance * kSmallestWindow / distance, kSmallestWindow, kLargestWindow);
}

void g3d_Camera::State::LimitNearFar() noexcept {
    if (Has(LayerXForm)) {
        return;
    }
    if (nearDistance < kSmallestNear) {
        nearDistance = static_cast<float>(kSmallestNear);
    }
    const double depth = nearDistance * kSmallestDepth;
    if (static_cast<double>(farDistance) - nearDistance < depth) {
        if (nearDistance > kLargestFloat - depth) {
            nearDistance = static_cast<float>(kLargestFloat - depth);
            farDistance = static_cast<float>(kLargestFloat);
        } else {
            farDistance = static_cast<float>(nearDistance + depth);
        }
    }
}

void g3d_Camera::State::StoreWindow(double width, double height) noexcept {
    if (!Has(LayerXForm)) {
        const double minimum = WindowMinimum();
        // Not std::clamp: a NaN passes, for Commit to refuse.
        for (double* side : {&width, &height}) {
            if (*side <= minimum) {
                *side = minimum;
            } else if (*side >= kLargestWindow) {
                *side = kLargestWindow;
            }
        }
    }
    windowWidth = static_cast<float>(width);
    windowHeight = static_cast<float>(height);
}

void g3d_Camera::State::MakePerspective() noexcept {
    if (Has(Perspective)) {
        return;
    }
    const double distance = ViewFrame().distance;
    const double scale = distance > 0 ? nearDistance / distance : 1;
    viewOffsetX = static_cast<float>(viewOffsetX * scale);
    viewOffsetY = static_cast<float>(viewOffsetY * scale);
    SetMode(Perspective, true);
    SetMode(ClippedToModel, false);
    StoreWindow(windowWidth * scale, windowHeight * scale);
}

void g3d_Camera::State::MakeParallel() noexcept {
    if (!Has(Perspective)) {
        return;
    }
    const Frame frame = ViewFrame();
    const double scale = frame.distance > 0 && nearDistance > 0 ? frame.distance / nearDistance : 1;
    if (viewOffsetX != 0 || viewOffsetY != 0) {
        const g3d_Triple shift = frame.ToWorld(viewOffsetX * scale, viewOffsetY * scale, 0);
        MoveEye(ExactEye() + shift);
        MoveTarget(ExactTarget() + shift);
        viewOffsetX = 0;
        viewOffsetY = 0;
    }
    SetMode(Perspective, false);
    SetMode(ClippedToModel, false);
    StoreWindow(windowWidth * scale, windowHeight * scale);
}

// The camera as a value.

g3d_Camera& g3d_Camera::operator=(const g3d_Camera& other) noexcept {
    if (this == &other) {
        return *this;
    }
    if (!other.IsLayerXForm()) {
        if (other._state.vomOutOfDate == 0) {
            _vom = other._vom;
        }
        if (other._state.pmOutOfDate == 0) {
            _pm = other._pm;
        }
        _state = other._state;
        _savedViews = other._savedViews;
        return *this;
    }
    State next = _state;
    next.SetMode(LayerXForm, true);
    next.SetMode(Perspective, other.IsPerspective());
    next.target = other._state.target;
    next.targetRest = other._state.targetRest;
    Commit(next);
    _vom = other._vom;
    return *this;
}

bool g3d_Camera::operator==(const g3d_Camera& other) const noexcept {
    const State& a = _state;
    const State& b = other._state;
    if (other.IsLayerXForm()) {
        return IsLayerXForm() && a.target == b.target && _vom == other._vom;
    }
    constexpr int kCompared = Perspective | KeepOffset | KeepFarPlane | ClippedToModel | LayerXForm;
    return a.SameLocation(b) && ((a.modeBits ^ b.modeBits) & kCompared) == 0 &&
           a.viewOffsetX == b.viewOffsetX && a.viewOffsetY == b.viewOffsetY &&
           a.windowWidth == b.windowWidth && a.windowHeight == b.windowHeight &&
           a.nearDistance == b.nearDistance && a.farDistance == b.farDistance;
}

bool g3d_Camera::IsIdentical(const g3d_Camera& other) const noexcept {
    const State& a = _state;
    const State& b = other._state;
    return a.SameLocation(b) && a.SameProjection(b) && a.modeBits == b.modeBits &&
           a.fitDistance == b.fitDistance && a.eyeRest == b.eyeRest &&
           a.targetRest == b.targetRest && a.upRest == b.upRest &&
           _savedViews == other._savedViews && (!IsLayerXForm() || _vom == other._vom);
}

/// Where fields change, and so where a matrix goes out of date; but for SetLocation and SetNearFar,
/// which animations call for every picture and which spare the copy.
void g3d_Camera::Commit(const State& next) noexcept {
    if (!next.IsFinite()) {
        return;
    }
    const bool sameLocation = _state.SameLocation(next);
    const bool sameProjection = _state.SameProjection(next);
    _state = next;
    if (!sameLocation) {
        _state.vomOutOfDate = 1;
    }
    if (!sameProjection) {
        _state.pmOutOfDate = 1;
    }
}

// The matrices.

// Flattened: a frame handed over in memory would be waited for.
[[gnu::flatten]] void g3d_Camera::GenerateVOM() const noexcept {
    const Frame frame = _state.ViewFrame();
    const g3d_Triple toEye = g3d_Triple(_state.eye) * -1;
    const auto setRow = [&](int i, const g3d_Triple& axis) {
        const auto x = static_cast<float>(axis.x);
        const auto y = static_cast<float>(axis.y);
        const auto z = static_cast<float>(axis.z);
        const auto shift = static_cast<float>(g3d_Triple(x, y, z).Dot(toEye));
        _vom.M(i, 0) = x;
        _vom.M(i, 1) = y;
        _vom.M(i, 2) = z;
        _vom.M(i, 3) = shift;
        _vom.M(3, i) = 0;
        return shift;
    };
    const float x = setRow(0, frame.x);
    const float y = setRow(1, frame.y);
    const float z = setRow(2, frame.z);
    _vom.M(3, 3) = 1;
    if (!std::isfinite(x + y + z)) {  // or only nearly infinite, which saturation leaves alone
        Saturate(_vom);
    }
    _state.vomOutOfDate = 0;
}

void g3d_Camera::GeneratePM() const noexcept {
    const State& s = _state;
    const double left = (s.xMin - 0.5) * s.windowWidth + s.viewOffsetX;
    const double right = (s.xMax - 0.5) * s.windowWidth + s.viewOffsetX;
    const double top = (s.yMax - 0.5) * s.windowHeight + s.viewOffsetY;
    const double bottom = (s.yMin - 0.5) * s.windowHeight + s.viewOffsetY;
    if (IsPerspective()) {
        _pm.SetPerspectiveProjection(left, right, top, bottom, s.nearDistance, s.farDistance);
    } else {
        _pm.SetOrthographicProjection(left, right, top, bottom, s.nearDistance, s.farDistance);
    }
    const auto m = [this](int i, int j) { return _pm.GetM(i, j); };
    if (!std::isfinite(m(0, 0) + m(0, 2) + m(0, 3) + m(1, 1) + m(1, 2) + m(1, 3) + m(2, 2) +
                       m(2, 3))) {
        Saturate(_pm);
    }
    s.pmOutOfDate = 0;
}

// Setters.

void g3d_Camera::SetWindow(float width, float height) noexcept {
    if (!AllFinite(width, height)) {
        return;
    }
    State next = _state;
    next.StoreWindow(width, height);
    Commit(next);
}

void g3d_Camera::SetViewOffset(float x, float y) noexcept {
    State next = _state;
    next.viewOffsetX = x;
    next.viewOffsetY = y;
    Commit(next);
}

bool g3d_Camera::SetProjection(g3d_ProjectionEnum projection) noexcept {
    const bool perspective = projection == g3d_PERSPECTIVE;
    const bool changes = perspective != IsPerspective();
    State next = _state;
    next.SetMode(Perspective, perspective);
    next.SetMode(ClippedToModel, false);
    Commit(next);
    return changes;
}

bool g3d_Camera::SetProjection(ProjectionEnum projection) noexcept {
    return SetProjection(static_cast<g3d_ProjectionEnum>(projection));
}

void g3d_Camera::MakePerspective() noexcept {
    State next = _state;
    next.MakePerspective();
    Commit(next);
}

void g3d_Camera::MakeParallel() noexcept {
    State next = _state;
    next.MakeParallel();
    Commit(next);
}

float g3d_Camera::GetFieldOfView() const noexcept {
    const double distance =
        IsPerspective() ? static_cast<double>(_state.nearDistance) : _state.ViewFrame().distance;
    const double side = std::max(_state.windowWidth, _state.windowHeight);
    return static_cast<float>(2 * std::atan2(side / 2, distance) * kDegrees);
}

void g3d_Camera::SetFieldOfView(float angle, bool resizeWindow) noexcept {
    if (!AllFinite(angle)) {
        return;
    }
    State next = _state;
    const double width = next.windowWidth;
    const double height = next.windowHeight;
    if (!resizeWindow) {
        const double side = std::max(width, height);
        const double nearDistance = std::tan((180.0 - angle) / 2 * kRadians) * side / 2;
        next.nearDistance = static_cast<float>(nearDistance);
        // Before the limits, which would take an infinite near for a large one.
        if (!next.IsFinite()) {
            return;
        }
        next.LimitNearFar();
    } else {
        const double distance =
            IsPerspective() ? static_cast<double>(next.nearDistance) : next.ViewFrame().distance;
        const double side = 2 * distance * std::tan(angle / 2.0 * kRadians);
        const double ratio = width / height;
        const double larger = std::max(width, height);
        if (std::abs(side - larger) > kSmallestResize) {
            next.StoreWindow(side, width >= height ? side / ratio : side * ratio);
            next.viewOffsetX = static_cast<float>(next.viewOffsetX * (side / larger));
            next.viewOffsetY = static_cast<float>(next.viewOffsetY * (side / larger));
        }
    }
    next.SetMode(ClippedToModel, false);
    Commit(next);
}

void g3d_Camera::SetNearFar(float nearDistance, float farDistance) noexcept {
    if (!AllFinite(nearDistance, farDistance)) {
        return;
    }
    if (nearDistance != _state.nearDistance || farDistance != _state.farDistance) {
        _state.nearDistance = nearDistance;
        _state.farDistance = farDistance;
        _state.LimitNearFar();
        _state.pmOutOfDate = 1;
    }
    _state.SetMode(ClippedToModel, false);
}

void g3d_Camera::SetLocation(const g3d_Point& eye, const g3d_Point& target,
                             const g3d_Vector& up) noexcept {
    if (eye.w == 1 && target.w == 1) {
        // Finite and not zero: so are all three then, and nothing wants correction.
        const g3d_Triple sight(double{eye.x} - target.x, double{eye.y} - target.y,
                               double{eye.z} - target.z);
        const double area = g3d_Triple(up).Cross(sight).Squared();
        if (area > 0 && area <= std::numeric_limits<double>::max()) {
            StoreLocation(eye, target, up);
            return;
        }
    }

    g3d_Point newEye = eye;
    if (eye == target) {
        newEye.z = static_cast<float>(eye.z * 1.1);
    }
    if (!IsFinite(newEye) || !IsFinite(target) || !IsFinite(up)) {
        return;
    }
    g3d_Vector newUp = up == g3d_Vector() ? g3d_Vector(0, 1, 0) : up;
    const g3d_Triple sight = g3d_Triple(newEye) - g3d_Triple(target);
    if (g3d_Triple(newUp).Cross(sight).Squared() == 0) {
        newUp = newUp.y > newUp.z ? g3d_Vector(0, 0, 1) : g3d_Vector(0, 1, 0);
    }
    StoreLocation(newEye, target, newUp);
}

/// The arguments may be our own, each in its place or in another's.
inline void g3d_Camera::StoreLocation(const g3d_Point& eye, const g3d_Point& target,
                                      const g3d_Vector& up) noexcept {
    const g3d_Point newEye = eye;
    _state.target = target;
    _state.targetRest = g3d_Vector();
    if (IsLayerXForm()) {
        return;
    }
    _state.eye = newEye;
    _state.up = up;
    _state.eyeRest = g3d_Vector();
    _state.upRest = g3d_Vector();
    _state.vomOutOfDate = 1;
    if (_state.viewOffsetX != 0 || _state.viewOffsetY != 0) {
        _state.viewOffsetX = 0;
        _state.viewOffsetY = 0;
        _state.pmOutOfDate = 1;
    }
    _state.SetMode(ClippedToModel, false);
}

void g3d_Camera::SetFitDistance(float distance) noexcept {
    if (!AllFinite(distance)) {
        return;
    }
    State next = _state;
    next.fitDistance = std::max(distance, kSmallestFitDistance);
    Commit(next);
}

void g3d_Camera::SetDollyMode(bool keepOffset, bool keepFarPlane) noexcept {
    State next = _state;
    next.SetMode(KeepOffset, keepOffset);
    next.SetMode(KeepFarPlane, keepFarPlane);
    Commit(next);
}

// The layer-transform mode.

void g3d_Camera::CommitLayer(const g3d_XForm& next) noexcept {
    if (IsFinite(next)) {
        _vom = next;
    }
}

void g3d_Camera::SetLayerXForm(bool on, const g3d_XForm* matrix) noexcept {
    if (on && matrix != nullptr && !IsFinite(*matrix)) {
        return;
    }
    const g3d_XForm given = matrix != nullptr ? *matrix : g3d_XForm();  // may be our own
    State next = _state;
    if (on && !IsLayerXForm()) {
        next.MakeParallel();
        next.CorrectAspect(1, 0, 1, 0, 1);
        next.target = next.target.Cartesian();
        next.targetRest = g3d_Vector();
        if (!next.IsFinite()) {
            return;
        }
        Commit(next);
        GenerateVOM();
        const double scale = next.windowWidth > 0 ? kLayerReferenceSize / next.windowWidth : 1;
        g3d_XForm scaling;
        scaling.SetScale(scale, scale, scale);
        _vom = scaling * _vom;
        next = _state;
    }
    next.SetMode(LayerXForm, on);
    if (on) {
        next.SetMode(Perspective, false);
    } else {
        next.vomOutOfDate = 1;
        next.pmOutOfDate = 1;
        if (IsLayerXForm()) {  // where nothing limits them
            next.LimitNearFar();
            next.StoreWindow(next.windowWidth, next.windowHeight);
        }
    }
    Commit(next);
    if (on && matrix != nullptr) {
        _vom = given;
    }
}

aio_ostream& operator<<(aio_ostream& stream, const g3d_Camera& camera) {
    const g3d_Camera::State& s = camera._state;
    const auto pair = [&stream](const char* name, double a, double b) {
        stream << "  " << name << " (" << a << ", " << b << ")\n";
    };
    const auto flag = [&stream](const char* name, bool set) {
        stream << "  " << name << (set ? " on\n" : " off\n");
    };
    stream << "{\n  projection " << (camera.IsPerspective() ? "perspective" : "parallel") << "\n";
    stream << "  eye " << s.eye << " + " << s.eyeRest << "\n";
    stream << "  target " << s.target << " + " << s.targetRest << "\n";
    stream << "  up " << s.up << " + " << s.upRest << "\n";
    pair("window", s.windowWidth, s.windowHeight);
    pair("near, far", s.nearDistance, s.farDistance);
    pair("view offset", s.viewOffsetX, s.viewOffsetY);
    pair("viewport x", s.xMin, s.xMax);
    pair("viewport y", s.yMin, s.yMax);
    stream << "  fit distance " << static_cast<double>(s.fitDistance) << "\n";
    flag("dolly keeps offset", camera.DollyKeepsOffset());
    flag("dolly keeps far plane", camera.DollyKeepsFarPlane());
    flag("clipped to model", camera.IsClippedToModel());
    for (int i = 0; i < g3d_Camera::kUserViews; ++i) {
        const g3d_Camera::SavedView& view = camera._savedViews[static_cast<std::size_t>(i)];
        stream << "  saved view " << (i + 1) << " " << view.direction << ", up " << view.up << "\n";
    }
    flag("layer transform", camera.IsLayerXForm());
    if (camera.IsLayerXForm()) {
        stream << "  matrix " << camera._vom;
    }
    return stream << "}\n";
}
