#pragma once

#include "ledger/catalogue.h"
#include "ledger/problems.h"

namespace ts::ledger {

/**
 * Looks for what does not fit together in a catalogue: ids, ends of links and, if there are no errors,
 * missing texts of keywords and files of translations. One thread.
 */
void checkCatalogue(const Catalogue &catalogue, Problems &problems);

} // namespace ts::ledger
