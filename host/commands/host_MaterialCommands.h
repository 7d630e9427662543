#pragma once

class host_CommandTable;

/// Adds the commands on materials: material, copyMaterial, deleteMaterial, assignMaterial,
/// materialValue, materialTable.
void host_RegisterMaterialCommands(host_CommandTable& table);
