// Stands in for the drawing room in a build without it.

#include "host_Renderer.h"

#include <stdexcept>

namespace {

[[noreturn]] void Raise() {
    throw std::runtime_error("No pictures can be drawn: this caehost was " CAEHOST_WHY_NO_VIEWPORT
                             ".");
}

}  // namespace

host_Renderer& host_Renderer::Instance() { Raise(); }

void host_WritePng(const host_Image&, const std::string&) { Raise(); }
