#include "host_CameraCommands.h"

#include "host_CommandTools.h"
#include "host_Framing.h"
#include "host_MemberArgument.h"
#include "host_Part.h"
#include "host_View.h"

#include <cmath>

/// Axes of the picture.
enum class host_ScreenAxis { Horizontal, Vertical, Sight };

template <>
struct omu_EnumTable<host_ScreenAxis, 1> {
    static constexpr omu_EnumEntry<host_ScreenAxis> kEntries[] = {
        {"HORIZONTAL", host_ScreenAxis::Horizontal},
        {"VERTICAL", host_ScreenAxis::Vertical},
        {"SIGHT", host_ScreenAxis::Sight},
        {nullptr, host_ScreenAxis::Vertical}};
};

template <>
struct omu_EnumTable<g3d_SavedViewIdEnum, 1> {
    static constexpr omu_EnumEntry<g3d_SavedViewIdEnum> kEntries[] = {
        {"FRONT", g3d_VIEW_FRONT},   {"BACK", g3d_VIEW_BACK},   {"TOP", g3d_VIEW_TOP},
        {"BOTTOM", g3d_VIEW_BOTTOM}, {"LEFT", g3d_VIEW_LEFT},   {"RIGHT", g3d_VIEW_RIGHT},
        {"ISO", g3d_VIEW_ISO},       {"USER1", g3d_VIEW_USER1}, {"USER2", g3d_VIEW_USER2},
        {"USER3", g3d_VIEW_USER3},   {"USER4", g3d_VIEW_USER4}, {nullptr, g3d_VIEW_FRONT}};
};

template <>
struct omu_EnumTable<g3d_ProjectionEnum, 1> {
    static constexpr omu_EnumEntry<g3d_ProjectionEnum> kEntries[] = {
        {"PARALLEL", g3d_PARALLEL}, {"PERSPECTIVE", g3d_PERSPECTIVE}, {nullptr, g3d_PARALLEL}};
};

