// SPDX-License-Identifier: MIT
#include "config/rules.h"
#include "aux/datahelper.h"
#include "error/failure.h"

#include <QJsonValue>

#include <climits>

namespace aux
{

namespace
{

using Kind = Rule::Kind;

Error broken(const Rule &rule, int found)
{
    QString message = QString::fromUtf8(rule.fault);
    if (message.endsWith(QLatin1Char(' ')))
        message += QString::number(found);
    return failure(ErrorId::InvalidContent, std::move(message));
}

Error checkIdList(const QString &list)
{
    QStringList ignored;
    return DataHelper::vIdpIdListFromString(list, ignored);
}

QString textExpectation(const Rule &rule)
{
    switch (rule.kind) {
    case Kind::Length:
        return QStringLiteral("a text of %1 characters, or none").arg(rule.number);
    case Kind::MinimumLength:
        return QStringLiteral("a text of at least %1 characters, or none").arg(rule.number);
    case Kind::IdList:
        return QStringLiteral("USB ids such as 1234:abcd;0x5678:0xef01, or none");
    default:
        return QStringLiteral("a text");
    }
}

} // namespace

QString expectation(const Setting &setting)
{
    switch (setting.defaultValue.userType()) {
    case QMetaType::Bool:
        return isTogether(setting) ? QStringLiteral("true or false; at least one of these is true")
                                   : QStringLiteral("true or false");
    case QMetaType::UInt: {
        // The file holds numbers as int.
        const QString number = QStringLiteral("a number from 0 to %1").arg(INT_MAX);
        return setting.rule.kind == Kind::NotValue
                   ? number + QStringLiteral(", but not %1").arg(setting.rule.number)
                   : number;
    }
    default:
        return textExpectation(setting.rule);
    }
}

QVariant ofItsType(const QVariant &value, const Setting &setting)
{
    switch (setting.defaultValue.userType()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::UInt:
        return value.toUInt();
    default:
        return value.toString();
    }
}

bool hasType(const Setting &setting, const QJsonValue &value)
{
    switch (setting.defaultValue.userType()) {
    case QMetaType::Bool:
        return value.isBool();
    case QMetaType::UInt:
        return value.toInt(-1) >= 0; // a whole number that fits
    default:
        return value.isString();
    }
}

Error wrongType(const Setting &setting)
{
    return failure(ErrorId::InvalidContent, QStringLiteral("Wrong type of %1, expected %2")
                                                .arg(setting.keyPath(), expectation(setting)));
}

Error checkValue(const Setting &setting, const QVariant &value)
{
    const Rule &rule = setting.rule;
    const int length = value.toString().size();
    switch (rule.kind) {
    case Kind::Length:
        return length == 0 || length == rule.number ? Error() : broken(rule, length);
    case Kind::MinimumLength:
        return length == 0 || length >= rule.number ? Error() : broken(rule, length);
    case Kind::NotValue:
        return value.toInt() != rule.number ? Error() : broken(rule, rule.number);
    case Kind::IdList:
        return checkIdList(value.toString());
    case Kind::None:
    case Kind::OneOn:
        break;
    }
    return {};
}

bool isTogether(const Setting &setting)
{
    return setting.rule.kind == Kind::OneOn;
}

Error checkTogether(const std::function<QVariant(const Setting &)> &valueOf)
{
    const Setting *member = nullptr;
    for (const Setting &setting : settingsCatalogue()) {
        if (!isTogether(setting))
            continue;
        if (valueOf(setting).toBool())
            return {};
        member = &setting;
    }
    return member == nullptr ? Error() : broken(member->rule, 0);
}

} // namespace aux
