#pragma once

#include "tamselpackagemanager_export.h"

#include <QObject>
#include <QScopedPointer>
#include <QString>

namespace ts::pm {

class KeywordPrivate;

/**
 * One keyword, by id, for QML: its type and its text in the active language. It follows the id from index to
 * index.
 *
 * Ownership: the provider is not owned.
 * Threads: repository thread only.
 * Signals: keywordChanged() when the id resolves to another keyword, to none any more, or to the same one in
 * a new index; not while it stays unresolved. packageProviderChanged() is declared, and on purpose never
 * emitted.
 * Errors: a provider without the interface is logged in "tamsel.packages" and counts as null.
 */
class TAMSELPACKAGEMANAGER_EXPORT Keyword : public QObject
{
    Q_OBJECT
    /** Invalid while the id is not that of a keyword in the current index. */
    Q_PROPERTY(ts::pm::Keyword::Type type READ type NOTIFY keywordChanged)
    /** Null while the id is not that of a keyword in the current index. */
    Q_PROPERTY(QString displayString READ displayString NOTIFY keywordChanged)
    /** An object that implements IPackageProvider. Null at first. */
    Q_PROPERTY(
        QObject *packageProvider READ packageProvider WRITE setPackageProvider NOTIFY packageProviderChanged)
    /** Null at first. */
    Q_PROPERTY(QString keywordId READ keywordId WRITE setKeywordId NOTIFY keywordIdChanged)

public:
    /** A record of any other number makes no keyword. */
    enum Type : int {
        Invalid = -1,
        Noun = 0,      ///< "noun", with singular and plural
        Name = 1,      ///< "name"
        Adjective = 2, ///< "adjective"
        Literal = 3,   ///< "literal", the same in every language
        Category = 4,  ///< "category"
    };
    Q_ENUM(Type)

    explicit Keyword(QObject *parent = nullptr);
    ~Keyword() override;

    /** The type with exactly that name in data files, Invalid for any other text. Any thread. */
    static Type typeFromString(const QString &name);

    Type type() const;
    QString displayString() const;

    QObject *packageProvider() const;
    void setPackageProvider(QObject *provider);

    QString keywordId() const;
    void setKeywordId(const QString &id);

Q_SIGNALS:
    void keywordChanged();
    void packageProviderChanged();
    void keywordIdChanged();

private Q_SLOTS:
    void update();

private:
    QScopedPointer<KeywordPrivate> d;
};

} // namespace ts::pm
