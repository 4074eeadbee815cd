// SPDX-License-Identifier: MIT
#include <aux/configuration.h>

#include "config/catalogue.h"
#include "config/jsonformat.h"
#include "support/settings.h"

#include <QtTest>

#include <array>
#include <atomic>
#include <csignal>
#include <thread>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

using aux::Configuration;
using aux::SettingsArea;
using aux::SettingsCode;

namespace
{

constexpr int rounds = 100;
constexpr std::array codes{SettingsCode::PublicserverUrl, SettingsCode::PublicserverUser,
                           SettingsCode::PublicserverProxyHost,
                           SettingsCode::PublicserverProxyUser};

QString pathOf(SettingsCode code)
{
    return aux::settingOf(code).keyPath().mid(1);
}

/// Texts of one length: that of the file then tells nothing.
QString numbered(int round)
{
    return QString::number(1000 + round);
}

/// Writes a setting again and again; counts what did not stay until the next time.
int writeAll(Configuration &configuration, SettingsCode code, const QString &file)
{
    int lost = 0;
    for (int round = 0; round < rounds; ++round) {
        configuration.setValue(code, numbered(round));
        lost += valueIn(file, pathOf(code)) == numbered(round) ? 0 : 1;
        lost += configuration.getValue(code) == numbered(round) ? 0 : 1;
    }
    return lost;
}

/// Reads the file as fast as it can; counts what was not whole.
class Reader
{
public:
    explicit Reader(const QString &file) : m_thread([this, file] { run(file); }) {}

    int stop()
    {
        m_stopped = true;
        m_thread.join();
        return m_broken;
    }

private:
    void run(const QString &file)
    {
        while (!m_stopped) {
            const QJsonObject object = QJsonDocument::fromJson(read(file)).object();
            if (aux::json::flatten(object).size() != aux::settingsCatalogue().size())
                ++m_broken;
        }
    }

    std::atomic<bool> m_stopped = false;
    int m_broken = 0;
    std::thread m_thread;
};

/// QSettings complains where somebody takes its lock away.
std::atomic<int> messages = 0;

void countMessage(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++messages;
}

} // namespace

class TestConfigConcurrency : public QObject
{
    Q_OBJECT

    QString m_file;

private Q_SLOTS:
    void init()
    {
        m_file = useFreshSettings();
        messages = 0;
        Configuration configuration;
        configuration.init();
        configuration.rollback(SettingsArea::All); // a file with all settings
    }

    void threads_data()
    {
        QTest::addColumn<bool>("shared");
        QTest::newRow("four threads on one object") << true;
        QTest::newRow("four objects in four threads") << false;
    }
    void threads()
    {
        QFETCH(bool, shared);
        const QtMessageHandler previous = qInstallMessageHandler(countMessage);
        const auto restore = qScopeGuard([&] { qInstallMessageHandler(previous); });
        Configuration common;
        common.init();
        std::atomic<int> lost = 0;
        Reader reader(m_file);
        std::vector<std::thread> writers;
        for (const SettingsCode code : codes) {
            writers.emplace_back([&, code] {
                Configuration own;
                own.init();
                lost += writeAll(shared ? common : own, code, m_file);
            });
        }
        for (std::thread &writer : writers)
            writer.join();
        QCOMPARE(reader.stop(), 0);
        QCOMPARE(lost.load(), 0);
        QCOMPARE(messages.load(), 0);
        for (const SettingsCode code : codes)
            QCOMPARE(valueIn(m_file, pathOf(code)), QJsonValue(numbered(rounds - 1)));
    }

    void twoProcesses()
    {
        const pid_t child = ::fork();
        Configuration configuration;
        configuration.init();
        if (child == 0)
            ::_exit(writeAll(configuration, codes[0], m_file));
        Reader reader(m_file);
        const int lost = writeAll(configuration, codes[1], m_file);
        int status = EXIT_FAILURE;
        ::waitpid(child, &status, 0);
        QCOMPARE(reader.stop(), 0);
        QCOMPARE(lost, 0);
        QCOMPARE(status, 0);
        for (const SettingsCode code : {codes[0], codes[1]})
            QCOMPARE(valueIn(m_file, pathOf(code)), QJsonValue(numbered(rounds - 1)));
    }

    /// Who writes without pause does not keep another waiting for long.
    void turns()
    {
        const pid_t child = ::fork();
        Configuration configuration;
        configuration.init();
        int written = 0;
        const auto write = [&](SettingsCode code) {
            configuration.setValue(code, numbered(++written));
        };
        while (child == 0)
            write(codes[0]);
        while (written < rounds)
            write(codes[1]);
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const QString last = valueIn(m_file, pathOf(codes[0])).toString();
        QVERIFY2(last.toInt() - 1000 < 5 * rounds, qPrintable(last));
    }
};

QTEST_APPLESS_MAIN(TestConfigConcurrency)
#include "tst_configconcurrency.moc"
