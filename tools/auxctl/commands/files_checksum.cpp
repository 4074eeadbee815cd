// SPDX-License-Identifier: MIT
#include "files.h"
#include "fs/checksum.h"
#include "progress.h"
#include "streams.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <array>

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

/// What sha256sum puts for a letter of a name that would end its line, or mean such a one.
struct Escape {
    const char *letter;
    const char *text;
};
constexpr std::array<Escape, 3> escapes{{{"\\", "\\\\"}, {"\n", "\\n"}, {"\r", "\\r"}}};

/// A line as sha256sum prints it.
QString lineOf(const QString &checksum, const QString &path)
{
    QString name = path;
    for (const auto &[letter, text] : escapes)
        name.replace(letter, text);
    return (name == path ? QString() : "\\") + checksum + "  " + name;
}

/// The name in such a line, of which what stands before it has been removed.
QString nameIn(QString rest, bool isEscaped)
{
    for (int at = 0; isEscaped && (at = rest.indexOf('\\', at)) >= 0; ++at) {
        for (const auto &[letter, text] : escapes) {
            if (QStringView(rest).mid(at, 2) == QLatin1String(text)) {
                rest.replace(at, 2, letter);
                break;
            }
        }
    }
    return rest;
}

Result checksum(const Call &call)
{
    const QStringList files = filesOf(call.arguments());
    const bool isSingle = files.size() == 1 && files == call.arguments();
    Result result = lookAtEach(files, [](const QString &file) {
        return Finding{{{"checksum", checksumOf(file)}}};
    });
    QStringList lines; // of a single file the checksum alone
    for (const auto &item : result.json.toArray()) {
        const QJsonObject fields = item.toObject();
        const QString sum = fields["checksum"].toString();
        if (!sum.isEmpty())
            lines += isSingle ? sum : printable(lineOf(sum, fields["path"].toString()));
    }
    result.text = lines.join('\n');
    return result;
}

constexpr ValueOption<QString> listOption{
    "list", "FILE", "Check all files of a list as sha256sum prints it", anyText};

struct Expectations {
    QStringList files;
    QStringList checksums; // in the same order
};

Expectations readList(const QString &argument)
{
    static const QRegularExpression line(QStringLiteral("\\A(\\\\?)([0-9A-Fa-f]{64}) [ *](.+)\\z"));
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
        expectations.files += nameIn(match.captured(3), !match.captured(1).isEmpty());
        expectations.checksums += match.captured(2).toLower();
    }
    if (expectations.files.isEmpty())
        fail(QStringLiteral("%1 holds no checksums").arg(input.name()));
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
    return {{arguments[0]}, {arguments[1].toLower()}};
}

Result verify(const Call &call)
{
    Expectations expected = expectationsOf(call);
    return lookAtEach(expected.files, [&checksums = expected.checksums](const QString &file) {
        const QString checksum = checksums.takeFirst();
        const bool isValid = checksumOf(file) == checksum;
        return Finding{{{"valid", isValid}}, !isValid};
    });
}

const Registration checksumRow{{"files checksum",
                                "FILE...",
                                "checksums",
                                "[{path: text, error?: errors, checksum?: text}]",
                                "Print the SHA-256 checksums of files",
                                {},
                                checksum}};
const Registration verifyRow{{"files verify",
                              "[FILE] [CHECKSUM]",
                              "verified",
                              "[{path: text, error?: errors, valid?: bool}]",
                              "Check the SHA-256 checksums of files",
                              {&listOption},
                              verify}};

} // namespace

} // namespace auxctl
