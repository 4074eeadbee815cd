// SPDX-License-Identifier: MIT
#include "openpgp/gpg.h"
#include "openpgp/keyring.h"

#include <array>

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

const Reason notHandedOver = QStringLiteral("pass phrase cannot be handed to gpg");

QStringList commonOptions()
{
    return {QStringLiteral("--no-options"),
            QStringLiteral("--homedir"),
            keyring::path,
            QStringLiteral("--batch"),
            QStringLiteral("--no-tty"),
            QStringLiteral("--yes"),
            QStringLiteral("--status-fd"),
            QLatin1String(statusDescriptor),
            QStringLiteral("--logger-file"),
            QProcess::nullDevice(),
            QStringLiteral("--disable-dirmngr"),
            QStringLiteral("--no-auto-key-locate"),
            QStringLiteral("--trust-model"),
            QStringLiteral("always")};
}

QProcessEnvironment plainEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    return environment;
}

} // namespace

Reason Run::setPassPhrase(const QString &passPhrase)
{
    const QByteArray line = passPhrase.toUtf8() + '\n'; // a pipe takes as much without a reader
    if (line.indexOf('\n') != line.size() - 1 || line.contains('\r') || line.contains('\0'))
        return QStringLiteral("pass phrase contains a line break or NUL");
    if (line.size() > longestPassPhrase + 1)
        return QStringLiteral("pass phrase is too long");
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return notHandedOver;
    m_secret.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    const bool isWritten = ::write(ends[1], line.constData(), line.size()) == line.size();
    ::close(ends[1]);
    if (!isWritten)
        return notHandedOver;
    m_program.inherit(ends[0]);
    m_options = QStringList{QStringLiteral("--pinentry-mode"), QStringLiteral("loopback"),
                            QStringLiteral("--passphrase-fd"), QString::number(ends[0]),
                            QStringLiteral("--no-symkey-cache")};
    return {};
}

Reason Run::execute(const QStringList &command, const std::function<qint64()> &bytes)
{
    m_program.setProcessEnvironment(plainEnvironment());
    Reason reason =
        m_program.run(QStringLiteral("gpg"), commonOptions() + m_options + command, bytes);
    m_status = Status(m_program.readAllStandardError());
    return reason;
}

} // namespace aux::gpg
