// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_CATALOGUE_H
#define AUX_CONFIG_CATALOGUE_H

#include "aux/configuration.h"

#include <QList>

#include <optional>

namespace aux
{

/// The port that is taken where a settings file names none.
constexpr unsigned int defaultDataPort = 8000;

/// What is known of a setting; of an unknown one nothing.
struct _SetMeta {
    const char *key = nullptr;  // from the root, with a leading "/"
    bool flag = false;          // changed() tells its changes apart
    QVariant defaultValue = {}; // its type is the type of the setting
    QList<SettingsArea> areas = {};

    QString keyPath() const { return QString::fromUtf8(key); }
};

/// All settings; of unspecified order, which differs between processes.
const QHash<SettingsCode, _SetMeta> &settingsCatalogue();

/// Returns the setting of exactly this key path, as in "/network/dataport".
std::optional<SettingsCode> settingAt(const QString &keyPath);

} // namespace aux

#endif
