// SPDX-License-Identifier: MIT
#include "openpgp/filepair.h"
#include "error/reason.h"

#include <QFileInfo>

namespace aux
{

bool openForProgram(QFile &file)
{
    // Qt would take a name up to its first NUL.
    return !file.fileName().contains(QChar::Null) && QFileInfo(file).isFile() &&
           file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

Reason FilePair::open()
{
    if (!openForProgram(m_input))
        return reason::cannotRead;
    return m_output.open() ? Reason() : reason::cannotCreate;
}

void FilePair::connectTo(HelperProgram &program) const
{
    program.setInput(m_input.handle());
    program.setOutput(m_output.handle());
}

Reason FilePair::commit()
{
    return m_output.commit() ? Reason() : reason::cannotWrite;
}

} // namespace aux
