// SPDX-License-Identifier: MIT
#ifndef AUXCTL_PROGRESS_H
#define AUXCTL_PROGRESS_H

#include "command.h"

#include <QElapsedTimer>

namespace auxctl
{

/// Shows how far the work on a file is, as long as it exists, once that has taken a second: on one
/// line of the terminal that is standard error, which is blank again in the end.
class Progress
{
public:
    /// How many bytes of it there are to read.
    Progress(const QString &path, qint64 total);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    /// Shows none from here on.
    static void disable();

private:
    void advance(qint64 bytes);
    void show();

    QString m_name;
    qint64 m_total;
    qint64 m_done = 0;
    qint64 m_percent = -1; // that is shown
    QElapsedTimer m_timer;
};

/// Of every command: no progress.
extern const Switch quietOption;

} // namespace auxctl

#endif
