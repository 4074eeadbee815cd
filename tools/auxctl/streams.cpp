// SPDX-License-Identifier: MIT
#include "streams.h"

#include "command.h"
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

std::unique_ptr<QTemporaryDir> temporaryDirectory()
{
    auto directory = std::make_unique<QTemporaryDir>();
    if (!directory->isValid())
        fail(QStringLiteral("cannot make a temporary directory: ") + directory->errorString());
    return directory;
}

} // namespace

Input::Input(const QString &argument, const QString &name) : m_path(argument)
{
    const bool isStream = argument == standardStream;
    if (!isStream && name.isEmpty())
        return;
    m_directory = temporaryDirectory();
    m_path = m_directory->filePath(name.isEmpty() ? QStringLiteral("stdin") : name);
    const bool made = isStream ? copy(m_path, "wb", stdin)
                               : QFile::link(QFileInfo(argument).absoluteFilePath(), m_path);
    if (!made)
        fail(QStringLiteral("cannot take over %1").arg(argument));
}

OutputPlace::OutputPlace(const Call &call, int index, const QString &fallback)
    : m_argument(call.argument(index, fallback))
{
    if (m_argument != standardStream)
        return;
    if (call.has(jsonOption))
        misuse("standard output takes either the file or --json");
    m_directory = temporaryDirectory();
}

QString OutputPlace::directory() const
{
    return isStandardOutput() ? m_directory->path() : m_argument;
}

QString OutputPlace::file() const
{
    return isStandardOutput() ? m_directory->filePath(QStringLiteral("stdout")) : m_argument;
}

Result OutputPlace::deliver(const QString &path, Result result) const
{
    if (!isStandardOutput())
        return result;
    if (!copy(path, "rb", standardOutput()))
        fail("cannot write to standard output");
    return {};
}

} // namespace auxctl
