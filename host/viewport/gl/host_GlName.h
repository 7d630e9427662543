#pragma once

// Declares the functions, which libOpenGL exports, beside the types and constants.
#ifndef GL_GLEXT_PROTOTYPES
#define GL_GLEXT_PROTOTYPES
#endif
#include <GL/glcorearb.h>

#include <utility>

/// Owns one name that OpenGL gave: a buffer, a texture and the like. The context must be current
/// whenever one is made or dropped.
template <auto Generate, auto Delete>
class host_GlName {
public:
    host_GlName() { Generate(1, &_name); }
    ~host_GlName() {
        if (_name != 0) {
            Delete(1, &_name);
        }
    }
    host_GlName(host_GlName&& other) noexcept : _name(std::exchange(other._name, 0)) {}
    host_GlName& operator=(host_GlName&& other) noexcept {
        std::swap(_name, other._name);
        return *this;
    }

    [[nodiscard]] GLuint Get() const noexcept { return _name; }

private:
    GLuint _name = 0;
};

using host_GlBuffer = host_GlName<glGenBuffers, glDeleteBuffers>;
using host_GlFramebuffer = host_GlName<glGenFramebuffers, glDeleteFramebuffers>;
using host_GlRenderbuffer = host_GlName<glGenRenderbuffers, glDeleteRenderbuffers>;
using host_GlTexture = host_GlName<glGenTextures, glDeleteTextures>;
using host_GlVertexArray = host_GlName<glGenVertexArrays, glDeleteVertexArrays>;
