// SPDX-License-Identifier: MIT
#include "dispatch.h"

#include <aux/datahelper.h>
#include <aux/fshelper.h>

#include <QFile>
#include <QFileInfo>

using aux::DataHelper;
using aux::DirLocation;
using aux::FsHelper;
using aux::SettingsCode;

namespace
{

using Result = std::pair<aux::Error, QString>;

/// Says what the application could not do, beside the library's reason.
Result failed(const QString &what, aux::Error &&reason)
{
    return {aux::Error(aux::ErrorData("terminal", QString(what), 1)) << std::move(reason), {}};
}

Result pack(const QString &download)
{
    const QString container = FsHelper::createUniqueFileName(DirLocation::New);
    aux::Error error =
        DataHelper::packFileToBinContainer(download, DataHelper::ZEL_FILE_TYPE::DDDF, container);
    if (error.hasError())
        return failed(download + " is not packed", std::move(error));
    return {{}, container};
}

Result archive(const QString &container)
{
    auto [error, checksum] = FsHelper::generateChecksum(container);
    if (!error.hasError())
        error = FsHelper::fileMove(DirLocation::New, DirLocation::Archive, container, checksum,
                                   true, {});
    if (error.hasError())
        return failed(container + " is not archived", std::move(error));
    const QString name = QFileInfo(container).fileName();
    return {{}, FsHelper::createPathName(DirLocation::Archive, name)};
}

aux::Error importKey(const aux::Configuration &configuration)
{
    const auto [error, keyFile] = DataHelper::decryptKeyB64StoreToTemp(
        configuration.getValue(SettingsCode::CryptoGpgkey).toString(),
        configuration.getValue(SettingsCode::CryptoPassphrase).toString());
    if (error.hasError())
        return error;
    aux::Error imported = DataHelper::importKeypairGPG(keyFile);
    QFile::remove(keyFile);
    return imported;
}

Result encrypt(const aux::Configuration &configuration, const QString &container)
{
    const QString name = QFileInfo(container).completeBaseName() + ".gpg";
    const QString message = FsHelper::createPathName(DirLocation::Transfer, name);
    aux::Error error = importKey(configuration);
    if (!error.hasError())
        error = DataHelper::encryptFileGPG(container, message);
    aux::Error removed = DataHelper::removeKeypairGPG(); // in any case
    if (!error.hasError())
        error = std::move(removed);
    if (error.hasError())
        return failed(container + " is not encrypted", std::move(error));
    return {{}, message};
}

} // namespace

aux::Error keepKey(aux::Configuration &configuration, const QByteArray &key,
                   const QString &passPhrase)
{
    const auto [error, hidden] = DataHelper::encryptKeyB64(key, passPhrase);
    if (error.hasError())
        return error;
    configuration.setValue(SettingsCode::CryptoGpgkey, hidden);
    configuration.setValue(SettingsCode::CryptoPassphrase,
                           passPhrase); // last: says that both are there
    configuration.commit();
    return {};
}

std::pair<aux::Error, QString> dispatch(const aux::Configuration &configuration,
                                        const QString &download)
{
    Result result = pack(download);
    if (!result.first.hasError())
        result = archive(result.second);
    if (!result.first.hasError())
        result = encrypt(configuration, result.second);
    return result;
}
