// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_FAIRMUTEX_H
#define AUX_CONFIG_FAIRMUTEX_H

#include <QMutex>
#include <QWaitCondition>

namespace aux
{

/// A mutex that threads get in the order in which they asked for it. QMutex lets the one that has
/// just given it up take it again before another has woken up.
class FairMutex
{
public:
    void lock()
    {
        const QMutexLocker locker(&m_mutex);
        const quint64 ticket = m_nextTicket++;
        while (ticket != m_served)
            m_turn.wait(&m_mutex);
    }
    void unlock()
    {
        const QMutexLocker locker(&m_mutex);
        ++m_served;
        m_turn.wakeAll();
    }

private:
    QMutex m_mutex;
    QWaitCondition m_turn;
    quint64 m_nextTicket = 0;
    quint64 m_served = 0;
};

} // namespace aux

#endif
