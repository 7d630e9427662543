#pragma once

/// How a camera projects: along parallel lines or through the eye.
enum g3d_ProjectionEnum : int { g3d_PARALLEL = 0, g3d_PERSPECTIVE = 1 };
