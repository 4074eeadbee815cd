// SPDX-License-Identifier: MIT
#include "support/openpgp.h"
#include "support/rows.h"

using othermachine::cv25519;
using othermachine::ed25519;

namespace
{

const KeyPair locked{"cv1", ed25519 + cv25519, "Größe € p"};
const KeyPair unlocked{"cv2", ed25519 + cv25519};
const KeyPair lockedRsa{"rsa1", othermachine::rsa, "pp"};
const KeyPair expired{"expired", ed25519 + cv25519, {}, "20200101T000000", "10d"};
const KeyPair revoked{"revoked", ed25519 + cv25519};
const KeyPair future{"future", ed25519 + cv25519, {}, "20370101T000000"};
const KeyPair signing{"signing", ed25519};

/// A message of our key that is altered or cut off; it is small, but has every part.
QByteArray smallMessage()
{
    return othermachine::encrypted("content", unlocked);
}

struct RefusedMessage {
    const char *name;
    QByteArray message;
    QString passPhrase;
    QString reason;
};

QVector<RefusedMessage> refusedMessages()
{
    const auto gpg = [](const QStringList &arguments) {
        return othermachine::gpg(arguments, "content");
    };
    const QByteArray mine = smallMessage();
    const QByteArray literal = gpg({"--store"});
    const QByteArray sealed =
        gpg({"--recipient", unlocked.name, "--local-user", signing.name, "--sign", "--encrypt"});
    QByteArray altered = sealed;
    altered[altered.size() - 10] = static_cast<char>(altered[altered.size() - 10] ^ 1);
    const QString noSecret = "no secret key for this message";
    const QString damaged = "message is damaged or was tampered with";
    const QString broken = "pass phrase contains a line break or NUL";
    const QStringList toPassPhrase{"--passphrase", "p", "--symmetric"};
    const QStringList andLocked{"--recipient", locked.name, "--encrypt"};
    return {{"to another key", othermachine::encrypted("content", locked), {}, noSecret},
            {"to a pass phrase", gpg(toPassPhrase), "p", noSecret},
            {"to both", gpg(toPassPhrase + andLocked), "p", noSecret},
            {"not encrypted", literal, {}, "input is no encrypted message"},
            {"empty", {}, {}, "input is no encrypted message"},
            {"two in one", mine + mine, {}, damaged},
            {"with plain text behind", mine + literal, {}, damaged},
            {"signed", sealed, {}, "signature of the message cannot be verified"},
            {"signed, and altered", altered, {}, damaged},
            {"line feed in the pass phrase", mine, "a\nb", broken},
            {"carriage return", mine, "a\r", broken},
            {"NUL", mine, "a" + QString(QChar::Null), broken}};
}

} // namespace

Q_DECLARE_METATYPE(KeyPair)

