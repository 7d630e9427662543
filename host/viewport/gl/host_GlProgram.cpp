#include "host_GlProgram.h"

#include <stdexcept>
#include <string>

namespace {

// One source for faces and edges: only then do both get the same depth, to the bit.
constexpr const char* kVertex = R"(#version 330 core
layout(location = 0) in vec3 point;
layout(location = 1) in vec3 normal;
layout(location = 2) in vec3 displacement;
layout(location = 3) in float value;

uniform mat4 view;
uniform mat4 projection;
uniform mat3 normals;
uniform float deformation;

out vec3 eyePoint;
out vec3 eyeNormal;
out float field;
invariant gl_Position;

void main() {
    vec4 eye = view * vec4(point + deformation * displacement, 1.0);
    eyePoint = eye.xyz;
    eyeNormal = normals * normal;
    field = value;
    gl_Position = projection * eye;
}
)";

// Edges become rectangles: wide lines of OpenGL have gaps where blocks of the driver meet, and need
// not be offered at all.
constexpr const char* kWiden = R"(#version 330 core
layout(lines) in;
layout(triangle_strip, max_vertices = 4) out;

uniform vec4 extent;  // of the picture [pixels], and of an edge

void main() {
    vec4 a = gl_in[0].gl_Position;
    vec4 b = gl_in[1].gl_Position;
    float nearA = a.z + a.w;
    float nearB = b.z + b.w;
    if (nearA < 0.0) {
        a = mix(a, b, nearA / (nearA - nearB));
    } else if (nearB < 0.0) {
        b = mix(b, a, nearB / (nearB - nearA));
    }
    vec3 start = a.xyz / a.w;
    vec3 end = b.xyz / b.w;
    vec2 way = (end.xy - start.xy) * extent.xy;
    float size = length(way);
    // The rest is behind the eye, without extent, or not a number.
    if ((nearA >= 0.0 || nearB >= 0.0) && a.w > 0.0 && b.w > 0.0 && size > 1e-6) {
        // Half the width aside, and ahead, so that corners are filled; there the depth goes on.
        vec3 aside = vec3(vec2(-way.y, way.x) / size * extent.z / extent.xy, 0.0);
        vec3 ahead = vec3(way / size * extent.z / extent.xy,
                          (end.z - start.z) * min(extent.z / size, 0.5));
        gl_Position = vec4(start - ahead + aside, 1.0);
        EmitVertex();
        gl_Position = vec4(start - ahead - aside, 1.0);
        EmitVertex();
        gl_Position = vec4(end + ahead + aside, 1.0);
        EmitVertex();
        gl_Position = vec4(end + ahead - aside, 1.0);
        EmitVertex();
        EndPrimitive();
    }
}
)";

constexpr const char* kEdges = R"(#version 330 core
uniform vec4 color;
out vec4 pixel;

void main() { pixel = color; }
)";

// Variants are separate programs, made by LIT, LIGHTS, FAR_LIGHTS, CONTOURS and SMOOTH: a processor
// computes both sides of a condition for every pixel, and loops of unknown length slowly.
constexpr const char* kFaces = R"(
in vec3 eyePoint;
in vec3 eyeNormal;
in float field;
out vec4 pixel;

uniform vec4 color;
uniform bool perspective;

uniform vec4 lightPosition[8];  // of far lights a unit vector, or none; these come first
uniform vec4 lightAmbient[8];
uniform vec4 lightDiffuse[8];
uniform vec4 lightSpecular[8];
uniform vec4 lightFading[8];
uniform float shininess;
uniform float roomLight;

#if CONTOURS
uniform int bands;
uniform vec2 limits;             // the least and the greatest value that lie in bands
uniform vec2 scale;              // from the least value to the minimum; steps of colours a unit
uniform samplerBuffer breaks;    // bands + 1, ascending
uniform samplerBuffer colors;    // of the bands, then below, above, not a number
uniform samplerBuffer values;    // of the points
uniform usamplerBuffer corners;  // of the triangles
uniform int firstTriangle;       // of those that are drawn at a time

// The field where the pixel lies. Interpolation errs in the last places; held between the values
// of the corners, a face of one value has that value throughout, and no peak is exceeded.
float FieldHere() {
    int first = 3 * (firstTriangle + gl_PrimitiveID);
    float a = texelFetch(values, int(texelFetch(corners, first).r)).r;
    float b = texelFetch(values, int(texelFetch(corners, first + 1).r)).r;
    float c = texelFetch(values, int(texelFetch(corners, first + 2).r)).r;
    if (a == b && b == c) {
        return a;
    }
    float sum = 0.25 * a + 0.25 * b + 0.25 * c;
    if (isnan(sum) || isinf(sum)) {
        return sum;
    }
    return clamp(field, min(a, min(b, c)), max(a, max(b, c)));
}

vec3 ContourColor(float value) {
    if (isnan(value)) {
        return texelFetch(colors, bands + 2).rgb;
    }
    if (value < limits.x) {
        return texelFetch(colors, bands).rgb;
    }
    if (value > limits.y) {
        return texelFetch(colors, bands + 1).rgb;
    }
    float place = clamp(((value - limits.x) - scale.x) * scale.y, 0.0, float(bands - 1));
#if SMOOTH
    int band = min(int(place), bands - 2);
    return mix(texelFetch(colors, band).rgb, texelFetch(colors, band + 1).rgb,
               place - float(band));
#else
    // Breaks lie evenly, so that the guess is the band, but for rounding: the breaks decide.
    int band = int(place);
    while (band > 0 && value < texelFetch(breaks, band).r) {
        --band;
    }
    while (band < bands - 1 && value >= texelFetch(breaks, band + 1).r) {
        ++band;
    }
    return texelFetch(colors, band).rgb;
#endif
}
#endif

