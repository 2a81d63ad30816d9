#pragma once

#include "ledger/problems.h"
#include "repository/packagerecords.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace ts::ledger {

/** Reads the content of a keyword file, and tells what of it applications would miss. One thread. */
class KeywordFile
{
public:
    /** \a place is the name of the file in messages. */
    KeywordFile(const QJsonObject &object, const QString &place, Problems &problems);

    /** The record of the keyword \a id. Only good if there were no errors. */
    pm::KeywordInfo keyword(const QString &id);

private:
    void readLiteral();
    void readStrings();
    void readForms(const QString &language, const QJsonArray &forms);
    void addNoun(const QString &language, const QJsonObject &noun);
    QString text(const QJsonValue &value);

    const QJsonObject object;
    const QString place;
    Problems &problems;
    pm::KeywordInfo info;
};

} // namespace ts::ledger
