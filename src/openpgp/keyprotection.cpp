// SPDX-License-Identifier: MIT
#include "aux/datahelper.h"
#include "error/reason.h"
#include "fs/datadirectories.h"

#include <QTemporaryFile>

#include <cerrno>

namespace aux
{

namespace
{

const Reason noPassPhrase = QStringLiteral("pass phrase is empty");

/// The key that the text hides, or the reason why there is none.
std::pair<Reason, QByteArray> reveal(const QString &keyB64, const QString &passPhrase)
{
    if (passPhrase.isEmpty())
        return {noPassPhrase, {}};
    const QByteArray hidden = QByteArray::fromBase64(keyB64.toLatin1());
    // Qt skips what is not base64; the same bytes have one text only.
    if (QString::fromLatin1(hidden.toBase64()) != keyB64)
        return {QStringLiteral("key is not base64"), {}};
    return {Reason(), DataHelper::xorByteArray(hidden, passPhrase.toUtf8())};
}

/// Writes a file of mode 0600 that nobody else has opened before, and sets its path.
Reason storeInTemp(const QByteArray &content, QString &path)
{
    QTemporaryFile file(
        FsHelper::createPathName(DirLocation::Tmp, QStringLiteral("libaux-key-XXXXXX")));
    if (!directoryExists(DirLocation::Tmp))
        return reason::cannotWrite.because(file.fileTemplate(), ENOENT);
    if (!file.open() || file.write(content) != content.size() || !file.flush())
        return reason::cannotWrite.because(file.fileTemplate(), file.errorString());
    path = file.fileName();
    file.setAutoRemove(false);
    return {};
}

} // namespace

QByteArray DataHelper::xorByteArray(const QByteArray &data, const QByteArray &key)
{
    QByteArray result = data;
    for (int index = 0; index < result.size() && !key.isEmpty(); ++index)
        result[index] = static_cast<char>(result[index] ^ key[index % key.size()]);
    return result;
}

std::pair<Error, QString> DataHelper::encryptKeyB64(const QByteArray &key,
                                                    const QString &passPhrase)
{
    if (passPhrase.isEmpty())
        return {refuse("encryptKeyB64", noPassPhrase), {}};
    return {Error(), QString::fromLatin1(xorByteArray(key, passPhrase.toUtf8()).toBase64())};
}

std::pair<Error, QByteArray> DataHelper::decryptKeyB64(const QString &keyB64,
                                                       const QString &passPhrase)
{
    const auto [reason, key] = reveal(keyB64, passPhrase);
    return {outcome("decryptKeyB64", reason), key};
}

std::pair<Error, QString> DataHelper::decryptKeyB64StoreToTemp(const QString &keyB64,
                                                               const QString &passPhrase)
{
    constexpr const char *operation = "decryptKeyB64StoreToTemp";
    auto [reason, key] = reveal(keyB64, passPhrase);
    QString path;
    if (reason.isNone())
        reason = storeInTemp(key, path);
    return {outcome(operation, reason), path};
}

} // namespace aux
