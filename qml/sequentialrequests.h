#pragma once

#include <QQmlNetworkAccessManagerFactory>

namespace ts::pm {

/**
 * Makes access managers that ask the server of files that are not local yet for one file after the other over
 * a connection, and for none after an answer other than 200.
 *
 * That server cuts off whoever asks for the next file before it has answered. Image would do so: it allows
 * requests to be pipelined. After a file that it does not have, the server refuses the next request on the
 * connection; without a new one, each missing picture costs another one.
 *
 * Threads: any thread.
 */
class SequentialRequests : public QQmlNetworkAccessManagerFactory
{
public:
    QNetworkAccessManager *create(QObject *parent) override;
};

} // namespace ts::pm
