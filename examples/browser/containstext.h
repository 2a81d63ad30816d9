#pragma once

#include <TamselPackageManager/PackageMatcher>

#include <QString>

namespace browser {

/**
 * Takes the packages with a text in their manifest that contains what has been typed, without regard to case.
 * The id stands in for a text that is missing or empty, as it does where the text would be shown.
 *
 * Ownership, threads: as ts::pm::PackageMatcher.
 * Errors: a value that is no text counts as missing.
 */
class ContainsText : public ts::pm::PackageMatcher
{
    Q_OBJECT
    /** Key in the manifest. Empty, as at first, it restricts nothing. */
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    /** The typed text. Empty, as at first, it restricts nothing. */
    Q_PROPERTY(QString searchString READ searchString WRITE setSearchString NOTIFY searchStringChanged)

public:
    explicit ContainsText(QObject *parent = nullptr);

    QString name() const { return field; }
    void setName(const QString &name);

    QString searchString() const { return text; }
    void setSearchString(const QString &searchString);

    std::function<bool(ts::pm::PackageNode *)> matchFunction() const override;

Q_SIGNALS:
    void nameChanged();
    void searchStringChanged();

private:
    QString field;
    QString text;
};

} // namespace browser
