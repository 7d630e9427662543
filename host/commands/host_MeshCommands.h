#pragma once

class host_CommandTable;

/// Adds the commands on parts and their meshes: part, deletePart, legalName, group, nodeSet,
/// cellsOf, nodesOf, field, boundingBox, surfaceArea, volume, massProperties, elementQuality,
/// report, say.
void host_RegisterMeshCommands(host_CommandTable& table);
