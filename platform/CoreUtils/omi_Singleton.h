#pragma once

#include "CoreUtilsExport.h"
#include "mem_Allocation.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <new>

/// Owns the one object of type T of the process (in all shared objects; T must be exported).
template <class T>
class CORE_SHARED_TEMPLATE omi_SingletonBase {
public:
    /// True while the object exists; never creates it.
    [[nodiscard]] static bool Exists() noexcept {
        return _object.load(std::memory_order_acquire) != nullptr;
    }

    /// Destroys the object, if there is one; the next Instance() makes a new one. The caller sees
    /// to it that nobody uses the object any more: start and stop run in one thread.
    static void Finalize() noexcept {
        if (T* const object = _object.load(std::memory_order_acquire)) {
            std::destroy_at(object);
            mem_Free(object);
            _object.store(nullptr, std::memory_order_release);
        }
    }

protected:
    /// Makes the object. When several threads come here at once, one of theirs stays.
    static T& Create() {
        static_assert(alignof(T) <= alignof(std::max_align_t), "the allocator aligns no further");
        void* const memory = mem_OperatorNewThrow(sizeof(T));
        T* created = nullptr;
        try {
            created = ::new (memory) T();
        } catch (...) {
            mem_Free(memory);
            throw;
        }
        T* current = nullptr;
        if (_object.compare_exchange_strong(current, created, std::memory_order_acq_rel)) {
            return *created;
        }
        std::destroy_at(created);
        mem_Free(memory);
        return *current;
    }

    static inline constinit std::atomic<T*> _object{nullptr};
};

/// The one object of type T of the process, made on first use.
template <class T>
class CORE_SHARED_TEMPLATE omi_Singleton : public omi_SingletonBase<T> {
public:
    /// The object; the first call makes it (T's default constructor, which must not itself ask for
    /// it). Costs one load afterwards. May be called from any thread.
    /// \throws mem_ExhaustedException  or what T's constructor raises; the next call tries again.
    static T& Instance() {
        if (T* const object = omi_SingletonBase<T>::_object.load(std::memory_order_acquire)) {
            return *object;
        }
        return omi_SingletonBase<T>::Create();
    }
};
