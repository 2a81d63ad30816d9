#pragma once

#include <TamselUtil/WorkingDir>

#include <QString>

#include <optional>

namespace ts::pm {

/** The file that a listing lies in. Copies keep the scratch directory that it may stand in. */
struct ListingFile
{
    QString path; // empty without a listing
    std::optional<ts::util::WorkingDir> directory;
};

} // namespace ts::pm
