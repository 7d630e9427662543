#pragma once

#include "host_Command.h"

/// Adds the commands that move the camera of the viewport, and the queries about it. \p poll is
/// called from time to time by those that may take long.
void host_RegisterCameraCommands(host_CommandTable& table, const std::function<void()>& poll);
