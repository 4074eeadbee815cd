// SPDX-License-Identifier: MIT
#ifndef AUXCTL_PROGRESS_H
#define AUXCTL_PROGRESS_H

#include <QString>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace auxctl
{

/// Shows on a terminal how far this process has read a file, from the second second on. The
/// library tells nobody how far it is; the kernel does.
class Progress
{
public:
    explicit Progress(const QString &path);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

private:
    void watch();

    QString m_path;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_isDone = false;
    std::thread m_thread;
};

} // namespace auxctl

#endif
