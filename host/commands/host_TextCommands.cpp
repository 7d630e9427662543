#include "host_TextCommands.h"

#include "host_CommandTools.h"
#include "host_View.h"

template <>
struct omu_EnumTable<host_Align, 1> {
    static constexpr omu_EnumEntry<host_Align> kEntries[] = {{"LEFT", host_Align::Left},
                                                             {"CENTER", host_Align::Center},
                                                             {"RIGHT", host_Align::Right},
                                                             {nullptr, host_Align::Left}};
};

namespace {

constexpr const char* kSource = "host/commands/host_TextCommands";

constexpr std::size_t kMostBytes = 4000;  // of a text
constexpr double kLargest = 1000;         // [pixels], a size of text
constexpr double kFarthest = 10000;       // [pixels], an offset

std::array<float, 2> InRange(const cow_1DArrayList<double>& values, const char* keyword,
                             const char* what, double low, double high) {
    std::array<float, 2> pair{};
    for (std::size_t k = 0; k < 2; ++k) {
        const double value = host_PairOf(values, keyword, what)[k];
        host_CheckRange((std::string(keyword) + "[" + std::to_string(k) + "]").c_str(), value, low,
                        high);
        pair[k] = static_cast<float>(value);
    }
    return pair;
}

/// Label and caption: they differ in where they are.
omu_Primitive* AddText(omu_Arguments& args, bool isLabel) {
    cow_String words;
    cow_1DArrayList<double> place;
    cow_1DArrayList<double> offset;
    cow_String color;
    host_ViewText text;
    text.align = isLabel ? host_Align::Left : host_Align::Center;
    args.Begin();
    args.Get(words, "text");
    if (isLabel) {
        args.Get(place, "point");
    }
    args.Optional();
    if (!isLabel) {
        args.Get(place, "position");
    }
    const std::optional<double> size = host_GetOrAuto(args, 2, "size");
    args.Get(color, "color");
    host_GetConstant(args, text.align, "align");
    if (isLabel) {
        args.Get(offset, "offset");
    }
    args.End();

    text.text = words.Std();
    if (text.text.size() > kMostBytes) {
        host_RefuseValue("text has " + std::to_string(text.text.size()) + " bytes; at most " +
                             std::to_string(kMostBytes) + " are drawn",
                         kSource, __LINE__);
    }
    if (isLabel) {
        text.place = host_ScenePoint(place, "point");
    } else if (place.Length() != 0) {
        const auto [x, y] =
            InRange(place, "position", "percents to the right and downward", -100, 200);
        text.place = host_PicturePlace{x, y};
    } else {
        text.place = host_PicturePlace{50, 4};
    }
    if (offset.Length() != 0) {
        text.offset =
            InRange(offset, "offset", "pixels to the right and upward", -kFarthest, kFarthest);
    }
    if (size) {
        host_CheckRange("size", *size, 1.0, kLargest);
        text.size = static_cast<float>(*size);
    }
    if (!color.IsEmpty()) {
        text.color = host_ColorOf(color);
    }
    host_View::Instance().AddText(std::move(text));
    return nullptr;
}

omu_Primitive* ClearLabels(omu_Arguments& args) {
    args.Begin();
    args.End();
    host_View::Instance().ClearTexts();
    return nullptr;
}

const host_Parameter kText{
    "text", "str", "what is written, at most 4000 bytes; '\\n' begins a line", "", {}};
const host_Parameter kSize{
    "size", "float or AUTO", "[pixels], 1 to 1000; AUTO grows with the picture", "AUTO", {"AUTO"}};
const host_Parameter kColor{
    "color", "str", "colour of the text; by default what stands out from the background", "''", {}};

host_Parameter Align(const char* defaultText) {
    return {"align", "constant", "where the text is: LEFT begins at the place, RIGHT ends there",
            defaultText, host_Names<host_Align>()};
}

}  // namespace

void host_RegisterTextCommands(host_CommandTable& table) {
    table.Add(
        {"label",
         "Writes text at a point of the model. It keeps its size, faces the viewer, and is\n"
         "seen through what is before it.",
         {kText,
          {"point", "point", "where, as coordinates of the model", "", {}},
          kSize,
          kColor,
          Align("LEFT"),
          {"offset", "two floats", "from there to the right and upward [pixels]", "(0, 0)", {}}},
         [](omu_Arguments& args) { return AddText(args, true); }});
    table.Add({"caption",
               "Writes text at a place of the picture, whatever the camera looks at.",
               {kText,
                {"position",
                 "two floats",
                 "[percent of width and height], -100 to 200; (0, 0) is the upper left",
                 "(50, 4)",
                 {}},
                kSize,
                kColor,
                Align("CENTER")},
               [](omu_Arguments& args) { return AddText(args, false); }});
    table.Add({"clearLabels", "Removes all labels and captions.", {}, ClearLabels});
}
