#pragma once

#include "mem_Allocation.h"
#include "test_Tracked.h"

#include <new>
#include <stdexcept>

/// Makes one operation fail in the scope of this object: the n-th copy of a test_Tracked, or the
/// n-th allocation. 0: none.
class test_Faults {
public:
    test_Faults(int copy, int allocation) {
        test_Movable::copiesUntilThrow = test_CopyOnly::copiesUntilThrow = copy;
        _allocations = allocation;
        mem_SetFaultHook(allocation > 0 ? &ShouldFail : nullptr);
    }
    test_Faults(const test_Faults&) = delete;
    test_Faults& operator=(const test_Faults&) = delete;
    ~test_Faults() {
        test_Movable::copiesUntilThrow = test_CopyOnly::copiesUntilThrow = 0;
        mem_SetFaultHook(nullptr);
    }

    /// Runs \p operation; true when it raised one of the faults made here.
    template <class Operation>
    [[nodiscard]] static bool Raises(Operation&& operation) {
        try {
            operation();
            return false;
        } catch (const std::bad_alloc&) {
            return true;
        } catch (const std::runtime_error&) {
            return true;
        }
    }

private:
    static bool ShouldFail(std::size_t /*size*/) { return _allocations > 0 && --_allocations == 0; }

    static inline int _allocations = 0;
};
