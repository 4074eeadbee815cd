// SPDX-License-Identifier: MIT
// What stands in the way of the settings file: at its own name, at those of its locks, around it.
#include <aux/configuration.h>

#include "config/settingsfile.h"
#include "support/rows.h"
#include "support/settings.h"
#include "support/world.h"

#include <QElapsedTimer>

#include <cerrno>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using aux::Configuration;
using aux::SettingsCode;

namespace
{

bool isMediumFailing = false;

constexpr int hang = 15000; // ms; what QSettings alone does with such locks takes twice as long

/// Runs a shell command on the settings file, "$f".
void prepare(const QString &command, const QString &file)
{
    qputenv("f", file.toUtf8());
    run(command);
}

/// Leaves the process no descriptor while it lives.
class NoDescriptors
{
public:
    NoDescriptors()
    {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        struct rlimit none = m_before;
        none.rlim_cur = 0;
        ::setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_before); }

private:
    struct rlimit m_before;
};

mode_t neverFlushed = 0; // the type of such files

int flush(long number, int file)
{
    struct stat status {
    };
    if (::fstat(file, &status) != 0 || (status.st_mode & S_IFMT) != neverFlushed)
        return static_cast<int>(::syscall(number, file));
    errno = EIO;
    return -1;
}

} // namespace

/// In place of the C library's: what reads a file gets an error from the medium.
extern "C" ssize_t read(int file, void *data, size_t size)
{
    struct stat status {
    };
    if (isMediumFailing && ::fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
        errno = EIO;
        return -1;
    }
    return ::syscall(SYS_read, file, data, size);
}

/// In place of the C library's, Qt's calls too: the medium does not take what the cache holds.
extern "C" int fsync(int file)
{
    return flush(SYS_fsync, file);
}
extern "C" int fdatasync(int file)
{
    return flush(SYS_fdatasync, file);
}

