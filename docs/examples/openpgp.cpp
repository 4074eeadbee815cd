// SPDX-License-Identifier: MIT
#include "examples.h"

namespace examples
{

//! [encrypt]
// Encrypts a container to the server, with a key of which nothing is left afterwards.
aux::Error encryptForServer(const QString &keyFile, const QString &container,
                            const QString &message)
{
    aux::Error error = aux::DataHelper::importKeypairGPG(keyFile);
    if (!error.hasError())
        error = aux::DataHelper::encryptFileGPG(container, message);
    aux::Error removed = aux::DataHelper::removeKeypairGPG(); // in any case
    return error.hasError() ? error : removed;
}
//! [encrypt]

//! [decrypt]
// Reads a message of the server with the imported key; whoever has the public key can write one.
aux::Error read(const QString &message, const QString &file, const QString &passPhrase)
{
    return aux::DataHelper::decryptFileGPG(message, file, passPhrase);
}
//! [decrypt]

//! [decryptSigned]
// Takes a message only from who has signed it with a trusted key.
aux::Error readOrder(const QString &message, const QString &file, const QString &passPhrase)
{
    const auto [error, signature] =
        aux::DataHelper::decryptFileGPG(message, file, passPhrase, "/data/config/trusted.gpg");
    if (!error.hasError())
        qInfo() << "order of" << signature.time << "by" << signature.fingerprint;
    return error;
}
//! [decryptSigned]

//! [sign]
// The signature lies beside the file, as FILE.sig, where the receiver looks for it.
aux::Error sign(const QString &file, const QString &passPhrase)
{
    return aux::DataHelper::signFileGPG(file, file + ".sig", passPhrase);
}
//! [sign]

//! [verify]
// Believes an update of a trusted key that is not older than the one in use.
aux::Error checkUpdate(const QString &file, const QDateTime &inUse)
{
    const auto [error, signature] =
        aux::DataHelper::verifyFileGPG(file, file + ".sig", "/data/config/trusted.gpg");
    if (error.hasError())
        return error;
    if (signature.time < inUse)
        return aux::ErrorData("update", "older than the one in use", 3);
    return {};
}
//! [verify]

} // namespace examples
