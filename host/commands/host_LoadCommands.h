#pragma once

class host_CommandTable;

/// Adds the commands on loads and supports: one that makes each kind (force, pressure, support,
/// gravity, temperature), setLoad, setStatus, deactivate, activate, deleteLoad, status, loadState,
/// loadStatuses, stepTable, loadTable, markLoads.
void host_RegisterLoadCommands(host_CommandTable& table);
