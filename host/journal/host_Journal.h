#pragma once

#include "host_Command.h"
#include "omu_InterfaceHandle.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

/// The journal: a Python script that repeats every command that succeeded, in a file.
///
/// Each line is with the operating system before its command returns. Used under the interpreter's
/// lock only; commands of all threads enter it in the order in which they end.
class host_Journal {
public:
    static host_Journal& Instance();

    /// Starts the journal in \p file, which is made or emptied; an open one is closed first.
    /// std::filesystem::filesystem_error when it cannot be written.
    void Open(const std::filesystem::path& file);
    void Close() noexcept;
    [[nodiscard]] bool IsOpen() const noexcept { return _file >= 0; }

    /// Appends a line to the calling thread's omu_CmdHistory, and by that to the file.
    /// std::filesystem::filesystem_error, and the file as before, when it cannot be written.
    void Record(const std::string& line);
    /// What the journal calls an application object that one of its commands made; or empty.
    [[nodiscard]] std::string NameOf(const omu_InterfaceHandle& object) const;
    /// Names an application object.
    std::string GiveName(const omu_InterfaceHandle& object);
    /// Takes the name back, because the line that gives it is not written.
    void TakeName(const omu_InterfaceHandle& object);

    host_Journal(const host_Journal&) = delete;
    host_Journal& operator=(const host_Journal&) = delete;

private:
    host_Journal() = default;
    ~host_Journal() { Close(); }
    void Write(std::string line);

    std::filesystem::path _path;
    int _file = -1;
    std::vector<std::pair<omu_InterfaceHandle, int>> _names;  // and their numbers, ascending
};

/// One step for the journal, from before it is done to its success or failure: the call of a
/// command, or the setting of an attribute.
///
/// While a step is being done, the commands that it calls in turn stay out of the journal, since
/// repeating the step repeats them. They enter it after all where the step fails or cannot be
/// repeated itself; but what they did to the model is gone when a step that changes the model
/// fails, and so are they. Does nothing while the journal is closed.
class host_JournalEntry {
public:
    /// What has been done, as text.
    struct Line {
        std::string text;
        bool changesModel;
        omu_InterfaceHandle named = {};  ///< the object that it gives a name, if any
    };

    host_JournalEntry() = default;
    ~host_JournalEntry();
    host_JournalEntry(const host_JournalEntry&) = delete;
    host_JournalEntry& operator=(const host_JournalEntry&) = delete;

    /// Begins with a call of \p command, a method of \p object if that is one.
    void BeginCall(const host_Command& command, const omu_InterfaceHandle& object,
                   const omu_Arguments& arguments);
    /// Begins with the setting of an attribute.
    void BeginSetting(const omu_InterfaceHandle& object, const cow_String& attribute,
                      const omu_Primitive& value);
    /// The step has succeeded. \p result is the application object it gave, if any: a later step
    /// may need it by name.
    void Commit(const omu_InterfaceHandle& result = {});

private:
    void Begin(std::string text, const std::string& name, const std::string& obstacle);

    Line _line{{}, false};  // empty: nothing to record
    bool _isWanted = true;
    bool _holdsBack = false;
    std::vector<Line> _inner;             // lines of commands called meanwhile
    std::vector<Line>* _outer = nullptr;  // where lines went before
};
