// SPDX-License-Identifier: MIT
// Configuration files on their way in and out, and their format.
#include <aux/configuration.h>

#include "config/catalogue.h"
#include "config/jsonformat.h"
#include "support/observe.h"
#include "support/rows.h"
#include "support/settings.h"

#include <QBuffer>

#include <cstdlib>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>

using aux::Configuration;
using aux::SettingsArea;
using aux::SettingsCode;
using aux::json::maximumDepth;

namespace
{

const QString candidate = QStringLiteral("/data/candidate.json");
constexpr int maximumSize = 1048576;

/// A file with these settings and the defaults of all others.
QByteArray complete(const QJsonObject &settings = {}, const QString &without = {})
{
    QSettings::SettingsMap map;
    for (const aux::Setting &setting : aux::settingsCatalogue())
        map[setting.keyPath().mid(1)] = setting.defaultValue;
    map.remove(without);
    QJsonObject object = aux::json::nest(map);
    for (auto it = settings.begin(); it != settings.end(); ++it)
        object[it.key()] = it.value(); // "a/b" stands behind the member b of a, and counts
    return QJsonDocument(object).toJson();
}

QString verdictOf(const QByteArray &content)
{
    write(candidate, content);
    const QString verdict = text(Configuration::validateConfigFile(candidate));
    return read(candidate) == content ? verdict : "written to";
}

QString messages(const aux::Error &error)
{
    QStringList messages;
    for (const aux::ErrorData &entry : error)
        messages += entry.getMsg();
    return messages.join("; ");
}

/// "KEY TYPE VALUE; KEY TYPE VALUE"
QString describe(const QSettings::SettingsMap &settings)
{
    QStringList lines;
    for (auto it = settings.begin(); it != settings.end(); ++it)
        lines += QStringLiteral("%1 %2 %3").arg(it.key(), it->typeName(), it->toString()).trimmed();
    return lines.join("; ");
}

QSettings::SettingsMap settingsOf(const QString &description)
{
    QSettings::SettingsMap settings;
    for (const QString &line : description.split("; ", Qt::SkipEmptyParts))
        settings[line.section(' ', 0, 0)] = valueOf(line.section(' ', 1));
    return settings;
}

QSettings::SettingsMap readText(QByteArray text)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    QSettings::SettingsMap settings;
    return aux::json::readSettings(buffer, settings) ? settings : QSettings::SettingsMap();
}

QByteArray writeText(const QSettings::SettingsMap &settings)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return aux::json::writeSettings(buffer, settings) ? buffer.data() : QByteArray();
}

QString deepKey(int segments)
{
    return QString("a/").repeated(segments - 1) + 'a';
}

int syncCalls = 0;

} // namespace

/// In place of the C library's: counts.
extern "C" void sync() noexcept
{
    ++syncCalls;
}

class TestConfigFile : public QObject
{
    Q_OBJECT

    QString m_file;
    std::optional<Configuration> m_configuration;

private Q_SLOTS:
    void init()
    {
        m_file = useFreshSettings();
        m_configuration.emplace();
        m_configuration->init();
        QFile::remove(candidate);
    }

    void reading_data() { addRows("reading.txt"); }
    void reading()
    {
        const auto [input, output] = cells<QString, QString>();
        QCOMPARE(describe(readText(input.toUtf8())), output);
    }

    void writing_data() { addRows("writing.txt"); }
    void writing()
    {
        const auto [input, output] = cells<QString, QString>();
        syncCalls = 0;
        QCOMPARE(writeText(settingsOf(input)),
                 QJsonDocument::fromJson(output.toUtf8()).toJson(QJsonDocument::Indented));
        QCOMPARE(syncCalls, 1);
    }

    /// Whatever a stranger's file holds, and however much of it.
    void large()
    {
        const QByteArray many(5000000, '/');
        QCOMPARE(readText("{\"b\": 1, \"" + many + "\": 2}").value("b"), QVariant(1));
        QCOMPARE(readText("{\"b\": \"" + many + "\"}").value("b"), QVariant(QString(many)));
        QCOMPARE(readText(QByteArray("{\"a\": ").repeated(2000) + QByteArray(2000, '}')).size(), 0);
        QByteArray members = "{\"b\": 1";
        for (int number = 0; number < 100000; ++number)
            members += ", \"" + QByteArray::number(number) + "\": 1";
        QCOMPARE(readText(members + '}').size(), 100001);
    }

    /// What could not be read again, and would take the rest with it, is not written.
    void depth()
    {
        const QString deepest = deepKey(maximumDepth);
        const QString tooDeep = deepKey(maximumDepth + 1);
        QCOMPARE(readText(writeText({{deepest, 1}, {"b", 2}})).keys(), QStringList({deepest, "b"}));
        QCOMPARE(readText(writeText({{"a/b", 1}, {tooDeep, 2}, {"b", 3}})).keys(),
                 QStringList({"a/b", "b"}));
    }

    void verdict_data() { addRows("validation.txt"); }
    void verdict()
    {
        const auto [input, output] = cells<QString, QString>();
        QCOMPARE(verdictOf(complete(QJsonDocument::fromJson(input.toUtf8()).object())), output);
    }

