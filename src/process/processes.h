// SPDX-License-Identifier: MIT
#ifndef AUX_PROCESS_PROCESSES_H
#define AUX_PROCESS_PROCESSES_H

#include <QByteArrayList>
#include <QVector>

#include <functional>

#include <sys/types.h>

namespace aux
{

/// The calling user's processes that have these two words next to each other in their command line.
QVector<pid_t> processesWith(const QByteArray &option, const QByteArray &value);

/// Asks every few milliseconds until the condition holds; returns false where it still does not
/// after so many.
bool waitUntil(const std::function<bool()> &condition, int milliseconds);

/// Sends all of them a signal and waits for their end, for two seconds at most; returns whether all
/// have ended.
bool endProcesses(const QVector<pid_t> &processes, int signal);

} // namespace aux

#endif
