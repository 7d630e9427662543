#include "g3d_ColorMap.h"

#include "cow_MapUtils.h"
#include "g3d_ColorErrorException.h"

namespace {

struct DefaultColor {
    const char* name;
    float red;
    float green;
    float blue;
};

// "Sky blue" and "Cyan" differ on purpose, and "Chartreuse" is the application's own shade.
constexpr DefaultColor kDefaultColors[] = {
    {"Black", 0.0F, 0.0F, 0.0F},         {"White", 1.0F, 1.0F, 1.0F},
    {"Red", 1.0F, 0.0F, 0.0F},           {"Orange", 1.0F, 0.5F, 0.0F},
    {"Light orange", 1.0F, 0.6F, 0.0F},  {"Purple", 0.63F, 0.13F, 0.94F},
    {"Blue", 0.0F, 0.0F, 1.0F},          {"Medium blue", 0.0F, 0.6F, 1.0F},
    {"Sky blue", 0.0F, 0.8F, 1.0F},      {"Cyan", 0.0F, 1.0F, 1.0F},
    {"Aqua", 0.0F, 1.0F, 0.8F},          {"Green", 0.0F, 1.0F, 0.0F},
    {"Spring green", 0.0F, 1.0F, 0.55F}, {"Yellow", 1.0F, 1.0F, 0.0F},
    {"Gold", 1.0F, 0.844F, 0.0F},        {"Dark gold", 1.0F, 0.7F, 0.0F},
    {"Chartreuse", 0.7F, 1.0F, 0.0F},    {"Grey20", 0.2F, 0.2F, 0.2F},
    {"Grey60", 0.6F, 0.6F, 0.6F},        {"Grey80", 0.8F, 0.8F, 0.8F},
    {"Default", 1.0F, 1.0F, 1.0F},       {"Magenta", 1.0F, 0.0F, 1.0F},
    {"Grey10", 0.1F, 0.1F, 0.1F},        {"Grey30", 0.3F, 0.3F, 0.3F},
    {"Grey40", 0.4F, 0.4F, 0.4F},        {"Grey50", 0.5F, 0.5F, 0.5F},
    {"Grey70", 0.7F, 0.7F, 0.7F},        {"Grey90", 0.9F, 0.9F, 0.9F},
};

constexpr int kSourceLine = 247;  // of the error for an unknown name; part of the interface

}  // namespace

g3d_ColorMap::g3d_ColorMap() {
    for (const DefaultColor& color : kDefaultColors) {
        AddDefaultColor(color.name, color.red, color.green, color.blue);
    }
}

g3d_Color g3d_ColorMap::ConstGet(const cow_String& name) const {
    if (name.View().substr(0, 1) == "#") {
        g3d_Color color;
        color.Set(name, 1.0F);
        return color;
    }
    const auto found = _index.find(name);
    if (found == _index.end() || found->second == nullptr) {
        g3d_ColorErrorException(name).Throw("generated/g3d/impl/g3d_ColorMap", kSourceLine);
    }
    return *found->second;
}

void g3d_ColorMap::Put(cow_Map<cow_String, g3d_Color>& colors, const cow_String& name,
                       const g3d_Color& color) {
    const g3d_Color*& indexed = _index[name];
    colors.Put(name, color);
    const g3d_Color* const own = _userColors.Find(name);
    indexed = own != nullptr ? own : _defaultColors.Find(name);
}

bool g3d_ColorMap::AddDefaultColor(const cow_String& name, float red, float green, float blue) {
    Put(_defaultColors, name, g3d_Color(red, green, blue, 1.0F));
    return true;
}

bool g3d_ColorMap::AddByRGB(const cow_String& name, float red, float green, float blue) {
    if (IsDefaultColor(name)) return false;
    Put(_userColors, name, g3d_Color(red, green, blue, 1.0F));
    return true;
}

bool g3d_ColorMap::Remove(const cow_String& name) {
    if (!IsUserColor(name)) return false;
    const auto indexed = _index.find(name);
    indexed->second = _defaultColors.Find(name);
    if (indexed->second == nullptr) _index.erase(indexed);
    return _userColors.Remove(name);
}

bool g3d_ColorMap::IsMember(const cow_String& name) const {
    return IsDefaultColor(name) || IsUserColor(name);
}

bool g3d_ColorMap::IsDefaultColor(const cow_String& name) const {
    return _defaultColors.IsMember(name);
}

bool g3d_ColorMap::IsUserColor(const cow_String& name) const { return _userColors.IsMember(name); }

cow_List<cow_String> g3d_ColorMap::Keys() const {
    cow_List<cow_String> keys = cow_MapUtils::cow_Keys(_defaultColors);
    keys.Append(cow_MapUtils::cow_Keys(_userColors));
    return keys;
}

int g3d_ColorMap::Length() const noexcept { return _defaultColors.Length() + _userColors.Length(); }
