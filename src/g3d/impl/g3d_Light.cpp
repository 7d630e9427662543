#include "g3d_Light.h"

#include "g3d_ColorMap.h"
#include "omi_Singleton.h"

#include <cmath>

void g3d_Light::SetPositionVector(float latitude, float longitude) noexcept {
    if (!std::isfinite(latitude) || !std::isfinite(longitude)) {
        return;
    }
    constexpr double kRadians = 0.017453292519943295;
    const double polar = (90.0 - latitude) * kRadians;
    const double azimuth = longitude * kRadians;
    _latitude = latitude;
    _longitude = longitude;
    _position.x = static_cast<float>(std::sin(polar) * std::sin(azimuth));
    _position.y = static_cast<float>(std::cos(polar));
    _position.z = static_cast<float>(std::sin(polar) * std::cos(azimuth));
}

void g3d_Light::SetAttenuation(float constant, float linear, float quadratic) noexcept {
    _constantAttenuation = constant;
    _linearAttenuation = linear;
    _quadraticAttenuation = quadratic;
}

g3d_Color g3d_Light::ResolveColor(const cow_String& name) {
    return omi_Singleton<g3d_ColorMap>::Instance().ConstGet(name);
}

bool operator==(const g3d_Light& left, const g3d_Light& right) noexcept {
    return left._on == right._on && left._ambient == right._ambient &&
           left._diffuse == right._diffuse && left._specular == right._specular &&
           left._position == right._position &&
           left._constantAttenuation == right._constantAttenuation &&
           left._linearAttenuation == right._linearAttenuation &&
           left._quadraticAttenuation == right._quadraticAttenuation;
}