namespace {

constexpr const char* kSource = "host/commands/host_CameraCommands";

using Poll = host_View::Poll;

host_View& View() { return host_View::Instance(); }
g3d_Camera& TheCamera() { return View().Camera(); }

// --- Reading -----------------------------------------------------------------------------------

/// The size of a picture that is only spoken of; these are the last parameters.
host_PictureSize GetCheckedSize(omu_Arguments& args) {
    constexpr int kMostPixels = 1000000;
    const host_PictureSize size = host_GetPictureSize(args);
    args.End();
    host_CheckRange("width", size.width, 1, kMostPixels);
    host_CheckRange("height", size.height, 1, kMostPixels);
    return size;
}

g3d_Vector DirectionOf(const cow_1DArrayList<double>& values, const char* keyword) {
    const g3d_Point point = host_ScenePoint(values, keyword);
    g3d_Vector direction(point.x, point.y, point.z);
    if (direction.Normalize() == g3d_Vector()) {
        host_RefuseValue(std::string(keyword) + " is no direction: its length is 0", kSource,
                         __LINE__);
    }
    return direction;
}

/// A corner of a rectangle in the picture, in window units from the window's centre.
std::array<float, 2> InWindow(const g3d_Camera& camera, const cow_1DArrayList<double>& pixel,
                              const char* keyword, const host_PictureSize& size) {
    const auto [column, row] = host_PairOf(pixel, keyword, "column and row");
    const std::string name(keyword);
    host_CheckRange((name + "[0]").c_str(), column, 0.0, double(size.width));
    host_CheckRange((name + "[1]").c_str(), row, 0.0, double(size.height));
    const auto place = [](double fraction, float low, float high, float extent) {
        return static_cast<float>((low + fraction * (high - low) - 0.5) * extent);
    };
    return {place(column / size.width, camera.ViewportXMin(), camera.ViewportXMax(),
                  camera.WindowWidth()),
            place(1 - row / size.height, camera.ViewportYMin(), camera.ViewportYMax(),
                  camera.WindowHeight())};
}

// --- The commands ------------------------------------------------------------------------------

omu_Primitive* Fit(omu_Arguments& args, const Poll& poll) {
    View().Fit(host_GetOnlyPart(args, false), poll);
    return nullptr;
}

omu_Primitive* Zoom(omu_Arguments& args) {
    double percent = 0;
    args.Begin();
    args.Get(percent, "percent");
    args.End();
    host_CheckRange("percent", percent, -99.0, 99.0);
    TheCamera().Zoom(static_cast<float>(percent), false);
    return nullptr;
}

omu_Primitive* ZoomTo(omu_Arguments& args, const Poll& poll) {
    cow_1DArrayList<double> corner;
    cow_1DArrayList<double> opposite;
    args.Begin();
    args.Get(corner, "corner");
    args.Get(opposite, "opposite");
    args.Optional();
    const host_PictureSize size = GetCheckedSize(args);
    const g3d_Camera camera = View().CameraFor(size.width, size.height, poll);
    const auto [x0, y0] = InWindow(camera, corner, "corner", size);
    const auto [x1, y1] = InWindow(camera, opposite, "opposite", size);
    if (x0 == x1 || y0 == y1) {
        host_RefuseValue("the rectangle has no area", kSource, __LINE__);
    }
    TheCamera().Zoom(x0, y0, x1, y1, false);
    return nullptr;
}

omu_Primitive* Pan(omu_Arguments& args) {
    double right = 0;
    double up = 0;
    args.Begin();
    args.Optional();
    args.Get(right, "right");
    args.Get(up, "up");
    args.End();
    host_CheckRange("right", right, -1000.0, 1000.0);
    host_CheckRange("up", up, -1000.0, 1000.0);
    g3d_Camera& camera = TheCamera();
    camera.Pan(static_cast<float>(-right / 100 * camera.WindowWidth()),
               static_cast<float>(-up / 100 * camera.WindowHeight()), 0, false);
    return nullptr;
}

omu_Primitive* Rotate(omu_Arguments& args) {
    double angle = 0;
    auto screenAxis = host_ScreenAxis::Vertical;
    cow_1DArrayList<double> vector;
    args.Begin();
    args.Get(angle, "angle");
    args.Optional();
    const bool isVector = dynamic_cast<const omu_PrimSequence*>(host_Given(args, 1, "axis"));
    if (isVector) {
        args.Get(vector, "axis");
    } else {
        host_GetConstant(args, screenAxis, "axis");
    }
    args.End();
    host_CheckRange("angle", angle, -360.0, 360.0);
    g3d_Camera& camera = TheCamera();
    g3d_Vector axis;
    if (isVector) {
        axis = DirectionOf(vector, "axis");
    } else {
        const g3d_XForm& toEye = camera.ConstGetVOM();
        const int row = static_cast<int>(screenAxis);
        axis = g3d_Vector(toEye.GetM(row, 0), toEye.GetM(row, 1), toEye.GetM(row, 2));
    }
    // The camera goes the other way round.
    camera.Rotate(static_cast<float>(-angle), axis, false);
    return nullptr;
}

omu_Primitive* GoToView(omu_Arguments& args, const Poll& poll) {
    auto side = g3d_VIEW_FRONT;
    args.Begin();
    host_GetConstant(args, side, "name");
    args.End();
    View().LookFrom(side, poll);
    return nullptr;
}

const std::vector<std::string> kUserViews{"USER1", "USER2", "USER3", "USER4"};

omu_Primitive* SaveView(omu_Arguments& args) {
    host_Choice name(kUserViews);
    args.Begin();
    args.Get(name, "name");
    args.End();
    View().SaveView(static_cast<g3d_SavedViewIdEnum>(g3d_VIEW_USER1 + name.Index()));
    return nullptr;
}

omu_Primitive* Projection(omu_Arguments& args) {
    auto kind = g3d_PARALLEL;
    args.Begin();
    host_GetConstant(args, kind, "kind");
    args.End();
    if (kind == g3d_PERSPECTIVE) {
        TheCamera().MakePerspective();
    } else {
        TheCamera().MakeParallel();
    }
    return nullptr;
}

omu_Primitive* LookAt(omu_Arguments& args) {
    cow_1DArrayList<double> eyeValues;
    cow_1DArrayList<double> targetValues;
    cow_1DArrayList<double> upValues;
    args.Begin();
    args.Get(eyeValues, "eye");
    args.Get(targetValues, "target");
    args.Optional();
    args.Get(upValues, "up");
    args.End();
    const g3d_Point eye = host_ScenePoint(eyeValues, "eye");
    const g3d_Point target = host_ScenePoint(targetValues, "target");
    const g3d_Vector up =
        upValues.Length() == 0 ? g3d_Vector(0, 1, 0) : DirectionOf(upValues, "up");
    if (eye == target) {
        host_RefuseValue("eye and target are the same point", kSource, __LINE__);
    }
    // In perspective the window is that on the near plane: in parallel projection it is that at
    // the target, which is to stay.
    g3d_Camera& camera = TheCamera();
    const bool isPerspective = camera.IsPerspective();
    camera.MakeParallel();
    camera.SetLocation(eye, target, up);
    if (isPerspective) {
        camera.MakePerspective();
    }
    return nullptr;
}

omu_Primitive* Camera(omu_Arguments& args) {
    args.Begin();
    args.End();
    std::string text;
    aio_ostream stream(
        [](void* target, const char* piece, std::size_t length) {
            static_cast<std::string*>(target)->append(piece, length);
        },
        &text);
    stream << TheCamera();
    return new omu_PrimString(text);
}

omu_Primitive* PixelOf(omu_Arguments& args, const Poll& poll) {
    cow_1DArrayList<double> values;
    args.Begin();
    args.Get(values, "point");
    args.Optional();
    const auto [width, height] = GetCheckedSize(args);
    const g3d_Point point = host_ScenePoint(values, "point");
    const auto pixel = host_PixelOf(View().CameraFor(width, height, poll), width, height, point);
    if (!pixel) {
        return nullptr;
    }
    auto result = std::make_unique<omu_PrimTuple>(2, omu_PrimSequence::kCode);
    result->Put((*pixel)[0]);
    result->Put((*pixel)[1]);
    return result.release();
}

// --- Their declarations ------------------------------------------------------------------------

constexpr const char* kWindow =
    "The view's window is the rectangle that every picture shows whole, right of the legends and\n"
    "as large as it can; where a picture is wider or higher, it shows more.";
constexpr const char* kOfPicture = "of the picture [pixels]";

}  // namespace

