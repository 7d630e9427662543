#pragma once

#include "host_Command.h"
#include "host_ProgressReporter.h"

#include <optional>
#include <string_view>

/// The mode that the command line calls "auto", "bar", "lines" or "none"; else nothing.
[[nodiscard]] std::optional<host_ProgressMode> host_ProgressModeOf(std::string_view name);

/// Adds the command that chooses how progress is shown.
void host_RegisterProgressCommand(host_CommandTable& table);
