#pragma once

class host_CommandTable;

/// Adds the commands on parts and their meshes: part, deletePart, legalName, group, boundingBox,
/// surfaceArea, volume, massProperties, elementQuality, report, say. Parts live in
/// host_PartTable::Instance().
void host_RegisterMeshCommands(host_CommandTable& table);
