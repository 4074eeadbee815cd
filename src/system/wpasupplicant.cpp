// SPDX-License-Identifier: MIT
#include "aux/systemhelper.h"
#include "error/debugline.h"
#include "error/failure.h"
#include "process/shell.h"
#include "system/supplicantrequest.h"

#include <QFile>
#include <QMutex>

#include <cstddef> // wpa_ctrl.h uses size_t and includes nothing

#include <wpa_ctrl.h>

namespace aux
{

namespace
{

const QString controlSocket = QStringLiteral("/var/run/wpa_supplicant/wlan0");

Error refuse(const char *reason)
{
    return failure(ErrorId::General, QStringLiteral("SystemHelper: %1").arg(QLatin1String(reason)));
}

/// Opens one connection after the other: the control library numbers its sockets with a counter
/// that is not atomic, and two of one name have only one of them answered.
wpa_ctrl *openConnection()
{
    static QMutex mutex;
    const QMutexLocker lock(&mutex);
    return wpa_ctrl_open(controlSocket.toUtf8().constData());
}

void closeConnection(wpa_ctrl *ctrl)
{
    forgetSupplicantRequests(ctrl);
    wpa_ctrl_close(ctrl);
}

} // namespace

Error SystemHelper::wpaSupplicantStart()
{
    if (QFile::exists(controlSocket))
        return refuse("cannot start wpa_supplicant, control socket already exists");
    if (!runInShell(QStringLiteral(
            "/usr/sbin/wpa_supplicant -B -Dnl80211 -iwlan0 -c/etc/wpa_supplicant.conf")))
        return refuse("cannot start wpa_supplicant");
    return {};
}

Error SystemHelper::wpaSupplicantStop()
{
    if (!QFile::exists(controlSocket))
        return refuse("cannot stop wpa_supplicant, control socket does not exist");
    if (!runInShell(QStringLiteral("/usr/sbin/wpa_cli -iwlan0 terminate")))
        return refuse("cannot stop wpa_supplicant");
    return {};
}

Error SystemHelper::wpaSupplicantForceKill()
{
    // Deliberately a stale socket stays where nothing was killed.
    if (!runInShell(QStringLiteral("killall -9 wpa_supplicant")))
        return refuse("wpa_supplicant not killed");
    if (QFile::exists(controlSocket))
        QFile::remove(controlSocket);
    return {};
}

std::pair<Error, wpa_ctrl *> SystemHelper::wpaSupplicantConnect()
{
    wpa_ctrl *ctrl = openConnection();
    if (ctrl == nullptr)
        return {refuse("cannot open wpa_supplicant control interface"), nullptr};
    if (requestSupplicant(ctrl, "ATTACH") != QByteArray("OK\n")) {
        closeConnection(ctrl);
        return {refuse("cannot attach to wpa_supplicant control interface"), nullptr};
    }
    return {{}, ctrl};
}

Error SystemHelper::wpaSupplicantDisconnect(wpa_ctrl *ctrl)
{
    if (ctrl == nullptr) {
        debugLine("wpaSupplicantDisconnect", ": wpa control handle is NULL");
        return {};
    }
    requestSupplicant(ctrl, "DETACH");
    closeConnection(ctrl);
    return {};
}

} // namespace aux
