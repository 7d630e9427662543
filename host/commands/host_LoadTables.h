#pragma once

#include <span>
#include <string>
#include <vector>

class host_Load;

/// The statuses of all loads of the model in all steps, for people to read.
[[nodiscard]] std::string host_StepTable();

/// The attributes of loads in all steps, likewise.
[[nodiscard]] std::string host_LoadTable(std::span<const host_Load* const> loads);
