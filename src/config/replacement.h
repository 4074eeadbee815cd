// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_REPLACEMENT_H
#define AUX_CONFIG_REPLACEMENT_H

#include <QByteArray>
#include <QIODevice>

namespace aux
{

/// Writes a text to a device. If that is a QSaveFile, it is fit to take the place of its file then:
/// - All of the text is fsynced. Where that fails the save file is cancelled; by itself it
///   would put even a text that was cut off by a full disk in place of the good one.
/// - It is later than the file it replaces, by a millisecond at least. QSettings reads a file again
///   only when its size or its time in milliseconds has changed, and the clock of file systems
///   ticks slower than that.
/// - It is for its owner only, unless it replaces a file: that one's mode it has from QSaveFile.
void writeReplacement(QIODevice &device, const QByteArray &text);

} // namespace aux

#endif
