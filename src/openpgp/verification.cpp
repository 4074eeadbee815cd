// SPDX-License-Identifier: MIT
#include "openpgp/verification.h"
#include "openpgp/gpg.h"
#include "openpgp/packets.h"
#include "openpgp/revocations.h"
#include "openpgp/signatures.h"

#include <algorithm>
#include <cerrno>

namespace aux
{

namespace
{

const QString input = QStringLiteral("-"); // of gpgv

constexpr int largestSignature = 64 * 1024; // in bytes; of hundreds of signers

/// What a file holds without armour, or why that cannot be had.
std::pair<Reason, QByteArray> readPackets(const QString &path, const Reason &unreadable,
                                          int maximum, const Reason &tooLarge)
{
    RegularFile file(path);
    if (!file.openForReading())
        return {unreadable.because(file.cause()), {}};
    const auto content = file.readUpTo(maximum + 1);
    if (!content)
        return {unreadable.because(file.cause()), {}};
    if (content->size() > maximum)
        return {tooLarge, {}};
    return {Reason(), gpg::dearmoured(*content)};
}

/// The packets of a detached signature. Anything else is not shown to gpgv, which would look into
/// a signed or compressed message.
std::pair<Reason, QByteArray> readSignature(const QString &path)
{
    auto [reason, packets] =
        readPackets(path, QStringLiteral("signature cannot be read"), largestSignature,
                    QStringLiteral("signature is too large"));
    const auto parts = gpg::packetsOf(packets);
    const bool isSignature =
        !parts.isEmpty() && std::all_of(parts.begin(), parts.end(), [](const gpg::Packet &part) {
            return part.tag == gpg::tag::signature;
        });
    if (reason.isNone() && !isSignature)
        return {gpg::signatureDamaged, {}};
    return {reason, packets};
}

/// Runs gpgv with the keys of a file, over its input, and judges what it says.
SignatureVerdict ask(gpg::Run &run, const QString &keyringFile, const QStringList &words,
                     const HelperProgram::Timeout &timeout)
{
    const auto [noKeys, keys] = readKeyring(keyringFile);
    if (!noKeys.isNone())
        return {noKeys};
    const QString keyring = run.show(keys);
    if (keyring.isNull())
        return {gpg::notJudged.because(keyringFile, errno)};
    Reason reason = run.execute(
        QStringList{QStringLiteral("--keyring"), keyring} + words + QStringList(input), timeout);
    if (!reason.isNone())
        return {reason};
    const auto [refusal, signature] =
        gpg::judgeSignatures(run.status(), run.hasSucceeded(), QDateTime::currentSecsSinceEpoch());
    return {refusal, !(refusal == gpg::notJudged), signature};
}

} // namespace

std::pair<Error, DataHelper::Signature> SignatureVerdict::result(const char *operation) const
{
    return {outcome(operation, reason), reason.isNone() ? signature : DataHelper::Signature()};
}

std::pair<Reason, QByteArray> readKeyring(const QString &keyringFile)
{
    const auto [reason, packets] =
        readPackets(keyringFile, QStringLiteral("keyring cannot be read"), largestKeyring,
                    QStringLiteral("keyring is too large"));
    const auto parts = gpg::packetsOf(packets);
    if (reason.isNone() && parts.value(0).tag != gpg::tag::publicKey)
        return {QStringLiteral("keyring holds no public key"), {}};
    if (reason.isNone() && std::any_of(parts.begin(), parts.end(), gpg::isWeakRevocation))
        return {QStringLiteral("keyring holds a revocation by a weak digest"), {}};
    return {reason, gpg::withRevocationsInPlace(parts)};
}

SignatureVerdict verifyDetached(const QString &file, const QString &signatureFile,
                                const QString &keyringFile)
{
    RegularFile content(file);
    Reason unreadable = openForProgram(content);
    if (!unreadable.isNone())
        return {unreadable};
    const auto [reason, packets] = readSignature(signatureFile);
    if (!reason.isNone())
        return {reason, reason == gpg::signatureDamaged};
    gpg::Run run = gpg::Run::gpgv();
    const QString signature = run.show(packets);
    if (signature.isNull())
        return {gpg::notJudged.because(signatureFile, errno)};
    run.program().setInput(content.handle());
    const SignatureVerdict verdict = ask(run, keyringFile, {signature}, [&content] {
        return HelperProgram::timeoutFor(content.size());
    });
    // Of signatures that are made in different ways gpgv looks at the first one only.
    const bool hasSeenAll = run.status().from("NEWSIG").size() == gpg::packetsOf(packets).size();
    return verdict.reason.isNone() && !hasSeenAll ? SignatureVerdict{gpg::signatureDamaged, true}
                                                  : verdict;
}

SignatureVerdict verifyMessage(FilePair &files, const QString &keyringFile)
{
    gpg::Run run = gpg::Run::gpgv();
    Reason reason = files.open();
    if (reason.isNone())
        reason = files.keepSpaceFree(run.program());
    if (!reason.isNone())
        return {reason};
    files.connectTo(run.program());
    SignatureVerdict verdict =
        ask(run, keyringFile, {QStringLiteral("--output"), QStringLiteral("-")}, files.timeout());
    reason = verdict.reason.isNone() ? Reason() : files.whyNoRoom(run.program());
    return reason.isNone() ? verdict : SignatureVerdict{reason};
}

std::pair<Error, DataHelper::Signature> DataHelper::verifyFileGPG(const QString &file,
                                                                  const QString &signatureFile,
                                                                  const QString &keyringFile)
{
    return verifyDetached(file, signatureFile, keyringFile).result("verifyFileGPG");
}

} // namespace aux
