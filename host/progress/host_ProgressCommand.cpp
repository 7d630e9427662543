#include "host_ProgressCommand.h"

#include "host_CommandTools.h"

#include <algorithm>
#include <iterator>

template <>
struct omu_EnumTable<host_ProgressMode, 1> {
    static constexpr omu_EnumEntry<host_ProgressMode> kEntries[] = {
        {"AUTO", host_ProgressMode::Auto},
        {"PROGRESS_BAR", host_ProgressMode::Bar},
        {"PROGRESS_LINES", host_ProgressMode::Lines},
        {"NO_PROGRESS", host_ProgressMode::None},
        {nullptr, host_ProgressMode::Auto}};
};

namespace {

constexpr const char* kSource = "host/progress/host_ProgressCommand";

/// The command line's names, in the order of host_ProgressMode.
constexpr std::string_view kNames[] = {"auto", "bar", "lines", "none"};

omu_Primitive* Progress(omu_Arguments& args) {
    host_ProgressReporter* reporter = host_ProgressReporter::OfThread();
    if (reporter == nullptr) {
        host_RefuseValue("only the main thread shows progress", kSource, __LINE__);
    }
    const host_ProgressMode before = reporter->Mode();
    host_ProgressMode mode = before;
    args.Begin();
    args.Optional();
    host_GetConstant(args, mode, "mode");
    args.End();
    reporter->SetMode(mode);
    return new omu_PrimEnum<host_ProgressMode, 1>(before);
}

}  // namespace

std::optional<host_ProgressMode> host_ProgressModeOf(std::string_view name) {
    const auto* found = std::find(std::begin(kNames), std::end(kNames), name);
    if (found == std::end(kNames)) {
        return {};
    }
    return static_cast<host_ProgressMode>(found - std::begin(kNames));
}

void host_RegisterProgressCommand(host_CommandTable& table) {
    table.Add(
        {"progress",
         "Chooses how the progress of long commands is shown, and returns how it was.\n"
         "AUTO            a bar on a terminal, else lines\n"
         "PROGRESS_BAR    one line on standard error, drawn over and over\n"
         "PROGRESS_LINES  plain lines there, one a second at most\n"
         "NO_PROGRESS     nothing; errors and warnings are shown all the same",
         {{"mode", "constant", "how it is shown", "unchanged", host_Names<host_ProgressMode>()}},
         Progress,
         false});
}
