#include "host_Journal.h"

#include "host_PythonText.h"
#include "omu_CmdHistory.h"
#include "omu_PrimWrapper.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace {

/// Where the calling thread's lines go while a step that will repeat them is being done.
thread_local std::vector<host_JournalEntry::Line>* heldBack = nullptr;

[[noreturn]] void Raise(const std::filesystem::path& path) {
    throw std::filesystem::filesystem_error("cannot write the journal", path,
                                            std::error_code(errno, std::generic_category()));
}

host_PythonText MakeText() {
    return host_PythonText(
        [](const omu_InterfaceHandle& object) { return host_Journal::Instance().NameOf(object); });
}

std::string Name(int number) { return "object_" + std::to_string(number); }

/// Appends the name of an application object and a dot.
void AppendObject(host_PythonText& text, const omu_InterfaceHandle& object) {
    omu_PrimWrapper wrapper(object.Get());
    text.Append(wrapper);
    text.Append(".");
}

/// Whether \p write, which is called until nothing is left, has written all.
template <class Write>
bool WriteAll(std::string_view text, const Write& write) {
    while (!text.empty()) {
        const ssize_t count = write(text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return true;
}

void Deliver(const host_JournalEntry::Line& line) {
    if (heldBack != nullptr) {
        heldBack->push_back(line);
    } else {
        host_Journal::Instance().Record(line.text);
    }
}

}  // namespace

host_Journal& host_Journal::Instance() {
    static host_Journal journal;
    return journal;
}

void host_Journal::Open(const std::filesystem::path& file) {
    Close();
    _path = file;
    _file = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (_file < 0) {
        Raise(_path);
    }
    Write(
        "# A journal of caehost: every command that succeeded. Repeat it with: caehost FILE\n"
        "from caehost import *");
}

void host_Journal::Close() noexcept {
    if (IsOpen()) {
        ::close(std::exchange(_file, -1));
    }
    _names.clear();
}

void host_Journal::Write(std::string line) {
    // A process that is killed here may leave a part of the line. It is a comment until all of it
    // is there; only then its first character is put in place.
    const std::size_t lastLine = line.rfind('\n') + 1;
    line += '\n';
    const off_t start = ::lseek(_file, 0, SEEK_END);
    const bool isFile = start >= 0;
    const char first = line[lastLine];
    if (isFile) {
        line[lastLine] = '#';
    }
    bool isWritten = WriteAll(
        line, [this](const char* from, std::size_t size) { return ::write(_file, from, size); });
    if (isWritten && isFile) {
        const off_t place = start + static_cast<off_t>(lastLine);
        isWritten = WriteAll({&first, 1}, [this, place](const char* from, std::size_t size) {
            return ::pwrite(_file, from, size, place);
        });
    }
    if (!isWritten) {
        const int cause = errno;
        if (isFile && ::ftruncate(_file, start) != 0) {
            // Half a line stays; the error below tells of it.
        }
        errno = cause;
        Raise(_path);
    }
}

void host_Journal::Record(const std::string& line) {
    omu_CmdHistory& history = thr_ThreadSingleton<omu_CmdHistory>::Instance();
    history.SetSink([this](const cow_String& command) {
        if (IsOpen()) {
            Write(command.Std());
        }
    });
    history.Append(line);
}

std::string host_Journal::NameOf(const omu_InterfaceHandle& object) const {
    const auto found = std::find_if(_names.begin(), _names.end(),
                                    [&](const auto& entry) { return entry.first == object; });
    return found != _names.end() ? Name(found->second) : std::string();
}

std::string host_Journal::GiveName(const omu_InterfaceHandle& object) {
    _names.emplace_back(object, _names.empty() ? 1 : _names.back().second + 1);
    return Name(_names.back().second);
}

void host_Journal::TakeName(const omu_InterfaceHandle& object) {
    std::erase_if(_names, [&](const auto& entry) { return entry.first == object; });
}

void host_JournalEntry::BeginCall(const host_Command& command, const omu_InterfaceHandle& object,
                                  const omu_Arguments& arguments) {
    if (!host_Journal::Instance().IsOpen()) {
        return;
    }
    _isWanted = command.isJournalled;
    _line.changesModel = command.changesModel;
    host_PythonText text = MakeText();
    if (object != omu_InterfaceHandle()) {
        AppendObject(text, object);
    }
    text.Append(command.name);
    std::string_view separator = "(";
    for (int i = 0; i < arguments.Length(); ++i) {
        text.Append(std::exchange(separator, ", "));
        text.Append(*arguments.Index(i));
    }
    for (const cow_String& keyword : arguments.KeywordOrder()) {
        text.Append(std::exchange(separator, ", "));
        text.Append(keyword.View());
        text.Append("=");
        text.Append(*arguments.Keywords().Find(keyword));
    }
    text.Append(separator == "(" ? "()" : ")");
    Begin(text.Text(), command.name, text.Obstacle());
}

void host_JournalEntry::BeginSetting(const omu_InterfaceHandle& object, const cow_String& attribute,
                                     const omu_Primitive& value) {
    if (!host_Journal::Instance().IsOpen()) {
        return;
    }
    _line.changesModel = true;
    host_PythonText text = MakeText();
    AppendObject(text, object);
    text.Append(attribute.View());
    text.Append(" = ");
    text.Append(value);
    Begin(text.Text(), attribute.Std(), text.Obstacle());
}

void host_JournalEntry::Begin(std::string text, const std::string& name,
                              const std::string& obstacle) {
    if (!obstacle.empty()) {
        host_PythonText line = MakeText();
        line.Append("# Not repeatable: " + text + "\nnot_repeated(");
        line.AppendQuoted(name);
        line.Append(", ");
        line.AppendQuoted(obstacle);
        line.Append(")");
        _line.text = line.Text();
        return;
    }
    _line.text = std::move(text);
    _holdsBack = _isWanted;
    if (_holdsBack) {
        _outer = std::exchange(heldBack, &_inner);
    }
}

void host_JournalEntry::Commit(const omu_InterfaceHandle& result) {
    if (_line.text.empty()) {
        return;
    }
    if (std::exchange(_holdsBack, false)) {
        heldBack = _outer;
    }
    host_Journal& journal = host_Journal::Instance();
    for (const Line& line : std::exchange(_inner, {})) {
        journal.TakeName(line.named);
    }
    const bool isNew = result.Get() != nullptr && journal.NameOf(result).empty();
    // A query that finds an object is needed where the object is used later.
    if (!_isWanted && !isNew) {
        return;
    }
    if (isNew && !_line.text.starts_with('#')) {
        _line.text.insert(0, journal.GiveName(result) + " = ");
        _line.named = result;
    }
    try {
        Deliver(_line);
    } catch (...) {
        journal.TakeName(_line.named);
        throw;
    }
}

host_JournalEntry::~host_JournalEntry() {
    if (!_holdsBack) {
        return;
    }
    heldBack = _outer;
    try {
        for (const Line& line : _inner) {
            if (!_line.changesModel || !line.changesModel) {
                Deliver(line);
            } else {
                host_Journal::Instance().TakeName(line.named);
            }
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "caehost: %s\n", error.what());
    }
}
