#pragma once

#include "literals.h"
#include "repository/packageaccessor.h"
#include "storage/packageinstaller.h"

#include <QJsonDocument>
#include <QTest>

#include <memory>

namespace ts::pm::test {

/**
 * What an accessor has, in its order: packages as in "birds:owls/barn-owl {...} 2-revision", keywords as in
 * "owl 0, en=owl/owls, de=Eule/Eulen", links as in "owl 4 bird".
 */
inline QStringList recordsOf(const PackageAccessor &accessor)
{
    QStringList records;
    for (int i = 0; i < accessor.packageCount(); ++i) {
        const PackageInfo info = accessor.packageInfo(i);
        const QByteArray manifest = QJsonDocument(accessor.packageManifest(i)).toJson(QJsonDocument::Compact);
        records += "%1/%2 %3"_s.arg(info.type, info.id, QString::fromUtf8(manifest));
        if (!info.revision.isEmpty())
            records.last() += " "_s + info.revision;
    }
    for (int i = 0; i < accessor.keywordCount(); ++i) {
        const KeywordInfo keyword = accessor.keywordInfo(i);
        records += "%1 %2"_s.arg(keyword.id, QString::number(keyword.type));
        for (const LangString &text : keyword.strings)
            records.last() += ", %1=%2/%3"_s.arg(text.language, text.sg, text.pl);
    }
    for (int i = 0; i < accessor.linkCount(); ++i) {
        const LinkInfo link = accessor.linkInfo(i);
        records += "%1 %2 %3"_s.arg(link.from, QString::number(link.type), link.to).trimmed();
    }
    return records;
}

/** Installs a package to a new place or the given one; the files there in the end, the status, and the
 * errors, each on a line. */
inline QString install(const PackageAccessor &accessor, int package,
                       const InstallLocation &location = InstallLocation::createRoot())
{
    const std::unique_ptr<PackageInstaller> installer(accessor.packageInstaller(package, location));
    if (!QTest::qWaitFor([&installer] { return installer->isFinished() && installer->children().isEmpty(); }))
        return "hangs"_s;
    QStringList errors;
    for (const InstallError &error : installer->errors())
        errors += "\n%1 %2"_s.arg(QString::number(error.code), error.message);
    errors.sort();
    return "%1; status %2"_s.arg(location.directory(true).entryList(QDir::Files | QDir::System).join(" "_s))
               .arg(installer->status())
           + errors.join(QString());
}

} // namespace ts::pm::test
