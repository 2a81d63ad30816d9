#include "workingdir.h"

#include <QTemporaryDir>

namespace ts::util {

WorkingDir::WorkingDir()
    : directory(QSharedPointer<QTemporaryDir>::create())
{
}

bool WorkingDir::isValid() const
{
    return directory->isValid();
}

QString WorkingDir::path() const
{
    return isValid() ? directory->path() : QString();
}

QString WorkingDir::filePath(const QString &name) const
{
    return isValid() ? directory->filePath(name) : QString();
}

} // namespace ts::util
