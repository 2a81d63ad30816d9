#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>

namespace ts::pm {

/**
 * The reply to a request that another access manager sends in its turn: passes on what the reply there
 * receives. So whoever has asked may disconnect all from it, as XMLHttpRequest does, and the sender still
 * hears how it ended.
 *
 * Threads: that of its access manager.
 */
class RelayedReply : public QNetworkReply
{
    Q_OBJECT

public:
    RelayedReply(QNetworkAccessManager::Operation operation, const QNetworkRequest &request, QObject *parent);
    ~RelayedReply() override;

    /** The request has been sent. Takes \a reply, which goes with this one. */
    void follow(QNetworkReply *reply);

    void abort() override;
    void close() override;
    qint64 bytesAvailable() const override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;

private:
    void takeMetaData();
    void fail(NetworkError code, const QString &text);
    void finish();

    QPointer<QNetworkReply> sent;
};

} // namespace ts::pm
