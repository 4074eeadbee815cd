// SPDX-License-Identifier: MIT
#include "openpgp/gpg.h"
#include "openpgp/keyring.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
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

QStringList commonOptions()
{
    return {QStringLiteral("--no-options"),
            QStringLiteral("--homedir"),
            Keyring::path,
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

} // namespace

Run::Run()
{
    m_program.limit(RLIMIT_DATA, memoryLimit);
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
    // Where this process has closed its standard streams, gpg still has them.
    m_secret = Descriptor(::fcntl(readEnd.number(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!m_secret.isOpen() || ::write(writeEnd.number(), line.constData(),
                                      static_cast<size_t>(line.size())) != line.size())
        return notHandedOver;
    m_program.inherit(m_secret.number());
    m_options = QStringList{QStringLiteral("--pinentry-mode"), QStringLiteral("loopback"),
                            QStringLiteral("--passphrase-fd"), QString::number(m_secret.number()),
                            QStringLiteral("--no-symkey-cache")};
    return {};
}

Reason Run::execute(const QStringList &command, const HelperProgram::Timeout &timeout)
{
    Reason reason =
        m_program.run(QStringLiteral("gpg"), commonOptions() + m_options + command, timeout);
    m_status = Status(m_program.errors());
    return reason;
}

} // namespace aux::gpg
