// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_FAKESUPPLICANT_H
#define AUX_TESTS_FAKESUPPLICANT_H

#include <QByteArrayList>
#include <QDir>
#include <QFile>
#include <QMap>

#include <array>
#include <thread>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

/// A daemon on the real control socket that speaks the real datagrams and answers as it is told.
class FakeSupplicant
{
public:
    /// The datagrams sent for each command, none for silence.
    using Answers = QMap<QByteArray, QByteArrayList>;
    /// In place of a datagram: only what stands after it is still sent.
    static constexpr const char *death = "death";
    /// In place of a datagram: half a second passes; less where the command came before.
    static constexpr const char *pause = "pause";
    /// In place of a datagram: more than a second passes.
    static constexpr const char *slowness = "slowness";

    explicit FakeSupplicant(const Answers &answers)
        : m_answers({{"ATTACH", {"OK\n"}}, {"DETACH", {"OK\n"}}, {"SCAN", {"OK\n"}}})
    {
        for (auto answer = answers.begin(); answer != answers.end(); ++answer)
            m_answers[answer.key()] = answer.value();
        QDir().mkpath("/run/wpa_supplicant");
        sockaddr_un address{AF_UNIX, {}};
        qstrncpy(address.sun_path, path, sizeof(address.sun_path));
        if (::bind(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof(address)) != 0)
            qFatal("cannot bind %s", path);
        m_thread = std::thread([this] { serve(); });
    }
    ~FakeSupplicant() { stop(); }
    FakeSupplicant(const FakeSupplicant &) = delete;
    FakeSupplicant &operator=(const FakeSupplicant &) = delete;

    /// Ends the daemon; returns the commands that it got.
    QByteArrayList stop()
    {
        ::shutdown(m_socket, SHUT_RDWR);
        if (m_thread.joinable())
            m_thread.join();
        ::close(std::exchange(m_socket, -1));
        QFile::remove(path);
        return m_commands;
    }

private:
    static constexpr const char *path = "/var/run/wpa_supplicant/wlan0";

    void serve()
    {
        std::array<char, 256> command{};
        sockaddr_un client{};
        auto *address = reinterpret_cast<sockaddr *>(&client);
        socklen_t size = sizeof(client);
        ssize_t length = 0;
        while ((length = ::recvfrom(m_socket, command.data(), command.size(), 0, address, &size)) >
               0) {
            m_commands += QByteArray(command.data(), static_cast<int>(length));
            const QByteArrayList answers = m_answers.value(m_commands.last());
            const bool isFirst = m_commands.count(m_commands.last()) == 1;
            for (const QByteArray &answer : answers) {
                if (answer == death)
                    ::shutdown(m_socket, SHUT_RD);
                else if (answer == slowness)
                    ::usleep(1150000);
                else if (answer == pause)
                    ::usleep(isFirst ? 500000 : 20000);
                else
                    ::sendto(m_socket, answer.constData(), answer.size(), 0, address, size);
            }
            size = sizeof(client);
        }
    }

    Answers m_answers;
    QByteArrayList m_commands;
    int m_socket = ::socket(AF_UNIX, SOCK_DGRAM, 0);
    std::thread m_thread;
};

#endif
