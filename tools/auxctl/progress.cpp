// SPDX-License-Identifier: MIT
#include "progress.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <iostream>

#include <unistd.h>

namespace auxctl
{

namespace
{

using namespace std::chrono_literals;

/// The greatest position that this process has reached in the file.
qint64 positionIn(const QString &path)
{
    qint64 position = 0;
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    for (const QString &number : descriptors.entryList(QDir::Files | QDir::System)) {
        QFile status(QStringLiteral("/proc/self/fdinfo/") + number);
        if (QFile::symLinkTarget(descriptors.filePath(number)) == path &&
            status.open(QIODevice::ReadOnly))
            // "pos:", a tab, and the number
            position =
                std::max(position, status.readLine().split(':').value(1).trimmed().toLongLong());
    }
    return position;
}

} // namespace

Progress::Progress(const QString &path) : m_path(QFileInfo(path).absoluteFilePath())
{
    if (isatty(STDERR_FILENO) != 0)
        m_thread = std::thread(&Progress::watch, this);
}

Progress::~Progress()
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_isDone = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void Progress::watch()
{
    bool isShown = false;
    std::unique_lock lock(m_mutex);
    while (!m_wake.wait_for(lock, isShown ? 200ms : 1000ms, [this] { return m_isDone; })) {
        const QFileInfo file(m_path);
        if (file.size() == 0) // not there yet
            continue;
        isShown = true;
        std::cerr << '\r' << m_path.toStdString() << ' '
                  << 100 * positionIn(file.canonicalFilePath()) / file.size() << " %" << std::flush;
    }
    if (isShown)
        std::cerr << "\r\033[K" << std::flush;
}

} // namespace auxctl
