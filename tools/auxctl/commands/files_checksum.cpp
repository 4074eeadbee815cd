// SPDX-License-Identifier: MIT
#include "files.h"
#include "fs/checksum.h"
#include "progress.h"
#include "streams.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

namespace auxctl
{

namespace
{

QString checksumOf(const QString &argument)
{
    const Input input(argument);
    if (!input.isStream()) {
        const Progress progress(argument, QFileInfo(argument).size());
        return checked(aux::digestOf(argument)).hex();
    }
    aux::Digest digest;
    input.read([&digest](const char *data, qint64 length) {
        digest.add(data, length);
        return true;
    });
    return digest.hex();
}

Result checksum(const Call &call)
{
    const QStringList files = filesOf(call.arguments());
    Result result = lookAtEach(files, [](const QString &file) {
        return Finding{{{"checksum", checksumOf(file)}}};
    });
    QStringList lines; // as sha256sum prints them; of a single file the checksum alone
    for (const auto &item : result.json.toArray()) {
        const QJsonObject fields = item.toObject();
        const QString name =
            files.size() == 1 ? QString() : "  " + printable(fields["path"].toString());
        if (fields.contains("checksum"))
            lines += fields["checksum"].toString() + name;
    }
    result.text = lines.join('\n');
    return result;
}

constexpr ValueOption<QString> listOption{
    "list", "FILE", "Check all files of a list as sha256sum prints it", anyText};

struct Expectations {
    QStringList files; // in the order of the list
    QHash<QString, QString> checksums;
};

Expectations readList(const QString &argument)
{
    static const QRegularExpression line(QStringLiteral("\\A([0-9A-Fa-f]{64}) [ *](.+)\\z"));
    const Input input(argument);
    QFile list;
    input.open(list);
    Expectations expectations;
    QString text;
    while (!(text = QString::fromUtf8(list.readLine())).isEmpty()) {
        text.chop(text.endsWith('\n') ? 1 : 0);
        const auto match = line.match(text);
        if (!match.hasMatch())
            fail(QStringLiteral("%1: \"%2\" is no checksum and file").arg(input.name(), text));
        expectations.files += match.captured(2);
        expectations.checksums[match.captured(2)] = match.captured(1).toLower();
    }
    return expectations;
}

Expectations expectationsOf(const Call &call)
{
    const QStringList arguments = call.arguments();
    const auto list = call.value(listOption);
    if (list && arguments.isEmpty())
        return readList(*list);
    if (list || arguments.size() != 2)
        misuse("give either a FILE and its CHECKSUM, or --list");
    return {{arguments[0]}, {{arguments[0], arguments[1].toLower()}}};
}

Result verify(const Call &call)
{
    const Expectations expected = expectationsOf(call);
    return lookAtEach(expected.files, [&expected](const QString &file) {
        const bool isValid = checksumOf(file) == expected.checksums[file];
        return Finding{{{"valid", isValid}}, !isValid};
    });
}

const Registration checksumRow{
    {"files checksum",
     "FILE...",
     "checksums",
     "[{path: text, error?: [{domain: text, message: text, id: number}], checksum?: text}]",
     "Print the SHA-256 checksums of files",
     {},
     checksum}};
const Registration verifyRow{
    {"files verify",
     "[FILE] [CHECKSUM]",
     "verified",
     "[{path: text, error?: [{domain: text, message: text, id: number}], valid?: bool}]",
     "Check the SHA-256 checksums of files",
     {&listOption},
     verify}};

} // namespace

} // namespace auxctl
