#pragma once

#include "g3d_Bitmap.h"
#include "g3d_Camera.h"
#include "g3d_ContourTable.h"
#include "g3d_Studio.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

using host_Float3 = std::array<float, 3>;

/// Faces and edges to draw, in world units; never changed once shared. A renderer keeps what it
/// sent of one for as long as somebody holds it.
struct host_Geometry {
    std::vector<host_Float3> points;
    std::vector<host_Float3> normals;        ///< of each point, unit length; empty: faces unlit
    std::vector<host_Float3> displacements;  ///< of each point; empty: none
    std::vector<std::array<std::uint32_t, 3>> triangles;  ///< against the clock from outside
    std::vector<std::array<std::uint32_t, 2>> edges;
};

/// A scalar for each point of a geometry; shared and kept like that.
using host_Values = std::vector<float>;

/// A geometry, and how it is drawn.
struct host_Item {
    std::shared_ptr<const host_Geometry> geometry;
    bool showFaces = true;
    bool showEdges = false;
    g3d_Color faceColor{0.7F, 0.7F, 0.7F, 1};
    g3d_Color edgeColor{0, 0, 0, 1};
    float edgeWidth = 1;  ///< [pixels], at most 100; none are drawn unless it is above 0
    std::shared_ptr<const host_Values> values;         ///< with contours; else null
    std::shared_ptr<const g3d_ContourTable> contours;  ///< null: faces in faceColor
    float deformation = 0;                             ///< displacements are drawn times this
};

/// The same symbol at several points of the world. Hidden behind faces unless onTop.
struct host_MarkerSet {
    std::vector<host_Float3> points;
    g3d_Bitmap bitmap;
    g3d_Color color;
    bool onTop = false;
};

/// A filled rectangle in the picture [pixels], from the upper left corner.
struct host_Rectangle {
    float x, y, width, height;
    g3d_Color color;
};

enum class host_Align { Left, Center, Right };

/// A line of text (UTF-8) in the picture; y is that of the baseline [pixels], from the top.
struct host_Label {
    float x, y;
    float size;  ///< of the font [pixels]
    std::string text;
    g3d_Color color;
    host_Align align = host_Align::Left;
};

/// Everything in a picture. Rectangles and labels lie over the rest, in their order.
struct host_Scene {
    g3d_Camera camera;
    g3d_Studio studio;  ///< lights, fixed to the camera, and the background
    std::vector<host_Item> items;
    std::vector<host_MarkerSet> markers;
    std::vector<host_Rectangle> rectangles;
    std::vector<host_Label> labels;
};
