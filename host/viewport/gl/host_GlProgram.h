#pragma once

#include "host_GlName.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <tuple>

/// What colours faces: one colour of the item, or the table of its contours.
enum class host_GlColoring { Plain, Banded, Smooth };

struct host_GlFaceVariant {
    std::optional<int> lights;  ///< their number; none: unlit
    int farLights;              ///< of these, how many are directions; they come first
    host_GlColoring coloring;

    friend bool operator<(const host_GlFaceVariant& a, const host_GlFaceVariant& b) noexcept {
        return std::tie(a.lights, a.farLights, a.coloring) <
               std::tie(b.lights, b.farLights, b.coloring);
    }
};

/// Shaders, linked. Values are set by name while it is in use.
class host_GlProgram {
public:
    static host_GlProgram Faces(const host_GlFaceVariant& variant);
    /// Edges, in one colour.
    static host_GlProgram Edges();

    ~host_GlProgram();
    host_GlProgram(host_GlProgram&& other) noexcept;
    host_GlProgram& operator=(host_GlProgram&&) = delete;

    void Use() const;
    void Set(const char* name, bool value) const;
    void Set(const char* name, int value) const;
    void Set(const char* name, float value) const;
    void Set(const char* name, const std::array<float, 4>& value) const {
        Set(name, std::span(&value, 1));
    }
    void Set(const char* name, std::span<const std::array<float, 4>> values) const;
    void Set(const char* name, const std::array<float, 2>& value) const;
    /// Matrices come row by row.
    void Set(const char* name, const std::array<float, 9>& matrix) const;
    void Set(const char* name, const std::array<float, 16>& matrix) const;

private:
    explicit host_GlProgram(const std::string& fragmentSource,
                            const char* geometrySource = nullptr);

    [[nodiscard]] GLint Place(const char* name) const;

    GLuint _name;
};

/// Places of the attributes of a vertex.
enum host_GlAttribute : GLuint { host_POINT, host_NORMAL, host_DISPLACEMENT, host_VALUE };
