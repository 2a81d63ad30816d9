#pragma once

#include "ledger/catalogue.h"
#include "ledger/ledgerrecords.h"
#include "ledger/servertree.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace ts::ledger {

/**
 * Brings a ledger and its files into the directory that a web server serves.
 *
 * Files come first and the ledger last, each under another name until it is complete and on the disk. So a
 * client that reads in between, and a publisher who is interrupted anywhere, never meets a ledger whose files
 * are missing. What is there already is not written again. One publisher works on a directory at a time; the
 * others wait.
 *
 * Threads: one; files are copied on the global thread pool.
 * Errors: see errors(); the ledger that was there before then stays in force, unless the new one was in place
 * already, and only its flush to the disk or the removal of files failed.
 */
class Publisher
{
public:
    struct Options
    {
        bool recheck = false; ///< also read the files that are there, and replace those that are damaged
        bool prune = false;   ///< remove files that neither this ledger nor the one before it names
    };

    struct Result
    {
        int filesWritten = 0;
        int filesKept = 0;
        int filesRemoved = 0;
        bool ledgerWritten = false; ///< false if the same one was there
    };

    Publisher(const ServerTree &tree, const Options &options);

    /** \a catalogue holds the files that \a ledger, made of \a records, names. True unless it failed. */
    bool publish(const QByteArray &ledger, const LedgerRecords &records, const Catalogue &catalogue);

    Result result() const { return outcome; }
    QStringList errors() const { return problems; }

private:
    struct Task
    {
        CatalogueFile file;
        QString error;
        bool written = false;
    };

    bool fail(const QString &error);
    bool collectTasks(const LedgerRecords &records, const Catalogue &catalogue);
    bool isPresent(const CatalogueFile &file) const;
    bool writeFiles();
    bool writeLedger(const QByteArray &ledger);
    bool prune();
    void removeRemains() const;

    const ServerTree tree;
    const Options options;
    QVector<Task> tasks;
    Result outcome;
    QStringList problems;
};

} // namespace ts::ledger
