// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_REPLACEMENT_H
#define AUX_CONFIG_REPLACEMENT_H

#include "error/reason.h"

#include <QSaveFile>

namespace aux
{

/// Writes a text to an open save file and makes it fit to take the place of its file:
/// - All of the text is fsynced. Where that fails the save file is cancelled; by itself it would
///   put even a text that was cut off by a full disk in place of the good one.
/// - Its time is later than that of the file it replaces, by what the file system can tell apart.
///   QSettings reads a file again only when its size or its time in milliseconds has changed.
/// - It is of the owner, the group and the mode of the file it replaces. A new one is for its owner
///   only.
Reason writeReplacement(QSaveFile &file, const QByteArray &text);

} // namespace aux

#endif
