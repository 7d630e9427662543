#include "host_GlTarget.h"

#include <algorithm>
#include <stdexcept>

namespace {

int Samples() {
    GLint most = 1;
    glGetIntegerv(GL_MAX_SAMPLES, &most);
    return std::min(most, 4);
}

void Attach(GLenum place, const host_GlRenderbuffer& buffer, GLenum format, int width, int height,
            int samples) {
    glBindRenderbuffer(GL_RENDERBUFFER, buffer.Get());
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, format, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, place, GL_RENDERBUFFER, buffer.Get());
}

}  // namespace

host_GlTarget::Plane::Plane(int width, int height, int samples) {
    glBindFramebuffer(GL_FRAMEBUFFER, frame.Get());
    Attach(GL_COLOR_ATTACHMENT0, colors, GL_RGBA8, width, height, samples);
    Attach(GL_DEPTH_STENCIL_ATTACHMENT, depths, GL_DEPTH24_STENCIL8, width, height, samples);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        throw std::runtime_error("OpenGL has no memory to draw a picture of this size.");
    }
}

host_GlTarget::host_GlTarget(int width, int height)
    : _width(width),
      _height(height),
      _drawn(width, height, Samples()),
      _resolved(width, height, 0) {}

void host_GlTarget::Bind() const {
    glBindFramebuffer(GL_FRAMEBUFFER, _drawn.frame.Get());
    glViewport(0, 0, _width, _height);
}

void host_GlTarget::Resolve(bool depths) const {
    glBindFramebuffer(GL_READ_FRAMEBUFFER, _drawn.frame.Get());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, _resolved.frame.Get());
    const auto planes =
        static_cast<GLbitfield>(GL_COLOR_BUFFER_BIT | (depths ? GL_DEPTH_BUFFER_BIT : 0));
    glBlitFramebuffer(0, 0, _width, _height, 0, 0, _width, _height, planes, GL_NEAREST);
}

void host_GlTarget::ReadColors(std::vector<std::uint8_t>& rgba) const {
    const auto pixels = static_cast<std::size_t>(_width) * static_cast<std::size_t>(_height);
    rgba.resize(4 * pixels);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, _resolved.frame.Get());
    glReadPixels(0, 0, _width, _height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
}

void host_GlTarget::ReadDepths(std::vector<float>& depths) const {
    depths.resize(static_cast<std::size_t>(_width) * static_cast<std::size_t>(_height));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, _resolved.frame.Get());
    glReadPixels(0, 0, _width, _height, GL_DEPTH_COMPONENT, GL_FLOAT, depths.data());
}
