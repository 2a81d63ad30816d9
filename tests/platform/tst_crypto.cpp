#include <TamselCrypto/JsonSignature>
#include <TamselCrypto/PrivateKey>

#include <QtTest>

#include <limits>

using namespace ts::crypto;
using namespace ts::crypto::ed25519;

namespace {

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

QByteArray pem(const char *label, const QByteArray &der)
{
    return QByteArray("-----BEGIN ") + label + "-----\n" + der.toBase64() + "\n-----END " + label + "-----\n";
}

const QByteArray publicPrefix = hex("302a300506032b6570032100");
const QByteArray privatePrefix = hex("302e020100300506032b657004220420");
const QByteArray seed = hex("9d61b19deffd5a60ba844af492ec2cc44449c5697b326919703bac031cae7f60");
const QByteArray publicBytes = hex("d75a980182b10ab7d54bfed3c964073a0ee172f3daa62325af021a68f707511a");
const QByteArray publicDer = publicPrefix + publicBytes;

QByteArray canonical(const QByteArray &text)
{
    return JsonSignature::toByteArray(QJsonDocument::fromJson(text).object());
}

QJsonObject nested(int depth)
{
    QJsonObject object;
    for (int i = 1; i < depth; ++i)
        object = QJsonObject{{QStringLiteral("a"), object}};
    return object;
}

} // namespace

