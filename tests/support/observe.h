// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_OBSERVE_H
#define AUX_TESTS_OBSERVE_H

#include <aux/error.h>

#include <QStringList>

#include <sstream>

/// The whole chain as one text, newest first: "libaux MESSAGE ID", "" for success.
inline QString text(const aux::Error &error)
{
    std::ostringstream stream;
    stream << error;
    return QString::fromStdString(stream.str());
}

/// Collects every message of the process while it lives.
class MessageLog
{
public:
    MessageLog() : m_previous(qInstallMessageHandler(collect)) { lines().clear(); }
    ~MessageLog() { qInstallMessageHandler(m_previous); }
    MessageLog(const MessageLog &) = delete;
    MessageLog &operator=(const MessageLog &) = delete;

    /// All messages so far; forgets them.
    static QStringList take() { return std::exchange(lines(), {}); }

private:
    static QStringList &lines()
    {
        static QStringList collected;
        return collected;
    }
    static void collect(QtMsgType, const QMessageLogContext &context, const QString &message)
    {
        // A diagnostic line never says where in the source it was written.
        lines() += context.file == nullptr ? message : message + QLatin1String(" [with context]");
    }

    QtMessageHandler m_previous;
};

#endif
