#pragma once

#include "CaeUtilsExport.h"
#include "cow_String.h"
#include "mem_AllocationOperators.h"
#include "thr_ThreadSingleton.h"

#include <functional>
#include <vector>

/// The calling thread's undo history. Reached as
/// thr_ThreadSingleton<omu_ChangeHistory>::Instance(); used by its own thread only.
///
/// A command opens a group, records each change with the functions that undo and redo it, and
/// commits. Groups nest; the outermost one is the step that Undo takes back as a whole. While a
/// step is undone, redone or rolled back the history records nothing, so that those functions may
/// be ordinary commands. Wrong calls raise nex_TextException and change nothing.
class CAE_API omu_ChangeHistory : public thr_ThreadSingletonBase<omu_ChangeHistory>,
                                  public mem_AllocationOperators {
public:
    using Action = std::function<void()>;

    /// Called by thr_ThreadSingleton alone.
    omu_ChangeHistory();
    virtual ~omu_ChangeHistory();

    /// Opens a group. The outermost group's label names the step.
    void Begin(const cow_String& label);
    /// Records a change that has just been made, in the open group; there must be one.
    void Record(Action undo, Action redo);
    /// Closes the innermost group. Closing the outermost makes its changes one step, which forgets
    /// what could be redone; without changes it makes none.
    void Commit();
    /// Undoes the changes of the innermost group, latest first, and closes it. When an undo
    /// function raises, the rest are still run, nothing can be redone any more, and the first error
    /// passes through.
    void Rollback();

    /// Takes the latest step back; no group may be open and there must be one. When an undo
    /// function raises, what was undone is redone, the step stays and the error passes through; if
    /// redoing raises too, the whole history is forgotten, as it no longer fits.
    void Undo();
    /// Makes the step undone last again; otherwise like Undo.
    void Redo();

    [[nodiscard]] bool CanUndo() const noexcept { return !_done.empty() && _groups.empty(); }
    [[nodiscard]] bool CanRedo() const noexcept { return !_undone.empty() && _groups.empty(); }
    /// Label of the last step that \p steps calls of Undo or Redo would take; empty if there is
    /// none.
    [[nodiscard]] cow_String UndoLabel(int steps = 1) const { return Label(_done, steps); }
    [[nodiscard]] cow_String RedoLabel(int steps = 1) const { return Label(_undone, steps); }
    /// Number of steps that can be undone one after the other.
    [[nodiscard]] int UndoCount() const noexcept { return static_cast<int>(_done.size()); }
    [[nodiscard]] int RedoCount() const noexcept { return static_cast<int>(_undone.size()); }
    /// Number of groups open within each other.
    [[nodiscard]] int Depth() const noexcept { return static_cast<int>(_groups.size()); }
    /// Forgets all steps and closes all groups, undoing nothing.
    void Clear() noexcept;

private:
    struct Change {
        Action undo;
        Action redo;
    };
    struct Step {
        cow_String label;
        std::vector<Change> changes;
    };

    static cow_String Label(const std::vector<Step>& steps, int last);
    void Move(std::vector<Step>& from, std::vector<Step>& to, bool isUndo, const char* what);

    std::vector<Step> _done;
    std::vector<Step> _undone;
    Step _open;                        // what the open groups have recorded
    std::vector<std::size_t> _groups;  // where in it each open group begins
    bool _isReplaying = false;
};
