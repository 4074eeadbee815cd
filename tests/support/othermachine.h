// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_OTHERMACHINE_H
#define AUX_TESTS_OTHERMACHINE_H

#include "files.h"

#include <QMap>
#include <QProcess>
#include <QStringList>

/// A machine with a plain gpg and keys of its own, which it makes.
namespace othermachine
{

inline const QString home = QStringLiteral("/data/other");

/// A key's name, the algorithms of the key and its subkey as gpg's parameter files have them, the
/// pass phrase, if any, and when it is made.
struct KeyPair {
    QString name;
    QByteArray algorithms;
    QString passPhrase = {};
    QString madeAt = {};
    QByteArray expires = "0";
};

inline const QByteArray rsa = "Key-Type: RSA\nKey-Length: 2048\nSubkey-Type: RSA\n"
                              "Subkey-Length: 2048\n";
inline const QByteArray ed25519 = "Key-Type: EDDSA\nKey-Curve: ed25519\nKey-Usage: sign\n";
inline const QByteArray cv25519 = "Subkey-Type: ECDH\nSubkey-Curve: cv25519\n"
                                  "Subkey-Usage: encrypt\n";

/// Runs gpg there, at a time of its own if need be; what it prints.
inline QByteArray gpg(const QStringList &arguments, const QByteArray &input = {},
                      const QString &time = {}, const QString &directory = home)
{
    QProcess process;
    QStringList options{"--homedir", directory, "--batch", "--quiet", "--yes"};
    options += {"--trust-model", "always", "--pinentry-mode", "loopback"};
    if (!time.isEmpty())
        options += {"--faked-system-time", time};
    process.start("/usr/bin/gpg", options + arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        qFatal("gpg %s: %s", qPrintable(arguments.join(' ')),
               process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}

inline void makeKey(const KeyPair &key)
{
    QDir().mkpath(home);
    QFile::setPermissions(home, QFileDevice::Permissions(0x7000)); // owner: read, write, enter
    write(home + "/gpg-agent.conf", "s2k-count 65536\n"); // a pass phrase is slow on purpose
    const QByteArray protection =
        key.passPhrase.isEmpty() ? "%no-protection\n" : "Passphrase: " + key.passPhrase.toUtf8();
    gpg({"--generate-key"},
        key.algorithms + "Name-Real: " + key.name.toUtf8() + "\nExpire-Date: " + key.expires +
            '\n' + protection + "\n%commit\n",
        key.madeAt);
}

/// The key pair as a file; made once.
inline QByteArray exported(const KeyPair &key, const QString &form = "--no-armor")
{
    static QMap<QString, QByteArray> files;
    QByteArray &file = files[key.name + form];
    if (file.isEmpty())
        file = gpg({"--passphrase", key.passPhrase, form, "--export-secret-keys", key.name});
    return file;
}

inline QByteArray encrypted(const QByteArray &content, const KeyPair &key)
{
    return gpg({"--recipient", key.name, "--encrypt"}, content, key.madeAt);
}

inline QByteArray decrypted(const QByteArray &message, const KeyPair &key)
{
    return gpg({"--passphrase", key.passPhrase, "--decrypt"}, message);
}

} // namespace othermachine

#endif
