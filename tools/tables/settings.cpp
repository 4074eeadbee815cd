// SPDX-License-Identifier: MIT
#include "config/rules.h"
#include "tables.h"

namespace
{

constexpr const char *introduction = R"(# The settings

The settings file is JSON: each component of a key path is one level of objects, so that
`/device/mode/usb` is the member `usb` of `mode` of `device`. A setting that is missing has its default.
In a program a setting is called `aux::SettingsCode::` and the name below, and what
`aux::Configuration::setValue` takes is a bool, a QString for a text, or an unsigned int for a number; on
the command line `auxctl config` takes the key path.

Changes of a setting with a * are told apart by `aux::Configuration::changed`, because its users must
hear of them. One with an s is a secret: `auxctl` shows it only where asked to. Every setting belongs
to the area all, and to the one named here. The refusal, with the id 10002, is what
`aux::Configuration::validateConfigFile` says of a value that is not as the table has it; a number at its
end is the length or the value that was found.

)";

constexpr const char *conclusion = R"(
Beside these the file holds the text `version`, which the library only reads, and the number
`config_changes`, which counts the commits.

A file is taken into use only if `aux::Configuration::validateConfigFile` accepts it: every setting must
be there, with a value as the table has it.
)";

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

QString asJson(const QVariant &value)
{
    const QString text = value.toString();
    return value.userType() == QMetaType::QString ? QLatin1Char('"') + text + QLatin1Char('"')
                                                  : text;
}

QString marks(const aux::Setting &setting)
{
    return QLatin1String(setting.flag ? "*" : "") + QLatin1String(setting.isSecret ? "s" : "");
}

/// What is said of a value that breaks the setting's rule: of the text "x" where a text is asked
/// for.
QString refusalOf(const aux::Setting &setting)
{
    const bool isNumber = setting.rule.kind == aux::Rule::Kind::NotValue;
    const QVariant wrong = isNumber ? QVariant(setting.rule.number) : QVariant(QStringLiteral("x"));
    const aux::Error error =
        aux::isTogether(setting)
            ? aux::checkTogether([](const aux::Setting &) { return QVariant(false); })
            : aux::checkValue(setting, wrong);
    return error.hasError() ? QLatin1Char('`') + error.getMsg() + QLatin1Char('`') : QString();
}

} // namespace

void printSettings(QTextStream &out)
{
    out << introduction << "| Code | Key path | Name | Value | Default | | Area | Refusal |\n"
        << "|-----:|----------|------|-------|---------|-|------|---------|\n";
    for (const aux::Setting &setting : aux::settingsCatalogue()) {
        out << "| " << static_cast<int>(setting.code) << " | `" << setting.keyPath() << "` | "
            << nameOf(setting.keyPath()) << " | " << aux::expectation(setting) << " | `"
            << asJson(setting.defaultValue) << "` | " << marks(setting) << " | "
            << aux::areaNames.at(static_cast<std::size_t>(setting.area)) << " | "
            << refusalOf(setting) << " |\n";
    }
    out << conclusion;
}
