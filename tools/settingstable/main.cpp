// SPDX-License-Identifier: MIT
// Prints docs/settings.md, made from the catalogue.
#include "config/catalogue.h"

#include <QTextStream>

#include <algorithm>
#include <array>
#include <vector>

namespace
{

constexpr const char *introduction = R"(# The settings

The settings file is JSON: each component of a key path is one level of objects, so that
`/device/mode/usb` is the member `usb` of `mode` of `device`. A setting that is missing has its default.
In a program a setting is called `aux::SettingsCode::` and the name below; on the command line
`auxctl config` takes the key path.

Changes of a setting with a * are told apart by `aux::Configuration::changed`, because its users must
hear of them. Every setting belongs to the area All, and to the one named here.

)";

constexpr const char *conditions = R"(
Beside these the file holds the text `version`, which the library only reads, and the number
`config_changes`, which counts the commits.

A file is taken into use only if `aux::Configuration::validateConfigFile` accepts it:

- Every setting is there.
- `/device/pin`, a hash, is empty or has 64 characters.
- `/network/dataport` is not 9000, which belongs to the terminal itself.
- `/crypto/gpgkey` is empty or has at least 64 characters.
- `/crypto/vendors` is empty or a list of USB ids, as in `1234:abcd;0x5678:0xef01`.
- At least one of the three operating modes is on.
)";

constexpr std::array areaNames{"", "Network", "Time", "Screensaver", "Mode"};

/// The enumerators are named like the key paths.
QString nameOf(const QString &keyPath)
{
    QString name;
    for (QString component : keyPath.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        component[0] = component[0].toUpper();
        name += component;
    }
    return name;
}

QString typeOf(const QVariant &value)
{
    switch (value.type()) {
    case QVariant::Bool:
        return QStringLiteral("true or false");
    case QVariant::UInt:
        return QStringLiteral("number");
    default:
        return QStringLiteral("text");
    }
}

QString asJson(const QVariant &value)
{
    const QString text = value.toString();
    return value.type() == QVariant::String ? QLatin1Char('"') + text + QLatin1Char('"') : text;
}

} // namespace

int main()
{
    const auto &catalogue = aux::settingsCatalogue();
    std::vector<aux::SettingsCode> codes(catalogue.keyBegin(), catalogue.keyEnd());
    std::sort(codes.begin(), codes.end());

    QTextStream out(stdout);
    out << introduction << "| Code | Key path | Name | Type | Default | | Area |\n"
        << "|-----:|----------|------|------|---------|-|------|\n";
    for (const aux::SettingsCode code : codes) {
        const auto meta = catalogue.value(code);
        out << "| " << static_cast<int>(code) << " | `" << meta.keyPath() << "` | "
            << nameOf(meta.keyPath()) << " | " << typeOf(meta.defaultValue) << " | `"
            << asJson(meta.defaultValue) << "` | " << (meta.flag ? "*" : "") << " | "
            << areaNames.at(static_cast<std::size_t>(meta.areas.last())) << " |\n";
    }
    out << conditions;
}