class TestSettingsFile : public QObject
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
    }

    /// The settings beside the one that is written stay, and that one is written later.
    void notToBeReplaced_data()
    {
        const QString aside = "mv \"$f\" \"$f.good\"; ";
        const QString away = "; rm -rf \"$f\"; mv \"$f.good\" \"$f\"";
        row("FIFO", aside + "mkfifo \"$f\"", "true" + away);
        row("directory", aside + "mkdir \"$f\"", "true" + away);
        row("device", aside + "ln -s /dev/zero \"$f\"", "true" + away);
        row("forbidden", "chmod 0 \"$f\"", "chmod 600 \"$f\"");
        row("failing medium", "true", "true");
        row("too many files open", "true", "true");
        row("not kept aside", "cp \"$f\" \"$f.good\"; echo { >\"$f\"; mkdir \"$f.bad\"",
            "rmdir \"$f.bad\"" + away);
        row("nothing there, full",
            "cp \"$f\" /tmp/good; mount -t tmpfs -o size=4k none \"${f%/*}\"; "
            "head -c 4096 /dev/zero >\"${f%/*}/x\"",
            "umount \"${f%/*}\"");
        row("nothing there, read-only",
            "cp \"$f\" /tmp/good; mount -t tmpfs -o ro none \"${f%/*}\"", "umount \"${f%/*}\"");
    }
    void notToBeReplaced()
    {
        const auto [obstacle, removal] = cells<QString, QString>();
        write(m_file, R"({"device": {"pin": "hash"}, "config_changes": 7})");
        prepare(obstacle, m_file);
        const QString what = QTest::currentDataTag();
        const bool isUnreadable = !what.startsWith("no"); // what is not there or damaged was read
        {
            isMediumFailing = what == "failing medium";
            const auto restore = qScopeGuard([] { isMediumFailing = false; });
            std::optional<NoDescriptors> none;
            if (what == "too many files open")
                none.emplace();
            QCOMPARE(m_configuration->getValue(SettingsCode::DevicePin), QVariant(""));
            m_configuration->snapshot();
            m_configuration->setValue(SettingsCode::DeviceLang, "de");
            m_configuration->commit();
            QCOMPARE(m_configuration->getValue(SettingsCode::DeviceLang), QVariant("de"));
            m_configuration->rollback(aux::SettingsArea::Network);
            const auto nothing = [](QSettings::SettingsMap &) {};
            QVERIFY(aux::changeSettings(nothing).cause().startsWith("/data/config/"));
        }
        prepare(removal, m_file);
        QCOMPARE(valueIn(m_file, "device/pin"), QJsonValue("hash"));
        m_configuration->sync();
        for (const char *key : {"lang", "pin"})
            QVERIFY2(valueIn(m_file, QString("device/") + key).isString(), read(m_file));
        QCOMPARE(m_configuration->getValue(SettingsCode::DevicePin), QVariant("hash"));
        if (isUnreadable)
            QCOMPARE(m_configuration->getChangeCounter(), 7);
    }

    void notFlushed_data()
    {
        row("text", mode_t{S_IFREG}, true);
        row("name", mode_t{S_IFDIR}, false);
    }
    void notFlushed()
    {
        const auto [type, isOldKept] = cells<mode_t, bool>();
        m_configuration->setValue(SettingsCode::DeviceLang, "de");
        const QByteArray before = read(m_file);
        neverFlushed = type;
        const auto restore = qScopeGuard([] { neverFlushed = 0; });
        const auto change = [](QSettings::SettingsMap &settings) {
            settings["device/lang"] = "fr";
        };
        QVERIFY(!aux::changeSettings(change).isNone());
        QCOMPARE(read(m_file) == before, isOldKept);
    }

    void damaged_data()
    {
        row("cut off", QByteArray("{\"device\": {\"pin\": \"ha"));
        row("array", QByteArray("[1]"));
        row("zeros", QByteArray(100, '\0'));
        row("empty", QByteArray(""));
        row("object", QByteArray("{}"));
    }
    void damaged()
    {
        const auto text = cell<QByteArray>();
        const bool isKept = text.size() > 2;
        write(m_file + ".bad", "older");
        write(m_file, text);
        m_configuration->setValue(SettingsCode::DeviceLang, "de");
        QCOMPARE(valueIn(m_file, "device/lang"), QJsonValue("de"));
        QCOMPARE(read(m_file + ".bad"), isKept ? text : QByteArray("older"));
        if (isKept)
            prepare("test $(stat -c %a \"$f.bad\") = 600", m_file);
    }

    void locks_data()
    {
        const QString dead = "true & p=$!; wait $p; printf '%s\\nx\\n\\n\\n\\n' $p >\"$l\"";
        row("empty, old", "touch -d -3seconds \"$l\"", true);
        row("empty, of the future", "touch -d +1000seconds \"$l\"", true);
        row("empty, just made", "touch \"$l\"", false);
        row("of the last boot", "printf '1\\nx\\n\\n\\nother\\n' >\"$l\"", true);
        row("of a dead process", dead, true);
        row("of a dead process, taken by a reader", dead + "; flock -s \"$l\" sleep 30 & sleep 0.2",
            true);
        row("of a process' number that another has, taken by a reader",
            "printf '1\\nx\\n' >\"$l\"; flock -s \"$l\" sleep 30 & sleep 0.2", true);
        row("of a process that never took it", "echo 1 >\"$l\"", false);
        row("dangling link", "ln -s /nowhere \"$l\"", true);
        row("FIFO", "mkfifo \"$l\"", true);
        row("directory", "mkdir \"$l\"", true);
        row("full directory", "mkdir -p \"$l/x\"", false);
        row("queue a FIFO", "mkfifo \"$t\"", true);
        row("queue a link", "ln -s /dev/zero \"$t\"", true);
        row("queue a full directory", "mkdir -p \"$t/x\"", true);
    }
    void locks()
    {
        const auto [obstacle, isRemovedAtStart] = cells<QString, bool>();
        const QString make =
            "l=\"$f.lock\"; t=\"${f%/*}/.${f##*/}.turn\"; rm -rf \"$l\" \"$t\"; " + obstacle;
        prepare(make, m_file);
        Configuration other;
        other.init();
        const auto isLocked = [this] {
            return filesIn(QFileInfo(m_file).path()).contains("terminal.JSON.lock");
        };
        QCOMPARE(!isLocked(), isRemovedAtStart);
        prepare(make, m_file); // what comes after the start is in the way of a write
        QElapsedTimer timer;
        timer.start();
        other.setValue(SettingsCode::DeviceLang, "de");
        QCOMPARE(valueIn(m_file, "device/lang"), QJsonValue("de"));
        QVERIFY(timer.elapsed() < hang);
        QCOMPARE(isLocked(), obstacle.contains("$l/x")); // a full directory stays
    }

    /// Others write without a pause: whenever one looks, they have not yet locked theirs.
    void locksOfOthers()
    {
        qputenv("l", (m_file + ".lock").toUtf8());
        QProcess others;
        others.start("sh", {"-c", "for i in $(seq 40); do echo 1 >\"$l.$i\"; mv \"$l.$i\" \"$l\"; "
                                  "sleep 0.1; test -e \"$l\" || exit; done; rm \"$l\""});
        QTRY_VERIFY(QFile::exists(m_file + ".lock"));
        m_configuration->setValue(SettingsCode::DeviceLang, "de");
        QVERIFY(others.waitForFinished());
        QCOMPARE(others.exitCode(), 0);
    }

    /// Mode and owner of what is there stay; what is new is for its owner only.
    void modesAndOwners()
    {
        prepare("rmdir \"${f%/*}\"", m_file);
        m_configuration->setValue(SettingsCode::DeviceLang, "de");
        prepare("test $(stat -c %a \"$f\" \"${f%/*}\" | tr '\\n' ,) = 600,700,", m_file);
        if (::chown(QFile::encodeName(m_file).constData(), 1, 2) != 0)
            QSKIP("this machine lends no other account");
        prepare("chmod 666 \"$f\"", m_file); // permissions bind root too
        m_configuration->setValue(SettingsCode::DeviceLang, "fr");
        QCOMPARE(valueIn(m_file, "device/lang"), QJsonValue("fr"));
        prepare("test $(stat -c %u:%g:%a \"$f\") = 1:2:666", m_file);
    }

    /// A plain QSettings sees a change by size and time only, whatever the file system keeps of it;
    /// what it has not yet written is there for the whole process.
    void plainSettings()
    {
        write(m_file, "{}");
        prepare("touch -d @2200000000 \"$f\"", m_file); // later than 32 bits can tell
        for (int round = 1000; round < 1020; ++round) {
            m_configuration->setValue(SettingsCode::DeviceLang, QString::number(round));
            QCOMPARE(QSettings().value("device/lang").toInt(), round);
        }
        QSettings unwritten;
        unwritten.setValue("device/lang", "fr");
        QCOMPARE(m_configuration->getValue(SettingsCode::DeviceLang), QVariant("fr"));
    }
};

QTEST_APPLESS_MAIN(TestSettingsFile)
#include "tst_settingsfile.moc"
