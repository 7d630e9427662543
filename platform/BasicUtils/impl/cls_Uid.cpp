#include "cls_Uid.h"

#include <atomic>

namespace {

// The counter of the thread's innermost scope.
#if defined(__GNUC__)
__attribute__((tls_model("initial-exec")))  // one load; 8 bytes of what a loaded library may take
#endif
constinit thread_local std::uint64_t* scoped = nullptr;

}  // namespace

cls_Uid cls_Uid::AllocateUid() noexcept {
    if (scoped != nullptr) {
        return cls_Uid(++*scoped);
    }
    static std::atomic<std::uint64_t> last{0};
    return cls_Uid(last.fetch_add(1, std::memory_order_relaxed) + 1);
}

cls_UidScope::cls_UidScope(std::uint64_t& last) noexcept : _outer(scoped) { scoped = &last; }

cls_UidScope::~cls_UidScope() { scoped = _outer; }
