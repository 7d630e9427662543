#pragma once

#include "host_Changes.h"
#include "host_Command.h"

#include <memory>
#include <optional>

/// Calls a command as the bridge does: one that changes the model as a step.
inline std::unique_ptr<omu_Primitive> host_RunStep(const host_Command& command,
                                                   omu_Arguments& args) {
    std::optional<host_Transaction> step;
    if (command.changesModel) {
        step.emplace(cow_String(command.name));
    }
    std::unique_ptr<omu_Primitive> result(command.run(args));
    if (command.finish) {
        command.finish(args);
    }
    if (step) {
        step->Commit();
    }
    return result;
}
