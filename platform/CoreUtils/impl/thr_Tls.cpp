#include "thr_Tls.h"

#include <system_error>

#if defined(_WIN32)

#include <windows.h>

static_assert(thr_Tls::kNoSlot == TLS_OUT_OF_INDEXES);

static void Raise(const char* call) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), call);
}

unsigned thr_Tls::Alloc() {
    const DWORD slot = TlsAlloc();
    if (slot == TLS_OUT_OF_INDEXES) {
        Raise("TlsAlloc");
    }
    return slot;
}

void* thr_Tls::GetValue(unsigned slot) noexcept {
    return TlsGetValue(slot);  // null for a wrong index
}

void thr_Tls::SetValue(unsigned slot, void* value) {
    if (!TlsSetValue(slot, value)) {
        Raise("TlsSetValue");
    }
}

void thr_Tls::Free(unsigned slot) noexcept { TlsFree(slot); }

#else

#include "thr_ThreadRecord.h"

#include <array>
#include <atomic>
#include <mutex>

// At the end of a thread POSIX clears all keys, in no stated order, before a handler could look at
// the ones cleared already; destroy functions, however, find their objects through their slots. So
// the slots lie in the thread's record, which hangs on one key and goes last.

namespace {

constexpr unsigned kSlotCount = 1024;

// Odd while the slot is allocated; each use has a number of its own, so that values left from an
// earlier use read as null.
constinit std::array<std::atomic<unsigned>, kSlotCount> generations{};
constinit std::mutex allocationLock;

unsigned GenerationOf(unsigned slot) noexcept {
    return slot < kSlotCount ? generations[slot].load(std::memory_order_acquire) : 0;
}

bool IsAllocated(unsigned generation) noexcept { return generation % 2 != 0; }

[[noreturn]] void Raise(std::errc error, const char* what) {
    throw std::system_error(std::make_error_code(error), what);
}

}  // namespace

unsigned thr_Tls::Alloc() {
    const std::lock_guard lock(allocationLock);
    for (unsigned slot = 0; slot < kSlotCount; ++slot) {
        const unsigned generation = GenerationOf(slot);
        if (!IsAllocated(generation)) {
            generations[slot].store(generation + 1, std::memory_order_release);
            return slot;
        }
    }
    Raise(std::errc::resource_unavailable_try_again, "No thread-local slot is left");
}

void* thr_Tls::GetValue(unsigned slot) noexcept {
    const unsigned generation = GenerationOf(slot);
    thr_ThreadRecord* const record = thr_ThreadRecord::Find();
    if (record == nullptr || !IsAllocated(generation)) {
        return nullptr;
    }
    const thr_ThreadRecord::Value* const value = record->FindValue(slot);
    return value && value->generation == generation ? value->pointer : nullptr;
}

void thr_Tls::SetValue(unsigned slot, void* value) {
    const unsigned generation = GenerationOf(slot);
    if (!IsAllocated(generation)) {
        Raise(std::errc::invalid_argument, "The thread-local slot is not allocated");
    }
    if (value != nullptr) {
        thr_ThreadRecord::Get().GetValue(slot) = {value, generation};
        return;
    }
    // Null needs no room where there is none.
    thr_ThreadRecord* const record = thr_ThreadRecord::Find();
    if (thr_ThreadRecord::Value* const old = record ? record->FindValue(slot) : nullptr) {
        *old = {nullptr, generation};
    }
}

void thr_Tls::Free(unsigned slot) noexcept {
    const std::lock_guard lock(allocationLock);
    const unsigned generation = GenerationOf(slot);
    if (IsAllocated(generation)) {
        generations[slot].store(generation + 1, std::memory_order_release);
    }
}

#endif
