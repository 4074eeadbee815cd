// SPDX-License-Identifier: MIT
#ifndef AUX_PROCESS_PROCESSES_H
#define AUX_PROCESS_PROCESSES_H

#include <QByteArray>

#include <functional>

namespace aux
{

/// Ends the calling user's processes that have these two words next to each other in their command
/// line, and those that they start meanwhile: asks them for two seconds (SIGTERM), then kills them
/// and waits for two seconds more. Returns whether none is left.
bool endProcessesWith(const QByteArray &option, const QByteArray &value);

/// Asks every few milliseconds until the condition holds; returns false where it still does not
/// after so many.
bool waitUntil(const std::function<bool()> &condition, int milliseconds);

} // namespace aux

#endif
