#include "aio_cerr.h"

#include <type_traits>

aio_ostream& aio_cerr() noexcept {
    static_assert(std::is_trivially_destructible_v<aio_ostream>, "usable until the very end");
    static aio_ostream stream(stderr, true);
    return stream;
}
