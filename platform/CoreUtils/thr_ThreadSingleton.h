#pragma once

#include "CoreUtilsExport.h"
#include "omi_Singleton.h"
#include "thr_GlobalLock.h"
#include "thr_GlobalSingleton.h"
#include "thr_Tls.h"

#include <atomic>
#include <mutex>
#include <type_traits>

/// Base of a class T with one object per thread, reached through thr_ThreadSingleton<T>.
///
/// All threads share one thread-local slot and a count of live objects; the slot exists while the
/// count is above 0. Both change under the global lock alone and are read without it: a thread that
/// has an object keeps the slot alive itself, and a thread that has none finds null, whatever other
/// threads do meanwhile. T must be exported and have a virtual destructor.
template <class T>
class CORE_SHARED_TEMPLATE thr_ThreadSingletonBase {
public:
    /// The calling thread's object; null if it has none. Never creates one.
    [[nodiscard]] static T* Instance() noexcept {
        if (_liveCount.load(std::memory_order_relaxed) < 1) {
            return nullptr;
        }
        return static_cast<T*>(thr_Tls::GetValue(_slot.load(std::memory_order_relaxed)));
    }

    /// Destroys the calling thread's object: 1 if there was one, else 0. Has one address in the
    /// process (inline functions are hidden unless marked).
    CORE_SHARED_TEMPLATE static int Destroy() noexcept {
        static_assert(std::has_virtual_destructor_v<T>, "the object is deleted through T");
        T* const object = Instance();
        if (object == nullptr) {
            return 0;
        }
        delete object;
        Release();
        return 1;
    }

    thr_ThreadSingletonBase(const thr_ThreadSingletonBase&) = delete;
    thr_ThreadSingletonBase& operator=(const thr_ThreadSingletonBase&) = delete;

protected:
    /// Counts the new object and makes \p object (T passes `this`) the calling thread's; null is
    /// stored as it is.
    /// \throws std::system_error, mem_ExhaustedException  when there is no slot for it.
    explicit thr_ThreadSingletonBase(T* object) {
        {
            const std::lock_guard lock(omi_Singleton<thr_GlobalLock>::Instance());
            const int count = _liveCount.load(std::memory_order_relaxed);
            if (count == 0) {
                _slot.store(thr_Tls::Alloc(), std::memory_order_relaxed);
            }
            _liveCount.store(count + 1, std::memory_order_relaxed);
        }
        try {
            thr_Tls::SetValue(_slot.load(std::memory_order_relaxed), object);
        } catch (...) {
            Release();
            throw;
        }
    }

    ~thr_ThreadSingletonBase() = default;

    /// Takes the calling thread's object out of slot and count; the last one frees the slot.
    static void Release() {
        thr_Tls::SetValue(_slot.load(std::memory_order_relaxed), nullptr);
        const std::lock_guard lock(omi_Singleton<thr_GlobalLock>::Instance());
        const int count = _liveCount.load(std::memory_order_relaxed) - 1;
        _liveCount.store(count, std::memory_order_relaxed);
        if (count == 0) {
            // Forgotten before it is freed: nobody may find an index that is another's by then.
            thr_Tls::Free(_slot.exchange(thr_Tls::kNoSlot, std::memory_order_relaxed));
        }
    }

private:
    static inline constinit std::atomic<int> _liveCount{0};
    static inline constinit std::atomic<unsigned> _slot{thr_Tls::kNoSlot};
};

/// The calling thread's object of type T (derived from thr_ThreadSingletonBase<T>), made on first
/// use and destroyed when the thread ends, at destruction level 15.
template <class T>
class CORE_SHARED_TEMPLATE thr_ThreadSingleton : public thr_ThreadSingletonBase<T> {
    using Base = thr_ThreadSingletonBase<T>;

public:
    static constexpr int kDestructLevel = 15;

    thr_ThreadSingleton() = delete;

    /// The calling thread's object; takes no lock once it exists.
    /// \throws mem_ExhaustedException, std::system_error  or what T's constructor raises; the next
    ///         call tries again.
    static T& Instance() {
        if (T* const object = Base::Instance()) {
            return *object;
        }
        return Create();
    }

private:
    static T& Create() {
        thr_ThrSingletonRegistry& registry = thr_GlobalSingleton::Instance();
        registry.Register(&Base::Destroy);
        T* object = nullptr;
        try {
            object = new T();
        } catch (...) {
            if (Base::Instance() != nullptr) {
                Base::Release();  // the base part was made and has no destructor to undo it
            }
            throw;
        }
        registry.SetDestructLevel(&Base::Destroy, kDestructLevel);
        return *object;
    }
};
