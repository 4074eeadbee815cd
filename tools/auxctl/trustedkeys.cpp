// SPDX-License-Identifier: MIT
#include "trustedkeys.h"

#include "fs/fileidentity.h"
#include "fs/newfile.h"
#include "fs/storage.h"
#include "openpgp/gpg.h"
#include "openpgp/packets.h"
#include "openpgp/signatures.h"
#include "openpgp/verification.h"

#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>

namespace auxctl
{

namespace
{

/// What gpg says of a public key, with no other key, no home directory and no agent; its exit
/// status is not zero for one that is not valid.
aux::gpg::Key listingOf(const QByteArray &packets)
{
    aux::gpg::Run run(QStringLiteral("/nonexistent"));
    const aux::Reason reason =
        run.execute(QStringList{"--no-default-keyring", "--keyring", run.show(packets),
                                "--no-autostart", "--with-colons", "--list-keys"} +
                    aux::gpg::weakDigestOptions());
    const auto keys = aux::gpg::parseKeys(run.program().output());
    if (!reason.isNone())
        fail(reason.text());
    if (keys.size() != 1 || keys.first().fingerprint.isEmpty())
        fail("gpg cannot read the key");
    return keys.first();
}

/// The packets of each key: those from a primary key to the next.
QVector<QByteArray> split(const QString &path, const QByteArray &keys)
{
    QVector<QByteArray> parts;
    for (const aux::gpg::Packet &packet : aux::gpg::packetsOf(keys)) {
        if (packet.tag == aux::gpg::tag::secretKey || packet.tag == aux::gpg::tag::secretSubkey)
            fail(QStringLiteral("%1 holds a secret key, which must not leave its owner").arg(path));
        if (packet.tag == aux::gpg::tag::publicKey)
            parts += QByteArray();
        parts.last() += packet.content;
    }
    return parts;
}

} // namespace

const QString trustedKeysPath = QStringLiteral("/data/config/trusted.gpg");

bool requiresSignatures()
{
    // What cannot be looked at may be there.
    return aux::isOccupied(trustedKeysPath) || (errno != ENOENT && errno != ENOTDIR);
}

aux::Reason TrustedKey::whyUseless() const
{
    return listing.whyUseless(aux::gpg::Key::Use::Signing, QDateTime::currentSecsSinceEpoch());
}

Record TrustedKey::description() const
{
    const auto time = [](qint64 seconds) {
        return seconds == 0 ? QString() : timeText(QDateTime::fromSecsSinceEpoch(seconds));
    };
    const aux::Reason useless = whyUseless();
    return {{"fingerprint", fingerprint()},
            {"made", time(listing.created)},
            {"expires", listing.expires == 0 ? "never" : time(listing.expires)},
            {"state", useless.isNone() ? "good" : useless.text()},
            {"name", listing.name}};
}

QVector<Record> descriptionsOf(const QVector<TrustedKey> &keys)
{
    QVector<Record> records;
    for (const TrustedKey &key : keys)
        records += key.description();
    return records;
}

QVector<TrustedKey> keysOf(const QString &path)
{
    const auto [reason, packets] = aux::readKeyring(path);
    if (!reason.isNone())
        fail(reason.cause().isNull() ? path + ": " + reason.text()
                                     : "cannot read " + reason.cause());
    QVector<TrustedKey> keys;
    for (const QByteArray &part : split(path, packets))
        keys += {listingOf(part), part};
    return keys;
}

QVector<TrustedKey> trustedKeys()
{
    return requiresSignatures() ? keysOf(trustedKeysPath) : QVector<TrustedKey>();
}

QStringList trustedFingerprints()
{
    QStringList fingerprints;
    for (const TrustedKey &key : trustedKeys())
        fingerprints += key.fingerprint();
    return fingerprints;
}

void setTrustedKeys(const QVector<TrustedKey> &keys)
{
    constexpr mode_t everybodysToRead = 0644;
    if (keys.isEmpty()) {
        QFile file(trustedKeysPath);
        if (!file.remove() || !aux::syncDirectory(QFileInfo(trustedKeysPath).path()))
            failOn("remove", file);
        return;
    }
    QByteArray packets;
    for (const TrustedKey &key : keys)
        packets += key.packets;
    QDir().mkpath(QFileInfo(trustedKeysPath).path()); // nothing may have been set yet
    aux::NewFile file(trustedKeysPath);
    if (packets.size() > aux::largestKeyring)
        fail(QStringLiteral("%1 would be too large").arg(trustedKeysPath));
    const bool isWritten = file.open() && file.write(packets) &&
                           fchmod(file.handle(), everybodysToRead) == 0 && file.commit();
    if (!isWritten)
        fail(QStringLiteral("cannot write ") + file.cause());
}

} // namespace auxctl
