// SPDX-License-Identifier: MIT
#include "openpgp/gpglisting.h"

#include <algorithm>
#include <functional>

namespace aux::gpg
{

namespace
{

const QByteArray mark = "[GNUPG:] ";

// Codes of libgpg-error, in the lower bits; the source of the error is above.
constexpr unsigned int codeMask = 0xFFFF;
constexpr unsigned int badPassPhrase = 11;
constexpr unsigned int noPassPhrase = 177;

// Counts of the line IMPORT_RES.
constexpr int secretRead = 10;
constexpr int secretKept = 11;

// Fields of a line --with-colons.
constexpr int typeField = 0;
constexpr int validityField = 1;
constexpr int createdField = 5;
constexpr int fingerprintField = 9;
constexpr int capabilitiesField = 11;

const Reason tooNew = QStringLiteral("key was made after what the clock says now");

Key::Validity validityFrom(const QByteArray &letter)
{
    if (letter == "r")
        return Key::Validity::Revoked;
    if (letter == "e")
        return Key::Validity::Expired;
    return letter == "i" ? Key::Validity::Invalid : Key::Validity::Fine;
}

Key keyFrom(const QByteArrayList &fields)
{
    Key key;
    key.validity = validityFrom(fields.value(validityField));
    key.created = fields.value(createdField).toLongLong();
    key.capabilities = fields.value(capabilitiesField);
    return key;
}

} // namespace

Status::Status(const QByteArray &output)
{
    for (const QByteArray &line : output.split('\n')) {
        if (line.startsWith(mark))
            m_lines += line.mid(mark.size()).split(' ');
    }
}

bool Status::has(const char *keyword) const
{
    return std::any_of(m_lines.begin(), m_lines.end(),
                       [keyword](const QByteArrayList &line) { return line.first() == keyword; });
}

Reason Status::whyNotDecrypted(bool hasSucceeded) const
{
    // Without the key's own line it was a message to a pass phrase, which anybody can make.
    const bool hasKey = has("DECRYPTION_KEY");
    const bool isWhole = has("DECRYPTION_OKAY");
    if (hasSucceeded && isWhole && hasKey)
        return {};
    if (isPassPhraseWrong())
        return QStringLiteral("wrong pass phrase");
    if (!hasKey && (isWhole || has("NO_SECKEY")))
        return QStringLiteral("no secret key for this message");
    if (isWhole && (has("ERRSIG") || has("BADSIG")))
        return QStringLiteral("signature of the message cannot be verified");
    // gpg 2.4 says no more than to whom it is where the rest is cut off.
    if (hasKey || has("BEGIN_DECRYPTION") || has("ENC_TO"))
        return QStringLiteral("message is damaged or was tampered with");
    return QStringLiteral("input is no encrypted message");
}

/// Whether the line "ERROR pkdecrypt_failed" has one of these codes of libgpg-error.
bool Status::isPassPhraseWrong() const
{
    return std::any_of(m_lines.begin(), m_lines.end(), [](const QByteArrayList &line) {
        if (line.mid(0, 2) != QByteArrayList{"ERROR", "pkdecrypt_failed"})
            return false;
        const unsigned int code = line.value(2).toUInt() & codeMask;
        return code == badPassPhrase || code == noPassPhrase;
    });
}

bool Status::isSecretKeyLost() const
{
    return std::any_of(m_lines.begin(), m_lines.end(), [](const QByteArrayList &line) {
        return line.first() == "IMPORT_RES" && line.value(secretRead).toInt() > 0 &&
               line.value(secretKept).toInt() == 0;
    });
}

Reason Key::whyInvalid(qint64 now) const
{
    if (created > now)
        return tooNew;
    return validity == Validity::Invalid ? QStringLiteral("key is not valid") : Reason();
}

Reason Key::whyUseless(qint64 now) const
{
    Reason invalid = whyInvalid(now);
    if (!invalid.isNone())
        return invalid;
    QVector<Key> parts = subkeys;
    parts += *this;
    const auto hasPart = [&parts](const std::function<bool(const Key &)> &isSuch) {
        return std::any_of(parts.begin(), parts.end(), isSuch);
    };
    if (hasPart([now](const Key &part) {
            return part.capabilities.contains('e') && part.validity == Validity::Fine &&
                   part.created <= now;
        }))
        return {};
    // What a part could do is not told where it cannot any more.
    if (hasPart([](const Key &part) { return part.validity == Validity::Revoked; }))
        return QStringLiteral("key is revoked");
    if (hasPart([](const Key &part) { return part.validity == Validity::Expired; }))
        return QStringLiteral("key has expired");
    return hasPart([now](const Key &part) { return part.created > now; })
               ? tooNew
               : QStringLiteral("key cannot encrypt");
}

QVector<Key> parseKeys(const QByteArray &listing)
{
    QVector<Key> keys;
    Key *last = nullptr; // what the next fingerprint belongs to
    for (const QByteArray &line : listing.split('\n')) {
        const QByteArrayList fields = line.split(':');
        const QByteArray &type = fields[typeField];
        if (type == "pub") {
            keys += keyFrom(fields);
            last = &keys.last();
        } else if (type == "sub" && !keys.isEmpty()) {
            keys.last().subkeys += keyFrom(fields);
            last = &keys.last().subkeys.last();
        } else if (type == "fpr" && last != nullptr) {
            last->fingerprint = fields.value(fingerprintField);
        }
    }
    return keys;
}

} // namespace aux::gpg
