// SPDX-License-Identifier: MIT
#include "signatures.h"

#include "fs/fileidentity.h"
#include "openpgp/verification.h"
#include "trustedkeys.h"

namespace auxctl
{

constexpr ValueOption<QString> keyringOption{
    "keyring", "FILE", "Verify the signature with the public keys of this file", anyText};

QString signaturePath(const Input &input)
{
    if (input.isStream())
        misuse("standard input has no signature beside it");
    return input.name() + signatureEnding;
}

Record describe(const aux::DataHelper::Signature &signature)
{
    return {{"signer", signature.fingerprint}, {"signed", timeText(signature.time)}};
}

Finding verifySignature(const QString &name, const QString &path, const QString &signature,
                        const QString &keyring)
{
    constexpr const char *operation = "verifyFileGPG";
    aux::SignatureVerdict verdict;
    aux::Error reason;
    if (aux::isOccupied(path) && !aux::isOccupied(signature)) {
        const aux::SignatureVerdict noKeys{aux::readKeyring(keyring).first};
        checkOn(name, "not verified", noKeys.result(operation).first);
        reason = ownError(ExitStatus::No, QStringLiteral("there is no signature ") + signature);
    } else {
        verdict = aux::verifyDetached(path, signature, keyring);
        reason = about(name, "not verified", verdict.result(operation).first);
        if (!verdict.isAnswer)
            check(reason);
    }
    const bool isNo = reason.hasError();
    return {Record{{"trusted", !isNo}} + describe(verdict.signature), isNo, reason};
}

void keepVerified(Input &input, aux::NewFile &copy)
{
    constexpr int largest = 2 << 20; // bytes, of a candidate or a container with one
    const QString signature = signaturePath(input);
    aux::RegularFile file(input.path());
    const auto content = file.openForReading() ? file.readUpTo(largest + 1) : std::nullopt;
    if (!content)
        fail(QStringLiteral("cannot read ") + file.cause());
    if (content->size() > largest)
        fail(QStringLiteral("%1 holds more than %2 bytes").arg(input.name()).arg(largest));
    keep(*content, input.name(), copy);
    check(verifySignature(input.name(), copy.pathWithoutName(), signature, trustedKeysPath).reason);
}

} // namespace auxctl
