#pragma once

#include <QQmlNetworkAccessManagerFactory>

namespace ts::pm {

/**
 * Makes access managers that send one request after the other over a connection to this machine.
 *
 * The server of files that are not local yet cuts off whoever asks for the next file before it has answered.
 * Image would do so: it allows requests to be pipelined.
 *
 * Threads: any thread.
 */
class SequentialRequests : public QQmlNetworkAccessManagerFactory
{
public:
    QNetworkAccessManager *create(QObject *parent) override;
};

} // namespace ts::pm
