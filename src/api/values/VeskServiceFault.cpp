#include "api/values/VeskServiceFault.h"

namespace {

constexpr int Unauthorized = 401;
constexpr int Forbidden = 403;

} // namespace

bool VeskServiceFault::isRefusal() const
{
    return (kind == HttpStatus || kind == Reported) && (code == Unauthorized || code == Forbidden);
}
