#pragma once

#include "g3d_XForm.h"

/// A stack of composed transforms of fixed capacity; the top holds the product of all pushed.
///
/// The entries are one contiguous array; a copy has its own.
class CAE_API g3d_XFormStack {
public:
    /// Holds the identity. \p capacity  at least 1, else nex_AssertException.
    /// \throws mem_ExhaustedException  when there is no memory for the entries.
    explicit g3d_XFormStack(int capacity);
    g3d_XFormStack(const g3d_XFormStack& other);
    g3d_XFormStack& operator=(const g3d_XFormStack& other);
    ~g3d_XFormStack();

    /// Makes top x \p xform the new top; \p xform may be an entry.
    /// \throws nex_AssertException  when the stack is full; nothing has changed then.
    void Push(const g3d_XForm& xform);
    /// Valid until the stack is assigned or destroyed.
    [[nodiscard]] const g3d_XForm& Top() const;
    /// Leaves \p xform as the only entry.
    void Reset(const g3d_XForm& xform);

private:
    g3d_XForm* _entries;
    int _top = 0;
    int _capacity;
};
