#pragma once

#include "cow_String.h"
#include "g3d_Color.h"
#include "g3d_Point.h"
#include "mem_AllocationOperators.h"

/// A light source: colour names, a direction or place, and how the light fades with distance.
///
/// Lights are fixed to the viewer: positions are in eye coordinates (x right, y up, z towards the
/// viewer). Colours are kept by name, like "White" or "#B3B3B3", and looked up when they are used,
/// so a colour that is defined anew shows at once.
class CAE_API g3d_Light : public mem_AllocationOperators {
public:
    /// Off, black ambient and grey diffuse and specular light along +z, not fading.
    g3d_Light() = default;

    [[nodiscard]] bool IsOn() const noexcept { return _on; }
    void SetOn(bool on) noexcept { _on = on; }

    /// Name of the colour of the light that comes from everywhere.
    [[nodiscard]] const cow_String& Ambient() const noexcept { return _ambient; }
    void SetAmbient(cow_String name) noexcept { _ambient = std::move(name); }
    /// Name of the colour of the light that a matt surface scatters.
    [[nodiscard]] const cow_String& Diffuse() const noexcept { return _diffuse; }
    void SetDiffuse(cow_String name) noexcept { _diffuse = std::move(name); }
    /// Name of the colour of the highlights on a shiny surface.
    [[nodiscard]] const cow_String& Specular() const noexcept { return _specular; }
    void SetSpecular(cow_String name) noexcept { _specular = std::move(name); }

    /// The colours of those names.
    /// \throws g3d_ColorErrorException  for a name that is no colour, now that it is needed.
    [[nodiscard]] g3d_Color AmbientColor() const { return ResolveColor(_ambient); }
    [[nodiscard]] g3d_Color DiffuseColor() const { return ResolveColor(_diffuse); }
    [[nodiscard]] g3d_Color SpecularColor() const { return ResolveColor(_specular); }

    /// Where the light comes from: w = 0 a direction towards the light, w = 1 its place.
    [[nodiscard]] const g3d_Point& Position() const noexcept { return _position; }
    void SetPosition(const g3d_Point& position) noexcept { _position = position; }
    /// Places the light on the unit sphere and keeps w. Angles that are not finite change nothing.
    /// \param latitude   [deg] upwards from the horizontal plane.
    /// \param longitude  [deg] to the right from +z.
    void SetPositionVector(float latitude, float longitude) noexcept;
    /// The angles last given to SetPositionVector [deg].
    [[nodiscard]] float Latitude() const noexcept { return _latitude; }
    [[nodiscard]] float Longitude() const noexcept { return _longitude; }

    /// A light with a place is divided by constant + linear * d + quadratic * d^2 at distance d.
    void SetAttenuation(float constant, float linear, float quadratic) noexcept;
    [[nodiscard]] float ConstantAttenuation() const noexcept { return _constantAttenuation; }
    [[nodiscard]] float LinearAttenuation() const noexcept { return _linearAttenuation; }
    [[nodiscard]] float QuadraticAttenuation() const noexcept { return _quadraticAttenuation; }

    /// The colour that \p name has now in the process's colour map.
    /// \throws g3d_ColorErrorException  when it has none.
    [[nodiscard]] static g3d_Color ResolveColor(const cow_String& name);

    /// Exact comparison of all but the angles: how a position was reached makes no difference.
    friend CAE_API bool operator==(const g3d_Light& left, const g3d_Light& right) noexcept;

private:
    bool _on = false;
    cow_String _ambient = "Black";
    cow_String _diffuse = "#B3B3B3";
    cow_String _specular = "#5C5C5C";
    g3d_Point _position{0, 0, 1, 0};
    float _constantAttenuation = 1;
    float _linearAttenuation = 0;
    float _quadraticAttenuation = 0;
    float _latitude = 0;
    float _longitude = 0;
};
