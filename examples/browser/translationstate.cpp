#include "translationstate.h"

#include <TamselPackageManager/PackageNode>

#include <algorithm>

namespace browser {

using ts::pm::PackageIndex;
using ts::pm::PackageReference;

TranslationState::TranslationState(QObject *parent)
    : RepositoryObserver(parent)
{
}

// The repository has made these references by itself when the index arrived; asking for them installs
// nothing.
void TranslationState::handleIndexChange()
{
    translations.clear();
    const auto packages = PackageIndex::selectPackages(index(), QStringLiteral("translation"), {}, {});
    for (const ts::pm::PackageNode *package : packages) {
        PackageReference *reference = repository()->packageReference(package->id().toString());
        connect(reference, &PackageReference::statusChanged, this, &TranslationState::evaluate,
                Qt::UniqueConnection);
        translations.append(reference);
    }
    evaluate();
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
