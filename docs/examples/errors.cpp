// SPDX-License-Identifier: MIT
#include "examples.h"

#include <QFile>

#include <sstream>

namespace examples
{

//! [passOn]
// What a failure means here stands in front of the cause, whose text and number getMsg() and
// getId() go on to tell.
aux::Error send(const QString &container, const QString &checksum)
{
    aux::Error error = aux::FsHelper::fileMove(aux::DirLocation::New, aux::DirLocation::Transfer,
                                               container, checksum, true, {});
    if (error.hasError())
        return aux::Error(aux::ErrorData("upload", "not handed over", 7)) << std::move(error);
    return {};
}
//! [passOn]

//! [decide]
// What to do is decided by the number. The text is for people, and for the log.
bool isWorthRepeating(const aux::Error &error)
{
    if (!error.hasError() || error.getDomain() != "libaux")
        return false;
    qInfo() << "not done:" << error.getMsg();
    return error.getId() == 10006; // no space, which others may make
}
//! [decide]

//! [explain]
// One line for each entry, the newest first, and what the system had to say.
QStringList explain(const aux::Error &error)
{
    QStringList lines;
    for (const aux::ErrorData &entry : error)
        lines += QString("%1 (%2 %3)").arg(entry.getMsg(), entry.getDomain()).arg(entry.getId());
    if (!error.getExtraData().isEmpty())
        lines += error.getExtraData();
    return lines;
}
//! [explain]

//! [print]
// Both streams take a whole error; what is written to a stream of Qt ends its own line.
std::string print(const aux::Error &error)
{
    if (error.hasError())
        qWarning() << error;
    std::ostringstream page;
    page << error << '\n';
    return page.str();
}
//! [print]

//! [printEntry]
std::string printCause(const aux::Error &error)
{
    std::ostringstream line;
    if (error.hasError()) {
        qWarning() << *error.begin(); // an entry is no whole line
        line << *error.begin();
    }
    return line.str();
}
//! [printEntry]

//! [extraData]
// A failure of the application's own says like one of libaux what the system had to say.
aux::Error openModem(const QString &device)
{
    QFile file(device);
    if (file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
        return {};
    aux::Error error = aux::ErrorData("modem", "cannot be opened", 3);
    error.setExtraData(device + ": " + file.errorString());
    return error;
}
//! [extraData]

//! [collect]
// All containers are sent, whatever becomes of one. Together the failures have the extra data of
// the last one, so each is kept for itself, too.
aux::Error sendAll(const QMap<QString, QString> &checksums, QList<aux::Error> &failures)
{
    aux::Error all;
    for (auto container = checksums.begin(); container != checksums.end(); ++container) {
        const aux::Error error = send(container.key(), container.value());
        if (!error.hasError())
            continue; // to append a success would take the extra data away
        all << error;
        failures += error;
    }
    return all;
}
//! [collect]

} // namespace examples
