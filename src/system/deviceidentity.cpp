// SPDX-License-Identifier: MIT
#include "aux/systeminfo.h"
#include "aux/version.h"
#include "error/debugline.h"
#include "system/identity.h"

#include <QFile>
#include <QTextStream>

namespace aux
{

namespace
{

Identity &terminal()
{
    static Identity identity(systemInterfaces);
    return identity;
}

constexpr qint64 buildIdLimit = 20;

QString readBuildId()
{
    constexpr const char *operation = "getBspId";
    QFile file(QStringLiteral("/etc/build_id"));
    if (!file.exists()) {
        debugLine(operation, ": build id file does not exist");
        return {};
    }
    if (file.size() >= buildIdLimit) {
        debugLine(operation, ": build id file exceeds size limit");
        return {};
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        debugLine(operation, ": cannot open build id file");
        return {};
    }
    return QTextStream(&file).readAll().trimmed();
}

} // namespace

const QString &SystemInfo::getSerialNumber()
{
    return terminal().serialNumber();
}

Error SystemInfo::loadSerialNumber()
{
    return terminal().loadSerialNumber();
}

Error SystemInfo::loadEthernetMac()
{
    return terminal().loadEthernetAddress();
}

const QString &SystemInfo::getWifiMac()
{
    return terminal().wifiAddress();
}

const QString &SystemInfo::getVersion()
{
    static const QString version = QStringLiteral(AUX_VERSION_TEXT);
    return version;
}

const QString &SystemInfo::getBspId()
{
    thread_local QString buildId;
    buildId = readBuildId();
    return buildId;
}

} // namespace aux
