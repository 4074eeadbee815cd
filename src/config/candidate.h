// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_CANDIDATE_H
#define AUX_CONFIG_CANDIDATE_H

#include "config/catalogue.h"

#include <QJsonValue>
#include <QMap>

namespace aux
{

/// A file that may become the settings file, as it was when it was read: once, and never by
/// QSettings, which remembers what an earlier file of the same name, size and time held.
struct Candidate {
    QMap<SettingsCode, QJsonValue> values; // of the settings that are there
    QString fault;                         // why the file is no JSON object; null where it is one

    bool contains(const Setting &setting) const { return values.contains(setting.code); }
    /// The value that QSettings would give.
    QVariant value(const Setting &setting) const;
};

/// Reads a file of at most 1 MiB. Where it is larger, no regular file, cannot be read, or holds no
/// JSON object, no setting is there.
Candidate readCandidate(const QString &fileName);

} // namespace aux

#endif
