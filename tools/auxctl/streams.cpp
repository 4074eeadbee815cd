// SPDX-License-Identifier: MIT
#include "streams.h"

#include "output.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cstdio>

namespace auxctl
{

namespace
{

const QString standardStream = QStringLiteral("-");

bool copyAll(std::FILE *from, std::FILE *to)
{
    std::array<char, 65536> buffer{};
    std::size_t length = 0;
    while ((length = std::fread(buffer.data(), 1, buffer.size(), from)) > 0) {
        if (std::fwrite(buffer.data(), 1, length, to) != length)
            return false;
    }
    return std::ferror(from) == 0 && std::fflush(to) == 0;
}

/// Copies between a file and a standard stream.
bool copy(const QString &path, const char *mode, std::FILE *stream)
{
    std::FILE *file = std::fopen(QFile::encodeName(path).constData(), mode);
    if (file == nullptr)
        return false;
    const bool reads = *mode == 'r';
    const bool copied = reads ? copyAll(file, stream) : copyAll(stream, file);
    return std::fclose(file) == 0 && copied;
}

aux::Error noTemporaryDirectory(const QTemporaryDir &directory)
{
    return problem(QStringLiteral("cannot make a temporary directory: ") + directory.errorString());
}

} // namespace

Outcome withInput(const QString &argument, const std::function<Outcome(const QString &)> &function,
                  const QString &name)
{
    const bool isStream = argument == standardStream;
    if (!isStream && name.isEmpty())
        return function(argument);
    const QTemporaryDir directory;
    if (!directory.isValid())
        return failed(noTemporaryDirectory(directory));
    const QString path = directory.filePath(name.isEmpty() ? QStringLiteral("stdin") : name);
    const bool made = isStream ? copy(path, "wb", stdin)
                               : QFile::link(QFileInfo(argument).absoluteFilePath(), path);
    return made ? function(path) : failed(QStringLiteral("cannot take over %1").arg(argument));
}

OutputPlace::OutputPlace(const Invocation &invocation, int index, const QString &fallback)
    : m_argument(invocation.argument(index, fallback))
{
    if (m_argument != standardStream)
        return;
    if (invocation.isSet("json"))
        m_error = problem("standard output takes either the file or --json", ExitStatus::Usage);
    m_directory = std::make_unique<QTemporaryDir>();
    if (!m_directory->isValid())
        m_error = noTemporaryDirectory(*m_directory);
}

QString OutputPlace::directory() const
{
    return isStandardOutput() ? m_directory->path() : m_argument;
}

QString OutputPlace::file() const
{
    return isStandardOutput() ? m_directory->filePath(QStringLiteral("stdout")) : m_argument;
}

Outcome OutputPlace::deliver(const QString &path, Outcome outcome) const
{
    if (!isStandardOutput())
        return outcome;
    return copy(path, "rb", standardOutput()) ? Outcome()
                                              : failed("cannot write to standard output");
}

} // namespace auxctl
