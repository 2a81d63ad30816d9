#pragma once

#include <QLatin1String>

namespace ts::ledger {

/** A Latin-1 text known to the compiler; QLatin1String's own constructor measures it at run time. */
template<int size>
constexpr QLatin1String latin1(const char (&text)[size])
{
    return QLatin1String(text, size - 1);
}

} // namespace ts::ledger
