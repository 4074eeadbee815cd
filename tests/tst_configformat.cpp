// SPDX-License-Identifier: MIT
#include "config/jsonformat.h"
#include "support/datarows.h"

#include <QBuffer>
#include <QJsonDocument>

using aux::json::maximumDepth;

namespace
{

/// "KEY TYPE VALUE; KEY TYPE VALUE"
QString describe(const QSettings::SettingsMap &settings)
{
    QStringList lines;
    for (auto it = settings.begin(); it != settings.end(); ++it)
        lines += QStringLiteral("%1 %2 %3").arg(it.key(), it->typeName(), it->toString()).trimmed();
    return lines.join("; ");
}

QSettings::SettingsMap settingsOf(const QString &description)
{
    QSettings::SettingsMap settings;
    for (const QString &line : description.split("; ", Qt::SkipEmptyParts))
        settings[line.section(' ', 0, 0)] = valueOf(line.section(' ', 1));
    return settings;
}

QSettings::SettingsMap readText(QByteArray text)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    QSettings::SettingsMap settings;
    return aux::json::readSettings(buffer, settings) ? settings : QSettings::SettingsMap();
}

QByteArray writeText(const QSettings::SettingsMap &settings)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return aux::json::writeSettings(buffer, settings) ? buffer.data() : QByteArray();
}

QString deepKey(int segments)
{
    return QString("a/").repeated(segments - 1) + 'a';
}

int syncCalls = 0;

} // namespace

/// In place of the C library's: counts.
extern "C" void sync() noexcept
{
    ++syncCalls;
}

class TestConfigFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reading_data() { addRows("reading.txt"); }
    void reading()
    {
        QFETCH(QString, input);
        QTEST(describe(readText(input.toUtf8())), "output");
    }

    void writing_data() { addRows("writing.txt"); }
    void writing()
    {
        QFETCH(QString, input);
        QFETCH(QString, output);
        syncCalls = 0;
        QCOMPARE(writeText(settingsOf(input)),
                 QJsonDocument::fromJson(output.toUtf8()).toJson(QJsonDocument::Indented));
        QCOMPARE(syncCalls, 1);
    }

    /// What could not be read again, and would take the rest with it, is not written.
    void depth()
    {
        const QString deepest = deepKey(maximumDepth);
        const QString tooDeep = deepKey(maximumDepth + 1);
        QCOMPARE(readText(writeText({{deepest, 1}, {"b", 2}})).keys(), QStringList({deepest, "b"}));
        QCOMPARE(readText(writeText({{"a/b", 1}, {tooDeep, 2}, {"b", 3}})).keys(),
                 QStringList({"a/b", "b"}));
    }
};

QTEST_APPLESS_MAIN(TestConfigFormat)
#include "tst_configformat.moc"
