// SPDX-License-Identifier: MIT
#include "config/candidate.h"
#include "config/jsonformat.h"
#include "fs/regularfile.h"

#include <QJsonDocument>

#include <algorithm>

namespace aux
{

namespace
{

constexpr int largestCandidate = 1024 * 1024;

/// "line 3, column 7", both from 1, columns in characters.
QString positionIn(const QByteArray &text, int offset)
{
    const QByteArray before = text.left(offset);
    const int lineStart = before.lastIndexOf('\n') + 1;
    return QStringLiteral("line %1, column %2")
        .arg(before.count('\n') + 1)
        .arg(QString::fromUtf8(before.mid(lineStart)).size() + 1);
}

QJsonObject parse(const QByteArray &text, QString &fault)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        fault = positionIn(text, error.offset) + QStringLiteral(": ") + error.errorString();
    else if (!document.isObject())
        fault = QStringLiteral("no object");
    return document.object();
}

QByteArray read(const QString &fileName, QString &fault)
{
    RegularFile file(fileName);
    const auto text = file.openForReading() ? file.readUpTo(largestCandidate + 1) : std::nullopt;
    if (!text)
        fault = file.cause();
    else if (text->size() > largestCandidate)
        fault = QStringLiteral("more than %1 bytes").arg(largestCandidate);
    return fault.isNull() ? *text : QByteArray();
}

int longestKey()
{
    const auto &catalogue = settingsCatalogue();
    const auto isShorter = [](const Setting &a, const Setting &b) {
        return qstrlen(a.key) < qstrlen(b.key);
    };
    return static_cast<int>(
        qstrlen(std::max_element(catalogue.begin(), catalogue.end(), isShorter)->key));
}

} // namespace

QVariant Candidate::value(const Setting &setting) const
{
    const auto found = values.find(setting.code);
    return found == values.end() ? setting.defaultValue : json::toVariant(*found);
}

Candidate readCandidate(const QString &fileName)
{
    Candidate candidate;
    const QByteArray text = read(fileName, candidate.fault);
    if (!candidate.fault.isNull())
        return candidate;
    const auto take = [&](const QString &key, const QJsonValue &value) {
        if (const Setting *setting = settingAt(QLatin1Char('/') + key))
            candidate.values.insert(setting->code, value);
    };
    // Names may be as long as the file and have as many members: their key paths would take
    // gigabytes.
    json::visit(parse(text, candidate.fault), take, longestKey());
    return candidate;
}

} // namespace aux
