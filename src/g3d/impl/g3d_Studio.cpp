#include "g3d_Studio.h"

#include "g3d_Utils.h"

#include <cstdlib>

namespace {

constexpr float kDirection = 0;
constexpr float kPlace = 1;

// One look for the whole process: all its studios agree, whatever happens to the environment.
bool PrintsForQualityAssurance() {
    static const bool prints = std::getenv("TVX_QA_PRINT") != nullptr;
    return prints;
}

void Aim(g3d_Light& light, float latitude, float longitude, float w, const char* diffuse,
         const char* specular) {
    light.SetPositionVector(latitude, longitude);
    g3d_Point position = light.Position();
    position.w = w;
    light.SetPosition(position);
    light.SetDiffuse(diffuse);
    light.SetSpecular(specular);
    light.SetOn(true);
}

// The element of an array of flags or lights; both constnesses.
template <class Array>
auto& At(Array& array, int index, const char* expression, int line) {
    g3d_Utils::Assert(index >= 0 && index < static_cast<int>(array.size()), expression,
                      "generated/g3d/impl/g3d_Studio", line);
    return array[static_cast<std::size_t>(index)];
}

constexpr const char* kLightExists = "index >= 0 && index < kLights";
constexpr const char* kOptionExists = "index >= 0 && index < kOptions";

}  // namespace

g3d_Studio::g3d_Studio() {
    if (PrintsForQualityAssurance()) {
        constexpr float kHalfSlope = 26.565052F;  // its tangent is 0.5
        _qualityAssurance = 1;
        _shininess = 25;
        _background = "#333333";
        Aim(_lights[0], kHalfSlope, kHalfSlope, kPlace, "White", "Black");
        return;
    }
    Aim(_lights[0], 10, 10, kDirection, "#7f7f7f", "#595959");
    Aim(_lights[1], 10, -10, kDirection, "#595959", "Black");
}

g3d_Light& g3d_Studio::Light(int index) { return At(_lights, index, kLightExists, __LINE__); }

const g3d_Light& g3d_Studio::Light(int index) const {
    return At(_lights, index, kLightExists, __LINE__);
}

bool g3d_Studio::Option(int index) const {
    return At(_options, index, kOptionExists, __LINE__) != 0;
}

void g3d_Studio::SetOption(int index, bool on) {
    At(_options, index, kOptionExists, __LINE__) = on ? 1 : 0;
}

bool operator==(const g3d_Studio& left, const g3d_Studio& right) noexcept {
    return &left == &right ||
           (left._qualityAssurance == right._qualityAssurance && left._options == right._options &&
            left._shininess == right._shininess && left._background == right._background &&
            left._lights == right._lights);
}
