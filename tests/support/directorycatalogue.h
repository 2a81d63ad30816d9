#pragma once

#include "files.h"
#include "literals.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace ts::pm::test {

/** A catalogue directory on disk, written file by file. */
class DirectoryCatalogue
{
public:
    QString path() const { return directory.path(); }

    /** Writes \a content to \a name below the directory, and makes the directories that it needs. */
    void writeFile(const QString &name, const QByteArray &content)
    {
        const QString file = directory.filePath(name);
        if (!QDir().mkpath(QFileInfo(file).path()) || !test::writeFile(file, content))
            qFatal("Cannot write %s", qPrintable(file));
    }

    void writePackage(const QString &typePath, const QString &id, const QJsonObject &manifest = {})
    {
        writeFile("packages/%1/%2/manifest.json"_s.arg(typePath, id), QJsonDocument(manifest).toJson());
    }

    /** One string for each language. */
    void writeKeyword(const QString &id, const QString &type, const QString &german, const QString &english)
    {
        const auto stringOf = [isNoun = type == "noun"_s](const QString &text) {
            return QJsonArray{isNoun ? QJsonValue(QJsonObject{{"sg"_s, text}, {"pl"_s, QString()}}) : text};
        };
        const QJsonObject strings{{"de"_s, stringOf(german)}, {"en"_s, stringOf(english)}};
        const QJsonObject keyword{{"type"_s, type}, {"strings"_s, strings}};
        writeFile("dictionary/%1.json"_s.arg(id), QJsonDocument(keyword).toJson());
    }

    void writeLink(const QString &from, const QString &type, const QString &to)
    {
        const QJsonObject link{{"from"_s, from}, {"type"_s, type}, {"to"_s, to}};
        writeFile("links/%1.json"_s.arg(++links), QJsonDocument(link).toJson());
    }

private:
    QTemporaryDir directory;
    int links = 0;
};

} // namespace ts::pm::test
