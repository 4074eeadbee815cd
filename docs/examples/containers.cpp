// SPDX-License-Identifier: MIT
#include "examples.h"

#include <QFile>

namespace examples
{

//! [pack]
// A log of the terminal as a container on a medium; after a failure there is none.
aux::Error exportLog(const QString &log, const QString &container)
{
    return aux::DataHelper::packFileToBinContainer(log, aux::DataHelper::ZEL_FILE_TYPE::LOGF,
                                                   container);
}
//! [pack]

//! [unpack]
// Unpacks an update into an empty directory, and leaves that empty unless all is well.
aux::Error takeUpdate(const QString &container, const QString &directory)
{
    auto type = aux::DataHelper::ZEL_FILE_TYPE::Unknown;
    QString path = "update"; // not the name that a stranger has put into the container
    aux::Error error =
        aux::DataHelper::unpackFileFromBinContainer(container, type, directory, path);
    if (!error.hasError() && type != aux::DataHelper::ZEL_FILE_TYPE::UPDF)
        error = aux::ErrorData("update", "container holds something else", 2);
    if (error.hasError())
        QFile::remove(directory + "/update"); // what has the wrong digest stays otherwise
    return error;
}
//! [unpack]

//! [types]
// Types are keys of a QHash.
QString label(aux::DataHelper::ZEL_FILE_TYPE type)
{
    static const QHash<aux::DataHelper::ZEL_FILE_TYPE, QString> labels{
        {aux::DataHelper::ZEL_FILE_TYPE::DDDF, "Download"},
        {aux::DataHelper::ZEL_FILE_TYPE::LOGF, "Log"}};
    return labels.value(type, "other");
}
//! [types]

//! [usbIds]
// Checks what somebody has typed before it becomes the setting "/crypto/vendors".
aux::Error checkVendors(const QString &text, QStringList &devices)
{
    return aux::DataHelper::vIdpIdListFromString(text, devices);
}
//! [usbIds]

} // namespace examples
