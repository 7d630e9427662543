#pragma once

#include "CoreUtilsExport.h"

/// Thread-local slots: each holds one pointer per thread, null at first. Made and freed at run
/// time; an index may come back after it was freed, with null in all threads.
class CORE_API thr_Tls {
public:
    /// No slot has this index.
    static constexpr unsigned kNoSlot = ~0u;

    /// A slot of its own for the caller.
    /// \throws std::system_error  when the system has no more (there are about a thousand).
    [[nodiscard]] static unsigned Alloc();

    /// The calling thread's pointer; null where none was set or \p slot is not allocated.
    /// Costs a few loads; still right while the thread's end is being handled.
    [[nodiscard]] static void* GetValue(unsigned slot) noexcept;

    /// Sets the calling thread's pointer; whatever it points to stays the caller's.
    /// \throws std::system_error  for a slot that is not allocated.
    /// \throws mem_ExhaustedException  never for null.
    static void SetValue(unsigned slot, void* value);

    /// Frees the slot in all threads; one that is not allocated is left alone.
    static void Free(unsigned slot) noexcept;

    thr_Tls() = delete;
};