class tst_Crypto : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knownSignatures()
    {
        const QByteArray message;
        const QByteArray signature = hex("e5564300c360ac729086e2cc806e828a84877f1eb8e5d974d873e06522490155"
                                         "5fb8821590a33bacc61e39701cf9b46bd25bf5f0595bbe24655141438e7a100b");
        const auto secretKey = PrivateKey::fromPEM(pem("PRIVATE KEY", privatePrefix + seed));
        QVERIFY(bool(secretKey));
        QCOMPARE(secretKey.publicKey().toDER(), publicDer);
        QCOMPARE(secretKey.sign(message), signature);
        QVERIFY(!PrivateKey::fromPEM(pem("PRIVATE KEY", privatePrefix + seed.chopped(1))));
        const auto key = PublicKey::fromDER(publicDer);
        QVERIFY(key.verify(signature, message));
        QVERIFY(!key.verify(signature, message + 'x'));
        QVERIFY(!key.verify(signature.chopped(1), message) && !key.verify(signature + '\0', message));
        for (int bit = 0; bit < SignatureSize * 8; bit += 37) {
            QByteArray forged = signature;
            forged[bit / 8] = char(forged.at(bit / 8) ^ (1 << bit % 8));
            QVERIFY(!key.verify(forged, message));
        }
        QVERIFY(!PublicKey().verify(signature, message) && PrivateKey().sign(message).isEmpty());
    }

    void readsKeyTexts()
    {
        const QByteArray good = pem("PUBLIC KEY", publicDer);
        const auto edited = [&good](const char *before, const char *after) {
            return QByteArray(good).replace(before, after);
        };
        for (const QByteArray &text : {good, "Issued to: us\n" + good + "that is all", edited("\n", "\r\n"),
                                       QByteArray(good).insert(60, '\n')})
            QCOMPARE(PublicKey::fromPEM(text).toPEM(), good);
        const QByteArray unusable[] = {
            edited("-----END", ""),
            pem("PRIVATE KEY", publicDer),
            ' ' + good,
            edited("KEY-----\nM", "KEY----- x\nM"),
            QByteArray(good).insert(60, ' '),
            QByteArray(good).insert(60, '\0'),
            edited("=\n", "\n"),
            pem("PUBLIC KEY", QByteArray(publicDer).replace(8, 1, "\x6e")), // another algorithm
            pem("PUBLIC KEY", publicPrefix + '\1' + QByteArray(31, '\0')),  // of order one
        };
        for (const QByteArray &text : unusable)
            QVERIFY2(!PublicKey::fromPEM(text) && PublicKey::fromPEM(text).toDER().isEmpty(),
                     text.constData());
    }

    void canonicalForm()
    {
        QFile corpus(QStringLiteral(CORPUS));
        QVERIFY(corpus.open(QIODevice::ReadOnly));
        int cases = 0;
        for (; !corpus.atEnd(); ++cases) {
            const QByteArray input = corpus.readLine();
            const QByteArray output = corpus.readLine();
            QCOMPARE(canonical(input) + '\n', output);
            QCOMPARE(canonical(output) + '\n', output);
            QCOMPARE(JsonSignature::toByteArray(output.trimmed(), QLatin1String("absent")) + '\n', output);
        }
        QCOMPARE(cases, 10);
    }

    // The result has to be that of QJsonDocument, which texts that are nearly canonical try to evade.
    void memberLeftOut()
    {
        const QLatin1String key("k");
        const QByteArray texts = R"(
            | {} | [1] | {"k":1} | {"a":1,"k":2} | {"k":{"k":[1,"x"]},"l":2} | {"a":1,"k":0,"l":""}
            | {"a":{"k":1},"l":[{"k":1}]} | {"l":1,"a":2} | {"a":1,"a":2,"k":3} | {"k":1,"k":2}
            | {"\u006b":1,"l":2} | {"a":-0} | {"a":00} | {"a":1.0} | {"a":1e2} | {"a":-7} | {"a":-} | {"a":tru}
            | {"a":999999999999999} | {"a":9007199254740993} | { "a":1} | {"a":1}%20 | {"a":1}x | {"a":1
            | {"a":1,} | {"a":[1,]} | {"a":[,]} | {"a":"%09"} | {"%c3%a4":"%e2%82%ac%f0%9f%98%80","k":1}
            | {"a":"%ef%bb%bf b"} | {"a":"%c0%af"} | {"a":"%ed%a0%80"} | {"a":"%f4%90%80%80"} | {"a":"%c3"}
            | {"%ef%ac%b3":1,"%f0%9f%98%80":2} | {"%f0%9f%98%80":2,"%ef%ac%b3":1})";
        for (const QByteArray &part : texts.split('|')) {
            const QByteArray text = QByteArray::fromPercentEncoding(part.trimmed());
            QJsonObject object = QJsonDocument::fromJson(text).object();
            object.remove(key);
            QCOMPARE(JsonSignature::toByteArray(text, key), JsonSignature::toByteArray(object));
        }
    }

    void whatHasNoCanonicalForm()
    {
        const QString n = QStringLiteral("n");
        const auto form = [&n](const QJsonValue &value) { return JsonSignature::toByteArray({{n, value}}); };
        QVERIFY(form(std::numeric_limits<double>::infinity()).isNull());
        QVERIFY(form(std::numeric_limits<double>::quiet_NaN()).isNull());
        const QChar high(0xd83d);
        const QChar low(0xde00);
        for (const QString &text : {QString(high), QString(low), QString(low) + high, high + n, n + high}) {
            QVERIFY(form(text).isNull());
            QVERIFY(form(QJsonArray{text}).isNull());
            QVERIFY(JsonSignature::toByteArray({{text, 1}}).isNull());
            QByteArray json = "[";
            QVERIFY(!JsonSignature::appendString(text, &json));
            QVERIFY(JsonSignature::appendString(n, &json));
            QCOMPARE(json, QByteArray("[\"n\""));
        }
        QCOMPARE(JsonSignature::toByteArray({}), QByteArray("{}"));
        QVERIFY(canonical("{\"\\ud83d\\ude00\":1,\"\\ufb33\":2,\"\xef\xac\xb3\":2,\"]\":4}").isNull());
        QCOMPARE(JsonSignature::toByteArray(nested(1536)).size(), 1535 * 6 + 2);
        QVERIFY(JsonSignature::toByteArray(nested(1537)).isNull());
        const QByteArray deep = "{\"a\":" + QByteArray(1000000, '[');
        QCOMPARE(JsonSignature::toByteArray(deep, QLatin1String("b")), QByteArray("{}"));
        QCOMPARE(form(QString(400000, QChar(1))).size(), 400000 * 6 + 8);
    }
};

QTEST_GUILESS_MAIN(tst_Crypto)
#include "tst_crypto.moc"
