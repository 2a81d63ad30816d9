#pragma once

#include "ledger/catalogue.h"
#include "ledger/commandline.h"
#include "ledger/ledgerrecords.h"
#include "ledger/problems.h"

#include <TamselCrypto/PublicKey>

#include <QByteArray>
#include <QStringList>

namespace ts::ledger {

/** Adds the argument and the option by which a catalogue is read. To come before all other arguments. */
void addCatalogue(CommandLine &line);

/** Errors are in \a problems. */
Catalogue readCatalogue(const CommandLine &line, Problems &problems);

/** The parts of the catalogue's directory that are read, and must not be written. */
QStringList catalogueInputs(const CommandLine &line);

/** A catalogue with its ledger: what the sub-commands "build" and "publish" begin with. One thread. */
class SignedCatalogue
{
public:
    /** Adds what a catalogue is read and signed by, as addCatalogue() does. Options that tell who signs are
     * required, unless \a ready, the option for a ledger that is signed already, is given. */
    static void addOptions(CommandLine &line, const QString &ready = QString());

    /** The files by which a catalogue is signed. */
    static QStringList inputs(const CommandLine &line);

    /** Signs the catalogue, with the key and certificate of the command line. */
    void sign(const CommandLine &line, Problems &problems);

    /** Takes a ledger that was built before from a file, and believes it no more than a client would. */
    void takeLedger(const QString &path, const CommandLine &line, Problems &problems);

    Catalogue catalogue;
    LedgerRecords records;
    QByteArray ledger;
};

/** Adds the option "root-key" for the key that is believed. */
void addRootKeyOption(CommandLine &line);

/** The public key of the option "root-key", or the one built in; unusable, with an error, if it is none. */
crypto::ed25519::PublicKey rootKey(const CommandLine &line, Problems &problems);

} // namespace ts::ledger
