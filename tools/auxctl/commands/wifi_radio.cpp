// SPDX-License-Identifier: MIT
#include "command.h"
#include "system/wifi.h"

namespace auxctl
{

namespace
{

using aux::SystemHelper;

/// A connection to the supplicant.
class Connection
{
public:
    Connection() : m_control(checked(SystemHelper::wpaSupplicantConnect())) {}
    ~Connection() { static_cast<void>(SystemHelper::wpaSupplicantDisconnect(m_control)); }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    [[nodiscard]] wpa_ctrl *control() const { return m_control; }

private:
    wpa_ctrl *m_control;
};

/// What the supplicant answered; fails with the reason where it did not.
template <typename Value>
Value answer(std::pair<aux::Reason, Value> result)
{
    if (!result.first.isNone())
        fail(result.first.text());
    return std::move(result.second);
}

Result scan(const Call &)
{
    const Connection connection;
    QVector<Record> networks;
    for (const auto &network : answer(aux::scanNetworks(connection.control())))
        networks += {
            {"quality", network.quality}, {"security", network.security}, {"essid", network.essid}};
    Result result = table(networks);
    if (networks.isEmpty())
        result.text = "no network is known yet; the scan goes on, ask again";
    return result;
}

Result status(const Call &)
{
    const Connection connection;
    const auto [quality, isConnected] = answer(aux::linkStatus(connection.control()));
    return record({{"connected", isConnected}, {"quality", quality}});
}

const Registration scanRow{{"wifi scan",
                            "",
                            "networks",
                            "[{quality: number, security: number, essid: text}]",
                            "List the networks in reach",
                            {},
                            scan}};
const Registration statusRow{{"wifi status",
                              "",
                              "wifi",
                              "{connected: bool, quality: number}",
                              "Show the quality of the Wi-Fi link",
                              {&watchOption},
                              status}};

} // namespace

} // namespace auxctl
