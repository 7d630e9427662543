#pragma once

#include "cls_Uid.h"
#include "omu_ChangeHistory.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

/// How the model is changed: every change goes through here and can be taken back.
///
/// Objects of the model keep their content in copy-on-write holders. A change of one keeps the old
/// holder, which costs a reference, and the write then copies the one object that changes: what a
/// step costs depends on what it changes, not on the model. For the main thread alone; what another
/// asks for raises std::runtime_error.
class host_Changes {
public:
    /// Of the process; its first use is in the main thread.
    static host_Changes& Instance();

    /// The history that keeps the changes.
    [[nodiscard]] omu_ChangeHistory& History() const;

    /// Makes a change, and records how it is taken back. It is made again by the same function.
    void Make(const omu_ChangeHistory::Action& change, const omu_ChangeHistory::Action& undo);
    /// Call before \p holder is written to; it must stay where it is as long as the history.
    template <class Holder>
    void Save(Holder& holder) {
        if (IsSaved(&holder)) {
            return;
        }
        auto other = std::make_shared<Holder>(holder);
        const auto exchange = [&holder, other] { std::swap(holder, *other); };
        Record(exchange, exchange);
        _saved.push_back(&holder);
    }

    // Wrong calls of these raise omu_ValueErrorException, and nothing has changed then. The calls
    // that only check say before whether they are wrong.

    /// The label of the last one of the latest steps, as many as there are to undo or redo.
    [[nodiscard]] cow_String UndoLabel(int steps) const { return Label(steps, Undoing); }
    [[nodiscard]] cow_String RedoLabel(int steps) const { return Label(steps, Redoing); }
    /// Takes the latest steps back, or makes them again; not while a group is open.
    void Undo(int steps) { Move(steps, Undoing); }
    void Redo(int steps) { Move(steps, Redoing); }

    /// Forgets all steps; not while a group is open.
    void Forget();
    void CheckNoGroup() const;

    /// Opens a group that a script closes: its commands become one step.
    void OpenGroup(const cow_String& label);
    /// Closes the script's innermost group, keeping its changes or taking them back; there must be
    /// one that this place may close.
    void CloseGroup(bool isKept);
    void CheckGroup() const;
    /// Number of groups that scripts have opened.
    [[nodiscard]] std::size_t OpenGroups() const noexcept { return _opened.size(); }

private:
    friend class host_Transaction;
    struct Direction;
    static const Direction Undoing, Redoing;

    host_Changes() : _thread(std::this_thread::get_id()) {}

    void Record(omu_ChangeHistory::Action undo, omu_ChangeHistory::Action redo);
    void Begin(const cow_String& label);
    /// Closes groups until \p depth are open.
    void Close(int depth, bool isKept);
    [[nodiscard]] cow_String Label(int steps, const Direction& direction) const;
    void Move(int steps, const Direction& direction);
    [[nodiscard]] bool IsSaved(const void* holder) const {
        return std::find(_saved.begin(), _saved.end(), holder) != _saved.end();
    }

    std::thread::id _thread;
    std::vector<const void*> _saved;  // in the innermost group
    std::vector<int> _opened;         // by scripts: how many groups were open then
    unsigned long long _recorded = 0;
};

/// One command's changes: a step of its own, or a part of the step that is being made. Without
/// Commit its end takes them back, so that a command that fails leaves nothing.
///
/// While it lasts, identities of new objects are numbered by \p lastUid, so that the same commands
/// always make the same model.
class host_Transaction {
public:
    host_Transaction(const cow_String& label, std::uint64_t& lastUid);
    /// For the commands of the process's model.
    explicit host_Transaction(const cow_String& label);
    ~host_Transaction();
    host_Transaction(const host_Transaction&) = delete;
    host_Transaction& operator=(const host_Transaction&) = delete;

    void Commit();

private:
    host_Changes& _changes;
    int _depth;
    std::uint64_t& _lastUid;
    std::uint64_t _firstUid;
    unsigned long long _recorded;
    cls_UidScope _scope;
    bool _isOpen = true;
};
