#pragma once

#include "omu_Arguments.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

/// One parameter of a command, as the command declares it.
struct host_Parameter {
    std::string name;
    /// What it accepts, in the words of the command language: "float", "ON or OFF", ...
    std::string type;
    /// One line of help.
    std::string help;
    /// The default as it would be typed ("2.5", "OFF"); empty for a required parameter.
    std::string defaultText;
    /// The names it takes, for a symbolic constant; they feed completion and the nearest-name note.
    std::vector<std::string> constants;

    [[nodiscard]] bool IsRequired() const noexcept { return defaultText.empty(); }
};

/// A scripted command: declared once, and everything that is shown of it follows from that (help,
/// signature, completion, the notes of its errors).
struct host_Command {
    std::string name;
    /// First line: what it does. Further lines: details.
    std::string help;
    /// In signature order, required ones first.
    std::vector<host_Parameter> parameters;
    /// Reads the arguments (Begin, a getter a parameter, Optional, End) and returns a new value,
    /// which the caller owns; null for None. Raises by the exceptions of the library.
    std::function<omu_Primitive*(omu_Arguments&)> run;
    /// Whether a successful call enters the journal; queries that change nothing may stay out.
    bool isJournalled = true;
    /// Whether it changes the model: each call then is a step that can be undone, and one that
    /// fails leaves the model as it was. Set by host_CommandTable::AddChange.
    bool changesModel = false;
    /// What run, which then only checks, leaves to be done when the call is in the journal: for
    /// what cannot be taken back where the journal cannot be written. Reads the arguments again.
    std::function<void(omu_Arguments&)> finish = {};

    /// "box(points, name='part', shape=OFF)".
    [[nodiscard]] std::string Signature() const;
};

/// All commands of the host, in order of registration.
class host_CommandTable {
public:
    /// The table of the process.
    static host_CommandTable& Instance();

    /// Adds a command; one of the same name is replaced.
    void Add(host_Command command);
    /// Adds one that changes the model.
    void AddChange(host_Command command) {
        command.changesModel = true;
        Add(std::move(command));
    }
    /// The command of that name, or null.
    [[nodiscard]] const host_Command* Find(const std::string& name) const;
    [[nodiscard]] const std::vector<host_Command>& All() const noexcept { return _commands; }
    /// Names constants that results hold, for scripts to import.
    void AddConstants(const std::vector<std::string>& names) {
        _constants.insert(names.begin(), names.end());
    }
    /// The symbolic constants that scripts can import: the words of switches, what parameters of
    /// commands have named, and what was added.
    [[nodiscard]] const std::set<std::string>& Constants() const noexcept { return _constants; }

private:
    std::vector<host_Command> _commands;
    std::set<std::string> _constants{"ON", "OFF", "TRUE", "FALSE", "YES", "NO"};
};
