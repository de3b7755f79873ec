#include "TolenCore/CreationOrder.h"

#include <atomic>

namespace Tolen {

CreationOrder::CreationOrder() {
    static std::atomic<std::uint64_t> last{0};
    _creationNumber = ++last;
}

} // namespace Tolen
