// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_MARKS_H
#define AUX_TESTS_MARKS_H

#include <QStringList>

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <unistd.h>

// A mark is a block at one offset of a file, or behind its end: "began" or "confirmed" and the name
// of a fact, then the fact's new value; what was begun has those that may be seen on the way. The
// facts are what facts.cpp finds.

namespace marks
{

inline int file = -1; // several processes write there
inline off_t offset = 0;

} // namespace marks

/// A negative offset stands for the end.
inline void markAt(const char *path, off_t offset)
{
    marks::file = ::open(path, O_WRONLY | O_CLOEXEC | (offset < 0 ? O_APPEND : 0));
    marks::offset = std::max<off_t>(offset, 0);
}

inline void mark(const QStringList &words)
{
    const QByteArray text = words.join('\t').toUtf8();
    std::array<char, 4096> block{};
    std::copy(text.begin(), text.end(), block.begin());
    if (::pwrite(marks::file, block.data(), block.size(), marks::offset) !=
        static_cast<ssize_t>(block.size()))
        qFatal("cannot mark the disk");
}

inline void began(const QString &fact, const QStringList &onTheWay = {})
{
    mark(QStringList{"began", fact} + onTheWay);
}

inline void confirmed(const QString &fact, const QString &value)
{
    mark({"confirmed", fact, value});
}

#endif
