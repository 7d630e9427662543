#pragma once

#include "host_Command.h"

/// Adds the commands that write into pictures.
void host_RegisterTextCommands(host_CommandTable& table);
