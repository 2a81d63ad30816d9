#include "storage/randomname_p.h"

#include <QByteArray>
#include <QRandomGenerator64>

namespace ts::pm {

QString randomName()
{
    const quint64 random = QRandomGenerator64::global()->generate();
    const QByteArray bytes(reinterpret_cast<const char *>(&random), sizeof random);
    return QString::fromLatin1(
        bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

} // namespace ts::pm
