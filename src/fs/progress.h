// SPDX-License-Identifier: MIT
#ifndef AUX_FS_PROGRESS_H
#define AUX_FS_PROGRESS_H

#include <QtGlobal>

#include <functional>

namespace aux
{

/// Is told, in the course of an operation, how many more bytes it has read of its files.
using ProgressObserver = std::function<void(qint64 bytes)>;

/// Has the operations of the calling thread observed; an empty observer ends that.
void observeProgress(ProgressObserver observer);

/// Tells the observer of the calling thread, if there is one.
void advance(qint64 bytes);

} // namespace aux

#endif
