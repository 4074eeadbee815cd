// SPDX-License-Identifier: MIT
#include "containerfile.h"
#include "fs/turn.h"
#include "streams.h"
#include "trustedkeys.h"

#include <aux/fshelper.h>

#include <algorithm>

#include <unistd.h>

namespace auxctl
{

namespace
{

/// Changes the trusted keys, unless somebody else does so.
template <typename Change>
void change(const Change &change)
{
    if (geteuid() != 0)
        fail("only root chooses whom this terminal trusts");
    const aux::Turn turn(aux::FsHelper::dirLocationToFullPath(aux::DirLocation::Data));
    if (!turn.cause().isNull())
        fail(QStringLiteral("cannot lock ") + turn.cause());
    QVector<TrustedKey> keys = trustedKeys();
    change(keys);
    setTrustedKeys(keys);
}

bool isRevoked(const TrustedKey &key)
{
    return key.whyUseless() == aux::gpg::keyRevoked;
}

/// An edition from before its revocation would make a key good again.
void checkNotRevoked(const QVector<TrustedKey> &keys, const TrustedKey &added)
{
    for (const TrustedKey &key : keys) {
        if (key.fingerprint() == added.fingerprint() && isRevoked(key) && !isRevoked(added))
            fail(key.fingerprint() + " is revoked, and an older edition of it is not taken");
    }
}

/// Takes the key of this fingerprint away; false where there is none.
bool take(QVector<TrustedKey> &keys, const QString &fingerprint)
{
    const int before = keys.size();
    keys.erase(
        std::remove_if(keys.begin(), keys.end(),
                       [&](const TrustedKey &key) { return key.fingerprint() == fingerprint; }),
        keys.end());
    return keys.size() < before;
}

Result add(const Call &call)
{
    Input input(call.argument(0));
    if (isContainer(input.path())) // whoever packs one would choose whom to trust
        fail(QStringLiteral("%1 is a container, from which no trusted key is taken")
                 .arg(input.name()));
    const QVector<TrustedKey> added = keysOf(input.path());
    change([&added](QVector<TrustedKey> &keys) {
        for (const TrustedKey &key : added) {
            checkNotRevoked(keys, key);
            take(keys, key.fingerprint()); // an older edition of it
            keys += key;
        }
    });
    Result result = table(descriptionsOf(added));
    for (const TrustedKey &key : added) {
        if (!key.whyUseless().isNone())
            result.warnings += key.fingerprint() + ": " + key.whyUseless().text();
    }
    return result;
}

Result list(const Call &)
{
    Result result = table(descriptionsOf(trustedKeys()));
    if (!requiresSignatures())
        result.warnings += "no key is trusted: configurations are taken without a signature";
    return result;
}

constexpr Switch lastOption{"last",
                            "Also the last one; configurations are then taken without a signature"};

Result remove(const Call &call)
{
    const QString fingerprint = call.argument(0).toUpper().remove(' ');
    change([&](QVector<TrustedKey> &keys) {
        if (keys.isEmpty())
            fail("no key is trusted");
        if (!take(keys, fingerprint))
            misuseUnknown("trusted key", fingerprint, trustedFingerprints());
        if (keys.isEmpty() && !call.has(lastOption))
            fail("it is the only trusted key, --last removes it");
    });
    return plainText("removed");
}

const Registration addRow{{"pgp trust add",
                           "KEYFILE",
                           "trustedKeys",
                           AUXCTL_KEYS_SHAPE,
                           "Trust public keys: configurations then need a signature by one",
                           {},
                           add}};
const Registration listRow{
    {"pgp trust list", "", "trustedKeys", AUXCTL_KEYS_SHAPE, "Show the trusted keys", {}, list}};
const Registration removeRow{{"pgp trust remove",
                              "FINGERPRINT",
                              "pgp",
                              "text",
                              "Trust a key no longer",
                              {&lastOption},
                              remove}};

} // namespace

} // namespace auxctl
