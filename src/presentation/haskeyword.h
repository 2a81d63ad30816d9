#pragma once

#include "presentation/packagematcher.h"

#include <QScopedPointer>
#include <QString>

namespace ts::pm {

class HasKeywordPrivate;

/**
 * Takes the packages that carry one keyword, in the sense of PackageNode::keywords().
 *
 * Ownership, threads and errors: as PackageMatcher.
 */
class TAMSELPACKAGEMANAGER_EXPORT HasKeyword : public PackageMatcher
{
    Q_OBJECT
    /** Id of the keyword, compared with case. Empty, as at first, it restricts nothing. */
    Q_PROPERTY(QString keywordId READ keywordId WRITE setKeywordId NOTIFY keywordIdChanged)

public:
    explicit HasKeyword(QObject *parent = nullptr);
    ~HasKeyword() override;

    QString keywordId() const;
    void setKeywordId(const QString &id);

    std::function<bool(PackageNode *)> matchFunction() const override;

Q_SIGNALS:
    void keywordIdChanged();

private:
    QScopedPointer<HasKeywordPrivate> d;
};

} // namespace ts::pm
