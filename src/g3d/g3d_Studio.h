#pragma once

#include "g3d_Light.h"

#include <array>
#include <cstdint>

/// The lighting of a viewport: eight lights and a background.
class CAE_API g3d_Studio : public mem_AllocationOperators {
public:
    static constexpr int kLights = 8;
    static constexpr int kOptions = 3;

    /// Two soft lights for interactive work; or, in a process that was started with the environment
    /// variable TVX_QA_PRINT (whatever its value), one strong light for reproducible pictures.
    g3d_Studio();

    /// True with the defaults for reproducible pictures.
    [[nodiscard]] bool IsQualityAssurance() const noexcept { return _qualityAssurance != 0; }

    /// Light \p index, in [0, 8).
    /// \throws nex_AssertException  for any other index.
    [[nodiscard]] g3d_Light& Light(int index);
    [[nodiscard]] const g3d_Light& Light(int index) const;

    /// Name of the background colour.
    [[nodiscard]] const cow_String& Background() const noexcept { return _background; }
    void SetBackground(cow_String name) noexcept { _background = std::move(name); }
    /// \throws g3d_ColorErrorException  for a name that is no colour.
    [[nodiscard]] g3d_Color BackgroundColor() const { return g3d_Light::ResolveColor(_background); }

    /// Exponent of the highlights on surfaces: the higher, the smaller they are.
    [[nodiscard]] float Shininess() const noexcept { return _shininess; }
    void SetShininess(float shininess) noexcept { _shininess = shininess; }

    /// Switch \p index, in [0, 3), off by default: free for whoever draws; it is kept, copied and
    /// compared, and has no other effect here.
    /// \throws nex_AssertException  for any other index.
    [[nodiscard]] bool Option(int index) const;
    void SetOption(int index, bool on);

    /// Everything equal, lights in order. A studio equals itself even where it holds a NaN.
    friend CAE_API bool operator==(const g3d_Studio& left, const g3d_Studio& right) noexcept;

private:
    std::uint8_t _qualityAssurance = 0;
    std::array<std::uint8_t, kOptions> _options{};
    float _shininess = 65;
    cow_String _background = "#404040";
    std::array<g3d_Light, kLights> _lights;
};
