// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_JSONFORMAT_H
#define AUX_CONFIG_JSONFORMAT_H

#include <QJsonObject>
#include <QSettings>

#include <climits>
#include <functional>

// The settings as text: one JSON object, one level of nesting per segment of a key path, so that
// "device/mode/usb" is the member "usb" of the member "mode" of the member "device".

namespace aux::json
{

/// Deepest nesting, in objects, that Qt reads; a text with one level more reads as nothing at all.
constexpr int maximumDepth = 1024;

/// Turns a value into that of a setting: text and bool keep their type, everything else becomes an
/// int, 0 unless it is a whole number that fits.
QVariant toVariant(const QJsonValue &value);

/// Calls `visitor` with the key path of every value in the objects below, in the order of the
/// names. A name may itself hold "/", so a key path may come again; the last one counts. Longer
/// ones than `longest` are left out.
void visit(const QJsonObject &object,
           const std::function<void(const QString &, const QJsonValue &)> &visitor,
           int longest = INT_MAX);

/// Turns an object into settings.
QSettings::SettingsMap flatten(const QJsonObject &object);

/// Turns settings into an object: text and bool keep their type, everything else becomes a whole
/// number. Where a key is also the beginning of longer ones, its value gives way to them. A key
/// too deep to be read again is left out, for it would take all others with it.
QJsonObject nest(const QSettings::SettingsMap &settings);

/// The settings in a text; none where it is no JSON object.
QSettings::SettingsMap parse(const QByteArray &text);

/// The text of a settings file.
QByteArray toText(const QSettings::SettingsMap &settings);

/// The two functions that QSettings calls; neither ever reports a failure. What is no JSON object
/// reads as no settings.
bool readSettings(QIODevice &device, QSettings::SettingsMap &settings);
bool writeSettings(QIODevice &device, const QSettings::SettingsMap &settings);

} // namespace aux::json

#endif
