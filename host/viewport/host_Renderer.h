#pragma once

#include "host_Image.h"
#include "host_Scene.h"

#include <cstddef>
#include <string>

/// Where the time of a picture went [s].
struct host_DrawTimes {
    double buffers = 0;   ///< geometry sent to the drawing side
    double renderer = 0;  ///< faces and edges
    double readBack = 0;
    double overlay = 0;  ///< markers, rectangles and labels
};

/// Draws scenes. The room that draws (OpenGL off screen) may be missing from a build; everything
/// else does without it.
class host_Renderer {
public:
    virtual ~host_Renderer() = default;

    /// Draws into a picture of that size [pixels]. Sizes out of range raise
    /// omu_RangeErrorException, which names the limits.
    virtual host_Image Draw(const host_Scene& scene, int width, int height) = 0;
    /// Bytes of geometry sent to the drawing side so far: a second picture of the same geometry
    /// sends none.
    [[nodiscard]] virtual std::size_t BytesSent() const noexcept = 0;

    /// Of the last picture.
    [[nodiscard]] virtual host_DrawTimes Times() const noexcept { return {}; }

    /// The renderer of the process, made on the first call, in the thread that draws. Without the
    /// room, or where the driver fails, raises one error that names the missing package.
    static host_Renderer& Instance();
};

/// Writes a PNG file, whole or not at all: errors name path and cause.
void host_WritePng(const host_Image& image, const std::string& path);
