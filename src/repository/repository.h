#pragma once

#include "tamselpackagemanager_export.h"

#include <QObject>
#include <QScopedPointer>

namespace ts::pm {

class RepositoryPrivate;

/** Reserved. Has no operations, and nothing in the library uses it. */
class TAMSELPACKAGEMANAGER_EXPORT Repository : public QObject
{
    Q_OBJECT

public:
    explicit Repository(QObject *parent = nullptr);
    ~Repository() override;

private:
    QScopedPointer<RepositoryPrivate> d;
};

} // namespace ts::pm
