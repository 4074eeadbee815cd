// SPDX-License-Identifier: MIT
#include "openpgp/openpgp.h"
#include "aux/datahelper.h"
#include "openpgp/gpg.h"
#include "openpgp/keyring.h"
#include "openpgp/verification.h"

#include <QDateTime>

namespace aux
{

namespace
{

qint64 now()
{
    return QDateTime::currentSecsSinceEpoch();
}

/// The keys of the keyring; why they cannot be told.
std::pair<Reason, QVector<gpg::Key>> importedKeys()
{
    gpg::Run run;
    Reason reason = run.execute({QStringLiteral("--with-colons"), QStringLiteral("--list-keys")});
    return {std::move(reason), gpg::parseKeys(run.program().output())};
}

/// Why this is not what an import is to bring.
Reason whyRefused(const QVector<gpg::Key> &keys)
{
    if (keys.isEmpty())
        return QStringLiteral("file holds no key");
    return keys.size() > 1 ? QStringLiteral("file holds more than one key")
                           : keys.first().whyInvalid(now());
}

Reason import(const RegularFile &file)
{
    gpg::Run run;
    run.program().setInput(file.handle());
    // A key without a valid signature of its own is taken first, to see what is wrong with it.
    Reason reason =
        run.execute({QStringLiteral("--allow-non-selfsigned-uid"), QStringLiteral("--import")},
                    [&file] { return HelperProgram::timeoutFor(file.size()); });
    if (!reason.isNone())
        return reason;
    const auto [listingFailure, keys] = importedKeys();
    Reason refused = listingFailure.isNone() ? whyRefused(keys) : listingFailure;
    if (!refused.isNone() || run.hasSucceeded())
        return refused;
    return run.status().isSecretKeyLost() ? QStringLiteral("gpg-agent did not take the secret key")
                                          : QStringLiteral("file holds no whole key");
}

/// Imports into an empty keyring, and removes it where that fails.
Reason fill(Keyring &keyring, const RegularFile &file)
{
    Reason reason = import(file);
    const Reason stopFailure = Keyring::stopAgents();
    if (reason.isNone())
        reason = stopFailure;
    if (!reason.isNone() && !Keyring::hasRoom())
        reason = Keyring::noRoom;
    const Reason removalFailure = reason.isNone() ? Reason() : keyring.remove();
    return removalFailure.isNone() ? reason : removalFailure;
}

Reason whyNotEncrypted(const gpg::Run &run)
{
    return run.hasSucceeded() && run.status().has("END_ENCRYPTION") ? Reason() : gpg::notDone;
}

Reason whyNotSigned(const gpg::Run &run)
{
    return run.status().whyNotSigned(run.hasSucceeded());
}

Reason whyNotDecrypted(const gpg::Run &run)
{
    return run.status().whyNotDecrypted(run.hasSucceeded());
}

/// Why it failed: where there was no room, what gpg says is not to be trusted.
Reason whyFailed(FilePair &files, const HelperProgram &gpg, const Reason &reason)
{
    Reason noRoom = files.whyNoRoom(gpg);
    if (!noRoom.isNone())
        return noRoom;
    return Keyring::hasRoom() ? reason : Keyring::noRoom;
}

/// Sends a file through gpg, and ends what gpg has left running.
Reason cryptFileGPG(FilePair &files, gpg::Run &run, const QStringList &command,
                    Reason (*judge)(const gpg::Run &))
{
    files.connectTo(run.program());
    Reason reason = run.execute(command, files.timeout());
    if (reason.isNone())
        reason = judge(run);
    if (!reason.isNone())
        reason = whyFailed(files, run.program(), reason);
    const Reason stopFailure = Keyring::stopAgents();
    return reason.isNone() ? stopFailure : reason;
}

/// The imported key, or why it cannot serve for this.
std::pair<Reason, QString> keyFor(gpg::Key::Use use)
{
    const auto [listingFailure, keys] = importedKeys();
    if (!listingFailure.isNone())
        return {listingFailure, {}};
    const gpg::Key key = keys.value(0);
    return {keys.isEmpty() ? Keyring::noKey : key.whyUseless(use, now()),
            QString::fromLatin1(key.fingerprint)};
}

Reason encrypt(FilePair &files)
{
    const auto [useless, key] = keyFor(gpg::Key::Use::Encrypting);
    if (!useless.isNone())
        return useless;
    gpg::Run run;
    return cryptFileGPG(files, run,
                        {QStringLiteral("--recipient"), key, QStringLiteral("--encrypt")},
                        whyNotEncrypted);
}

Reason sign(FilePair &files, const QString &passPhrase)
{
    const auto [useless, key] = keyFor(gpg::Key::Use::Signing);
    if (!useless.isNone())
        return useless;
    gpg::Run run;
    Reason reason = run.setPassPhrase(passPhrase);
    if (!reason.isNone())
        return reason;
    return cryptFileGPG(files, run,
                        {QStringLiteral("--local-user"), key, QStringLiteral("--detach-sign")},
                        whyNotSigned);
}

Reason decrypt(FilePair &files, const QString &passPhrase, const QStringList &options = {})
{
    gpg::Run run;
    Reason reason = run.setPassPhrase(passPhrase);
    if (reason.isNone())
        reason = files.keepSpaceFree(run.program());
    if (!reason.isNone())
        return reason;
    return cryptFileGPG(files, run, options + QStringList(QStringLiteral("--decrypt")),
                        whyNotDecrypted);
}

/// Takes the turn, opens both files and does it.
template <typename Operation>
Reason withKey(FilePair &files, const Operation &operation)
{
    Keyring keyring;
    Reason reason = keyring.requireKeyring();
    if (reason.isNone())
        reason = files.open();
    return reason.isNone() ? operation(files) : reason;
}

/// The same; the output gets its name only where all went well.
template <typename Operation>
Error onFiles(const char *name, const QString &inFile, NewFile &output, const Operation &operation)
{
    FilePair files(inFile, output);
    const Reason reason = withKey(files, operation);
    return outcome(name, reason.isNone() ? files.commit() : reason);
}

} // namespace

Error encryptFile(const QString &inFile, NewFile &output)
{
    return onFiles("encryptFileGPG", inFile, output, encrypt);
}

Error decryptFile(const QString &inFile, NewFile &output, const QString &passPhrase)
{
    return onFiles("decryptFileGPG", inFile, output,
                   [&passPhrase](FilePair &files) { return decrypt(files, passPhrase); });
}

std::pair<Error, DataHelper::Signature> decryptFile(const QString &inFile, NewFile &output,
                                                    const QString &passPhrase,
                                                    const QString &keyringFile)
{
    NewFile signedMessage = NewFile::beside(output);
    FilePair outer(inFile, signedMessage);
    Reason reason = withKey(outer, [&passPhrase](FilePair &files) {
        return decrypt(files, passPhrase, {QStringLiteral("--unwrap")});
    });
    FilePair inner(signedMessage.pathWithoutName(), output);
    SignatureVerdict verdict{reason};
    if (reason.isNone())
        verdict = verifyMessage(inner, keyringFile);
    if (verdict.reason.isNone())
        verdict.reason = inner.commit();
    return verdict.result("decryptFileGPG");
}

Error signFile(const QString &file, NewFile &signature, const QString &passPhrase)
{
    return onFiles("signFileGPG", file, signature,
                   [&passPhrase](FilePair &files) { return sign(files, passPhrase); });
}

Error DataHelper::importKeypairGPG(const QString &keyFile)
{
    RegularFile file(keyFile);
    Keyring keyring;
    Reason reason = openForProgram(file);
    if (reason.isNone())
        reason = keyring.make();
    if (reason.isNone())
        reason = fill(keyring, file);
    return outcome("importKeypairGPG", reason);
}

Error DataHelper::encryptFileGPG(const QString &inFile, const QString &outFile)
{
    NewFile output(outFile);
    return encryptFile(inFile, output);
}

Error DataHelper::decryptFileGPG(const QString &inFile, const QString &outFile,
                                 const QString &passPhrase)
{
    NewFile output(outFile);
    return decryptFile(inFile, output, passPhrase);
}

std::pair<Error, DataHelper::Signature> DataHelper::decryptFileGPG(const QString &inFile,
                                                                   const QString &outFile,
                                                                   const QString &passPhrase,
                                                                   const QString &keyringFile)
{
    NewFile output(outFile);
    return decryptFile(inFile, output, passPhrase, keyringFile);
}

Error DataHelper::signFileGPG(const QString &file, const QString &signatureFile,
                              const QString &passPhrase)
{
    NewFile signature(signatureFile);
    return signFile(file, signature, passPhrase);
}

Error DataHelper::removeKeypairGPG()
{
    Keyring keyring;
    Reason reason = keyring.requireKeyring();
    if (reason.isNone())
        reason = keyring.remove();
    return outcome("removeKeypairGPG", reason == Keyring::noKey ? Reason() : reason);
}

} // namespace aux
