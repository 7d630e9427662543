#pragma once

#include "g3d_Point.h"
#include "g3d_ProjectionEnum.h"
#include "g3d_SavedViewIdEnum.h"
#include "g3d_Vector.h"
#include "g3d_XForm.h"

#include <array>

class g3d_BoundingVolume;
class g3d_Sphere;
struct g3d_Triple;

/// The viewing camera: an eye that looks at a target, and the window through which it sees.
///
/// A value; copies share nothing. The two matrices are made when somebody reads them, also through
/// const accessors: one thread at a time, readers included. No operation reports an error: one with
/// a NaN or infinite argument, or whose result floats cannot hold, changes nothing at all.
/// Positions and lengths "in window units" are measured in the window's plane: at the near distance
/// for perspective, in world units for parallel; positions from the window's centre.
///
/// In the layer-transform mode the view orientation matrix comes from outside, and pan, zoom and
/// rotate change that matrix instead of the eye.
class CAE_API g3d_Camera {
public:
    enum ProjectionEnum : int { PARALLEL = g3d_PARALLEL, PERSPECTIVE = g3d_PERSPECTIVE };

    /// Perspective, from (2, 0, 0) at the origin, y up, window 1 x 1, near 1, far 10000.
    g3d_Camera() noexcept = default;
    g3d_Camera(const g3d_Camera&) noexcept = default;
    /// Takes everything over; of a camera in layer-transform mode only that mode, its matrix, the
    /// target and the projection.
    g3d_Camera& operator=(const g3d_Camera& other) noexcept;
    ~g3d_Camera() = default;

    /// Same view: location, modes, view offset, window, near and far agree exactly, whatever part
    /// of it a viewport shows; in layer-transform mode targets and matrices alone.
    [[nodiscard]] bool operator==(const g3d_Camera& other) const noexcept;
    /// Same state in everything, saved views and viewport included: such cameras stay alike under
    /// the same operations.
    [[nodiscard]] bool IsIdentical(const g3d_Camera& other) const noexcept;

    /// World to eye coordinates; the camera looks along -z. Rigid, unless in layer-transform mode.
    [[nodiscard]] const g3d_XForm& ConstGetVOM() const noexcept {
        if (_state.vomOutOfDate != 0 && !IsLayerXForm()) {
            GenerateVOM();
        }
        return _vom;
    }
    /// Eye to clip coordinates, for the part of the window that the viewport shows.
    [[nodiscard]] const g3d_XForm& ConstGetPM() const noexcept {
        if (_state.pmOutOfDate != 0) {
            GeneratePM();
        }
        return _pm;
    }

    [[nodiscard]] const g3d_Point& Eye() const noexcept { return _state.eye; }
    [[nodiscard]] const g3d_Point& Target() const noexcept { return _state.target; }
    [[nodiscard]] const g3d_Vector& Up() const noexcept { return _state.up; }
    [[nodiscard]] float WindowWidth() const noexcept { return _state.windowWidth; }
    [[nodiscard]] float WindowHeight() const noexcept { return _state.windowHeight; }
    [[nodiscard]] float Near() const noexcept { return _state.nearDistance; }
    [[nodiscard]] float Far() const noexcept { return _state.farDistance; }
    [[nodiscard]] float ViewOffsetX() const noexcept { return _state.viewOffsetX; }
    [[nodiscard]] float ViewOffsetY() const noexcept { return _state.viewOffsetY; }
    /// The part of the window that is shown, as fractions of the window from its lower left corner;
    /// beyond [0, 1] where the picture is wider or taller than the window.
    [[nodiscard]] float ViewportXMin() const noexcept { return _state.xMin; }
    [[nodiscard]] float ViewportXMax() const noexcept { return _state.xMax; }
    [[nodiscard]] float ViewportYMin() const noexcept { return _state.yMin; }
    [[nodiscard]] float ViewportYMax() const noexcept { return _state.yMax; }
    [[nodiscard]] float FitDistance() const noexcept { return _state.fitDistance; }
    [[nodiscard]] bool IsPerspective() const noexcept { return _state.Has(Perspective); }
    [[nodiscard]] bool IsLayerXForm() const noexcept { return _state.Has(LayerXForm); }
    [[nodiscard]] bool DollyKeepsOffset() const noexcept { return _state.Has(KeepOffset); }
    [[nodiscard]] bool DollyKeepsFarPlane() const noexcept { return _state.Has(KeepFarPlane); }
    /// Near and far are still those that SetModelBoundingVolume chose.
    [[nodiscard]] bool IsClippedToModel() const noexcept { return _state.Has(ClippedToModel); }

