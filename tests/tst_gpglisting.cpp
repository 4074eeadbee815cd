// SPDX-License-Identifier: MIT
#include "openpgp/gpglisting.h"

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

} // namespace

/// What gpg tells, read from texts as its versions 2.2 and 2.4 write them.
class TestGpgListing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keys_data()
    {
        columns<QByteArray, QString, QString>("listing", "whyInvalid", "whyUseless");
        const QString none;
        const QString invalid = "key is not valid";
        const QString revoked = "key is revoked";
        const QString expired = "key has expired";
        const QString tooNew = "key was made after what the clock says now";
        row("good", listing({{"-", "1600000000", "scESC"}, {"-", "1600000000", "e"}}), none, none);
        row("faulty", listing({{"i", "1600000000", "e"}}), invalid, invalid);
        row("from the future", listing({{"-", "1700000001", "e"}}), tooNew, tooNew);
        row("signs only", listing({{"-", "1", "scSC"}}), none, QString("key cannot encrypt"));
        row("revoked", listing({{"r", "1", "scSC"}, {"r", "1", "e"}}), none, revoked);
        row("revoked subkey", listing({{"-", "1", "scSC"}, {"r", "1", ""}}), none, revoked);
        row("expired", listing({{"e", "1", "scSC"}, {"e", "1", "e"}}), none, expired);
        row("subkey from the future", listing({{"-", "1", "scSC"}, {"-", "1700000001", "e"}}), none,
            tooNew);
        row("one of two subkeys", listing({{"-", "1", "sc"}, {"r", "1", "e"}, {"-", "1", "e"}}),
            none, none);
    }
    void keys()
    {
        QFETCH(QByteArray, listing);
        const QVector<aux::gpg::Key> keys = aux::gpg::parseKeys(listing);
        QCOMPARE(keys.size(), 1);
        QCOMPARE(keys[0].fingerprint, QByteArray("F00D"));
        QTEST(keys[0].whyInvalid(now).text(), "whyInvalid");
        QTEST(keys[0].whyUseless(now).text(), "whyUseless");
    }

    void decrypting_data()
    {
        columns<QByteArray, bool, QString>("keywords", "hasSucceeded", "reason");
        const QString damaged = "message is damaged or was tampered with";
        const QString noSecret = "no secret key for this message";
        const QByteArray whole = "ENC_TO 0 1 0;DECRYPTION_KEY F F u;BEGIN_DECRYPTION;"
                                 "DECRYPTION_OKAY;GOODMDC;END_DECRYPTION";
        row("whole", whole, true, QString());
        row("whole, but gpg failed", whole, false, damaged);
        row("to a pass phrase",
            QByteArray("NEED_PASSPHRASE_SYM 9;BEGIN_DECRYPTION;DECRYPTION_OKAY"), true, noSecret);
        row("to another", QByteArray("ENC_TO 0 1 0;NO_SECKEY 0;BEGIN_DECRYPTION;DECRYPTION_FAILED"),
            false, noSecret);
        row("signed by a stranger", whole + ";ERRSIG 0 1 8 00 0 9", false,
            QString("signature of the message cannot be verified"));
        row("bad pass phrase", QByteArray("ENC_TO 0 1 0;ERROR pkdecrypt_failed 67108875"), false,
            QString("wrong pass phrase"));
        row("no pass phrase", QByteArray("ENC_TO 0 1 0;ERROR pkdecrypt_failed 83886257"), false,
            QString("wrong pass phrase"));
        row("altered", QByteArray("ENC_TO 0 1 0;DECRYPTION_KEY F F u;BEGIN_DECRYPTION;BADMDC"),
            false, damaged);
        row("cut off, 2.2", QByteArray("ENC_TO 0 1 0;BEGIN_DECRYPTION;DECRYPTION_FAILED"), false,
            damaged);
        row("cut off, 2.4", QByteArray("ENC_TO 0 1 0;FAILURE gpg-exit 33554433"), false, damaged);
        row("anything else", QByteArray("NODATA 3;FAILURE gpg-exit 33554433"), false,
            QString("input is no encrypted message"));
    }
    void decrypting()
    {
        QFETCH(QByteArray, keywords);
        QFETCH(bool, hasSucceeded);
        const aux::gpg::Status status("[GNUPG:] " + keywords.replace(";", "\n[GNUPG:] ") + '\n');
        QTEST(status.whyNotDecrypted(hasSucceeded).text(), "reason");
    }
};

QTEST_APPLESS_MAIN(TestGpgListing)
#include "tst_gpglisting.moc"
