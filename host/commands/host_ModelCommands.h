#pragma once

class host_CommandTable;

/// Adds the commands on the model as a whole: setModelSettings, modelSettings, newModel, saveModel,
/// openModel, undo, redo, changeHistory, clearHistory, beginChanges, keepChanges, dropChanges; and
/// those that find its objects: parts, materials, steps, loads, findPart, findMaterial, findStep,
/// findLoad.
void host_RegisterModelCommands(host_CommandTable& table);
