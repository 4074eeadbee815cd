// SPDX-License-Identifier: MIT
// Looks, through libaux, at what a crash has left in /data: prints each fact and its value, but for
// those that are as they were in the beginning.
#include <aux/datahelper.h>
#include <aux/fshelper.h>

#include "crashes/numbered.h"
#include "support/files.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QMap>

#include <iostream>

#include <unistd.h>

using aux::DataHelper;
using aux::FsHelper;

namespace
{

template <typename Value>
void say(const QString &fact, const Value &value)
{
    std::cout << qPrintable(fact) << '\t' << value << '\n';
}

void say(const QString &fact, const QString &value)
{
    say(fact, qPrintable(value));
}

void tellSettings(const aux::Configuration &configuration)
{
    const QString file = configuration.getFileName();
    const int number = numberOf(configuration.getValue(numbered).toString());
    QString lang = configuration.getValue(aux::SettingsCode::DeviceLang).toString();
    if (lang == QLatin1String("en_GB"))
        lang.clear();
    if (QFile::exists(file) && !QJsonDocument::fromJson(read(file)).isObject())
        say("damaged", file);
    if (number != 0)
        say("infotext", number);
    if (!lang.isEmpty())
        say("lang", lang);
    if (number != 0 || !lang.isEmpty())
        say("settings", QStringLiteral("%1 %2").arg(number).arg(lang));
    if (configuration.getChangeCounter() != 0)
        say("commits", configuration.getChangeCounter());
}

QString stateOf(const QFileInfo &container)
{
    auto type = DataHelper::ZEL_FILE_TYPE::Unknown;
    QString payload = QStringLiteral("payload");
    const bool isWhole = !DataHelper::unpackFileFromBinContainer(container.filePath(), type,
                                                                 QStringLiteral("/tmp"), payload)
                              .hasError();
    return container.dir().dirName() + (isWhole ? "" : ":broken");
}

/// All files but those of the settings, and hidden ones: libaux may leave one, and says so.
void tellFiles(const QString &settings)
{
    QMap<QString, QStringList> facts;
    QDirIterator files(QStringLiteral("/data"), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QFileInfo file(files.next());
        if (file.suffix() == "bin")
            facts["container " + file.completeBaseName()] += stateOf(file);
        else if (file.path() != QFileInfo(settings).path())
            facts["file " + file.fileName()] += FsHelper::generateChecksum(file.filePath()).second;
    }
    for (auto fact = facts.begin(); fact != facts.end(); ++fact) {
        fact->sort();
        say(fact.key(), fact->join(' '));
    }
}

/// An abandoned lock or a damaged file must not stand in the way.
void writeOnce(aux::Configuration &configuration)
{
    QElapsedTimer timer;
    timer.start();
    configuration.setValue(numbered, settingOf(1));
    say("next write", timer.elapsed());
    if (read(configuration.getFileName()).count("1 1 1") == 0)
        say("damaged", "the next write");
}

} // namespace

/// Called by the library: whether this program's own write is flushed is of no interest.
extern "C" void sync() noexcept {}
extern "C" int fsync(int)
{
    return 0;
}

int main()
{
    QCoreApplication::setOrganizationName(QStringLiteral("aux"));
    QCoreApplication::setApplicationName(QStringLiteral("terminal"));
    aux::Configuration configuration;
    configuration.init();
    tellSettings(configuration);
    tellFiles(configuration.getFileName());
    writeOnce(configuration);
}
