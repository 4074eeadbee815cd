// SPDX-License-Identifier: MIT
#include "openpgp/filepair.h"
#include "fs/progress.h"
#include "fs/storage.h"

#include <QFileInfo>

#include <cerrno>
#include <csignal>

#include <unistd.h>

namespace aux
{

Reason openForProgram(RegularFile &file)
{
    return file.openForReading() ? Reason() : reason::cannotRead.because(file.cause());
}

Reason FilePair::open()
{
    Reason reason = openForProgram(m_input);
    if (!reason.isNone())
        return reason;
    return m_output.open() ? Reason() : reason::cannotCreate.because(m_output.cause());
}

void FilePair::connectTo(HelperProgram &program) const
{
    program.setInput(m_input.handle());
    program.setOutput(m_output.handle());
}

Reason FilePair::keepSpaceFree(HelperProgram &program) const
{
    const qint64 room = freeSpace(QFileInfo(m_output.path()).absolutePath()) - headRoom;
    if (room <= 0)
        return reason::cannotWrite.because(m_output.path(), ENOSPC);
    program.limit(RLIMIT_FSIZE, static_cast<rlim_t>(room));
    return {};
}

HelperProgram::Timeout FilePair::timeout()
{
    return [this] {
        tellProgress();
        return HelperProgram::timeoutFor(m_input.size() + m_output.size());
    };
}

/// The program reads from the same place in the file as this process would.
void FilePair::tellProgress()
{
    const qint64 position = ::lseek(m_input.handle(), 0, SEEK_CUR);
    advance(position - m_told);
    m_told = position;
}

Reason FilePair::whyNoRoom(const HelperProgram &program)
{
    if (program.wasKilledBy(SIGXFSZ))
        return reason::cannotWrite.because(m_output.path(), ENOSPC);
    return m_output.hasRoom() ? Reason() : reason::cannotWrite.because(m_output.cause());
}

Reason FilePair::commit()
{
    return m_output.commit() ? Reason() : reason::cannotWrite.because(m_output.cause());
}

} // namespace aux
