#pragma once

#include "support/httpserver.h"
#include "support/literals.h"
#include "support/signedledger.h"

#include <TamselAccount/Service>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QUuid>

namespace ts::pm::test {

inline const QByteArray ledgerPath = "/api/v1/ledger";

inline QString idOf(const QByteArray &content)
{
    return QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Sha224).toHex());
}

/** A ledger with the package "oak", and the server that has it and its files. */
class ServedLedger : public ScriptedServer
{
public:
    explicit ServedLedger(const SignedLedger::Contents &files = {})
    {
        ledger.addPackage("oak", "plant:tree", R"({"title":"Oak"})", files);
        for (const QByteArray &content : files)
            setAnswer(pathOf(content), HttpAnswer::with(200, content));
    }

    static QByteArray pathOf(const QByteArray &content)
    {
        return ledgerPath + '/' + idOf(content).toLatin1();
    }

    void answer(int status, const QByteArray &body = {}, const QByteArray &tag = {})
    {
        const QByteArray header = tag.isEmpty() ? QByteArray() : "ETag: " + tag + "\r\n";
        setAnswer(ledgerPath, HttpAnswer::with(status, body, header));
    }

    QByteArray lastTag() const { return requests().constLast().headers.value("if-none-match"); }

    SignedLedger ledger;
};

/** A service that is ready. */
class ReadyService : public account::Service
{
public:
    explicit ReadyService(const ScriptedServer &server, const QString &uuid = QUuid::createUuid().toString())
        : Service(server.url(), uuid)
    {
        enable();
        QCoreApplication::processEvents();
    }
};

} // namespace ts::pm::test
