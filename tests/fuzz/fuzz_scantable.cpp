// SPDX-License-Identifier: MIT
// Reads whatever the Wi-Fi daemon may answer as a scan table and as a signal poll. The networks
// have a name that is not blank and stands once, grades in range, and the best of them come first.
#include "require.h"
#include "system/scantable.h"

#include <QSet>

#include <algorithm>

using aux::SystemHelper;

namespace
{

/// Debug lines are made, but go nowhere.
void drop(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString & /*message*/)
{
}

void requireOrder(const QVector<SystemHelper::WifiInfo> &networks)
{
    QSet<QString> names;
    for (const SystemHelper::WifiInfo &network : networks) {
        require(!network.essid.trimmed().isEmpty());
        require(0 <= network.quality && network.quality < aux::implausibleQuality);
        require(0 <= network.security && network.security <= 2);
        names += network.essid;
    }
    require(names.size() == networks.size());
    require(std::is_sorted(networks.begin(), networks.end(),
                           [](const auto &a, const auto &b) { return a.quality > b.quality; }));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    static const auto previous = qInstallMessageHandler(drop);
    Q_UNUSED(previous)
    const QString answer =
        QString::fromLatin1(reinterpret_cast<const char *>(data), static_cast<int>(size));
    requireOrder(aux::networksFromScanTable(answer));
    const int quality = aux::qualityFromSignalPoll(answer);
    require(0 <= quality && quality <= aux::implausibleQuality);
    return 0;
}
