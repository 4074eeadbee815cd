// SPDX-License-Identifier: MIT
#include "examples.h"

#include <QFile>

namespace examples
{

//! [xor]
// Twice is not at all.
bool isOwnInverse(const QByteArray &data, const QByteArray &key)
{
    return aux::DataHelper::xorByteArray(aux::DataHelper::xorByteArray(data, key), key) == data;
}
//! [xor]

//! [hide]
// Puts a key into the settings, where it is out of sight, though not encrypted.
aux::Error hideKey(aux::Configuration &configuration, const QByteArray &key,
                   const QString &passPhrase)
{
    const auto [error, text] = aux::DataHelper::encryptKeyB64(key, passPhrase);
    if (error.hasError())
        return error;
    configuration.setValue(aux::SettingsCode::CryptoGpgkey, text);
    return {};
}
//! [hide]

//! [show]
// A wrong pass phrase gives another key and no error: look at what comes out.
bool isPassPhrase(const aux::Configuration &configuration, const QString &passPhrase)
{
    const QString text = configuration.getValue(aux::SettingsCode::CryptoGpgkey).toString();
    const auto [error, key] = aux::DataHelper::decryptKeyB64(text, passPhrase);
    return !error.hasError() && key.startsWith("-----BEGIN PGP ");
}
//! [show]

//! [import]
// Imports the key of the settings. The file that it passes through is removed in any case.
aux::Error importKey(const aux::Configuration &configuration)
{
    const auto [error, file] = aux::DataHelper::decryptKeyB64StoreToTemp(
        configuration.getValue(aux::SettingsCode::CryptoGpgkey).toString(),
        configuration.getValue(aux::SettingsCode::CryptoPassphrase).toString());
    if (error.hasError())
        return error;
    aux::Error imported = aux::DataHelper::importKeypairGPG(file);
    QFile::remove(file);
    return imported;
}
//! [import]

//! [base64]
// A file as text, for a mail, and back. After a failure no output is there.
aux::Error toText(const QString &file, const QString &text)
{
    return aux::DataHelper::base64encode(file, text);
}

aux::Error fromText(const QString &text, const QString &file)
{
    return aux::DataHelper::base64decode(text, file);
}
//! [base64]

//! [base64Either]
aux::Error convert(const QString &from, const QString &to)
{
    const bool isText = from.endsWith(".b64");
    return aux::DataHelper::base64(from, to, isText); // decodes a text
}
//! [base64Either]

} // namespace examples
