// SPDX-License-Identifier: MIT
#include "openpgp/signatures.h"

#include <algorithm>
#include <array>

namespace aux::gpg
{

namespace
{

// Words of the line VALIDSIG.
constexpr int validTime = 3;
constexpr int validDigest = 8;
constexpr int validClass = 9;
constexpr int validPrimaryKey = 10;

// Words of the line ERRSIG, and codes of libgpg-error in the last of them.
constexpr int errorDigest = 3;
constexpr int errorTime = 5;
constexpr int errorCode = 6;
constexpr int badPublicKey = 6;
constexpr int noPublicKey = 9;
constexpr int timeConflict = 39;

/// The names and numbers (RFC 4880, 9.4) of digests that prove nothing any more.
constexpr std::array<std::pair<const char *, const char *>, 3> weakDigests{{
    {"MD5", "1"},
    {"SHA1", "2"},
    {"RIPEMD160", "3"},
}};

const QByteArray ofBytes = "00"; // the class of a binary document (5.2.1)

const Reason notTrusted = QStringLiteral("signature is not by a trusted key");

struct Refusal {
    const char *keyword;
    Reason reason;
};

/// gpgv exits with zero for some of them.
const std::array<Refusal, 4> refusals{{
    {"BADSIG", QStringLiteral("file does not match the signature")},
    {"EXPSIG", QStringLiteral("signature has expired")},
    {"EXPKEYSIG", keyExpired},
    {"REVKEYSIG", keyRevoked},
}};

/// Why a signature is not taken, whoever made it. None is older than its key, so that this finds
/// keys from the future too, which gpgv 2.4 does not know at all.
Reason whyDoubtful(const QByteArray &digest, const QByteArray &time, qint64 now)
{
    if (isWeakDigest(digest))
        return QStringLiteral("signature uses a weak digest");
    return time.toLongLong() > now
               ? QStringLiteral("signature was made after what the clock says now")
               : Reason();
}

Reason judgeError(const QByteArrayList &line, qint64 now)
{
    const int code = line.value(errorCode).toInt();
    Reason doubtful = whyDoubtful(line.value(errorDigest), line.value(errorTime), now);
    if (!doubtful.isNone())
        return doubtful;
    if (code == noPublicKey)
        return notTrusted;
    return code == badPublicKey || code == timeConflict ? keyInvalid : signatureDamaged;
}

Reason judgeValid(const QByteArrayList &line, qint64 now)
{
    Reason doubtful = whyDoubtful(line.value(validDigest), line.value(validTime), now);
    if (!doubtful.isNone())
        return doubtful;
    return line.value(validClass) == ofBytes
               ? Reason()
               : QStringLiteral("signature does not cover every byte");
}

/// Why a signature by a key that gpgv knows is not good.
Reason whyRefused(const Status &status)
{
    for (const auto &[keyword, reason] : refusals) {
        if (status.has(keyword))
            return reason;
    }
    return {};
}

/// Whether it is by a key that gpgv does not know.
bool isUnknown(const Status &status)
{
    return whyRefused(status).isNone() &&
           status.line("ERRSIG").value(errorCode).toInt() == noPublicKey;
}

/// Judges a single signature.
Reason judge(const Status &status, qint64 now)
{
    Reason refused = whyRefused(status);
    if (!refused.isNone())
        return refused;
    if (status.has("ERRSIG"))
        return judgeError(status.line("ERRSIG"), now);
    const QByteArrayList valid = status.line("VALIDSIG");
    return status.has("GOODSIG") && valid.size() > validPrimaryKey ? judgeValid(valid, now)
                                                                   : signatureDamaged;
}

DataHelper::Signature signatureFrom(const QByteArrayList &valid)
{
    return {QString::fromLatin1(valid.value(validPrimaryKey)),
            QDateTime::fromSecsSinceEpoch(valid.value(validTime).toLongLong()).toUTC()};
}

} // namespace

QStringList weakDigestOptions()
{
    QStringList options;
    for (const auto &[name, number] : weakDigests)
        options += {QStringLiteral("--weak-digest"), QLatin1String(name)};
    return options;
}

bool isWeakDigest(const QByteArray &number)
{
    return std::any_of(weakDigests.begin(), weakDigests.end(),
                       [&number](const auto &digest) { return number == digest.second; });
}

std::pair<Reason, DataHelper::Signature> judgeSignatures(const Status &status, bool hasSucceeded,
                                                         qint64 now)
{
    if (status.has("PLAINTEXT") && !status.has("NEWSIG"))
        return {QStringLiteral("message is not signed"), {}};
    QByteArrayList good;
    Reason unknown;
    for (const Status &signature : status.from("NEWSIG")) {
        const Reason reason = judge(signature, now);
        if (reason.isNone() && good.isEmpty())
            good = signature.line("VALIDSIG");
        else if (isUnknown(signature))
            unknown = reason;
        else if (!reason.isNone())
            return {reason, {}};
    }
    const bool hasUnknown = !unknown.isNone();
    if (status.has("NODATA") || status.from("PLAINTEXT").size() > 1)
        return {signatureDamaged, {}};
    if (status.has("ERROR") || status.has("FAILURE") || !(hasSucceeded || hasUnknown))
        return {notJudged, {}};
    if (!good.isEmpty())
        return {Reason(), signatureFrom(good)};
    return {hasUnknown ? unknown : notJudged, {}};
}

} // namespace aux::gpg
