#include "thr_ThreadRecord.h"

#include "mem_Allocation.h"

#include <memory>
#include <system_error>

#if defined(_WIN32)
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace {

// A plain pointer has no destructor: it is right until the thread is gone.
constinit thread_local thr_ThreadRecord* current = nullptr;

}  // namespace

// The key only tells us that a thread ends. It is never deleted: the library stays loaded, as its
// process-wide template data binds it to the process.
#if defined(_WIN32)

static void SetEndNotice(thr_ThreadRecord* record, void(WINAPI* handler)(void*)) {
    static const DWORD key = FlsAlloc(handler);
    if (key == FLS_OUT_OF_INDEXES || !FlsSetValue(key, record)) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                                "FlsAlloc");
    }
}

#else

static void SetEndNotice(thr_ThreadRecord* record, void (*handler)(void*)) {
    static const pthread_key_t key = [handler] {
        pthread_key_t made;
        if (const int error = pthread_key_create(&made, handler)) {
            throw std::system_error(error, std::generic_category(), "pthread_key_create");
        }
        return made;
    }();
    if (const int error = pthread_setspecific(key, record)) {
        throw std::system_error(error, std::generic_category(), "pthread_setspecific");
    }
}

#endif

thr_ThreadRecord::~thr_ThreadRecord() {
#if !defined(_WIN32)
    mem_Free(_values);
#endif
}

thr_ThreadRecord* thr_ThreadRecord::Find() noexcept { return current; }

thr_ThreadRecord& thr_ThreadRecord::Get() {
    if (current == nullptr) {
        auto record = std::make_unique<thr_ThreadRecord>();
        SetEndNotice(record.get(),
                     [](void* ending) { HandleThreadEnd(static_cast<thr_ThreadRecord*>(ending)); });
        current = record.release();
    }
    return *current;
}

void thr_ThreadRecord::HandleThreadEnd(thr_ThreadRecord* record) noexcept {
    // The record stays the current one meanwhile: destroy functions find their objects through it.
    // One that is needed later still (by another library's handler) is made and noticed anew.
    record->_registry.DestroyAll();
    current = nullptr;
    delete record;
}

#if !defined(_WIN32)
thr_ThreadRecord::Value& thr_ThreadRecord::GetValue(unsigned slot) {
    if (slot >= _valueCount) {
        const unsigned count = slot + 8 - slot % 8;
        void* const block = mem_Realloc(_values, count * sizeof(Value));
        if (block == nullptr) {
            mem_ThrowExhausted(count * sizeof(Value));
        }
        _values = static_cast<Value*>(block);
        std::uninitialized_value_construct(_values + _valueCount, _values + count);
        _valueCount = count;
    }
    return _values[slot];
}
#endif
