#pragma once

#include <functional>

class host_CommandTable;

/// Adds the commands on the model as a whole: modelSettings, newModel, saveModel, openModel, undo,
/// redo, changeHistory, beginChanges, keepChanges, dropChanges; and those that find its objects:
/// parts, materials, steps, loads, findPart, findMaterial, findStep, findLoad.
/// \p poll is called from time to time by what may take long.
void host_RegisterModelCommands(host_CommandTable& table, const std::function<void()>& poll);