class TestOpenPgp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const KeyPair &key : {locked, unlocked, lockedRsa, expired, revoked, future, signing})
            othermachine::makeKey(key);
        const QByteArray listing =
            othermachine::gpg({"--with-colons", "--list-keys", revoked.name});
        const QString fingerprint = listing.mid(listing.indexOf("fpr:")).split(':').value(9);
        // gpg keeps a revocation for each key, with a colon in front so that it is not used by
        // chance.
        const QString revocation = othermachine::home + "/openpgp-revocs.d/" + fingerprint + ".rev";
        othermachine::gpg({"--import"}, read(revocation).replace(":-----BEGIN", "-----BEGIN"));
    }

    void init() { prepareWork(); }
    void cleanup() { checkNothingIsLeft(); }

    void roundTrip_data()
    {
        row("cv25519, with a pass phrase", locked, "--armor", "--output");
        row("cv25519, without", unlocked, "--no-armor", "-");
        row("RSA, with a pass phrase", lockedRsa, "--no-armor", "Größe €");
    }
    void roundTrip()
    {
        const auto [key, form, file] = cells<KeyPair, QString, QString>();
        const QByteArray content = QByteArray::fromHex("00ff0a0d") + QByteArray(300000, 'x');
        const MessageLog log;
        QCOMPARE(importKey(othermachine::exported(key, form)), QString());
        QCOMPARE(keyringProcesses(), QStringList());

        write(file, content);
        QCOMPARE(encrypt(file, "out"), QString());
        QCOMPARE(othermachine::decrypted(read("out"), key), content);
        QCOMPARE(QFile::permissions("out") & 0x77, QFileDevice::Permissions());
        QCOMPARE(keyringProcesses(), QStringList());

        write("in", othermachine::encrypted(content, key));
        QCOMPARE(decrypt(key.passPhrase, "in", file + file), QString());
        QCOMPARE(read(file + file), content);
        QCOMPARE(QFile::permissions(file + file) & 0x77, QFileDevice::Permissions());
        QCOMPARE(keyringProcesses(), QStringList());
        QCOMPARE(log.take(), QStringList());
    }

    /// gpg's agent remembers pass phrases; one could also have been left behind by a kill.
    void wrongPassPhraseAfterARightOne()
    {
        QCOMPARE(importKey(locked), QString());
        write("in", othermachine::encrypted("content", locked));
        QCOMPARE(decrypt(locked.passPhrase), QString());
        QCOMPARE(read("out"), QByteArray("content"));
        for (const QString &wrong : {QString(), QString(255, 'x')})
            QCOMPARE(decrypt(wrong), failure("decryptFileGPG", "wrong pass phrase"));
        QCOMPARE(decrypt(QString(256, 'x')), failure("decryptFileGPG", "pass phrase is too long"));
        othermachine::gpg({"--passphrase", locked.passPhrase, "--decrypt"}, read("in"), {},
                          keyring);
        QCOMPARE(keyringProcesses().size(), 1);
        QProcess second; // what a caller that was killed leaves behind decrypts nothing
        second.start("gpg",
                     {"--homedir", keyring, "--batch", "--pinentry-mode", "error", "-d", "in"});
        QVERIFY(second.waitForFinished());
        QVERIFY(second.exitCode() != 0);
        QCOMPARE(decrypt("wrong"), failure("decryptFileGPG", "wrong pass phrase"));
    }

    void messagesThatAreRefused()
    {
        const QVector<RefusedMessage> rows = refusedMessages();
        QCOMPARE(importKey(unlocked), QString());
        for (const RefusedMessage &row : rows) {
            write("in", row.message);
            const QString result = decrypt(row.passPhrase);
            QVERIFY2(result == failure("decryptFileGPG", row.reason),
                     qPrintable(row.name + (": " + result)));
            QCOMPARE(read("out"), QByteArray("old"));
            QCOMPARE(filesIn("."), QStringList({"in", "out"}));
        }
    }

    void damagedMessages()
    {
        QCOMPARE(importKey(unlocked), QString());
        const QByteArray whole = smallMessage();
        const auto isRead = [](const QByteArray &message) {
            write("in", message);
            write("out", "old");
            return decrypt({}).isEmpty();
        };
        for (int position = 0; position < whole.size(); position += 50) {
            QVERIFY2(!isRead(whole.left(position)), qPrintable(QString::number(position)));
            QCOMPARE(read("out"), QByteArray("old"));
        }
        // In the first packet, the key of this session, there are bits that do not matter.
        const int firstPacket = 2 + static_cast<uchar>(whole[1]);
        for (int position = 0; position < whole.size(); position += 29) {
            QByteArray message = whole;
            message[position] = static_cast<char>(whole[position] ^ (1 << position % 8));
            const bool matters = !isRead(message);
            QVERIFY2(matters || position < firstPacket, qPrintable(QString::number(position)));
            QCOMPARE(read("out"), QByteArray(matters ? "old" : "content"));
        }
        QCOMPARE(filesIn("."), QStringList({"in", "out"}));
        write("in", whole);
        QCOMPARE(decrypt({}), QString());
    }

    void keysThatCannotEncrypt_data()
    {
        row("expired", expired, "key has expired");
        row("revoked", revoked, "key is revoked");
        row("signs only", signing, "key cannot encrypt");
        const QString tooNew = "key was made after what the clock says now";
        row("made in the future", future, tooNew);
    }
    void keysThatCannotEncrypt()
    {
        const auto [key, reason] = cells<KeyPair, QString>();
        if (key.name == future.name) { // the clock was set back after the import
            QCOMPARE(importKey(key), failure("importKeypairGPG", reason));
            QCOMPARE(filesInTmp(), QStringList());
            QVERIFY(QDir("/tmp").mkdir("gpg-temp-keyring"));
            QFile::setPermissions(keyring, QFileDevice::Permissions(0x7000));
            othermachine::gpg({"--import"}, othermachine::gpg({"--export", key.name}), key.madeAt,
                              keyring);
        } else {
            QCOMPARE(importKey(key), QString());
        }
        write("in", "content");
        QCOMPARE(encrypt(), failure("encryptFileGPG", reason));
        QCOMPARE(read("out"), QByteArray("old"));
        if (key.name == expired.name) { // what was encrypted before is not lost
            write("in", othermachine::encrypted("content", key));
            QCOMPARE(decrypt({}), QString());
            QCOMPARE(read("out"), QByteArray("content"));
        }
    }

    void filesThatBringNoKey_data()
    {
        const QByteArray whole = othermachine::exported(unlocked);
        row("empty", QByteArray(), "file holds no key");
        row("cut off", whole.left(100), "file holds no key");
        row("cut off in the armour", othermachine::exported(unlocked, "--armor").left(400),
            "file holds no key");
        row("cut off in the subkey", whole.chopped(92), "file holds no whole key");
        row("followed by rubbish", whole + "content", "file holds no key");
        row("two keys", whole + othermachine::exported(signing), "file holds more than one key");
    }
    void filesThatBringNoKey()
    {
        const auto [content, reason] = cells<QByteArray, QString>();
        QCOMPARE(importKey(unlocked), QString());
        QCOMPARE(importKey(content), failure("importKeypairGPG", reason));
        QVERIFY(!QFile::exists(keyring));
        write("in", "content");
        QCOMPARE(encrypt(), failure("encryptFileGPG", "no key is imported"));
        QCOMPARE(decrypt({}), failure("decryptFileGPG", "no key is imported"));
    }

    void importReplacesTheKey()
    {
        QCOMPARE(importKey(unlocked), QString());
        QCOMPARE(importKey(othermachine::gpg({"--export", locked.name})), QString());
        for (const char *none : {"nowhere", "."}) // keep the key
            QCOMPARE(text(DataHelper::importKeypairGPG(none)),
                     failure("importKeypairGPG", "Failed to open file for reading"));
        write("in", "content");
        QCOMPARE(encrypt("in", "in"), QString()); // onto itself
        QCOMPARE(othermachine::decrypted(read("in"), locked), QByteArray("content"));
        QCOMPARE(decrypt(locked.passPhrase), // a public key alone
                 failure("decryptFileGPG", "no secret key for this message"));
    }
};

QTEST_GUILESS_MAIN(TestOpenPgp)
#include "tst_openpgp.moc"
