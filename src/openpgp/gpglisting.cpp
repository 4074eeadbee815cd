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
constexpr int expiresField = 6;
constexpr int nameField = 9;
constexpr int fingerprintField = nameField;
constexpr int capabilitiesField = 11;

const Reason wrongPassPhrase = QStringLiteral("wrong pass phrase");
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
    key.expires = fields.value(expiresField).toLongLong();
    key.capabilities = fields.value(capabilitiesField);
    return key;
}

/// A text in which a colon is written as "\\x3a", and what is no text likewise.
QString unescaped(const QByteArray &field)
{
    QByteArray text;
    for (int index = 0; index < field.size(); ++index) {
        if (field.mid(index, 2) != "\\x") {
            text += field[index];
            continue;
        }
        text += QByteArray::fromHex(field.mid(index + 2, 2));
        index += 3;
    }
    return QString::fromUtf8(text);
}

} // namespace

Status::Status(const QByteArray &output)
{
    for (const QByteArray &line : output.split('\n')) {
        if (line.startsWith(mark))
            m_lines += line.mid(mark.size()).split(' ');
    }
}

QByteArrayList Status::line(const char *keyword) const
{
    for (const QByteArrayList &line : m_lines) {
        if (line.first() == keyword)
            return line;
    }
    return {};
}

QVector<Status> Status::from(const char *keyword) const
{
    QVector<Status> parts;
    for (const QByteArrayList &line : m_lines) {
        if (line.first() == keyword)
            parts += Status();
        if (!parts.isEmpty())
            parts.last().m_lines += line;
    }
    return parts;
}

Reason Status::whyNotDecrypted(bool hasSucceeded) const
{
    // Without the key's own line it was a message to a pass phrase, which anybody can make.
    const bool hasKey = has("DECRYPTION_KEY");
    const bool isWhole = has("DECRYPTION_OKAY");
    if (hasSucceeded && isWhole && hasKey)
        return {};
    if (isPassPhraseWrong())
        return wrongPassPhrase;
    if (!hasKey && (isWhole || has("NO_SECKEY")))
        return QStringLiteral("no secret key for this message");
    if (isWhole && (has("ERRSIG") || has("BADSIG")))
        return QStringLiteral("signature of the message cannot be verified");
    // gpg 2.4 says no more than to whom it is where the rest is cut off.
    if (hasKey || has("BEGIN_DECRYPTION") || has("ENC_TO"))
        return QStringLiteral("message is damaged or was tampered with");
    return QStringLiteral("input is no encrypted message");
}

Reason Status::whyNotSigned(bool hasSucceeded) const
{
    if (hasSucceeded && has("SIG_CREATED"))
        return {};
    if (isPassPhraseWrong())
        return wrongPassPhrase;
    return has("INV_SGNR") ? QStringLiteral("no secret key to sign with") : notDone;
}

/// Whether decrypting or signing has failed with one of these codes of libgpg-error.
bool Status::isPassPhraseWrong() const
{
    return std::any_of(m_lines.begin(), m_lines.end(), [](const QByteArrayList &line) {
        const QByteArrayList what = line.mid(0, 2);
        if (what != QByteArrayList{"ERROR", "pkdecrypt_failed"} &&
            what != QByteArrayList{"FAILURE", "sign"})
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
    return validity == Validity::Invalid ? keyInvalid : Reason();
}

Reason Key::whyUseless(Use use, qint64 now) const
{
    Reason invalid = whyInvalid(now);
    if (!invalid.isNone())
        return invalid;
    QVector<Key> parts = subkeys;
    parts += *this;
    const auto hasPart = [&parts](const std::function<bool(const Key &)> &isSuch) {
        return std::any_of(parts.begin(), parts.end(), isSuch);
    };
    if (hasPart([now, use](const Key &part) {
            return part.capabilities.contains(static_cast<char>(use)) &&
                   part.validity == Validity::Fine && part.created <= now;
        }))
        return {};
    // What a part could do is not told where it cannot any more.
    if (hasPart([](const Key &part) { return part.validity == Validity::Revoked; }))
        return keyRevoked;
    if (hasPart([](const Key &part) { return part.validity == Validity::Expired; }))
        return keyExpired;
    if (hasPart([now](const Key &part) { return part.created > now; }))
        return tooNew;
    return use == Use::Encrypting ? QStringLiteral("key cannot encrypt")
                                  : QStringLiteral("key cannot sign");
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
        } else if (type == "uid" && !keys.isEmpty() && keys.last().name.isNull()) {
            keys.last().name = unescaped(fields.value(nameField));
        }
    }
    return keys;
}

} // namespace aux::gpg
