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

/// How many answers each connection still owes to commands that did not wait for them.
class OutstandingAnswers
{
public:
    int take(wpa_ctrl *ctrl)
    {
        const QMutexLocker lock(&m_mutex);
        return m_counts.take(ctrl);
    }
    void set(wpa_ctrl *ctrl, int count)
    {
        const QMutexLocker lock(&m_mutex);
        m_counts.insert(ctrl, count);
    }

private:
    QMutex m_mutex;
    QHash<wpa_ctrl *, int> m_counts;
};

OutstandingAnswers &outstandingAnswers()
{
    static OutstandingAnswers answers;
    return answers;
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

/// Takes what has arrived unasked; returns how many answers were among it.
int discardArrived(int socket, const QDeadlineTimer &deadline)
{
    int answers = 0;
    for (auto old = arrived(socket); old && !deadline.hasExpired(); old = arrived(socket))
        answers += isEvent(*old) ? 0 : 1;
    return answers;
}

} // namespace

std::optional<QByteArray> requestSupplicant(wpa_ctrl *ctrl, const char *command)
{
    const int socket = wpa_ctrl_get_fd(ctrl);
    const QDeadlineTimer deadline(patienceMs);
    int late = outstandingAnswers().take(ctrl);
    late = qMax(0, late - discardArrived(socket, deadline));
    if (!sendCommand(socket, command, deadline)) {
        outstandingAnswers().set(ctrl, late);
        return {};
    }
    const int wasLate = late;
    auto answer = nextAnswer(socket, deadline);
    for (; answer && late > 0; --late)
        answer = nextAnswer(socket, deadline);
    // A daemon that answers, but less often than it was asked, has lost a command: count anew.
    if (!answer && late == wasLate)
        outstandingAnswers().set(ctrl, late + 1);
    return answer;
}

void forgetSupplicantRequests(wpa_ctrl *ctrl)
{
    outstandingAnswers().take(ctrl);
}

} // namespace aux
