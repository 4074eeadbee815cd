// SPDX-License-Identifier: MIT
#include "support/openpgp.h"
#include "support/rows.h"
#include "support/signingscript.h"
#include "support/waiting.h"
#include "support/world.h"

namespace
{

/// Runs these words; false where it takes a program that is not there.
bool hasRun(const QString &script)
{
    const int status = QProcess::execute("sh", {"-ec", words + script});
    if (status != 0 && status != 77)
        qFatal("%s: %s", qPrintable(script), read("log").constData());
    return status == 0;
}

const char *const noSequoia = "sq 0.27 is not installed";

QString verify()
{
    return text(DataHelper::verifyFileGPG("file", "sig", "keys").first);
}

/// The text of the failure that has this reason; "" without one.
QString expected(const char *operation, const QString &reason)
{
    return reason.isEmpty() ? QString() : failure(operation, reason);
}

} // namespace

class TestSignatures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        clear("/data/signers");
        QFile::setPermissions("/data/signers", QFileDevice::Permissions(0x7000));
        qputenv("GNUPGHOME", "/data/signers");
        prepareWork();
        QVERIFY(hasRun(keys));
    }
    void init()
    {
        prepareWork();
        write("file", "content\n");
    }
    void cleanup()
    {
        waiting.skipsPrograms = false;
        QDir("/tmp/fakes").removeRecursively();
        checkNothingIsLeft();
    }

    void detached_data()
    {
        row("ed25519", "sign ed; trust ed", "");
        row("RSA 3072", "sign rsa; trust rsa ed", "");
        row("nistp256", "sign nist; trust nist", "");
        row("a signing subkey", "sign parts; trust parts", "");
        row("armoured", "sign ed --armor; trust ed --armor", "");
        row("armoured keyrings, one after the other",
            "sign ed; trust rsa --armor; mv keys 1; trust ed --armor; cat 1 keys >2; mv 2 keys",
            "");
        row("two signers", "sign ed --local-user rsa; trust ed rsa", "");
        row("two signers, one unknown", "sign stranger --local-user ed; trust ed", "");
        row("an empty file", ": >file; sign ed; trust ed", "");
        const QString unknown = "signature is not by a trusted key";
        row("a stranger", "sign stranger; trust ed", unknown);
        const QString mismatch = "file does not match the signature";
        row("a flipped byte", "sign ed; trust ed; echo contenT >file", mismatch);
        row("a byte more", "sign rsa; trust rsa; echo >>file", mismatch);
        row("two signers, one bad",
            "sign ed; mv sig 1; echo x >file; sign rsa; cat 1 sig >2; mv 2 sig; trust ed rsa",
            mismatch);
        const QString damaged = "signature is damaged";
        row("no signature", ": >sig; trust ed", damaged);
        row("cut off", "sign rsa; truncate -s -9 sig; trust rsa", damaged);
        row("cut off in the armour", "sign rsa --armor; truncate -s 200 sig; trust rsa", damaged);
        row("rubbish behind it", "sign ed; echo x >>sig; trust ed", damaged);
        row("a signed message", "gpg -u ed -o sig --sign file; trust ed", damaged);
        row("a signed text", "gpg -u ed -o sig --clearsign file; trust ed", damaged);
        row("a signed message behind it",
            "gpg -u ed -o 1 --sign file; sign stranger; cat 1 >>sig; trust ed", damaged);
        row("of an unknown version", "printf '\\302\\004\\011\\0\\0\\0' >sig; trust ed", damaged);
    }
    void detached()
    {
        const auto [script, reason] = cells<QString, QString>();
        if (!hasRun(script))
            QSKIP(noSequoia);
        const QString result = verify();
        QStringList all; // where gpgv 2.2 and 2.4 give other reasons
        for (const QString &one : reason.split('|'))
            all += expected("verifyFileGPG", one);
        QVERIFY2(all.contains(result), qPrintable(result));
    }

    void doubtful_data()
    {
        const QString unknown = "signature is not by a trusted key";
        const QString lines = "signature does not cover every byte";
        row("in text mode", "sign ed --textmode; trust ed", lines);
        const QString weak = "signature uses a weak digest";
        row("a bad one of another kind behind a good one",
            "sign ed; mv sig good; sign ed --textmode; cat sig >>good; mv good sig; trust ed",
            "signature is damaged");
        row("SHA-1", "sign ed --digest-algo SHA1; trust ed", weak);
        row("MD5", "sign rsa --digest-algo MD5 --allow-weak-digest-algos; trust rsa", weak);
        row("expired signature",
            "at 20200601T000000 -u gone --default-sig-expire 9d -o sig -b file; trust gone",
            "signature has expired");
        row("expired key", "at 20200601T000000 -u gone -o sig -b file; trust gone",
            "key has expired");
        row("revoked by SHA-1",
            "at 20200601T000000 -u shabby -o sig -b file; retire shabby --cert-digest-algo SHA1; trust shabby",
            "keyring holds a revocation by a weak digest");
        const QString revoked = "key is revoked";
        row("revoked later",
            "at 20200601T000000 -u outworn -o sig -b file; retire outworn; trust outworn", revoked);
        row("revoked before, by its date",
            "at 20200601T000000 -u lost -o sig -b file; revoke lost; trust lost", revoked);
        row("revoked at the end of the keyring",
            "sign stranger; trust stranger rsa; certificate stranger >>keys", revoked);
        row("a revocation of another key", "sign rsa; trust rsa; certificate stranger >>keys", "");
        row("key with a SHA-1 signature", "sign sha1; trust sha1", "key is not valid|" + unknown);
        const QString future = "signature was made after what the clock says now";
        row("from the future", "at 20370101T000000 -u ed -o sig -b file; trust ed", future);
        row("by a key from the future", "at 20370102T000000 -u future -o sig -b file; trust future",
            future);
        row("older than the key",
            "at 20200101T000000 --ignore-time-conflict --ignore-valid-from -u ed -o sig -b file; "
            "trust ed",
            "key is not valid");
    }
    void doubtful() { detached(); }

    void unusable_data()
    {
        const QString noKey = "keyring holds no public key";
        row("empty keyring", "sign ed; : >keys", noKey);
        row("cut off keyring", "sign ed; trust rsa ed; truncate -s -1 keys", noKey);
        row("secret keys", "sign ed; gpg --export-secret-keys ed >keys ", noKey);
        row("large signature", "sign ed; truncate -s 65537 sig; trust ed",
            "signature is too large");
        row("large keyring", "sign ed; trust ed; truncate -s 1048577 keys", "keyring is too large");
        row("no file", "sign ed; trust ed; rm file", "Failed to open file for reading");
        row("FIFO", "sign ed; trust ed; rm file; mkfifo file", "Failed to open file for reading");
        row("FIFO for a signature", "mkfifo sig; trust ed", "signature cannot be read");
        row("directory for a keyring", "sign ed; mkdir keys", "keyring cannot be read");
    }
    void unusable() { detached(); }

    void bySequoia_data()
    {
        const QString signing = "; sq sign --detached --signer-key sq.key --output sig file";
        row("cv25519, armoured", "sq_key cv25519" + signing, "");
        row("RSA 3072, binary", "sq_key rsa3k" + signing + " --binary", "");
        row("a flipped byte", "sq_key cv25519" + signing + "; echo contenT >file",
            "file does not match the signature");
    }
    void bySequoia() { detached(); }

    void ours_data()
    {
        for (const char *key : {"ed", "rsa", "nist", "parts", "safe"})
            row(key, key, QString(key) == "safe" ? "secret" : "");
    }
    void ours()
    {
        const auto [key, passPhrase] = cells<QString, QString>();
        QVERIFY(hasRun(QString("gpg --passphrase '%2' --export-secret-keys %1 >pair; trust %1; "
                               "fingerprint %1 >>name")
                           .arg(key, passPhrase)));
        QCOMPARE(text(DataHelper::importKeypairGPG("pair")), QString());
        QCOMPARE(text(DataHelper::signFileGPG("file", "sig", passPhrase)), QString());
        QCOMPARE(keyringProcesses(), QStringList());
        const auto [error, signature] = DataHelper::verifyFileGPG("file", "sig", "keys");
        QCOMPARE(text(error), QString());
        QCOMPARE(signature.fingerprint, QString(read("name").trimmed()));
        QVERIFY(qAbs(signature.time.secsTo(QDateTime::currentDateTimeUtc())) < 60);
        QVERIFY(hasRun("gpg --verify sig file"));
        if (!hasRun("sq_is_there; sq verify --signer-cert keys --detached sig file 2>>log"))
            QSKIP(noSequoia);
    }

    void notSigned_data()
    {
        const QString locked = "gpg --passphrase secret --export-secret-keys safe";
        row("wrong pass phrase", locked, "other", "wrong pass phrase");
        row("no pass phrase", locked, "", "wrong pass phrase");
        row("public key alone", "gpg --export ed", "", "no secret key to sign with");
        row("expired", "gpg --export-secret-keys gone", "", "key has expired");
        row("revoked", "gpg --export-secret-keys lost", "", "key is revoked");
        row("of another use", "gpg --export-secret-keys certifying", "", "key cannot sign");
    }
    void notSigned()
    {
        const auto [script, passPhrase, reason] = cells<QString, QString, QString>();
        QVERIFY(hasRun(script + " >pair"));
        QCOMPARE(text(DataHelper::importKeypairGPG("pair")), QString());
        QCOMPARE(text(DataHelper::signFileGPG("file", "out", passPhrase)),
                 failure("signFileGPG", reason));
        QCOMPARE(read("out"), QByteArray("old"));
    }

    void messages_data()
    {
        row("signed", "seal --sign -u ed; trust ed", "");
        row("two signers, one unknown", "seal --sign -u ed -u stranger; trust ed", "");
        row("by Sequoia",
            "sq_key cv25519; gpg --export box >box; "
            "sq encrypt --recipient-cert box --signer-key sq.key --output in file",
            "");
        row("not signed", "seal; trust ed", "message is not signed");
        row("a stranger", "seal --sign -u stranger; trust ed", "signature is not by a trusted key");
        row("by the key that it is to", "seal --sign -u box; trust ed",
            "signature is not by a trusted key");
        row("in text mode", "seal --sign -u ed --textmode; trust ed",
            "signature does not cover every byte");
        row("SHA-1", "seal --sign -u ed --digest-algo SHA1; trust ed",
            "signature uses a weak digest");
        row("signed, not encrypted", "gpg -u ed -o in --sign file; trust ed",
            "input is no encrypted message");
        row("cut off", "seal --sign -u ed; truncate -s -9 in; trust ed",
            "message is damaged or was tampered with");
        row("no keyring", "seal --sign -u ed", "keyring cannot be read");
    }
    void messages()
    {
        const auto [script, reason] = cells<QString, QString>();
        if (!hasRun(script + "\ngpg --export-secret-keys box >pair"))
            QSKIP(noSequoia);
        QCOMPARE(text(DataHelper::importKeypairGPG("pair")), QString());
        const auto [error, signature] = DataHelper::decryptFileGPG("in", "out", "", "keys");
        QCOMPARE(text(error), expected("decryptFileGPG", reason));
        QCOMPARE(signature.fingerprint.size(), reason.isEmpty() ? 40 : 0);
        QCOMPARE(read("out"), QByteArray(reason.isEmpty() ? "content\n" : "old"));
    }

    void programsThatFail_data()
    {
        row("hanging", "sleep 1000; true", "gpgv did not end in time");
        row("killed", "kill -9 $$", "gpgv was killed");
        row("succeeding, silent", "true", "gpgv failed");
        row("failing at the end", "/usr/bin/gpgv \"$@\"; exit 2", "gpgv failed");
        row("missing", "", "gpgv cannot be started");
    }
    void programsThatFail()
    {
        const auto [script, reason] = cells<QString, QString>();
        const QByteArray path = qgetenv("PATH");
        const auto restore = qScopeGuard([&path] { qputenv("PATH", path); });
        QVERIFY(hasRun("sign ed; trust ed"));
        fakeProgram("gpgv", script.toUtf8());
        waiting.skipsPrograms = script.startsWith("sleep");
        if (script.isEmpty())
            qputenv("PATH", "/nowhere");
        QCOMPARE(verify(), failure("verifyFileGPG", reason));
    }
};

QTEST_GUILESS_MAIN(TestSignatures)
#include "tst_signatures.moc"
