#include "host_Command.h"

#include <algorithm>

std::string host_Command::Signature() const {
    std::string text = name + "(";
    for (const host_Parameter& parameter : parameters) {
        if (&parameter != &parameters.front()) {
            text += ", ";
        }
        text += parameter.name;
        if (!parameter.IsRequired()) {
            text += "=" + parameter.defaultText;
        }
    }
    return text + ")";
}

host_CommandTable& host_CommandTable::Instance() {
    static host_CommandTable table;
    return table;
}

void host_CommandTable::Add(host_Command command) {
    for (const host_Parameter& parameter : command.parameters) {
        _constants.insert(parameter.constants.begin(), parameter.constants.end());
    }
    const auto same = std::find_if(_commands.begin(), _commands.end(),
                                   [&](const host_Command& c) { return c.name == command.name; });
    if (same != _commands.end()) {
        *same = std::move(command);
    } else {
        _commands.push_back(std::move(command));
    }
}

const host_Command* host_CommandTable::Find(const std::string& name) const {
    const auto found =
        std::find_if(_commands.begin(), _commands.end(),
                     [&](const host_Command& command) { return command.name == name; });
    return found != _commands.end() ? &*found : nullptr;
}
