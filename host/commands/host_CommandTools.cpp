#include "host_CommandTools.h"

#include "g3d_ColorErrorException.h"
#include "g3d_ColorMap.h"
#include "host_MemberArgument.h"
#include "host_Part.h"
#include "host_Progress.h"
#include "omi_Singleton.h"
#include "omu_RangeChecker.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <memory>

namespace {

constexpr const char* kSource = "host/commands/host_CommandTools";

template <class Number>
void CheckNumber(const char* keyword, Number value, Number low, Number high) {
    omu_RangeChecker().AtLeast(low).AtMost(high).Check(keyword, value);
}

}  // namespace

void host_RefuseValue(const std::string& message, const char* source, int line) {
    omu_ValueErrorException(atr_String(message)).Throw(source, line);
}

host_Choice::host_Choice(std::vector<std::string> names)
    : omu_PrimEnumBase(cow_String(names.front())), _names(std::move(names)) {}

bool host_Choice::SetValue(const char* name) {
    const auto found = std::find(_names.begin(), _names.end(), name);
    if (found == _names.end()) {
        return false;
    }
    StoreName(name);
    _index = static_cast<int>(found - _names.begin());
    return true;
}

cow_Map<cow_String, unsigned int> host_Choice::PermissibleValues() const {
    cow_Map<cow_String, unsigned int> values;
    unsigned int index = 0;
    for (const std::string& name : _names) {
        values.InsertUnlessMember(name, index++);
    }
    return values;
}

std::optional<double> host_GetOrAuto(omu_Arguments& args, int index, const char* keyword) {
    const omu_Primitive* given = host_Given(args, index, keyword);
    if (given == nullptr || dynamic_cast<const omu_PrimEnumBase*>(given) != nullptr) {
        host_Choice automatic({"AUTO"});
        args.Get(automatic, keyword);
        return {};
    }
    double value = 0;
    args.Get(value, keyword);
    return value;
}

const omu_Primitive* host_Given(const omu_Arguments& args, int index, const char* keyword) {
    return index < args.Length() ? args.Index(index) : args.Keywords().Find(keyword);
}

cow_String host_GetOnlyPart(omu_Arguments& args, bool isRequired) {
    args.Begin();
    if (!isRequired) {
        args.Optional();
    }
    cow_String part = host_GetName<host_Part>(args, "part");
    args.End();
    return part;
}

host_PictureSize host_GetPictureSize(omu_Arguments& args) {
    host_PictureSize size;
    args.Get(size.width, "width");
    args.Get(size.height, "height");
    return size;
}

std::vector<host_Parameter> host_WithPictureSize(std::vector<host_Parameter> parameters,
                                                 const char* help) {
    const host_PictureSize size;
    parameters.push_back({"width", "int", help, std::to_string(size.width), {}});
    parameters.push_back({"height", "int", help, std::to_string(size.height), {}});
    return parameters;
}

namespace {

/// The numbers of a sequence of sequences of numbers, all of one length; nothing where it is none,
/// which the getter explains. Faster than that, and a long one can be interrupted.
std::optional<omu_PrimArray> PlainRows(const omu_Primitive* given) {
    const auto* rows = dynamic_cast<const omu_PrimTuple*>(given);
    if (rows == nullptr || rows->Length() == 0) {
        return {};
    }
    host_Progress progress("Reading points", static_cast<std::size_t>(rows->Length()));
    std::vector<double> values;
    int columns = 0;
    for (int i = 0; i < rows->Length(); ++i) {
        progress.Count();
        const auto* row = dynamic_cast<const omu_PrimTuple*>(rows->Index(i));
        if (row == nullptr || row->Length() == 0 || (i > 0 && row->Length() != columns)) {
            return {};
        }
        columns = row->Length();
        for (int j = 0; j < columns; ++j) {
            const omu_Primitive* value = row->Index(j);
            const auto* number = value != nullptr ? omu_PrimCast<omu_PrimNumber>(*value) : nullptr;
            if (number == nullptr) {
                return {};
            }
            values.push_back(number->Value());
        }
    }
    return omu_PrimArray(std::move(values), {rows->Length(), columns});
}

}  // namespace

std::string host_FilePath(const cow_String& path) {
    std::string file = path.Std();
    if (file.empty() || file.find('\0') != std::string::npos) {
        host_RefuseValue(file.empty() ? "path is empty" : "path holds a zero byte", kSource,
                         __LINE__);
    }
    return file;
}

