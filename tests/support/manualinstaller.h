#pragma once

#include "storage/packageinstaller.h"

namespace ts::pm::test {

/** An installer that ends when the test says so, with the errors that the test gives. */
class ManualInstaller : public PackageInstaller
{
    Q_OBJECT

public:
    explicit ManualInstaller(const InstallLocation &location = {})
        : PackageInstaller(location)
    {
    }

    void succeed() { finish(); }
    void fail(int code = 1, const QString &message = QStringLiteral("as the test wants"))
    {
        addErrors({{code, message}});
        finish();
    }
};

} // namespace ts::pm::test
