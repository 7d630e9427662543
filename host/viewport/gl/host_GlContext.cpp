#include "host_GlContext.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstdio>
#include <stdexcept>
#include <string>

namespace {

[[noreturn]] void Raise(const char* what, const char* cure) {
    char code[16];
    std::snprintf(code, sizeof code, "0x%x", static_cast<unsigned>(eglGetError()));
    throw std::runtime_error(std::string("No pictures can be drawn: ") + what + " (EGL error " +
                             code + "). On Debian: apt-get install " + cure);
}

}  // namespace

host_GlContext::host_GlContext() {
    // The default display fails without a screen, so the platform is named.
    _display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
    if (_display == EGL_NO_DISPLAY) {
        Raise("EGL has no surfaceless platform", "libegl-mesa0 libgl1-mesa-dri");
    }
    if (eglInitialize(_display, nullptr, nullptr) != EGL_TRUE) {
        Raise("EGL finds no driver", "libgl1-mesa-dri");
    }
    static constexpr EGLint kVersion[] = {EGL_CONTEXT_MAJOR_VERSION,
                                          3,
                                          EGL_CONTEXT_MINOR_VERSION,
                                          3,
                                          EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                          EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                                          EGL_NONE};
    if (eglBindAPI(EGL_OPENGL_API) == EGL_TRUE) {
        _context = eglCreateContext(_display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, kVersion);
    }
    if (_context == EGL_NO_CONTEXT) {
        Raise("the driver offers no OpenGL 3.3", "libgl1-mesa-dri");
    }
    Enter();
}

void host_GlContext::Enter() const {
    if (std::this_thread::get_id() != _thread) {
        throw std::runtime_error(
            "Pictures must all be drawn by the thread that drew the first one.");
    }
    if (eglGetCurrentContext() != _context &&
        eglMakeCurrent(_display, EGL_NO_SURFACE, EGL_NO_SURFACE, _context) != EGL_TRUE) {
        Raise("the driver refuses its context", "libgl1-mesa-dri");
    }
}
