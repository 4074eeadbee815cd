// SPDX-License-Identifier: MIT
#include "aux/error.h"

#include <ostream>
#include <string>

namespace aux
{

Error::Error(ErrorData data)
{
    m_entries.push_back(std::move(data));
}

Error &Error::operator=(Error &&other) noexcept
{
    if (this != &other) { // a list moved onto itself would lose its entries
        m_entries = std::move(other.m_entries);
        m_extraData.swap(other.m_extraData);
    }
    return *this;
}

Error &Error::operator<<(Error &&other) noexcept
{
    if (this != &other) {
        m_entries.splice(m_entries.end(), other.m_entries);
        m_extraData.swap(other.m_extraData);
    }
    return *this;
}

Error &Error::operator<<(const Error &other)
{
    std::list<ErrorData> copies = other.m_entries; // first, so that e << e ends
    m_entries.splice(m_entries.end(), copies);
    m_extraData = other.m_extraData;
    return *this;
}

QDebug operator<<(QDebug debug, const ErrorData &data)
{
    return debug << data.getDomain() << data.getMsg() << data.getId();
}

QDebug operator<<(QDebug debug, const Error &error)
{
    int depth = 0;
    for (const ErrorData &entry : error) {
        for (int level = 0; level < depth; ++level)
            debug << "  ";
        debug << entry << "\n";
        ++depth;
    }
    return debug;
}

std::ostream &operator<<(std::ostream &stream, const ErrorData &data)
{
    return stream << data.getDomain().toStdString() + ' ' + data.getMsg().toStdString() + ' ' +
                         std::to_string(data.getId());
}

std::ostream &operator<<(std::ostream &stream, const Error &error)
{
    std::string separator;
    for (const ErrorData &entry : error) {
        stream << separator << entry;
        separator += separator.empty() ? "\n  " : "  ";
    }
    return stream;
}

} // namespace aux
