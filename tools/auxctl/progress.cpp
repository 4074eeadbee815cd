// SPDX-License-Identifier: MIT
#include "progress.h"

#include "fs/progress.h"

#include <QVector>

#include <algorithm>
#include <cwchar>
#include <iostream>

#include <sys/ioctl.h>
#include <unistd.h>

namespace auxctl
{

namespace
{

constexpr int patience = 1000; // milliseconds
constexpr const char *blankLine = "\r\033[K";

bool isEnabled = true;

bool canShow()
{
    const QByteArray terminal = qgetenv("TERM");
    return isEnabled && isatty(STDERR_FILENO) != 0 && !terminal.isEmpty() && terminal != "dumb";
}

int columnsOf(const QString &text)
{
    int columns = 0;
    for (const uint letter : text.toUcs4())
        columns += std::max(0, wcwidth(static_cast<wchar_t>(letter)));
    return columns;
}

int terminalWidth()
{
    constexpr int usual = 80;
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

} // namespace

constexpr Switch quietOption{"quiet", "Show no progress"};

Progress::Progress(const QString &path, qint64 total) : m_name(withNames(path)), m_total(total)
{
    m_timer.start();
    if (total > 0 && canShow())
        aux::observeProgress([this](qint64 bytes) { advance(bytes); });
}

Progress::~Progress()
{
    aux::observeProgress({});
    if (m_percent >= 0)
        std::cerr << blankLine << std::flush;
}

void Progress::disable()
{
    isEnabled = false;
}

void Progress::advance(qint64 bytes)
{
    m_done = std::min(m_total, m_done + bytes);
    const qint64 percent = 100 * m_done / m_total;
    if (percent == m_percent || m_timer.elapsed() < patience)
        return;
    m_percent = percent;
    show();
}

void Progress::show()
{
    const QString ending = QStringLiteral(" %1 %").arg(m_percent, 3);
    QString name = printable(m_name, STDERR_FILENO);
    while (!name.isEmpty() && columnsOf(name) + ending.size() >= terminalWidth())
        name.remove(0, 1); // the end of a path says more
    std::cerr << blankLine << (name + ending).toStdString() << std::flush;
}

} // namespace auxctl
