// SPDX-License-Identifier: MIT
// What years of use leave behind in one process: soak [DIVISOR]
//
// Repeats each operation and prints what the process has before and after: memory, descriptors,
// threads, children, and files in /tmp. To be run in kit/sandbox --empty.
#include <aux/configuration.h>
#include <aux/datahelper.h>
#include <aux/fshelper.h>
#include <aux/systemhelper.h>

#include <QCoreApplication>
#include <QDir>
#include <QProcess>

#include <array>
#include <csignal>
#include <cstdio>
#include <functional>

#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using aux::DataHelper;

extern "C" void sync() noexcept {} // the library's: the machine's disks have no part in this

namespace
{

const QString work = QStringLiteral("/data/work");

void require(const aux::Error &error)
{
    if (error.hasError())
        qFatal("%s", qPrintable(error.getMsg() + QLatin1Char(' ') + error.getExtraData()));
}

void run(const char *command)
{
    if (QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-ec"), QLatin1String(command)}) !=
        0)
        qFatal("failed: %s", command);
}

int entriesOf(const char *directory)
{
    const auto all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    return QDir(QString::fromLatin1(directory)).entryList(all).size();
}

QByteArray contentOf(const char *path)
{
    QFile file(QString::fromLatin1(path));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", path);
    return file.readAll();
}

/// Prints what the process has now; its zombies are children too.
void printState(const char *when)
{
    const qint64 pages = contentOf("/proc/self/statm").split(' ').value(1).toLongLong();
    const auto children = contentOf("/proc/thread-self/children").simplified();
    std::printf("    %-6s %6lld KiB %4d descriptors %3d threads %3d children %3d files in /tmp\n",
                when, pages * ::sysconf(_SC_PAGESIZE) / 1024, entriesOf("/proc/self/fd"),
                entriesOf("/proc/self/task"), children.isEmpty() ? 0 : children.count(' ') + 1,
                entriesOf("/tmp"));
    std::fflush(stdout);
}

void soak(const char *what, int times, const std::function<void(int)> &operation)
{
    constexpr int warmUp = 10;
    for (int i = 0; i < warmUp; ++i)
        operation(i);
    std::printf("%s, %d times\n", what, times);
    printState("before");
    for (int i = 0; i < times; ++i)
        operation(i);
    printState("after");
}

/// A daemon on the real control socket to which everything is fine.
void startDaemon()
{
    QDir().mkpath(QStringLiteral("/run/wpa_supplicant"));
    const int server = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{AF_UNIX, "/var/run/wpa_supplicant/wlan0"};
    if (::bind(server, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        qFatal("cannot bind the control socket");
    if (::fork() == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (;;) {
            std::array<char, 256> request{};
            socklen_t size = sizeof address;
            auto *client = reinterpret_cast<sockaddr *>(&address);
            if (::recvfrom(server, request.data(), request.size(), 0, client, &size) > 0)
                ::sendto(server, "OK\n", 3, 0, client, size);
        }
    }
    ::close(server);
}

void setValue(int round)
{
    static aux::Configuration configuration;
    configuration.init();
    configuration.setValue(aux::SettingsCode::DeviceInfotext, QString::number(round));
}

void packAndUnpack(int /*round*/)
{
    DataHelper::ZEL_FILE_TYPE type{};
    QString name;
    require(DataHelper::packFileToBinContainer(work + QStringLiteral("/in"),
                                               DataHelper::ZEL_FILE_TYPE::DDDF,
                                               work + QStringLiteral("/container")));
    require(DataHelper::unpackFileFromBinContainer(work + QStringLiteral("/container"), type, work,
                                                   name));
}

void connectAndScan(int /*round*/)
{
    const auto [error, daemon] = aux::SystemHelper::wpaSupplicantConnect();
    require(error);
    aux::SystemHelper::wpaNetworkScan(daemon);
    require(aux::SystemHelper::wpaSupplicantDisconnect(daemon));
}

void encryptAndDecrypt(int /*round*/)
{
    require(DataHelper::importKeypairGPG(work + QStringLiteral("/key")));
    require(
        DataHelper::encryptFileGPG(work + QStringLiteral("/in"), work + QStringLiteral("/gpg")));
    require(DataHelper::decryptFileGPG(work + QStringLiteral("/gpg"), work + QStringLiteral("/out"),
                                       QStringLiteral("pp")));
    require(DataHelper::removeKeypairGPG());
}

} // namespace

int main(int argc, char *argv[])
{
    const int divisor = argc > 1 ? QByteArray(argv[1]).toInt() : 1;
    if (divisor < 1)
        qFatal("usage: soak [DIVISOR]");
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        if (type == QtFatalMsg)
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    QCoreApplication::setOrganizationName(QStringLiteral("organisation"));
    QCoreApplication::setApplicationName(QStringLiteral("soak"));
    run("mkdir -p /data/config /data/work; head -c 100000 /dev/urandom >/data/work/in");
    run("export GNUPGHOME=/data/other; mkdir -m 700 $GNUPGHOME; cd /data/work;"
        "gpg -q --batch --passphrase pp --pinentry-mode loopback --quick-gen-key soak future-default;"
        "gpg -q --batch --passphrase pp --pinentry-mode loopback --export-secret-keys >key;"
        "gpgconf --kill gpg-agent");
    startDaemon();
    soak("setValue", 100000 / divisor, setValue);
    soak("pack and unpack", 10000 / divisor, packAndUnpack);
    soak("connect, scan, disconnect", 1000 / divisor, connectAndScan);
    soak("import, encrypt, decrypt, remove", 100 / divisor, encryptAndDecrypt);
    return 0;
}
