// SPDX-License-Identifier: MIT
#include "files.h"

#include "location.h"
#include "output.h"

#include <QFileInfo>
#include <QJsonArray>

namespace auxctl
{

namespace
{

/// The location that the argument stands for; Invalid where it is a path.
aux::DirLocation locationOf(const QString &argument)
{
    return QFileInfo::exists(argument) ? aux::DirLocation::Invalid
                                       : aux::FsHelper::dirLocationFromString(argument);
}

} // namespace

QStringList filesOf(const QStringList &arguments)
{
    QStringList files;
    for (const QString &argument : arguments) {
        const aux::DirLocation location = locationOf(argument);
        if (location == aux::DirLocation::Invalid) {
            files += argument;
            continue;
        }
        for (const QString &name : checked(aux::FsHelper::createDirList(location)))
            files += aux::FsHelper::createPathName(location, name);
    }
    return files;
}

QString directoryOf(const QString &argument)
{
    const aux::DirLocation location = locationOf(argument);
    return location == aux::DirLocation::Invalid ? argument
                                                 : aux::FsHelper::dirLocationToFullPath(location);
}

Result lookAtEach(const QStringList &files, const std::function<Finding(const QString &)> &look)
{
    Result result;
    QJsonArray json;
    QVector<Record> rows;
    for (const QString &file : files) {
        Record fields{{"path", file}};
        try {
            const Finding finding = look(file);
            fields += finding.fields;
            rows += fields;
            if (finding.isNo && result.status == ExitStatus::Done)
                result.status = ExitStatus::No;
            if (finding.reason.hasError()) {
                result.errors += finding.reason;
                fields += {"error", toJson(finding.reason)};
            }
        } catch (const Failure &failure) {
            result.status = ExitStatus::Failed;
            result.errors += failure.error;
            fields += {"error", toJson(failure.error)};
        }
        json += toObject(fields);
    }
    result.text =
        files.size() == 1 && rows.size() == 1 ? record(rows.first()).text : table(rows).text;
    result.json = json;
    return result;
}

} // namespace auxctl
