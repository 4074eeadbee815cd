// SPDX-License-Identifier: MIT
#include "openpgp/gpg.h"

#include "openpgp/signatures.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace aux::gpg
{

namespace
{

/// Where it writes status lines, and nothing else: what it has to say to people is dropped.
constexpr const char *statusDescriptor = "2";

/// What gpg-agent takes, in bytes.
constexpr int longestPassPhrase = 255;

/// Of memory that it can write to, in bytes: with its program files, 256 MiB.
constexpr rlim_t memoryLimit = 240UL * 1024 * 1024;

const Reason notHandedOver = QStringLiteral("pass phrase cannot be handed to gpg");

/// No settings of the machine's, and no text for people.
QStringList gpgOptions(const QString &home)
{
    return {QStringLiteral("--no-options"),
            QStringLiteral("--homedir"),
            home,
            QStringLiteral("--batch"),
            QStringLiteral("--no-tty"),
            QStringLiteral("--yes"),
            QStringLiteral("--status-fd"),
            QLatin1String(statusDescriptor),
            QStringLiteral("--logger-file"),
            QStringLiteral("/dev/null"),
            QStringLiteral("--disable-dirmngr"),
            QStringLiteral("--no-auto-key-locate"),
            QStringLiteral("--trust-model"),
            QStringLiteral("always")};
}

QStringList gpgvOptions()
{
    return QStringList{QStringLiteral("--homedir"),   QStringLiteral("/nonexistent"),
                       QStringLiteral("--status-fd"), QLatin1String(statusDescriptor),
                       QStringLiteral("--log-file"),  QStringLiteral("/dev/null")} +
           weakDigestOptions();
}

} // namespace

Run::Run(const QString &home) : Run(QStringLiteral("gpg"), gpgOptions(home)) {}

Run::Run(QString name, QStringList options) : m_name(std::move(name)), m_options(std::move(options))
{
    m_program.limit(RLIMIT_DATA, memoryLimit);
}

Run Run::gpgv()
{
    return {QStringLiteral("gpgv"), gpgvOptions()};
}

/// Under a number that is none of a standard stream: where this process has closed its own, the
/// program still has them. Returns -1 with errno where that cannot be.
int Run::inherit(int descriptor)
{
    m_inherited.emplace_back(::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    const int number = m_inherited.back().number();
    if (number >= 0)
        m_program.inherit(number);
    return number;
}

QString Run::show(const QByteArray &content)
{
    const Descriptor file(::memfd_create("libaux", MFD_CLOEXEC));
    const auto size = static_cast<size_t>(content.size());
    if (!file.isOpen() || ::write(file.number(), content.constData(), size) != content.size())
        return {};
    const int number = inherit(file.number());
    return number < 0 ? QString() : QStringLiteral("/proc/self/fd/%1").arg(number);
}

Reason Run::setPassPhrase(const QString &passPhrase)
{
    const QByteArray line = passPhrase.toUtf8() + '\n'; // a pipe takes as much without a reader
    if (line.indexOf('\n') != line.size() - 1 || line.contains('\r') || line.contains('\0'))
        return QStringLiteral("pass phrase contains a line break or NUL");
    if (line.size() > longestPassPhrase + 1)
        return QStringLiteral("pass phrase is too long");
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return notHandedOver.because(Keyring::path, errno);
    const Descriptor readEnd(ends[0]);
    const Descriptor writeEnd(ends[1]);
    const int secret = inherit(readEnd.number());
    if (secret < 0 || ::write(writeEnd.number(), line.constData(),
                              static_cast<size_t>(line.size())) != line.size())
        return notHandedOver;
    m_options += QStringList{QStringLiteral("--pinentry-mode"), QStringLiteral("loopback"),
                             QStringLiteral("--passphrase-fd"), QString::number(secret),
                             QStringLiteral("--no-symkey-cache")};
    return {};
}

Reason Run::execute(const QStringList &command, const HelperProgram::Timeout &timeout)
{
    Reason reason = m_program.run(m_name, m_options + command, timeout);
    m_status = Status(m_program.errors());
    return reason;
}

} // namespace aux::gpg
