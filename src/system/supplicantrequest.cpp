// SPDX-License-Identifier: MIT
#include "system/supplicantrequest.h"

#include <QDeadlineTimer>
#include <QHash>
#include <QMutex>

#include <array>
#include <cerrno>
#include <cstddef> // wpa_ctrl.h uses size_t and includes nothing

#include <poll.h>
#include <sys/socket.h>
#include <wpa_ctrl.h>

// wpa_ctrl_request starts its ten seconds anew with every event, and takes for its answer whatever
// comes first.

namespace aux
{

namespace
{

constexpr int patienceMs = 10000;
constexpr std::size_t longestAnswer = 4095;

/// What a connection still owes to commands that did not wait for their answers.
struct Debt {
    int answers = 0;
    /// The daemon answers, but less often than it was asked: it is slow, or has lost a command.
    bool isDoubtful = false;
};

class Debts
{
public:
    Debt take(wpa_ctrl *ctrl)
    {
        const QMutexLocker lock(&m_mutex);
        return m_debts.take(ctrl);
    }
    void set(wpa_ctrl *ctrl, const Debt &debt)
    {
        const QMutexLocker lock(&m_mutex);
        m_debts.insert(ctrl, debt);
    }

private:
    QMutex m_mutex;
    QHash<wpa_ctrl *, Debt> m_debts;
};

Debts &debts()
{
    static Debts all;
    return all;
}

bool isEvent(const QByteArray &datagram)
{
    return datagram.startsWith('<') || datagram.startsWith("IFNAME=");
}

/// Waits until the socket is ready; false where the time is over.
bool waitFor(int socket, short events, const QDeadlineTimer &deadline)
{
    pollfd waiting{socket, events, 0};
    int ready = 0;
    do {
        ready = ::poll(&waiting, 1, static_cast<int>(deadline.remainingTime()));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

bool wouldBlock()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

bool sendCommand(int socket, const char *command, const QDeadlineTimer &deadline)
{
    while (::send(socket, command, qstrlen(command), MSG_DONTWAIT | MSG_NOSIGNAL) < 0) {
        if (!wouldBlock() || !waitFor(socket, POLLOUT, deadline))
            return false;
    }
    return true;
}

/// Reads a datagram that has arrived; nothing, and errno, where there is none.
std::optional<QByteArray> arrived(int socket)
{
    std::array<char, longestAnswer> datagram{};
    const ssize_t size = ::recv(socket, datagram.data(), datagram.size(), MSG_DONTWAIT);
    if (size < 0)
        return {};
    return QByteArray(datagram.data(), static_cast<int>(size));
}

/// Waits for an answer and skips events.
std::optional<QByteArray> nextAnswer(int socket, const QDeadlineTimer &deadline)
{
    while (waitFor(socket, POLLIN, deadline)) {
        auto datagram = arrived(socket);
        if (datagram && !isEvent(*datagram))
            return datagram;
        if ((!datagram && !wouldBlock()) || deadline.hasExpired())
            break;
    }
    return {};
}

/// Takes what has arrived unasked, and waits for what is doubtful; returns how many answers are
/// still owed.
int settle(int socket, const Debt &debt, const QDeadlineTimer &deadline)
{
    int owed = debt.answers;
    for (auto old = arrived(socket); old && !deadline.hasExpired(); old = arrived(socket))
        owed -= isEvent(*old) ? 0 : 1;
    if (!debt.isDoubtful)
        return qMax(0, owed);
    const QDeadlineTimer lost(deadline.remainingTime() / 2);
    while (owed > 0 && nextAnswer(socket, lost))
        --owed;
    return 0;
}

} // namespace

std::optional<QByteArray> requestSupplicant(wpa_ctrl *ctrl, const char *command)
{
    const int socket = wpa_ctrl_get_fd(ctrl);
    const QDeadlineTimer deadline(patienceMs);
    const int owed = settle(socket, debts().take(ctrl), deadline);
    if (!sendCommand(socket, command, deadline)) {
        debts().set(ctrl, {owed, false});
        return {};
    }
    int late = owed;
    auto answer = nextAnswer(socket, deadline);
    for (; answer && late > 0; --late)
        answer = nextAnswer(socket, deadline);
    if (!answer)
        debts().set(ctrl, {late + 1, late < owed});
    return answer;
}

void forgetSupplicantRequests(wpa_ctrl *ctrl)
{
    debts().take(ctrl);
}

} // namespace aux
