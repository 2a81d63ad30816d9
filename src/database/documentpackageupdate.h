#pragma once

#include <TamselUtil/WorkingDir>

#include <QObject>
#include <QSharedPointer>

class QUrl;

namespace ts {
class Request;
namespace network {
class NetworkAccessManager;
}
} // namespace ts

namespace ts::pm {

class DocumentPackageSource;

/**
 * One fetch of the documents of a DocumentPackageSource: reads the answer of the view, writes its rows to a
 * file of its own and tells their hash. Starts in its constructor.
 *
 * Ownership: the source's, which deletes it; its scratch directory lives for as long as a copy of it does.
 * Threads: repository thread only; the answer is parsed and written on the global thread pool.
 * Signals: finished() comes exactly once, from the event loop; hash, file and error hold from then on.
 * Errors: error() and errorString(); nothing is logged or retried.
 */
class DocumentPackageUpdate : public QObject
{
    Q_OBJECT

public:
    enum Error {
        NoError = 0,
        FetchError = 1, ///< no answer, or one with another status than 200
        ParseError = 2, ///< the answer is no JSON, or its rows are too large
        FileError = 3,  ///< the data file could not be opened or written
    };

    DocumentPackageUpdate(const QUrl &url, DocumentPackageSource *source);
    ~DocumentPackageUpdate() override;

    Error error() const { return updateError; }
    QString errorString() const { return updateErrorString; }

    /** The rows as a JSON array, in workingDir(); empty after an error. */
    QString dataFile() const { return dataFilePath; }
    ts::util::WorkingDir workingDir() const { return directory; }

    /** Hexadecimal MD5 of the data file; empty after an error. */
    QByteArray hash() const { return dataHash; }

Q_SIGNALS:
    void finished();

private:
    struct Result;

    static Result normalise(const QByteArray &response, const ts::util::WorkingDir &directory);
    void finishFetch(const ts::Request &request);
    void processResponse(const QByteArray &response);
    void finish(const Result &result);

    Error updateError = NoError;
    QString updateErrorString;
    const ts::util::WorkingDir directory;
    QString dataFilePath;
    QByteArray dataHash;
    const QSharedPointer<ts::network::NetworkAccessManager> manager;
};

} // namespace ts::pm
