#include "server/packagefiles_p.h"

#include "server/packageledger.h"

#include <algorithm>

namespace ts::pm {

namespace {

QString decoded(const QByteArray &spelling)
{
    return Utf8String{quint16(spelling.size()), spelling.constData()}.toString();
}

struct SpelledFile
{
    PackageFile file;
    const QByteArray *spelling;
};

/** By path; of one path the spelling that counts is the first. */
bool precedes(const SpelledFile &left, const SpelledFile &right)
{
    if (left.file.path != right.file.path)
        return left.file.path < right.file.path;
    const QByteArray exact = left.file.path.toUtf8();
    if (*right.spelling == exact)
        return false;
    return *left.spelling == exact || *left.spelling < *right.spelling;
}

} // namespace

QVector<PackageFile> packageFiles(const PackageEntry &package)
{
    QVector<SpelledFile> spelled;
    spelled.reserve(package.files.size());
    for (auto file = package.files.cbegin(); file != package.files.cend(); ++file)
        spelled.append({{decoded(file.key()), file.value()}, &file.key()});
    std::sort(spelled.begin(), spelled.end(), precedes);

    QVector<PackageFile> files;
    files.reserve(spelled.size());
    for (SpelledFile &candidate : spelled) {
        if (files.isEmpty() || files.constLast().path != candidate.file.path)
            files.append(std::move(candidate.file));
    }
    return files;
}

const unsigned char *fileDigest(const PackageEntry &package, const QString &path)
{
    const QByteArray spelling = path.toUtf8();
    return decoded(spelling) == path ? package.files.value(spelling) : nullptr;
}

} // namespace ts::pm
