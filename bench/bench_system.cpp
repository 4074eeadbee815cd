// SPDX-License-Identifier: MIT
// Time per call of what computes: a scan table as long as an answer may be, and many interfaces.
#include "system/interfacelist.h"
#include "system/scantable.h"

#include "ratios.h"

namespace
{

constexpr int longestAnswer = 4095;
constexpr int interfaceCount = 100;

void scanTable(benchmark::State &state)
{
    QString table = QStringLiteral("bssid / frequency / signal level / flags / ssid\n");
    for (int i = 0; table.size() < longestAnswer; ++i)
        table += QStringLiteral("00:11:22:33:44:55\t2412\t-%1\t[WPA2-PSK-CCMP][ESS]\tnetwork %2\n")
                     .arg(30 + i % 90)
                     .arg(i % 40);
    table.truncate(longestAnswer);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(aux::networksFromScanTable(table));
}

aux::InterfaceList manyInterfaces()
{
    aux::InterfaceList interfaces;
    for (int i = 0; i < interfaceCount; ++i) {
        // Of the two described, the second comes last.
        const auto type =
            i + 1 < interfaceCount ? QNetworkInterface::Ethernet : QNetworkInterface::Wifi;
        interfaces += {type,
                       QNetworkInterface::IsUp,
                       QStringLiteral("eth%1").arg(i),
                       QStringLiteral("02:00:00:00:00:%1").arg(i),
                       {QHostAddress(QStringLiteral("fe80::%1").arg(i)),
                        QHostAddress(QStringLiteral("192.0.2.%1").arg(i))}};
    }
    return interfaces;
}

void networkInfo(benchmark::State &state)
{
    const aux::InterfaceList interfaces = manyInterfaces();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(aux::networkInfo(interfaces, QStringLiteral("eth0")));
}

void activeIPv4(benchmark::State &state)
{
    const aux::InterfaceList interfaces = manyInterfaces();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(aux::activeIPv4(interfaces));
}

/// Debug lines are made, but go nowhere.
void drop(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString & /*message*/)
{
}

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(drop);
    benchmark::RegisterBenchmark("scan table of 4095 bytes", scanTable)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("network info of 100 interfaces", networkInfo)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("IPv4 address of 100 interfaces", activeIPv4)
        ->Unit(benchmark::kMicrosecond);
    return bench::run(argc, argv, {});
}