    void firstMissing()
    {
        QCOMPARE(text(Configuration::validateConfigFile(candidate)),
                 "libaux Config file does not exist 10001");
        for (const aux::Setting &setting : aux::settingsCatalogue())
            QCOMPARE(
                verdictOf(complete({}, setting.keyPath().mid(1))),
                QStringLiteral("libaux Invalid config file. Missing %1 10002").arg(setting.key));
        QCOMPARE(verdictOf(complete({{"device/pin", "x"}}, "crypto/vendors")),
                 "libaux Invalid config file. Missing /crypto/vendors 10002");
        QCOMPARE(verdictOf("{\"network\": {}}"),
                 "libaux Invalid config file. Missing /device/mode/usb 10002");
    }

    /// With nothing to tell one content from the other but itself.
    void readAfresh()
    {
        const QByteArray good = complete();
        const QByteArray bad = QByteArray(good).replace("8000", "9000");
        for (const QByteArray &content : {good, bad, good}) {
            write(candidate, content);
            const timespec times[2] = {{1, 0}, {1, 0}};
            ::utimensat(AT_FDCWD, qPrintable(candidate), times, 0);
            QCOMPARE(Configuration::validateConfigFile(candidate).hasError(), content == bad);
        }
    }

    void noJson_data()
    {
        row("directory", "mkdir $f", "/data/candidate.json: not a regular file");
        row("FIFO", "mkfifo $f", "/data/candidate.json: not a regular file");
        row("endless device", "ln -s /dev/zero $f", "/data/candidate.json: not a regular file");
        row("syntax", "printf '{\n \"ä\": 1,]' > $f", "line 2, column 10: unterminated object");
        row("array", "echo '[]' > $f", "no object");
        row("too large", "head -c 1048577 $f.full > $f", "more than 1048576 bytes");
    }
    void noJson()
    {
        const auto [preparation, reason] = cells<QString, QString>();
        write(candidate + ".full", complete() + QByteArray(maximumSize, ' '));
        const QString script = "f=" + candidate + "; rm -rf $f; " + preparation;
        QCOMPARE(std::system(script.toUtf8().constData()), 0);
        QCOMPARE(text(Configuration::validateConfigFile(candidate)),
                 "libaux Invalid config file. Missing /device/mode/usb 10002");
        QCOMPARE(messages(Configuration::findConfigFileFaults(candidate)),
                 "Not readable as JSON: " + reason);
        QVERIFY(QDir("/data").remove("candidate.json") || QDir("/data").rmdir("candidate.json"));
    }

    void largestFile() { QCOMPARE(verdictOf(complete().leftJustified(maximumSize)), ""); }

    void faults_data() { addRows("faults.txt"); }
    void faults()
    {
        const auto [input, output] = cells<QString, QString>();
        write(candidate, complete(QJsonDocument::fromJson(input.toUtf8()).object()));
        QCOMPARE(messages(Configuration::findConfigFileFaults(candidate)), output);
        m_configuration->setValue(SettingsCode::DeviceLang, "as it was");
        const QByteArray before = read(m_file);
        QCOMPARE(messages(m_configuration->applyConfigFile(candidate)), output);
        QCOMPARE(read(m_file) == before, !output.isEmpty());
    }

    void thereAndBackAgain()
    {
        write(m_file, R"({"version": "7", "device": {"audio": "false"}})");
        m_configuration->setValue(SettingsCode::NetworkDataport, 8080U);
        m_configuration->setValue(SettingsCode::DeviceLang, "ä\"/");
        QCOMPARE(text(m_configuration->writeConfigFile(candidate)), "");
        struct stat status {
        };
        QCOMPARE(::stat(qPrintable(candidate), &status), 0);
        QCOMPARE(status.st_mode & ALLPERMS, 0600U);
        QCOMPARE(text(Configuration::findConfigFileFaults(candidate)), "");
        QCOMPARE(valueIn(candidate, "device/audio"), QJsonValue(false));

        QCOMPARE(text(m_configuration->resetToDefaults(SettingsArea::Network)), "");
        QCOMPARE(m_configuration->getValue(SettingsCode::NetworkDataport), QVariant(8000U));
        QCOMPARE(m_configuration->getValue(SettingsCode::DeviceLang), QVariant("ä\"/"));
        QCOMPARE(text(m_configuration->resetToDefaults(SettingsArea::All)), "");
        QCOMPARE(QJsonDocument::fromJson(read(m_file)).object(),
                 (QJsonObject{{"config_changes", 2}, {"version", "7"}}));

        for (int round = 0; round < 2; ++round) { // the second one changes nothing
            QCOMPARE(text(m_configuration->applyConfigFile(candidate)), "");
            QCOMPARE(m_configuration->getChangeCounter(), 3);
            QVERIFY(!m_configuration->changed(SettingsArea::All).anyChanged);
            QCOMPARE(m_configuration->getVersion(), "7");
            QCOMPARE(text(m_configuration->writeConfigFile(candidate + ".again")), "");
            QCOMPARE(read(candidate + ".again"), read(candidate));
        }
    }
};

QTEST_APPLESS_MAIN(TestConfigFile)
#include "tst_configfile.moc"