omu_PrimArray host_GetPoints(omu_Arguments& args, int index, const char* keyword) {
    if (host_IsArray(args, index, keyword)) {
        omu_PrimArray array;
        args.Get(array, keyword);
        return array;
    }
    if (std::optional<omu_PrimArray> plain = PlainRows(host_Given(args, index, keyword))) {
        omu_PrimTuple passed('(');
        args.Get(passed, keyword);
        return *std::move(plain);
    }
    cow_2DArray<double> rows;
    args.Get(rows, keyword);
    std::vector<double> values;
    for (int i = 0; i < rows.Rows(); ++i) {
        for (int j = 0; j < rows.Columns(); ++j) {
            values.push_back(rows.ConstGet(i, j));
        }
    }
    return {std::move(values), {rows.Rows(), rows.Columns()}};
}

std::vector<host_Point> host_PointsOf(const omu_PrimArray& array, const char* keyword) {
    if (array.Dimensions() != 2 || array.Dims()[1] != 3) {
        host_RefuseValue(std::string(keyword) + " is an array of shape " +
                             std::string(omu_PrimArray(array.Dims()).AsString(0).View()) +
                             "; [n, 3] was expected",
                         kSource, __LINE__);
    }
    const std::vector<double> values = array.AsDoubles();
    std::vector<host_Point> points(values.size() / 3);
    for (std::size_t i = 0; i < values.size(); ++i) {
        points[i / 3][i % 3] = values[i];
    }
    return points;
}

void host_TakePoint(const cow_1DArrayList<double>& values, const char* keyword, host_Point& point) {
    if (values.Length() != 0 && values.Length() != 3) {
        host_RefuseValue(std::string(keyword) + " has " + std::to_string(values.Length()) +
                             " coordinates; 3 were expected",
                         kSource, __LINE__);
    }
    std::copy(values.begin(), values.end(), point.begin());
}

std::array<double, 2> host_PairOf(const cow_1DArrayList<double>& values, const char* keyword,
                                  const char* what) {
    if (values.Length() != 2) {
        host_RefuseValue(std::string(keyword) + " has " + std::to_string(values.Length()) +
                             " elements; " + what + " were expected",
                         kSource, __LINE__);
    }
    return {values.ConstGet(0), values.ConstGet(1)};
}

void host_CheckRange(const char* keyword, double value, double low, double high) {
    CheckNumber(keyword, value, low, high);
}

void host_CheckRange(const char* keyword, int value, int low, int high) {
    CheckNumber(keyword, value, low, high);
}

g3d_Color host_ColorOf(const cow_String& name) {
    // The colour map takes what it can read of such a text; here a slip of the pen is an error.
    const std::string_view text = name.View();
    if (text.starts_with('#') &&
        (text.size() != 7 || !std::all_of(text.begin() + 1, text.end(), [](unsigned char digit) {
             return std::isxdigit(digit) != 0;
         }))) {
        g3d_ColorErrorException(text).Throw(kSource, __LINE__);
    }
    return omi_Singleton<g3d_ColorMap>::Instance().ConstGet(name);
}

std::string host_ColorText(const g3d_Color& color) {
    std::string text("#");
    for (const float component : {color.Red(), color.Green(), color.Blue()}) {
        const auto byte = static_cast<int>(std::lround(std::clamp(component, 0.0F, 1.0F) * 255));
        text += "0123456789ABCDEF"[byte / 16];
        text += "0123456789ABCDEF"[byte % 16];
    }
    return text;
}

std::array<float, 3> host_PicturePoint(const host_Point& point, const std::string& name) {
    std::array<float, 3> result{};
    for (std::size_t k = 0; k < 3; ++k) {
        if (!(std::abs(point[k]) <= 1e18)) {
            host_RefuseValue(name + " is not a point within 1e18 of the origin", kSource, __LINE__);
        }
        result[k] = static_cast<float>(point[k]);
    }
    return result;
}

g3d_Point host_ScenePoint(const cow_1DArrayList<double>& values, const char* keyword) {
    host_Point point{};
    if (values.Length() == 0) {
        host_RefuseValue(std::string(keyword) + " has 0 coordinates; 3 were expected", kSource,
                         __LINE__);
    }
    host_TakePoint(values, keyword, point);
    const auto [x, y, z] = host_PicturePoint(point, keyword);
    return {x, y, z};
}

omu_PrimTuple* host_Triple(const host_Point& point) {
    auto tuple = std::make_unique<omu_PrimTuple>(3, omu_PrimSequence::kCode);
    for (const double coordinate : point) {
        tuple->Put(coordinate);
    }
    return tuple.release();
}
