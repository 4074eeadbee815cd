// SPDX-License-Identifier: MIT
#include "aux/datahelper.h"
#include "openpgp/gpg.h"
#include "openpgp/keyring.h"

#include <QDateTime>

namespace aux
{

namespace
{

const Reason notDone = QStringLiteral("gpg failed");

qint64 now()
{
    return QDateTime::currentSecsSinceEpoch();
}

/// The keys of the keyring; why they cannot be told.
std::pair<Reason, QVector<gpg::Key>> importedKeys()
{
    gpg::Run run;
    Reason reason = run.execute({QStringLiteral("--with-colons"), QStringLiteral("--list-keys")},
                                [] { return 0; });
    return {std::move(reason), gpg::parseKeys(run.program().readAllStandardOutput())};
}

/// Why this is not what an import is to bring.
Reason whyRefused(const QVector<gpg::Key> &keys)
{
    if (keys.isEmpty())
        return QStringLiteral("file holds no key");
    return keys.size() > 1 ? QStringLiteral("file holds more than one key")
                           : keys.first().whyInvalid(now());
}

Reason import(QFile &file)
{
    gpg::Run run;
    run.program().setInput(file.handle());
    // A key without a valid signature of its own is taken first, to see what is wrong with it.
    Reason reason =
        run.execute({QStringLiteral("--allow-non-selfsigned-uid"), QStringLiteral("--import")},
                    [&file] { return file.size(); });
    if (!reason.isNone())
        return reason;
    const auto [listingFailure, keys] = importedKeys();
    Reason refused = listingFailure.isNone() ? whyRefused(keys) : listingFailure;
    if (!refused.isNone() || run.isDone())
        return refused;
    return run.status().isSecretKeyLost() ? QStringLiteral("gpg-agent did not take the secret key")
                                          : QStringLiteral("file holds no whole key");
}

Reason whyNotEncrypted(const gpg::Run &run)
{
    return run.isDone() && run.status().has("END_ENCRYPTION") ? Reason() : notDone;
}

Reason whyNotDecrypted(const gpg::Run &run)
{
    const gpg::Status &status = run.status();
    // Without the key's own line it was a message to a pass phrase, which anybody can make.
    const bool hasKey = status.has("DECRYPTION_KEY");
    const bool isWhole = status.has("DECRYPTION_OKAY");
    if (run.isDone() && isWhole && hasKey)
        return {};
    if (status.isPassPhraseWrong())
        return QStringLiteral("wrong pass phrase");
    if (!hasKey && (isWhole || status.has("NO_SECKEY")))
        return QStringLiteral("no secret key for this message");
    if (isWhole && (status.has("ERRSIG") || status.has("BADSIG")))
        return QStringLiteral("signature of the message cannot be verified");
    if (hasKey || status.has("BEGIN_DECRYPTION"))
        return QStringLiteral("message is damaged or was tampered with");
    return QStringLiteral("input is no encrypted message");
}

/// Sends a file through gpg. The output gets its name only where all went well, the end of what
/// gpg had left running included.
Reason cryptFileGPG(const QString &inFile, const QString &outFile, gpg::Run &run,
                    const QStringList &command, Reason (*judge)(const gpg::Run &))
{
    FilePair files(inFile, outFile);
    Reason reason = files.open();
    if (!reason.isNone())
        return reason;
    files.connectTo(run.program());
    reason = run.execute(command, [&files] { return files.bytes(); });
    if (reason.isNone())
        reason = judge(run);
    if (!reason.isNone() && !files.hasRoom())
        reason = reason::cannotWrite;
    else if (!reason.isNone() && !keyring::hasRoom())
        reason = keyring::noRoom;
    const Reason stopFailure = keyring::stopAgents();
    if (reason.isNone())
        reason = stopFailure;
    return reason.isNone() ? files.commit() : reason;
}

Reason encrypt(const QString &inFile, const QString &outFile)
{
    const auto [listingFailure, keys] = importedKeys();
    if (!listingFailure.isNone())
        return listingFailure;
    const gpg::Key key = keys.value(0);
    Reason useless = keys.isEmpty() ? keyring::noKey : key.whyUseless(now());
    if (!useless.isNone())
        return useless;
    gpg::Run run;
    return cryptFileGPG(inFile, outFile, run,
                        {QStringLiteral("--recipient"), QString::fromLatin1(key.fingerprint),
                         QStringLiteral("--encrypt")},
                        whyNotEncrypted);
}

Reason decrypt(const QString &inFile, const QString &outFile, const QString &passPhrase)
{
    gpg::Run run;
    Reason reason = run.setPassPhrase(passPhrase);
    if (!reason.isNone())
        return reason;
    return cryptFileGPG(inFile, outFile, run, {QStringLiteral("--decrypt")}, whyNotDecrypted);
}

} // namespace

Error DataHelper::importKeypairGPG(const QString &keyFile)
{
    QFile file(keyFile);
    Reason reason = openForProgram(file) ? keyring::make() : reason::cannotRead;
    if (reason.isNone()) {
        reason = import(file);
        const Reason stopFailure = keyring::stopAgents();
        if (reason.isNone())
            reason = stopFailure;
        if (!reason.isNone() && !keyring::hasRoom())
            reason = keyring::noRoom;
        const Reason removalFailure = reason.isNone() ? Reason() : keyring::remove();
        if (!removalFailure.isNone())
            reason = removalFailure;
    }
    return outcome("importKeypairGPG", reason);
}

Error DataHelper::encryptFileGPG(const QString &inFile, const QString &outFile)
{
    Reason reason = keyring::requireKeyring();
    return outcome("encryptFileGPG", reason.isNone() ? encrypt(inFile, outFile) : reason);
}

Error DataHelper::decryptFileGPG(const QString &inFile, const QString &outFile,
                                 const QString &passPhrase)
{
    Reason reason = keyring::requireKeyring();
    return outcome("decryptFileGPG",
                   reason.isNone() ? decrypt(inFile, outFile, passPhrase) : reason);
}

Error DataHelper::removeKeypairGPG()
{
    return outcome("removeKeypairGPG", keyring::remove());
}

} // namespace aux
