// SPDX-License-Identifier: MIT
#include "openpgp/signatures.h"

#include "support/rows.h"

namespace
{

constexpr qint64 now = 1700000000;

/// A listing of one key; its parts are made of validity, seconds since the epoch and capabilities.
QByteArray listing(const QList<QByteArrayList> &parts)
{
    QByteArray lines = "tru::1:1700000000:0:3:1:5\n";
    for (const QByteArrayList &part : parts)
        lines += (lines.contains("pub:") ? "sub:" : "pub:") + part[0] +
                 ":255:22:0123456789ABCDEF:" + part[1] + "::::::" + part[2] +
                 "::::::23::0:\nfpr:::::::::F00D:\n";
    return lines + "uid:-::::1700000000::0123::name::::::::::0:\n";
}

/// Status lines, with semicolons between them.
aux::gpg::Status statusOf(QByteArray keywords)
{
    return aux::gpg::Status("[GNUPG:] " + keywords.replace(";", "\n[GNUPG:] ") + '\n');
}

} // namespace

/// What gpg tells, read from texts as its versions 2.2 and 2.4 write them.
class TestGpgListing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keys_data()
    {
        const QString tooNew = "key was made after what the clock says now";
        row("good", listing({{"-", "1600000000", "scESC"}, {"-", "1600000000", "e"}}), "", "");
        row("faulty", listing({{"i", "1600000000", "e"}}), "key is not valid", "key is not valid");
        row("from the future", listing({{"-", "1700000001", "e"}}), tooNew, tooNew);
        row("revoked subkey", listing({{"-", "1", "scSC"}, {"r", "1", ""}}), "", "key is revoked");
        row("subkey from the future", listing({{"-", "1", "scSC"}, {"-", "1700000001", "e"}}), "",
            tooNew);
        row("one of two subkeys", listing({{"-", "1", "sc"}, {"r", "1", "e"}, {"-", "1", "e"}}), "",
            "");
    }
    void keys()
    {
        const auto [listing, whyInvalid, whyUseless] = cells<QByteArray, QString, QString>();
        const QVector<aux::gpg::Key> keys = aux::gpg::parseKeys(listing);
        QCOMPARE(keys.size(), 1);
        QCOMPARE(keys[0].fingerprint, QByteArray("F00D"));
        QCOMPARE(keys[0].whyInvalid(now).text(), whyInvalid);
        QCOMPARE(keys[0].whyUseless(aux::gpg::Key::Use::Encrypting, now).text(), whyUseless);
    }

    void decrypting_data()
    {
        const QString damaged = "message is damaged or was tampered with";
        const QByteArray whole = "ENC_TO 0 1 0;DECRYPTION_KEY F F u;BEGIN_DECRYPTION;"
                                 "DECRYPTION_OKAY;GOODMDC;END_DECRYPTION";
        row("whole", whole, true, "");
        row("whole, but gpg failed", whole, false, damaged);
        row("to a pass phrase", QByteArray("NEED_PASSPHRASE_SYM 9;DECRYPTION_OKAY"), true,
            "no secret key for this message");
        row("no pass phrase", QByteArray("ENC_TO 0 1 0;ERROR pkdecrypt_failed 83886257"), false,
            "wrong pass phrase");
        row("cut off, 2.2", QByteArray("ENC_TO 0 1 0;BEGIN_DECRYPTION;DECRYPTION_FAILED"), false,
            damaged);
        row("cut off, 2.4", QByteArray("ENC_TO 0 1 0;FAILURE gpg-exit 33554433"), false, damaged);
    }
    void decrypting()
    {
        const auto [keywords, hasSucceeded, reason] = cells<QByteArray, bool, QString>();
        QCOMPARE(statusOf(keywords).whyNotDecrypted(hasSucceeded).text(), reason);
    }

    void judging_data()
    {
        const QByteArray good =
            "NEWSIG;GOODSIG 1 a;VALIDSIG F 2020-01-01 1577836800 0 4 0 22 8 00 P";
        const QByteArray unknown = "NEWSIG;ERRSIG 1 22 8 00 1577836800 9 -;NO_PUBKEY 1";
        const QString damaged = "signature is damaged";
        const QString notJudged = "gpgv failed";
        row("good", good, true, "");
        row("good, but gpgv failed", good, false, notJudged);
        row("good, after an unknown one", unknown + ';' + good, false, "");
        row("the same, and gpgv says why it ends",
            unknown + ';' + good + ";FAILURE gpg-exit 33554433", false, notJudged);
        row("keyring not read", "ERROR keydb_search 33554445;" + unknown, false, notJudged);
        row("good, half a line", good.chopped(2), true, damaged);
        row("good by a word inside", QByteArray("NEWSIG;NOTATION_DATA GOODSIG"), true, damaged);
        row("another message behind it", "PLAINTEXT 62 0;" + good + ";NODATA 3", false, damaged);
        row("and a signature", "PLAINTEXT 62 0;" + good + ";PLAINTEXT 62 0;" + good, true, damaged);
        row("a kind of key to come", QByteArray("NEWSIG;ERRSIG 1 99 8 00 1577836800 4 -"), false,
            damaged);
    }
    void judging()
    {
        const auto [keywords, hasSucceeded, reason] = cells<QByteArray, bool, QString>();
        const auto [refusal, signature] =
            aux::gpg::judgeSignatures(statusOf(keywords), hasSucceeded, now);
        QCOMPARE(refusal.text(), reason);
        QCOMPARE(signature.fingerprint, QString(reason.isEmpty() ? "P" : ""));
    }
};

QTEST_APPLESS_MAIN(TestGpgListing)
#include "tst_gpglisting.moc"