#if LIT
// Both sides of a face are lit: the normal is turned to the viewer. A face without extent has none,
// and looks at him.
void Gather(out vec3 matt, out vec3 gloss) {
    vec3 sight = perspective ? -eyePoint : vec3(0.0, 0.0, 1.0);
    float size = dot(eyeNormal, eyeNormal);
    vec3 normal = size > 0.0 && size < 1e37 ? eyeNormal * inversesqrt(size) : normalize(sight);
    if (dot(normal, sight) < 0.0) {
        normal = -normal;
    }
    matt = vec3(roomLight);
    gloss = vec3(0.0);
    for (int i = 0; i < LIGHTS; ++i) {
        vec3 way = lightPosition[i].xyz;
        float strength = 1.0;
        if (i >= FAR_LIGHTS) {
            way -= eyePoint;
            float distance = length(way);
            float fading = dot(lightFading[i].xyz, vec3(1.0, distance, distance * distance));
            strength = fading > 0.0 ? 1.0 / fading : 1.0;
            way /= max(distance, 1e-30);
        }
        way = way == vec3(0.0) ? normalize(sight) : way;
        float facing = max(dot(normal, way), 0.0);
        matt += strength * (lightAmbient[i].rgb + lightDiffuse[i].rgb * facing);
#if !CONTOURS
        if (facing > 0.0) {
            float shine = max(dot(normal, normalize(way + normalize(sight))), 1e-6);
            gloss += strength * lightSpecular[i].rgb * pow(shine, shininess);
        }
#endif
    }
}
#endif

void main() {
#if CONTOURS
    vec3 base = ContourColor(FieldHere());
#else
    vec3 base = color.rgb;
#endif
#if LIT
    vec3 matt;
    vec3 gloss;
    Gather(matt, gloss);
#if CONTOURS
    // Colours that stand for values keep their hue: no tint, no highlights, and half of their
    // brightness in the darkest place.
    base *= mix(0.5, 1.0, min(dot(matt, vec3(0.2126, 0.7152, 0.0722)), 1.0));
#else
    base = base * matt + gloss;
#endif
#endif
    pixel = vec4(base, color.a);
}
)";

void Compile(GLuint program, GLenum kind, const std::string& text) {
    const GLuint shader = glCreateShader(kind);
    const char* source = text.c_str();
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    glAttachShader(program, shader);
    glDeleteShader(shader);  // with the program
}

}  // namespace

host_GlProgram host_GlProgram::Faces(const host_GlFaceVariant& variant) {
    const auto define = [](const char* name, int value) {
        return std::string("#define ") + name + " " + std::to_string(value) + "\n";
    };
    return host_GlProgram(
        "#version 330 core\n" + define("LIT", variant.lights ? 1 : 0) +
        define("LIGHTS", variant.lights.value_or(0)) + define("FAR_LIGHTS", variant.farLights) +
        define("CONTOURS", variant.coloring != host_GlColoring::Plain ? 1 : 0) +
        define("SMOOTH", variant.coloring == host_GlColoring::Smooth ? 1 : 0) + kFaces);
}
host_GlProgram host_GlProgram::Edges() { return host_GlProgram(kEdges, kWiden); }

host_GlProgram::host_GlProgram(const std::string& fragmentSource, const char* geometrySource)
    : _name(glCreateProgram()) {
    Compile(_name, GL_VERTEX_SHADER, kVertex);
    if (geometrySource != nullptr) {
        Compile(_name, GL_GEOMETRY_SHADER, geometrySource);
    }
    Compile(_name, GL_FRAGMENT_SHADER, fragmentSource);
    glLinkProgram(_name);
    GLint linked = GL_FALSE;
    glGetProgramiv(_name, GL_LINK_STATUS, &linked);
    if (linked != GL_TRUE) {
        std::string log(4000, '\0');
        GLsizei length = 0;
        glGetProgramInfoLog(_name, static_cast<GLsizei>(log.size()), &length, log.data());
        log.resize(static_cast<std::size_t>(length));
        glDeleteProgram(_name);
        throw std::runtime_error("The driver cannot translate the viewport's shaders: " + log);
    }
}

host_GlProgram::~host_GlProgram() {
    if (_name != 0) {
        glDeleteProgram(_name);
    }
}

host_GlProgram::host_GlProgram(host_GlProgram&& other) noexcept
    : _name(std::exchange(other._name, 0)) {}

GLint host_GlProgram::Place(const char* name) const { return glGetUniformLocation(_name, name); }

void host_GlProgram::Use() const { glUseProgram(_name); }
void host_GlProgram::Set(const char* name, bool value) const {
    glUniform1i(Place(name), value ? 1 : 0);
}
void host_GlProgram::Set(const char* name, int value) const { glUniform1i(Place(name), value); }
void host_GlProgram::Set(const char* name, float value) const { glUniform1f(Place(name), value); }
void host_GlProgram::Set(const char* name, std::span<const std::array<float, 4>> values) const {
    if (!values.empty()) {
        glUniform4fv(Place(name), static_cast<GLsizei>(values.size()), values.front().data());
    }
}
void host_GlProgram::Set(const char* name, const std::array<float, 2>& value) const {
    glUniform2fv(Place(name), 1, value.data());
}
void host_GlProgram::Set(const char* name, const std::array<float, 9>& matrix) const {
    glUniformMatrix3fv(Place(name), 1, GL_TRUE, matrix.data());
}
void host_GlProgram::Set(const char* name, const std::array<float, 16>& matrix) const {
    glUniformMatrix4fv(Place(name), 1, GL_TRUE, matrix.data());
}