    /// Extent of the window; each side is held within its limits on its own.
    void SetWindow(float width, float height) noexcept;
    /// Shift of the window's centre, in window units.
    void SetViewOffset(float x, float y) noexcept;
    /// Whether the projection changed; the window keeps its size. 1 is perspective, all else
    /// parallel.
    bool SetProjection(g3d_ProjectionEnum projection) noexcept;
    bool SetProjection(ProjectionEnum projection) noexcept;
    /// Switches the projection and keeps what is visible at the target.
    void MakePerspective() noexcept;
    void MakeParallel() noexcept;
    /// Angle over the larger side of the window [deg].
    [[nodiscard]] float GetFieldOfView() const noexcept;
    /// Resizes the window, or else moves the near distance, for an angle [deg]. A window taller
    /// than wide comes out wider than tall.
    void SetFieldOfView(float angle, bool resizeWindow) noexcept;
    /// Clipping distances from the eye along the view direction; corrected to
    /// near >= 1e-5 and far >= near (1 + 1e-5).
    void SetNearFar(float nearDistance, float farDistance) noexcept;
    /// Corrects an eye at the target, and an up that is zero or along the line of sight.
    void SetLocation(const g3d_Point& eye, const g3d_Point& target, const g3d_Vector& up) noexcept;
    /// Distance at which the fits place the eye, in radii of the sphere; at least 3.3, below which
    /// the window would cut the sphere's rim.
    void SetFitDistance(float distance) noexcept;
    /// How a dollying zoom moves the target: \p keepOffset keeps the view offset where it is (else
    /// it shrinks with the view), \p keepFarPlane keeps the far plane at its place in the world.
    void SetDollyMode(bool keepOffset, bool keepFarPlane) noexcept;

    /// Moves the view by (dx, dy, dz) in eye coordinates [window units]. A perspective view moves
    /// sideways by shifting the window, unless \p moveEye; a parallel one scales it for dz then.
    void Pan(float dx, float dy, float dz, bool moveEye) noexcept;
    /// Shows less (percent up to 99, the part of the window taken away) or more (down to -99).
    /// \p dolly moves the eye instead of resizing the window; a parallel view, which the eye's
    /// distance does not magnify, resizes the window all the same.
    void Zoom(float percent, bool dolly) noexcept;
    /// Zooms to the rectangle with these opposite corners [window units]: it becomes the window,
    /// ratio included (CorrectAspect makes circles round again). \p dolly moves the eye instead, so
    /// far as the ratio allows. A rectangle without area changes nothing.
    void Zoom(float x0, float y0, float x1, float y1, bool dolly) noexcept;
    /// Zooms about the position (x, y) [window units], which stays where it is; with \p towardMode
    /// a zoom in draws it to the centre, and TVX_ZOOM_TOWARD chooses what a zoom out does.
    void ZoomTo(float x, float y, float percent, bool towardMode, bool dolly) noexcept;

    /// Turns the camera by an angle [deg] about an axis in world coordinates, through the eye or
    /// through the target, which stays where it is, or through any centre.
    void Rotate(float angle, const g3d_Vector& axis, bool aboutEye) noexcept;
    void Rotate(float angle, const g3d_Vector& axis, const g3d_Point& centre) noexcept;
    /// The shortest turn that carries \p from onto \p to, in world coordinates; opposite vectors
    /// turn about the direction across \p from that is nearest to up. A zero vector turns nothing.
    void Rotate(const g3d_Vector& from, const g3d_Vector& to, bool aboutEye) noexcept;
    void Rotate(const g3d_Vector& from, const g3d_Vector& to, const g3d_Point& centre) noexcept;

    /// Shows the whole sphere from the present direction; an empty one changes nothing. The window
    /// becomes square.
    void Fit(const g3d_Sphere& sphere) noexcept;
    /// The same for all vertices of a volume, a single point included; one without any changes
    /// nothing.
    void Fit(const g3d_BoundingVolume& volume) noexcept;
    /// The same for the box with these opposite corners.
    void Fit(const g3d_Point& corner, const g3d_Point& opposite) noexcept;
    /// Resizes the window, ratio kept, so that \p width x \p height [window units] just fit into
    /// the part that the viewport shows, whose centre stays.
    void FitVP(float width, float height) noexcept;
    /// Brings a point of the world to the centre of the part that the viewport shows: \p moveEye
    /// makes it the target, else the window is shifted (not for a point behind the eye).
    void FitCenterVP(float x, float y, float z, bool moveEye) noexcept;
    /// Fits the sphere from a standard or saved direction. A view not yet saved changes nothing.
    void Canned(const g3d_Sphere& sphere, g3d_SavedViewIdEnum view) noexcept;
    /// Saves the present direction and up in this camera, for Canned; false unless for a user view.
    bool SaveView(g3d_SavedViewIdEnum view) noexcept;
    /// Chooses the viewport so that circles are round in a picture of \p width x \p height pixels,
    /// a pixel being \p pixelAspect times as wide as tall, which shows at least the part
    /// [xMin, xMax] x [yMin, yMax] of the window (fractions; all of it is 0, 1, 0, 1). The window
    /// itself stays: to be called again only when picture or ratio of the window change.
    void CorrectAspect(float width, float height, float pixelAspect, float xMin, float xMax,
                       float yMin, float yMax) noexcept;
    /// Moves near and far as close to the volume as its vertices allow, \p margin times its depth
    /// away on each side, and keeps the picture. A perspective near stays above far / 10000.
    void SetModelBoundingVolume(const g3d_BoundingVolume& volume, float margin) noexcept;

