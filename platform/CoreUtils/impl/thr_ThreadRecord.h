#pragma once

#include "mem_AllocationOperators.h"
#include "thr_ThrSingletonRegistry.h"

/// What the library keeps for one thread. Made on first need; at the end of the thread the system
/// hands it to a function of ours, which runs the registry and deletes the record.
class thr_ThreadRecord : public mem_AllocationOperators {
public:
    thr_ThreadRecord() = default;
    thr_ThreadRecord(const thr_ThreadRecord&) = delete;
    thr_ThreadRecord& operator=(const thr_ThreadRecord&) = delete;
    ~thr_ThreadRecord();

    /// The calling thread's record; null if it has none (yet, or any more).
    [[nodiscard]] static thr_ThreadRecord* Find() noexcept;

    /// The calling thread's record, made when there is none.
    [[nodiscard]] static thr_ThreadRecord& Get();

    [[nodiscard]] thr_ThrSingletonRegistry& Registry() noexcept { return _registry; }

#if !defined(_WIN32)
    /// A thread-local value and the use of its slot that it was set in.
    struct Value {
        void* pointer;
        unsigned generation;
    };

    /// The value of that slot; null where none was ever set.
    [[nodiscard]] Value* FindValue(unsigned slot) noexcept {
        return slot < _valueCount ? _values + slot : nullptr;
    }

    /// The same, making room for it.
    [[nodiscard]] Value& GetValue(unsigned slot);
#endif

private:
    static void HandleThreadEnd(thr_ThreadRecord* record) noexcept;

    thr_ThrSingletonRegistry _registry;
#if !defined(_WIN32)
    Value* _values = nullptr;
    unsigned _valueCount = 0;
#endif
};
