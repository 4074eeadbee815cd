// SPDX-License-Identifier: MIT
#include <aux/configuration.h>

#include "config/catalogue.h"
#include "support/observe.h"
#include "support/rows.h"
#include "support/settings.h"

#include <climits>
#include <optional>

using aux::ChangeState;
using aux::Configuration;
using aux::SettingsArea;
using aux::SettingsCode;

namespace
{

QString describe(ChangeState state)
{
    return QString(state.flaggedChanged ? "flagged " : "") + (state.anyChanged ? "any" : "none");
}

} // namespace

class TestConfig : public QObject
{
    Q_OBJECT

    QString m_file;
    std::optional<Configuration> m_configuration;

private Q_SLOTS:
    /// First of all: what Configuration::init() does to the process cannot be undone.
    void initTestCase()
    {
        m_file = useFreshSettings();
        const MessageLog log;
        Configuration configuration;
        QVERIFY(!configuration.getValue(SettingsCode::NetworkDataport).isValid());
        configuration.setValue(SettingsCode::NetworkDataport, 1U);
        QVERIFY(configuration.getFileName().isNull());
        QCOMPARE(configuration.getChangeCounter(), 0);
        QVERIFY(!configuration.isToolsConfigured());
        configuration.snapshot();
        configuration.rollback(SettingsArea::All);
        QCOMPARE(describe(configuration.changed(SettingsArea::All)), "none");
        configuration.commit();
        QStringList expected;
        for (const char *operation : {"getValue", "setValue", "getFileName", "getChangeCounter",
                                      "getValue", "snapshot", "rollback", "_changed", "commit"})
            expected += QString(operation) + " : not initialized";
        QCOMPARE(log.take(), expected);
        QCOMPARE(configuration.getVersion(), "");
        QCOMPARE(configuration.getCryptoVidPidList(), QStringList());
        configuration.sync();
        QCOMPARE(log.take(), QStringList());
        QVERIFY(!QFile::exists(m_file));
    }

    void init()
    {
        m_file = useFreshSettings();
        m_configuration.emplace();
        m_configuration->init();
    }

    /// The rows themselves are in docs/settings.md, which is compared with the catalogue.
    void catalogue()
    {
        for (const aux::Setting &setting : aux::settingsCatalogue()) {
            QCOMPARE(&aux::settingOf(setting.code), &setting);
            QCOMPARE(aux::settingAt(setting.key), &setting);
            const QVariant value = m_configuration->getValue(setting.code);
            QCOMPARE(value, setting.defaultValue);
            QCOMPARE(value.userType(), setting.defaultValue.userType());
            QVERIFY(!value.toString().isNull());
        }
        QVERIFY(aux::settingAt("network/dataport") == nullptr);
    }

    void secondInit()
    {
        QCOMPARE(m_configuration->getFileName(), m_file);
        m_configuration->setValue(SettingsCode::DeviceAudio, false);
        const MessageLog log;
        m_configuration->init();
        QCOMPARE(log.take(), QStringList("init : already initialized"));
        QCOMPARE(describe(m_configuration->changed(SettingsArea::All)), "any");
    }

    void typeCheck_data() { addRows("typecheck.txt"); }
    void typeCheck()
    {
        const auto [input, output] = cells<QString, QString>();
        const auto code = static_cast<SettingsCode>(input.section(' ', 0, 0).toInt());
        const MessageLog log;
        m_configuration->setValue(code, valueOf(input.section(' ', 1)));
        if (output == "refused") {
            QCOMPARE(log.take(), QStringList("setValue : type mismatch"));
        } else if (output == "ignored") {
            QVERIFY(!m_configuration->getValue(code).isValid());
            QCOMPARE(log.take(), QStringList({"QSettings::setValue: Empty key passed",
                                              "QSettings::value: Empty key passed"}));
        } else {
            QCOMPARE(QJsonDocument::fromJson(read(m_file)),
                     QJsonDocument::fromJson(output.toUtf8()));
            return;
        }
        QVERIFY(!QFile::exists(m_file));
    }

    /// Twenty objects: more than QSettings has room for formats.
    void whatTheFileHolds()
    {
        std::vector<Configuration> configurations(20);
        for (Configuration &configuration : configurations)
            configuration.init();
        Configuration &last = configurations.back();
        QVERIFY(!last.isToolsConfigured());
        write(m_file, R"({"version": "2.1", "config_changes": 7, "network": {"dataport": 8000},
                          "crypto": {"passphrase": "x", "vendors": "0x1:2"}})");
        QCOMPARE(last.getVersion(), "2.1");
        QCOMPARE(last.getChangeCounter(), 7);
        QCOMPARE(last.getValue(SettingsCode::NetworkDataport).userType(), QMetaType::Int);
        QVERIFY(last.isToolsConfigured());
        QCOMPARE(last.getCryptoVidPidList(), QStringList("1:2"));
        // The port is of another type, but no other.
        QCOMPARE(describe(last.changed(SettingsArea::Network)), "none");
        QCOMPARE(describe(last.changed(SettingsArea::All)), "flagged any");

        last.setValue(SettingsCode::CryptoVendors, "1:2;");
        const MessageLog log;
        QCOMPARE(last.getCryptoVidPidList(), QStringList());
        QCOMPARE(log.take(), QStringList("getCryptoVidPidList : invalid vendor:product id list"));
    }

    void changes_data() { addRows("changes.txt"); }
    void changes()
    {
        const auto [input, output] = cells<QString, QString>();
        const auto code = static_cast<SettingsCode>(input.section(' ', 0, 0).toInt());
        const auto area = static_cast<SettingsArea>(output.section(' ', 0, 0).toInt());
        const QVariant before = m_configuration->getValue(code);
        m_configuration->setValue(code, valueOf(input.section(' ', 1)));
        QCOMPARE(describe(m_configuration->changed(SettingsArea::All)), output.section(' ', 1));
        QCOMPARE(describe(m_configuration->changed(area)), output.section(' ', 1));
        for (const int other : {1, 2, 3, 4, 5, -1}) {
            if (other == static_cast<int>(area))
                continue;
            QCOMPARE(describe(m_configuration->changed(SettingsArea(other))), "none");
            m_configuration->rollback(SettingsArea(other));
        }
        QCOMPARE(m_configuration->getValue(code), valueOf(input.section(' ', 1)));
        m_configuration->rollback(area);
        QCOMPARE(m_configuration->getValue(code), before);
    }

    void commits()
    {
        m_configuration->commit();
        QVERIFY(!QFile::exists(m_file));
        m_configuration->setValue(SettingsCode::DevicePin, "hash");
        m_configuration->setValue(SettingsCode::DeviceAudio, false);
        m_configuration->commit();
        QCOMPARE(valueIn(m_file, "config_changes"), QJsonValue(1));
        m_configuration->commit();
        m_configuration->setValue(SettingsCode::DeviceAudio, true);
        m_configuration->snapshot();
        m_configuration->commit();
        m_configuration->rollback(SettingsArea::All);
        QCOMPARE(m_configuration->getChangeCounter(), 1);
        QCOMPARE(valueIn(m_file, "device/pin"), QJsonValue("hash"));
    }

    void counterWrapsAround()
    {
        write(m_file, R"({"config_changes": 2147483647})");
        m_configuration->setValue(SettingsCode::DeviceAudio, false);
        m_configuration->commit();
        QCOMPARE(m_configuration->getChangeCounter(), INT_MIN);
    }
};

QTEST_APPLESS_MAIN(TestConfig)
#include "tst_config.moc"