    /// Enters or leaves the layer-transform mode, which is parallel; \p matrix (may be null) is
    /// copied and becomes the view orientation matrix. Without one a camera that enters keeps its
    /// own, scaled to a window of width 1.
    void SetLayerXForm(bool on, const g3d_XForm* matrix) noexcept;

    /// Every field by name, one a line, saved views and the layer's matrix included.
    friend CAE_API aio_ostream& operator<<(aio_ostream& stream, const g3d_Camera& camera);

private:
    enum ModeBit : unsigned char {
        Perspective = 1,
        KeepOffset = 2,
        KeepFarPlane = 8,
        ClippedToModel = 16,
        LayerXForm = 32
    };

    struct Frame;

    /// All but the matrices and the saved views. An operation changes a copy, which Commit takes
    /// over whole or not at all.
    struct State {
        g3d_Point eye{2, 0, 0, 1};
        g3d_Point target{0, 0, 0, 1};
        g3d_Vector up{0, 1, 0};
        float windowWidth = 1;
        float windowHeight = 1;
        float nearDistance = 1;
        float farDistance = 10000;
        mutable unsigned char vomOutOfDate = 1;
        mutable unsigned char pmOutOfDate = 1;
        unsigned char modeBits = Perspective;  // bits without a name stay 0
        float viewOffsetX = 0;
        float viewOffsetY = 0;
        float xMin = 0;
        float xMax = 1;
        float yMin = 0;
        float yMax = 1;
        float fitDistance = 4;
        // What rounding to float took from eye, target and up, so that thousands of small moves do
        // not add up their rounding. The matrices do without.
        g3d_Vector eyeRest;
        g3d_Vector targetRest;
        g3d_Vector upRest;

        [[nodiscard]] bool Has(ModeBit bit) const noexcept { return (modeBits & bit) != 0; }
        void SetMode(ModeBit bit, bool on) noexcept {
            modeBits = static_cast<unsigned char>(on ? modeBits | bit : modeBits & ~bit);
        }
        [[nodiscard]] bool IsFinite() const noexcept;
        [[nodiscard]] bool SameLocation(const State& other) const noexcept;
        [[nodiscard]] bool SameProjection(const State& other) const noexcept;

        [[nodiscard]] g3d_Triple ExactEye() const noexcept;
        [[nodiscard]] g3d_Triple ExactTarget() const noexcept;
        [[nodiscard]] g3d_Triple ExactUp() const noexcept;
        void MoveEye(const g3d_Triple& position) noexcept;
        void MoveTarget(const g3d_Triple& position) noexcept;
        void TurnUp(const g3d_Triple& direction) noexcept;
        [[nodiscard]] Frame ViewFrame() const noexcept;
        [[nodiscard, gnu::noinline]] Frame DegenerateFrame() const noexcept;

        [[nodiscard]] double WindowMinimum() const noexcept;
        void LimitNearFar() noexcept;
        void StoreWindow(double width, double height) noexcept;
        void ZoomWindow(double width, double height) noexcept;
        void MakePerspective() noexcept;
        void MakeParallel() noexcept;
        void CorrectAspect(double aspect, double left, double right, double bottom,
                           double top) noexcept;

        void Pan(double dx, double dy, double dz, bool moveEye) noexcept;
        void Zoom(double factor, bool dolly) noexcept;
        void Dolly(double factor) noexcept;
        void Rotate(double angle, const g3d_Triple& axis, const g3d_Triple& centre, bool carryEye,
                    bool carryTarget) noexcept;
        bool FitSphere(const g3d_Triple& direction, const g3d_Sphere& sphere) noexcept;
        [[nodiscard]] g3d_Triple ShownCentre() const noexcept;
    };

    struct SavedView {
        g3d_Vector direction;  // from the target to the eye; zero: not saved
        g3d_Vector up;
        friend bool operator==(const SavedView&, const SavedView&) noexcept = default;
    };
    static constexpr int kUserViews = g3d_VIEW_USER4 - g3d_VIEW_USER1 + 1;

    void Commit(const State& next) noexcept;
    void StoreLocation(const g3d_Point& eye, const g3d_Point& target,
                       const g3d_Vector& up) noexcept;
    void CommitLayer(const g3d_XForm& next) noexcept;
    void GenerateVOM() const noexcept;
    void GeneratePM() const noexcept;
    void Turn(double angle, const g3d_Triple& axis, const g3d_Point* centre,
              bool aboutEye) noexcept;
    void Turn(const g3d_Vector& from, const g3d_Vector& to, const g3d_Point* centre,
              bool aboutEye) noexcept;

    mutable g3d_XForm _vom;  // world to eye; in layer-transform mode the layer's, never regenerated
    mutable g3d_XForm _pm;   // eye to clip
    State _state;
    std::array<SavedView, kUserViews> _savedViews;
};
