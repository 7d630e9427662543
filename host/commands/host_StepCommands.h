#pragma once

class host_CommandTable;

/// Adds the commands on the steps of the analysis: step, deleteStep.
void host_RegisterStepCommands(host_CommandTable& table);
