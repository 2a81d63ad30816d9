#pragma once

namespace ts::pm {

/** Has the memory at \a address fetched while the caller goes on. Nothing is read, so any address will do. */
inline void prefetch([[maybe_unused]] const void *address)
{
#if defined(__GNUC__)
    __builtin_prefetch(address);
#endif
}

} // namespace ts::pm
