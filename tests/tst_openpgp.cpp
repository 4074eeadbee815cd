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
const KeyPair openRsa{"rsa2", othermachine::rsa};
const KeyPair expired{"expired", ed25519 + cv25519, {}, "20200101T000000", "10d"};
const KeyPair revoked{"revoked", ed25519 + cv25519};
const KeyPair future{"future", ed25519 + cv25519, {}, "20370101T000000"};
const KeyPair renewed{"renewed", ed25519};
const KeyPair signing{"signing", ed25519};

/// A message of our key that is altered or cut off; it is small, but has every part.
QByteArray smallMessage()
{
    return othermachine::encrypted("content", unlocked);
}

} // namespace

Q_DECLARE_METATYPE(KeyPair)

class TestOpenPgp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const KeyPair &key :
             {locked, unlocked, lockedRsa, openRsa, expired, revoked, future, renewed, signing})
            othermachine::makeKey(key);
        const auto fingerprint = [](const KeyPair &key) {
            const QByteArray listing =
                othermachine::gpg({"--with-colons", "--list-keys", key.name});
            return QString(listing.mid(listing.indexOf("fpr:")).split(':').value(9));
        };
        // gpg keeps a revocation for each key, with a colon in front so that it is not used by
        // chance.
        othermachine::gpg({"--passphrase", "", "--quick-add-key", fingerprint(renewed), "cv25519"},
                          {}, future.madeAt);
        const QString revocation =
            othermachine::home + "/openpgp-revocs.d/" + fingerprint(revoked) + ".rev";
        othermachine::gpg({"--import"}, read(revocation).replace(":-----BEGIN", "-----BEGIN"));
    }

    void init() { prepareWork(); }
    void cleanup() { checkNothingIsLeft(); }

    void roundTrip_data()
    {
        columns<KeyPair, QString, QString>("key", "form", "file");
        row("cv25519, with a pass phrase", locked, QString("--armor"), QString("--output"));
        row("cv25519, without", unlocked, QString("--no-armor"), QString("with blank"));
        row("RSA 3072, with a pass phrase", lockedRsa, QString("--no-armor"), QString("Größe €"));
        row("RSA 3072, without", openRsa, QString("--armor"), QString("-"));
    }
    void roundTrip()
    {
        QFETCH(KeyPair, key);
        QFETCH(QString, form);
        QFETCH(QString, file);
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
        for (const char *wrong : {"wrong", ""}) {
            QCOMPARE(decrypt(locked.passPhrase), QString());
            QCOMPARE(read("out"), QByteArray("content"));
            QCOMPARE(decrypt(wrong), failure("decryptFileGPG", "wrong pass phrase"));
        }
        QCOMPARE(decrypt(QString(255, 'x')), failure("decryptFileGPG", "wrong pass phrase"));
        QCOMPARE(decrypt(QString(256, 'x')), failure("decryptFileGPG", "pass phrase is too long"));
        othermachine::gpg({"--passphrase", locked.passPhrase, "--decrypt"}, read("in"), {},
                          keyring);
        QCOMPARE(keyringProcesses().size(), 1);
        QCOMPARE(decrypt("wrong"), failure("decryptFileGPG", "wrong pass phrase"));
    }

    void messagesThatAreRefused_data()
    {
        columns<QByteArray, QString, QString>("message", "passPhrase", "reason");
        const QByteArray mine = smallMessage();
        const QByteArray literal = othermachine::gpg({"--store"}, "content");
        const QString noSecret = "no secret key for this message";
        const QString noMessage = "input is no encrypted message";
        const QString damaged = "message is damaged or was tampered with";
        const QString broken = "pass phrase contains a line break or NUL";
        row("to another key", othermachine::encrypted("content", locked), QString(), noSecret);
        row("to a pass phrase", othermachine::gpg({"--passphrase", "p", "--symmetric"}, "content"),
            QString("p"), noSecret);
        row("to the key and a pass phrase, given the latter",
            othermachine::gpg(
                {"--passphrase", "p", "--recipient", locked.name, "--symmetric", "--encrypt"},
                "content"),
            QString("p"), noSecret);
        row("not encrypted", literal, QString(), noMessage);
        row("a text", QByteArray("content"), QString(), noMessage);
        row("empty", QByteArray(), QString(), noMessage);
        row("two in one", mine + mine, QString(), damaged);
        row("with plain text behind", mine + literal, QString(), damaged);
        row("signed by a stranger",
            othermachine::gpg(
                {"--recipient", unlocked.name, "--local-user", signing.name, "--sign", "--encrypt"},
                "content"),
            QString(), QString("signature of the message cannot be verified"));
        const QByteArray large = othermachine::encrypted(incompressible(9000), unlocked);
        row("cut off early", large.left(large.size() * 2 / 5), QString(), damaged);
        row("cut off late", large.chopped(10), QString(), damaged);
        QByteArray tampered = othermachine::gpg(
            {"--recipient", unlocked.name, "--local-user", signing.name, "--sign", "--encrypt"},
            "content");
        tampered[tampered.size() - 10] = static_cast<char>(tampered[tampered.size() - 10] ^ 1);
        row("signed, and altered", tampered, QString(), damaged);
        row("line feed in the pass phrase", mine, QString("a\nb"), broken);
        row("carriage return", mine, QString("a\r"), broken);
        row("NUL", mine, "a" + QString(QChar::Null), broken);
    }
    void messagesThatAreRefused()
    {
        QFETCH(QByteArray, message);
        QFETCH(QString, passPhrase);
        QFETCH(QString, reason);
        QCOMPARE(importKey(unlocked), QString());
        write("in", message);
        QCOMPARE(decrypt(passPhrase), failure("decryptFileGPG", reason));
        QCOMPARE(read("out"), QByteArray("old"));
        QCOMPARE(filesIn("."), QStringList({"in", "out"}));
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
        for (int position = 0; position < whole.size(); position += 10) {
            QVERIFY2(!isRead(whole.left(position)), qPrintable(QString::number(position)));
            QCOMPARE(read("out"), QByteArray("old"));
        }
        // In the first packet, the key of this session, there are bits that do not matter.
        const int firstPacket = 2 + static_cast<uchar>(whole[1]);
        for (int position = 0; position < whole.size(); position += 13) {
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
        columns<KeyPair, QString>("key", "reason");
        row("expired", expired, QString("key has expired"));
        row("revoked", revoked, QString("key is revoked"));
        row("signs only", signing, QString("key cannot encrypt"));
        const QString tooNew = "key was made after what the clock says now";
        row("made in the future", future, tooNew);
        row("subkey made in the future", renewed, tooNew);
    }
    void keysThatCannotEncrypt()
    {
        QFETCH(KeyPair, key);
        QFETCH(QString, reason);
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
        columns<QByteArray, QString>("content", "reason");
        const QByteArray whole = othermachine::exported(unlocked);
        row("a text", QByteArray("content"), QString("file holds no key"));
        row("empty", QByteArray(), QString("file holds no key"));
        row("cut off", whole.left(100), QString("file holds no key"));
        row("cut off in the armour", othermachine::exported(unlocked, "--armor").left(400),
            QString("file holds no key"));
        row("cut off in the subkey", whole.chopped(92), QString("file holds no whole key"));
        row("followed by rubbish", whole + "content", QString("file holds no key"));
        row("two keys", whole + othermachine::exported(openRsa),
            QString("file holds more than one key"));
    }
    void filesThatBringNoKey()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        QCOMPARE(importKey(unlocked), QString());
        QCOMPARE(importKey(content), failure("importKeypairGPG", reason));
        QVERIFY(!QFile::exists(keyring));
        write("in", "content");
        QCOMPARE(encrypt(), failure("encryptFileGPG", "no key is imported"));
        QCOMPARE(decrypt({}), failure("decryptFileGPG", "no key is imported"));
    }

    void importReplacesTheKey()
    {
        QCOMPARE(importKey(openRsa), QString());
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
