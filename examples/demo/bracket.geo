// A steel mounting bracket: base plate with four bolt holes, upright plate with a bearing bore in a
// raised boss, a gusset between them. Lengths in mm.
//
//     gmsh -3 bracket.geo -o bracket.vtk
SetFactory("OpenCASCADE");

length = 120;     // base plate, along x
width = 80;       // along y
thickness = 12;   // of both plates
height = 110;     // of the upright, from the floor
bore = 18;        // radius of the bearing bore
boss = 28;        // radius of the boss around it
bossDepth = 8;    // how far the boss stands out of the upright
bolt = 5.5;       // radius of the bolt holes (M10, medium fit)
corner = 12;      // radius of the outer corners
fillet = 8;       // radius between the plates
axis = 70;        // height of the bore's axis

// Base plate, lying on z = 0; its vertical corners away from the upright are rounded.
Box(1) = {0, 0, 0, length, width, thickness};
rounded[] = {};
edges[] = Abs(Boundary{ Surface{ Boundary{ Volume{1}; } }; });
For i In {0 : #edges[] - 1}
  box[] = BoundingBox Curve{ edges[i] };
  If (box[3] - box[0] < 1e-3 && box[4] - box[1] < 1e-3 && box[0] > length - 1e-3)
    rounded[] += {edges[i]};
  EndIf
EndFor
rounded[] = Unique(rounded[]);
base[] = Fillet{ 1 }{ rounded[] }{ corner };

// Upright, standing on x = 0, round at the top about the bore's axis.
Box(10) = {0, 0, 0, thickness, width, axis};
Cylinder(11) = {0, width / 2, axis, thickness, 0, 0, width / 2};
Cylinder(12) = {0, width / 2, axis, thickness + bossDepth, 0, 0, boss};

// Fillet along the inner edge of the two plates: a square strip less a cylinder.
Box(20) = {thickness, 0, thickness, fillet, width, fillet};
Cylinder(21) = {thickness + fillet, -1, thickness + fillet, 0, width + 2, 0, fillet};
strip[] = BooleanDifference{ Volume{20}; Delete; }{ Volume{21}; Delete; };

// Gusset: a triangle of 10 mm in the middle, under the boss.
Point(1000) = {thickness - 1, width / 2 - 5, thickness - 1};
Point(1001) = {length - 40, width / 2 - 5, thickness - 1};
Point(1002) = {length - 40, width / 2 - 5, thickness + 6};
Point(1003) = {thickness + 6, width / 2 - 5, axis - boss + 10};
Point(1004) = {thickness - 1, width / 2 - 5, axis - boss + 10};
Line(1000) = {1000, 1001};
Line(1001) = {1001, 1002};
Line(1002) = {1002, 1003};
Line(1003) = {1003, 1004};
Line(1004) = {1004, 1000};
Curve Loop(1000) = {1000 : 1004};
Plane Surface(1000) = {1000};
gusset[] = Extrude{0, 10, 0}{ Surface{1000}; };

solid[] = BooleanUnion{ Volume{base[0]}; Delete; }
                      { Volume{10, 11, 12, strip[0], gusset[1]}; Delete; };

// The bearing bore and the bolt holes.
Cylinder(900) = {-1, width / 2, axis, thickness + bossDepth + 2, 0, 0, bore};
holes[] = {900};
For i In {0 : 1}
  For j In {0 : 1}
    h = 901 + 2 * i + j;
    Cylinder(h) = {45 + 55 * i, 15 + 50 * j, -1, 0, 0, thickness + 2, bolt};
    holes[] += {h};
  EndFor
EndFor
part[] = BooleanDifference{ Volume{solid[]}; Delete; }{ Volume{holes[]}; Delete; };

Physical Volume("bracket") = {part[]};

Mesh.MeshSizeMax = 8;
Mesh.MeshSizeMin = 2.5;
Mesh.MeshSizeFromCurvature = 12;  // elements on a full circle
Mesh.Algorithm = 6;               // Frontal-Delaunay
Mesh.Algorithm3D = 1;             // Delaunay
Mesh.Optimize = 1;
Mesh.RandomSeed = 1;
