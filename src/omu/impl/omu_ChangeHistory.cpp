#include "omu_ChangeHistory.h"

#include "nex_TextException.h"

#include <exception>
#include <utility>

namespace {

[[noreturn]] void Refuse(const char* what, const char* why, int line) {
    nex_TextException(atr_String::Format("%s: %s", what, why))
        .Throw("generated/omu/impl/omu_ChangeHistory", line);
}

/// Sets a flag for the life of this object.
class Raised {
public:
    explicit Raised(bool& flag) : _flag(flag) { _flag = true; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;
    ~Raised() { _flag = false; }

private:
    bool& _flag;
};

}  // namespace

omu_ChangeHistory::omu_ChangeHistory() : thr_ThreadSingletonBase<omu_ChangeHistory>(this) {}

omu_ChangeHistory::~omu_ChangeHistory() = default;

void omu_ChangeHistory::Begin(const cow_String& label) {
    if (_isReplaying) {
        return;
    }
    _groups.push_back(_open.changes.size());
    if (_groups.size() == 1) {
        _open.label = label;
    }
}

void omu_ChangeHistory::Record(Action undo, Action redo) {
    if (_isReplaying) {
        return;
    }
    if (_groups.empty()) {
        Refuse("Record", "no group is open", __LINE__);
    }
    if (!undo || !redo) {
        Refuse("Record", "a function is empty", __LINE__);
    }
    _open.changes.push_back({std::move(undo), std::move(redo)});
}

void omu_ChangeHistory::Commit() {
    if (_isReplaying) {
        return;
    }
    if (_groups.empty()) {
        Refuse("Commit", "no group is open", __LINE__);
    }
    if (_groups.size() == 1 && !_open.changes.empty()) {
        _done.push_back(std::move(_open));
        _open = Step();
        _undone.clear();
    }
    _groups.pop_back();
}

void omu_ChangeHistory::Rollback() {
    if (_isReplaying) {
        return;  // nothing was recorded, and the command's own error must come through
    }
    if (_groups.empty()) {
        Refuse("Rollback", "no group is open", __LINE__);
    }
    const Raised replaying(_isReplaying);
    std::exception_ptr first;
    const std::size_t begin = _groups.back();
    while (_open.changes.size() > begin) {
        const Change change = std::move(_open.changes.back());
        _open.changes.pop_back();
        try {
            change.undo();
        } catch (...) {
            if (first == nullptr) {
                first = std::current_exception();
            }
        }
    }
    if (!_groups.empty()) {  // an undo function may have called Clear
        _groups.pop_back();
    }
    if (first != nullptr) {
        _undone.clear();
        std::rethrow_exception(first);
    }
}

void omu_ChangeHistory::Undo() { Move(_done, _undone, true, "Undo"); }

void omu_ChangeHistory::Redo() { Move(_undone, _done, false, "Redo"); }

void omu_ChangeHistory::Move(std::vector<Step>& from, std::vector<Step>& to, bool isUndo,
                             const char* what) {
    if (_isReplaying) {
        Refuse(what, "a step is being undone or redone", __LINE__);
    }
    if (!_groups.empty()) {
        Refuse(what, "a group is open", __LINE__);
    }
    if (from.empty()) {
        Refuse(what, "there is no step", __LINE__);
    }
    to.reserve(to.size() + 1);  // so that nothing but the functions can fail
    const Raised replaying(_isReplaying);
    Step step = std::move(from.back());
    from.pop_back();

    const std::size_t count = step.changes.size();
    const auto change = [&](std::size_t position) -> Change& {
        return step.changes[isUndo ? count - 1 - position : position];
    };
    std::size_t done = 0;
    try {
        for (; done < count; ++done) {
            isUndo ? change(done).undo() : change(done).redo();
        }
    } catch (...) {
        // Go back to where the step began.
        bool isRestored = true;
        try {
            while (done > 0) {
                --done;
                isUndo ? change(done).redo() : change(done).undo();
            }
        } catch (...) {
            isRestored = false;
        }
        if (isRestored) {
            from.push_back(std::move(step));
        } else {
            Clear();
        }
        throw;
    }
    to.push_back(std::move(step));
}

cow_String omu_ChangeHistory::Label(const std::vector<Step>& steps, int last) {
    const auto count = static_cast<int>(steps.size());
    return last < 1 || last > count ? cow_String()
                                    : steps[static_cast<std::size_t>(count - last)].label;
}

void omu_ChangeHistory::Clear() noexcept {
    _done.clear();
    _undone.clear();
    _open = Step();
    _groups.clear();
}
