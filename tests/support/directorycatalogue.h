#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>

namespace ts::pm::test {

/** A catalogue directory on disk, written file by file. */
class DirectoryCatalogue
{
public:
    QString path() const { return directory.path(); }

    /** Writes \a content to \a name below the directory, and makes the directories that it needs. */
    void writeFile(const QString &name, const QByteArray &content);
    void writePackage(const QString &typePath, const QString &id, const QJsonObject &manifest = {});
    /** One string for each language. */
    void writeKeyword(const QString &id, const QString &type, const QString &german, const QString &english);
    void writeLink(const QString &from, const QString &type, const QString &to);

private:
    QTemporaryDir directory;
    int links = 0;
};

} // namespace ts::pm::test
