#include "apps/common/InputFile.h"

#include "apps/common/TerminationSignals.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

namespace orvel::apps {

bool InputFile::open(OpenMode mode)
{
    const QByteArray path = QFile::encodeName(fileName());
    struct stat status = {};
    if (mode.testFlag(WriteOnly) || stat(path.constData(), &status) != 0 || !S_ISFIFO(status.st_mode))
        return QFile::open(mode);
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return QFile::open(mode);
    // From here on it is the reading that waits.
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    return QFile::open(descriptor, mode, AutoCloseHandle);
}

qint64 InputFile::readData(char* data, qint64 size)
{
    if (!isSequential())
        return QFile::readData(data, size);
    if (!TerminationSignals::waitForInput(handle()))
        return 0;
    // QFile waits until it has all that it is asked for. At the end, and where nobody knows, it gets one
    // byte.
    int available = 0;
    ioctl(handle(), FIONREAD, &available);
    return QFile::readData(data, std::clamp<qint64>(available, 1, size));
}

/// The line of a pipe, through readData().
qint64 InputFile::readLineData(char* data, qint64 size)
{
    if (!isSequential())
        return QFile::readLineData(data, size);
    qint64 count = 0;
    while (count < size && getChar(data + count)) {
        if (data[count++] == '\n')
            break;
    }
    return count;
}

} // namespace orvel::apps
