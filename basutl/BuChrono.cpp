#include <basutl/BuChrono.h>

#include "platform/Platform.h"

namespace {

constinit BuTickSource g_source = nullptr;

}  // namespace

void BuSetTickSource(BuTickSource source) noexcept
{
    g_source = source;
}

long long BuGetTick() noexcept
{
    return g_source == nullptr ? platform::SteadyNanoseconds() : g_source();
}