void host_RegisterCameraCommands(host_CommandTable& table, const std::function<void()>& poll) {
    table.Add({"fit",
               "Moves the camera, without turning it, so that all that is shown fills the picture: "
               "parts\n"
               "as deformed, markers, points with labels, and a margin of a twentieth on each "
               "side. What\n"
               "is turned afterwards may reach out of the picture: then fit again, or zoom(-20).",
               {host_MemberParameter<host_Part>("part", "a shown part, to fit it alone", "''")},
               [poll](omu_Arguments& args) { return Fit(args, poll); }});
    table.Add({"zoom",
               "Makes everything larger, or with a negative percentage smaller: 50 shows what was\n"
               "in the middle half of the picture, -50 the same the other way round.",
               {{"percent", "float", "-99 to 99", "", {}}},
               Zoom});
    table.Add(
        {"zoomTo", "Zooms to a rectangle of a picture, given by two opposite corners.",
         host_WithPictureSize(
             {{"corner", "two floats", "column and row [pixels], (0, 0) is the upper left", "", {}},
              {"opposite", "two floats", "the opposite corner", "", {}}},
             kOfPicture),
         [poll](omu_Arguments& args) { return ZoomTo(args, poll); }});
    table.Add(
        {"pan",
         std::string("Moves everything in the picture by a percentage of the view's window.\n") +
             kWindow,
         {{"right", "float", "to the right, -1000 to 1000", "0.0", {}},
          {"up", "float", "upward, -1000 to 1000", "0.0", {}}},
         Pan});
    table.Add({"rotate",
               "Turns everything about the point that the camera looks at: against the clock when\n"
               "the axis points at the viewer.\n"
               "HORIZONTAL  the axis from left to right: the front goes down\n"
               "VERTICAL    the axis upward: the front goes to the right\n"
               "SIGHT       the axis toward the viewer\n"
               "(x, y, z)   an axis of the model",
               {{"angle", "float", "[deg], -360 to 360", "", {}},
                {"axis", "constant or vector", "what to turn about", "VERTICAL",
                 host_Names<host_ScreenAxis>()}},
               Rotate});
    table.Add({"view",
               "Looks at all that is shown from a given side, standard or saved, and fits it as "
               "fit does.\n"
               "FRONT looks along -z with y upward, TOP along -y, RIGHT along -x; ISO from\n"
               "(1, 1, 1).",
               {{"name", "constant", "the view", "", host_Names<g3d_SavedViewIdEnum>()}},
               [poll](omu_Arguments& args) { return GoToView(args, poll); }});
    table.Add({"saveView",
               "Saves from where the camera looks, and what is upward, for command view.",
               {{"name", "constant", "USER1 to USER4", "", kUserViews}},
               SaveView});
    table.Add(
        {"projection",
         "Shows everything in parallel projection or in perspective; the size at the point\n"
         "that the camera looks at stays.",
         {{"kind", "constant", "PARALLEL or PERSPECTIVE", "", host_Names<g3d_ProjectionEnum>()}},
         Projection});
    table.Add({"lookAt",
               "Places the camera. At the target, a picture is as wide as before.",
               {{"eye", "point", "where the camera is", "", {}},
                {"target", "point", "what it looks at", "", {}},
                {"up", "vector", "what is upward in the picture", "(0, 1, 0)", {}}},
               LookAt});
    table.Add({"camera", "Returns the whole state of the camera as text.", {}, Camera, false});
    table.Add(
        {"pixelOf",
         "Returns column and row of a point of the world in a picture, as floats; the middle\n"
         "of the upper left pixel is (0.5, 0.5). None for a point behind the camera.",
         host_WithPictureSize({{"point", "point", "its coordinates", "", {}}}, kOfPicture),
         [poll](omu_Arguments& args) { return PixelOf(args, poll); }, false});
}
