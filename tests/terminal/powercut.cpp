// SPDX-License-Identifier: MIT
// Works like a terminal until somebody pulls the plug. Says what it finds, then each step that
// libaux has confirmed; the steps are numbered and go on where the last ones ended.
#include <aux/datahelper.h>
#include <aux/fshelper.h>

#include "crashes/numbered.h"
#include "support/files.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QJsonDocument>

#include <cstdlib>
#include <iostream>

#include <unistd.h>

using aux::DataHelper;
using aux::DirLocation;
using aux::FsHelper;

namespace
{

template <typename Fact>
void say(const char *what, const Fact &fact)
{
    std::cout << "powercut " << what << ' ' << fact << std::endl; // it must be out at once
}

void require(const aux::Error &error)
{
    if (!error.hasError())
        return;
    say("failed", error);
    std::exit(EXIT_FAILURE);
}

bool isJson(const QString &file)
{
    return !QFile::exists(file) || QJsonDocument::fromJson(read(file)).isObject();
}

bool isWhole(const QString &container)
{
    auto type = DataHelper::ZEL_FILE_TYPE::Unknown;
    QString payload = QStringLiteral("payload");
    return !DataHelper::unpackFileFromBinContainer(container, type, QStringLiteral("/tmp"), payload)
                .hasError();
}

/// Returns the number of the last step.
int reportSettings(aux::Configuration &configuration)
{
    QElapsedTimer timer;
    timer.start();
    configuration.init();
    say("json", isJson(configuration.getFileName()));
    const int number = numberOf(configuration.getValue(numbered).toString());
    say("found", number);
    say("counter", configuration.getChangeCounter());
    configuration.setValue(numbered, settingOf(number));
    say("delay", timer.elapsed());
    return number;
}

/// The file that writers of the settings take turns at stays for good.
bool belongsToSettings(const QFileInfo &file, const QFileInfo &settings)
{
    const QString turn = QStringLiteral(".%1.turn").arg(settings.fileName());
    return file == settings || file == QFileInfo(settings.path() + '/' + turn);
}

void reportFiles(const QString &settings)
{
    const QString archive = FsHelper::dirLocationToFullPath(DirLocation::Archive);
    QDirIterator files(QStringLiteral("/data"), QDir::Files | QDir::Hidden,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QFileInfo file(files.next());
        if (file.path() == archive)
            say(isWhole(file.filePath()) ? "archive" : "broken",
                qPrintable(file.completeBaseName()));
        else if (!belongsToSettings(file, QFileInfo(settings)))
            say("left", qPrintable(file.filePath()));
    }
}

/// As the server does that fetches the files; what is in "new" was never confirmed.
void empty()
{
    say("emptying", "");
    for (const DirLocation location : {DirLocation::New, DirLocation::Archive})
        clear(FsHelper::dirLocationToFullPath(location));
    ::sync();
}

void archive(int number)
{
    const QString payload = QStringLiteral("/tmp/%1").arg(number);
    const QString container =
        FsHelper::createPathName(DirLocation::New, QStringLiteral("%1.bin").arg(number));
    write(payload, QByteArray(number * 7919 % 300000, 'x')); // some bytes to some hundred kilobytes
    require(
        DataHelper::packFileToBinContainer(payload, DataHelper::ZEL_FILE_TYPE::DDDF, container));
    QFile::remove(payload);
    const auto [error, checksum] = FsHelper::generateChecksum(container);
    require(error);
    require(
        FsHelper::fileMove(DirLocation::New, DirLocation::Archive, container, checksum, true, {}));
    say("moved", number);
}

} // namespace

int main()
{
    QCoreApplication::setOrganizationName(QStringLiteral("aux"));
    QCoreApplication::setApplicationName(QStringLiteral("terminal"));
    aux::Configuration configuration;
    int number = reportSettings(configuration);
    reportFiles(configuration.getFileName());
    empty();
    say("working", "");
    for (;;) {
        configuration.setValue(numbered, settingOf(++number));
        say("set", number);
        archive(number);
        configuration.commit();
        say("committed", configuration.getChangeCounter());
    }
}
