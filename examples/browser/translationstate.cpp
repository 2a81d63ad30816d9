#include "translationstate.h"

#include "interfacetexts.h"

#include <TamselPackageManager/PackageNode>

#include <QJsonObject>
#include <QLocale>
#include <QTranslator>

#include <algorithm>

namespace browser {

using ts::pm::PackageIndex;
using ts::pm::PackageReference;

namespace {

// Whether a member of a translation package's manifest names the texts of a language. Others tell of the
// package itself.
bool namesTexts(const QString &key, const QJsonValue &value)
{
    const QLocale locale(key);
    return locale.language() != QLocale::C
           && (locale.name() == key || locale.name().section(u'_', 0, 0) == key)
           && value.toString().endsWith(QLatin1String(".qm"));
}

} // namespace

TranslationState::TranslationState(QObject *parent)
    : RepositoryObserver(parent)
    , languageCodes(InterfaceTexts::languages())
{
}

// The repository has made these references by itself when the index arrived; asking for them installs
// nothing.
void TranslationState::handleIndexChange()
{
    translations.clear();
    QStringList codes = InterfaceTexts::languages();
    const auto packages = PackageIndex::selectPackages(index(), QStringLiteral("translation"), {}, {});
    for (const ts::pm::PackageNode *package : packages) {
        PackageReference *reference = repository()->packageReference(package->id().toString());
        connect(reference, &PackageReference::statusChanged, this, &TranslationState::evaluate,
                Qt::UniqueConnection);
        translations.append(reference);
        const QJsonObject manifest = package->manifest();
        for (auto member = manifest.begin(); member != manifest.end(); ++member) {
            if (namesTexts(member.key(), member.value()))
                codes.append(member.key());
        }
    }
    codes.removeDuplicates();
    codes.sort();
    setLanguages(codes);
    evaluate();
}

void TranslationState::setLanguages(const QStringList &codes)
{
    if (languageCodes == codes)
        return;
    languageCodes = codes;
    Q_EMIT languagesChanged();
}

// A translation package keeps the texts that it has loaded if it has none in the new language, and so does
// one that has gone from the catalogue; so all their translators go. The repository loads the file of a
// package for the present language whenever its reference tells of an update.
void TranslationState::followLanguage()
{
    if (!repository())
        return;
    const auto references =
        repository()->findChildren<PackageReference *>(QString(), Qt::FindDirectChildrenOnly);
    for (PackageReference *reference : references)
        delete reference->findChild<QTranslator *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QPointer<PackageReference> &reference : qAsConst(translations)) {
        if (reference)
            Q_EMIT reference->updated();
    }
    repository()->notifyTranslationUpdate();
    repository()->scheduleUpdate();
}

void TranslationState::evaluate()
{
    const bool nowSettled =
        index() && std::none_of(translations.cbegin(), translations.cend(), [](const auto &reference) {
            return reference && reference->status() == PackageReference::Installing;
        });
    if (settled == nowSettled)
        return;
    settled = nowSettled;
    Q_EMIT settledChanged();
}

} // namespace browser
