#pragma once

#include "g3d_Color.h"
#include "g3d_Point.h"
#include "host_Command.h"
#include "host_Mesh.h"
#include "omu_PrimArray.h"
#include "omu_PrimEnum.h"

#include <optional>
#include <string>
#include <vector>

// What several commands read and return alike.

/// Raises omu_ValueErrorException.
[[noreturn]] void host_RefuseValue(const std::string& message, const char* source, int line);

/// One of several names, where they are no native enumeration's.
class host_Choice final : public omu_PrimEnumBase {
public:
    /// Permits \p names, of which it takes the first.
    explicit host_Choice(std::vector<std::string> names);

    bool SetValue(const char* name) override;
    [[nodiscard]] cow_Map<cow_String, unsigned int> PermissibleValues() const override;
    [[nodiscard]] omu_Primitive* Copy() const override { return new host_Choice(*this); }

    /// The place of the chosen name among all.
    [[nodiscard]] int Index() const noexcept { return _index; }

private:
    std::vector<std::string> _names;
    int _index = 0;
};

/// The names of an enumeration, for the declaration of a parameter.
template <class E>
std::vector<std::string> host_Names() {
    std::vector<std::string> names;
    for (const auto* entry = omu_EnumTable<E, 1>::kEntries; entry->name != nullptr; ++entry) {
        names.emplace_back(entry->name);
    }
    return names;
}

/// Reads a symbolic constant of the enumeration E.
template <class E>
void host_GetConstant(omu_Arguments& args, E& value, const char* keyword) {
    omu_PrimEnum<E, 1> constant(value);
    args.Get(constant, keyword);
    value = constant;
}

/// The value of a parameter as it was given, by position \p index or by keyword, or null: to choose
/// the getter by. (To try one getter after another would hide an error of an earlier parameter.)
[[nodiscard]] const omu_Primitive* host_Given(const omu_Arguments& args, int index,
                                              const char* keyword);
[[nodiscard]] inline bool host_IsArray(const omu_Arguments& args, int index, const char* keyword) {
    return dynamic_cast<const omu_PrimArray*>(host_Given(args, index, keyword)) != nullptr;
}
/// Reads a number, or nothing for AUTO or when it is not given.
[[nodiscard]] std::optional<double> host_GetOrAuto(omu_Arguments& args, int index,
                                                   const char* keyword);

/// The only parameter of a command, a part or its name; \p isRequired, or empty by default.
[[nodiscard]] cow_String host_GetOnlyPart(omu_Arguments& args, bool isRequired);

/// Of a picture [pixels].
struct host_PictureSize {
    int width = 1280;
    int height = 960;
};
/// Reads the optional parameters width and height.
[[nodiscard]] host_PictureSize host_GetPictureSize(omu_Arguments& args);
/// Parameters, and behind them the declarations of those; \p help says what they are.
[[nodiscard]] std::vector<host_Parameter> host_WithPictureSize(
    std::vector<host_Parameter> parameters, const char* help);

/// The text of a parameter "path"; one that is empty or holds a zero byte raises
/// omu_ValueErrorException.
[[nodiscard]] std::string host_FilePath(const cow_String& path);

/// Reads an array of shape (n, 3), or else a sequence of triples.
[[nodiscard]] omu_PrimArray host_GetPoints(omu_Arguments& args, int index, const char* keyword);
/// The points of such an array; another shape raises omu_ValueErrorException.
[[nodiscard]] std::vector<host_Point> host_PointsOf(const omu_PrimArray& array,
                                                    const char* keyword);
/// Takes three coordinates; of an empty sequence none, so that \p point stays. Another number
/// raises omu_ValueErrorException.
void host_TakePoint(const cow_1DArrayList<double>& values, const char* keyword, host_Point& point);
/// Takes two numbers; \p what says what they are. Another number of them raises
/// omu_ValueErrorException.
[[nodiscard]] std::array<double, 2> host_PairOf(const cow_1DArrayList<double>& values,
                                                const char* keyword, const char* what);

/// Raises omu_RangeErrorException unless low <= value <= high; a NaN is refused.
void host_CheckRange(const char* keyword, double value, double low, double high);
void host_CheckRange(const char* keyword, int value, int low, int high);

/// The colour of a name or of a text like "#80FF00"; anything else raises
/// g3d_ColorErrorException.
[[nodiscard]] g3d_Color host_ColorOf(const cow_String& name);
/// "#80FF00".
[[nodiscard]] std::string host_ColorText(const g3d_Color& color);
/// Checks that a point lies within 1e18 of the origin in each coordinate, so that a picture can
/// hold it; else raises omu_ValueErrorException with \p name.
[[nodiscard]] std::array<float, 3> host_PicturePoint(const host_Point& point,
                                                     const std::string& name);

/// A point that must be given, checked so.
[[nodiscard]] g3d_Point host_ScenePoint(const cow_1DArrayList<double>& values, const char* keyword);

[[nodiscard]] omu_PrimTuple* host_Triple(const host_Point& point);
