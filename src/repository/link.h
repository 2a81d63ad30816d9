#pragma once

#include "tamselpackagemanager_export.h"

class QString;

namespace ts::pm {

/** What a link between two nodes of the index says about the node where it starts. */
enum LinkType : int {
    InvalidLink = -1,
    IsA = 0,       ///< "is_a"
    Contains = 1,  ///< "contains"
    RelatesTo = 2, ///< "relates_to"
    IsNotA = 3,    ///< "is_not_a": takes a keyword out of those of the package
    Is = 4,        ///< "is"
    Uses = 5,      ///< "uses"
    Requires = 6,  ///< "requires": installing the package installs the other one too
};

/** The names of link types in data files. */
class TAMSELPACKAGEMANAGER_EXPORT Link
{
public:
    /** The type with exactly that name, InvalidLink for any other text. Any thread. */
    static LinkType typeFromString(const QString &name);
};

} // namespace ts::pm
