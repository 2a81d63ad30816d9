#pragma once

#include "tamselaccount_export.h"

#include <QObject>
#include <QString>

namespace ts::account {

/**
 * Something that an account gives access to, with an id that outlives the process.
 *
 * Threads: the thread it was made on.
 */
class TAMSELACCOUNT_EXPORT Resource : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString uuid READ uuid CONSTANT)

public:
    ~Resource() override;

    /**
     * The id: a UUID, 36 characters in lower case without braces. It names directories on disk, and nothing
     * else is ever returned here.
     */
    QString uuid() const;

protected:
    /** Takes \a uuid in any form that QUuid reads; any other text is replaced by a UUID derived from it. */
    explicit Resource(const QString &uuid, QObject *parent = nullptr);

private:
    QString id;
};

} // namespace ts::account
