#pragma once

#include "repository/link.h"

namespace ts::pm {

/**
 * What may follow on the way from a package along outgoing links, as decided by the link just taken. In the
 * order of the enumeration each state allows all that the later ones allow.
 */
enum WalkState { AnyLink, ContainsOrRelatesToLink, RelatesToLink, NoLink, WalkStateCount };

/** A package itself restricts nothing: its first link may be of any type. */
constexpr WalkState stateAfter(LinkType type)
{
    switch (type) {
    case IsA:
        return AnyLink;
    case Contains:
        return ContainsOrRelatesToLink;
    case RelatesTo:
    case Is:
        return RelatesToLink;
    case IsNotA:
    case Uses:
    case Requires:
    case InvalidLink:
        break;
    }
    return NoLink;
}

constexpr bool allowsLink(WalkState state, LinkType type)
{
    switch (state) {
    case AnyLink:
        return true;
    case ContainsOrRelatesToLink:
        return type == Contains || type == RelatesTo;
    case RelatesToLink:
        return type == RelatesTo;
    case NoLink:
    case WalkStateCount:
        break;
    }
    return false;
}

} // namespace ts::pm
