#pragma once

#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "cow_COW.h"

#include <new>
#include <typeinfo>

/// What a store must be able to do with a copy-on-write holder whose type it does not know: keep
/// a shared object alive while it is written, and share it out again while it is read.
struct cls_HolderOps {
    /// Bytes of any holder.
    static constexpr std::size_t kRoom = sizeof(void*);

    const std::type_info* type;
    /// Makes the holder hold \p object, which is taken over also when this raises; null resets it.
    void (*adopt)(void* holder, void* object);
    /// Constructs, in kRoom bytes, a holder that shares the object of \p holder.
    void (*share)(void* room, const void* holder) noexcept;
    void (*assign)(void* holder, const void* other) noexcept;
    void (*destroy)(void* holder) noexcept;
};

namespace cls_detail {

template <class Holder>
struct HolderOpsOf;

template <template <class, class> class Holder, class T, class Policy>
struct HolderOpsOf<Holder<T, Policy>> {
    using H = Holder<T, Policy>;
    // NOLINTNEXTLINE(misc-redundant-expression): redundant only for the types at hand
    static_assert(sizeof(H) == cls_HolderOps::kRoom && alignof(H) <= alignof(void*));

    static constexpr cls_HolderOps kOps{
        &typeid(H),
        [](void* holder, void* object) { *static_cast<H*>(holder) = H(static_cast<T*>(object)); },
        [](void* room, const void* holder) noexcept {
            ::new (room) H(*static_cast<const H*>(holder));
        },
        [](void* holder, const void* other) noexcept {
            *static_cast<H*>(holder) = *static_cast<const H*>(other);
        },
        [](void* holder) noexcept { static_cast<H*>(holder)->~H(); },
    };
};

}  // namespace cls_detail

/// Writes the object that a copy-on-write holder shares; a null holder as a null object. All
/// holders of one object find it again in one object when they are read.
template <class Holder>
void cls_WriteShared(const cls_WriteVisitor& visitor, const char* name, const Holder& holder) {
    if (holder.IsNull()) {
        visitor.WriteObject(name, {});
    } else {
        visitor.WriteShared(name, cls_ObjectRef::Of(&*holder),
                            {&cls_detail::HolderOpsOf<Holder>::kOps, &holder, holder.Count() > 1});
    }
}

/// Reads what cls_WriteShared wrote; the class must be \p baseTypeId or derived from it.
template <class Holder>
void cls_ReadShared(const cls_ReadVisitor& visitor, const char* name, unsigned baseTypeId,
                    Holder& holder) {
    visitor.ReadShared(name, baseTypeId, cls_detail::HolderOpsOf<Holder>::kOps, &holder);
}

/// Reads a reference to an object of class T or derived from it. \p target is set once that object
/// has been read, at the latest when reading ends; until then it is null. It must stay where it is
/// until then.
template <class T>
void cls_ReadReference(const cls_ReadVisitor& visitor, const char* name, T*& target) {
    target = nullptr;
    visitor.ReadReference(name, T::TypeId(), &target, [](void* place, void* object) {
        *static_cast<T**>(place) = static_cast<T*>(object);
    });
}
