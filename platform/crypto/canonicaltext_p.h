#pragma once

#include <QLatin1String>

namespace ts::crypto {

/**
 * Reads the text of a JSON object that is in the canonical form of RFC 8785 already, without making values of
 * it.
 *
 * It knows the usual: a text with an escape, a fraction, an exponent, a number of more than 15 digits, a byte
 * order mark, a key beyond the basic plane or deep nesting is not recognised, though it may be canonical. So
 * no answer but yes says anything about the text. Each text that is recognised means the same to
 * QJsonDocument.
 *
 * Threads: one at a time. Refers to the text, which has to stay.
 */
class CanonicalText
{
public:
    struct Span
    {
        const char *begin = nullptr;
        const char *end = nullptr;
    };

    CanonicalText(const char *text, int size);

    /** Whether the text is recognised as an object. Notes where its member \a key stands, which is ASCII. */
    bool isObject(QLatin1String key);

    /** The member of that key, from the quote of its key to the end of its value; null if there is none. */
    const Span &member() const { return found; }

private:
    struct Key
    {
        Span text;
        bool isComparable = true; // by bytes, with the same result as by UTF-16 code units
    };

    bool readValue();
    bool readObject();
    bool readMembers(QLatin1String wanted);
    bool readArray();
    bool readString(Key *string);
    bool readSequence(Key *string);
    bool readNumber();
    bool readLiteral(QLatin1String literal);
    bool take(char c);

    const char *at;
    const char *const end;
    Span found;
    int depth = 0;
};

} // namespace ts::crypto
