// SPDX-License-Identifier: MIT
#include "dispatch.h"

#include <aux/datahelper.h>
#include <aux/fshelper.h>

#include <QtTest>

using aux::DataHelper;
using aux::DirLocation;
using aux::FsHelper;

namespace
{

int filesIn(DirLocation location)
{
    return FsHelper::getNumberOfDirEntries(location).second;
}

void gpg(const QStringList &arguments)
{
    const QStringList quietly{"--homedir", "/tmp", "--batch", "--quiet", "--passphrase", ""};
    if (QProcess::execute("gpg", quietly + arguments) != 0)
        qFatal("gpg has failed");
}

/// The key pair of a server, as a file.
QString makeKeyPair()
{
    QString file = "/tmp/pair.gpg";
    gpg({"--quick-generate-key", "server", "future-default"});
    gpg({"--output", file, "--export-secret-keys"});
    return file;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestDispatch : public QObject
{
    Q_OBJECT

    const QString m_pair = makeKeyPair();
    aux::Configuration m_configuration;

private Q_SLOTS:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName("example");
        QCoreApplication::setApplicationName("terminal");
        m_configuration.init();
        QVERIFY(!keepKey(m_configuration, contentOf(m_pair), "a pass phrase").hasError());
        QVERIFY(m_configuration.isToolsConfigured());
    }

    void theServerReadsWhatItGets()
    {
        const QString download = QCoreApplication::applicationFilePath();
        const auto [error, message] = dispatch(m_configuration, download);
        QVERIFY(!error.hasError());
        QCOMPARE(filesIn(DirLocation::New), 0);
        QCOMPARE(filesIn(DirLocation::Archive), 1);
        QCOMPARE(FsHelper::dirLocationFromFullPath(message), DirLocation::Transfer);

        QVERIFY(!DataHelper::importKeypairGPG(m_pair).hasError());
        QVERIFY(!DataHelper::decryptFileGPG(message, "/tmp/container", {}).hasError());
        auto type = DataHelper::ZEL_FILE_TYPE::Unknown;
        QString name = "arrived";
        QVERIFY(!DataHelper::unpackFileFromBinContainer("/tmp/container", type, "/tmp", name)
                     .hasError());
        QCOMPARE(type, DataHelper::ZEL_FILE_TYPE::DDDF);
        QCOMPARE(contentOf(name), contentOf(download));
    }

    void aFailureSaysWhatAndWhy()
    {
        const auto [error, message] = dispatch(m_configuration, "/nowhere");
        QCOMPARE(error.getMsg(), "packFileToBinContainer: Failed to open file for reading");
        QCOMPARE(std::next(error.begin())->getMsg(), "/nowhere is not packed");
        QCOMPARE(error.getExtraData(), "/nowhere: No such file or directory");
        QCOMPARE(filesIn(DirLocation::New), 0);
    }
};

QTEST_GUILESS_MAIN(TestDispatch)
#include "tst_dispatch.moc"
