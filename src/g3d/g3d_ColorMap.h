#pragma once

#include "cow_List.h"
#include "cow_Map.h"
#include "g3d_Color.h"
#include "mem_AllocationOperators.h"

#include <unordered_map>

/// The named colours of the process: omi_Singleton<g3d_ColorMap>::Instance().
///
/// Starts with the default colours; users add their own. Names are case-sensitive. One thread at a
/// time.
class CAE_API g3d_ColorMap : public mem_AllocationOperators {
public:
    /// The default colours alone.
    g3d_ColorMap();
    g3d_ColorMap(const g3d_ColorMap&) = delete;
    g3d_ColorMap& operator=(const g3d_ColorMap&) = delete;
    ~g3d_ColorMap() = default;

    /// The colour of \p name: a text like "#80FF00" itself, else a user colour, else a default one.
    /// Raises g3d_ColorErrorException for any other name.
    [[nodiscard]] g3d_Color ConstGet(const cow_String& name) const;

    /// Sets an opaque default colour, new or not; always true.
    bool AddDefaultColor(const cow_String& name, float red, float green, float blue);
    /// Sets an opaque user colour, new or not; false, with nothing changed, for a default name.
    bool AddByRGB(const cow_String& name, float red, float green, float blue);
    /// Removes a user colour; false if there is none of that name.
    bool Remove(const cow_String& name);

    [[nodiscard]] bool IsMember(const cow_String& name) const;
    [[nodiscard]] bool IsDefaultColor(const cow_String& name) const;
    [[nodiscard]] bool IsUserColor(const cow_String& name) const;
    /// The default names, then the user names, each ascending.
    [[nodiscard]] cow_List<cow_String> Keys() const;
    [[nodiscard]] int Length() const noexcept;

private:
    void Put(cow_Map<cow_String, g3d_Color>& colors, const cow_String& name,
             const g3d_Color& color);

    cow_Map<cow_String, g3d_Color> _defaultColors;
    cow_Map<cow_String, g3d_Color> _userColors;
    // Every name, to the colour in a map that counts for it; nobody shares the maps, so that
    // colours stay where they are. Null: the colour could not be added for want of memory.
    std::unordered_map<cow_String, const g3d_Color*> _index;
};
