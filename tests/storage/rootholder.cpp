#include "storage/installlocation.h"

#include <Tamsel/Locations>

#include <QCoreApplication>
#include <QDir>

#include <cstdio>

// Makes an install root below the data location of the first argument, prints where, and holds it until its
// input ends.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (!ts::Locations::setDataLocation(QDir(QCoreApplication::arguments().value(1))))
        return 1;
    const auto root = ts::pm::InstallLocation::createRoot();
    std::puts(qPrintable(root.directory(false).absolutePath()));
    std::fflush(stdout);
    return std::getchar() == EOF ? 0 : 1;
}
