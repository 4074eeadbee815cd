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

#include <sys/socket.h>
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

/// Writes two settings at once; counts what was lost, and complaints.
int writeFromThreads(SettingsCode one, SettingsCode two, bool isShared, const QString &file)
{
    const QtMessageHandler previous = qInstallMessageHandler(countMessage);
    Configuration common;
    common.init();
    std::atomic<int> lost = 0;
    const auto write = [&](SettingsCode code) {
        Configuration own;
        own.init();
        lost += writeAll(isShared ? common : own, code, file);
    };
    std::thread other(write, one);
    write(two);
    other.join();
    qInstallMessageHandler(previous);
    return lost + messages;
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
        Configuration configuration;
        configuration.init();
        configuration.rollback(SettingsArea::All); // a file with all settings
    }

    /// Two threads of one process share an object, those of another have their own.
    void writers()
    {
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(writeFromThreads(codes[0], codes[1], true, m_file) == 0 ? 0 : 1);
        Reader reader(m_file);
        QCOMPARE(writeFromThreads(codes[2], codes[3], false, m_file), 0);
        int status = EXIT_FAILURE;
        ::waitpid(child, &status, 0);
        QCOMPARE(reader.stop(), 0);
        QCOMPARE(status, 0);
        for (const SettingsCode code : codes)
            QCOMPARE(valueIn(m_file, pathOf(code)), QJsonValue(numbered(rounds - 1)));
    }

    /// Two processes, of which each reads what the other has written, and then writes; also on a
    /// file system whose times are whole seconds.
    void alternating()
    {
        std::array<int, 2> ends{};
        QCOMPARE(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
        const bool isSecond = ::fork() == 0;
        const int end = ends[isSecond ? 1 : 0];
        Configuration configuration;
        configuration.init();
        int wrong = 0;
        const auto check = [&](SettingsCode code, int round) {
            const QVariant expected = round < 0 ? configuration.getValue(code) : numbered(round);
            wrong += configuration.getValue(code) == expected ? 0 : 1;
            wrong += QSettings().value(pathOf(code), expected) == expected ? 0 : 1;
        };
        for (int round = 0; round < rounds; ++round) {
            char ball = 0;
            if (isSecond || round > 0)
                wrong += ::read(end, &ball, 1) == 1 ? 0 : 1;
            check(codes[isSecond ? 0 : 1], isSecond ? round : round - 1);
            check(codes[isSecond ? 1 : 0], round - 1);
            configuration.setValue(codes[isSecond ? 1 : 0], numbered(round));
            wrong += ::write(end, &ball, 1) == 1 ? 0 : 1;
        }
        if (isSecond)
            ::_exit(wrong);
        QCOMPARE(wrong, 0);
        int status = EXIT_FAILURE;
        ::wait(&status);
        QCOMPARE(status, 0);
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
        if (child == 0) {
            for (;;) // until it is killed
                write(codes[0]);
        }
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
