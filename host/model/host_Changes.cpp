#include "host_Changes.h"

#include "host_Model.h"
#include "omu_ErrorExceptions.h"

#include <cstdio>
#include <stdexcept>

namespace {

[[noreturn]] void Refuse(const char* message, int line) {
    omu_ValueErrorException(atr_String(message)).Throw("host/model/host_Changes", line);
}

}  // namespace

struct host_Changes::Direction {
    int (omu_ChangeHistory::*count)() const noexcept;
    cow_String (omu_ChangeHistory::*label)(int) const;
    void (omu_ChangeHistory::*move)();
    void (omu_ChangeHistory::*back)();
    const char* none;
};

constexpr host_Changes::Direction host_Changes::Undoing{
    &omu_ChangeHistory::UndoCount, &omu_ChangeHistory::UndoLabel, &omu_ChangeHistory::Undo,
    &omu_ChangeHistory::Redo, "there are not so many steps to undo"};
constexpr host_Changes::Direction host_Changes::Redoing{
    &omu_ChangeHistory::RedoCount, &omu_ChangeHistory::RedoLabel, &omu_ChangeHistory::Redo,
    &omu_ChangeHistory::Undo, "there are not so many steps to redo"};

host_Changes& host_Changes::Instance() {
    static host_Changes changes;
    return changes;
}

omu_ChangeHistory& host_Changes::History() const {
    if (std::this_thread::get_id() != _thread) {
        throw std::runtime_error("the model is changed in the main thread only");
    }
    return thr_ThreadSingleton<omu_ChangeHistory>::Instance();
}

void host_Changes::Record(omu_ChangeHistory::Action undo, omu_ChangeHistory::Action redo) {
    History().Record(std::move(undo), std::move(redo));
    ++_recorded;
}

void host_Changes::Make(const omu_ChangeHistory::Action& change,
                        const omu_ChangeHistory::Action& undo) {
    (void)History();
    change();
    try {
        Record(undo, change);
    } catch (...) {
        undo();
        throw;
    }
}

cow_String host_Changes::Label(int steps, const Direction& direction) const {
    CheckNoGroup();
    const omu_ChangeHistory& history = History();
    if ((history.*direction.count)() < steps) {
        Refuse(direction.none, __LINE__);
    }
    return (history.*direction.label)(steps);
}

void host_Changes::Move(int steps, const Direction& direction) {
    (void)Label(steps, direction);
    omu_ChangeHistory& history = History();
    for (int done = 0; done < steps; ++done) {
        try {
            (history.*direction.move)();
        } catch (...) {
            for (; done > 0; --done) {
                (history.*direction.back)();
            }
            throw;
        }
    }
}

void host_Changes::CheckNoGroup() const {
    if (History().Depth() > 0) {
        Refuse("a group of changes is open; keepChanges or dropChanges closes it", __LINE__);
    }
}

void host_Changes::Forget() {
    CheckNoGroup();
    History().Clear();
}

void host_Changes::Begin(const cow_String& label) {
    History().Begin(label);
    _saved.clear();
}

void host_Changes::Close(int depth, bool isKept) {
    omu_ChangeHistory& history = History();
    while (history.Depth() > depth) {
        isKept ? history.Commit() : history.Rollback();
    }
    _saved.clear();
    std::erase_if(_opened, [depth](int opened) { return opened >= depth; });
}

void host_Changes::OpenGroup(const cow_String& label) {
    const int depth = History().Depth();
    Begin(label);
    _opened.push_back(depth);
}

void host_Changes::CheckGroup() const {
    if (_opened.empty() || _opened.back() != History().Depth() - 1) {
        Refuse("no group of changes is open", __LINE__);
    }
}

void host_Changes::CloseGroup(bool isKept) {
    CheckGroup();
    Close(_opened.back(), isKept);
}

host_Transaction::host_Transaction(const cow_String& label, std::uint64_t& lastUid)
    : _changes(host_Changes::Instance()),
      _depth(_changes.History().Depth()),
      _lastUid(lastUid),
      _firstUid(lastUid),
      _recorded(_changes._recorded),
      _scope(lastUid) {
    _changes.Begin(label);
}

host_Transaction::host_Transaction(const cow_String& label)
    : host_Transaction(label, host_Model::Instance().LastUid()) {}

void host_Transaction::Commit() {
    if (_changes._recorded == _recorded) {
        _lastUid = _firstUid;  // only passing objects were numbered
    } else if (_lastUid != _firstUid) {
        std::uint64_t& lastUid = _lastUid;
        _changes.Record([&lastUid, first = _firstUid] { lastUid = first; },
                        [&lastUid, last = _lastUid] { lastUid = last; });
    }
    _changes.Close(_depth, true);
    _isOpen = false;
}

host_Transaction::~host_Transaction() {
    if (!_isOpen) {
        return;
    }
    try {
        _changes.Close(_depth, false);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "caehost: a failed command was not taken back: %s\n", error.what());
    }
    _lastUid = _firstUid;
}
