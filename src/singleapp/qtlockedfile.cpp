#include <orvacat/qtlockedfile.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace QtLP_Private {

namespace {

// One fcntl record lock over the whole file; the length 0 reaches past its end.
bool setRecordLock(int fd, short type, bool block)
{
    struct flock range;
    std::memset(&range, 0, sizeof(range));
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = 0;
    range.l_len = 0;
    int result;
    do {
        result = ::fcntl(fd, block ? F_SETLKW : F_SETLK, &range);
        // A signal interrupts a blocking wait; anything else is an answer.
    } while (result == -1 && errno == EINTR && block);
    return result != -1;
}

} // namespace

QtLockedFile::QtLockedFile() = default;

QtLockedFile::QtLockedFile(const QString& name)
    : QFile(name)
{
}

QtLockedFile::~QtLockedFile()
{
    if (isOpen())
        unlock();
}

bool QtLockedFile::open(OpenMode mode)
{
    if (mode & QIODevice::Truncate) {
        qWarning("QtLockedFile::open(): Truncate mode not allowed.");
        return false;
    }
    return QFile::open(mode);
}

bool QtLockedFile::lock(LockMode mode, bool block)
{
    if (!isOpen()) {
        qWarning("QtLockedFile::lock(): file is not opened");
        return false;
    }
    if (mode == NoLock)
        return unlock();
    if (mode == m_lock_mode)
        return true;
    if (m_lock_mode != NoLock)
        unlock();

    if (!setRecordLock(handle(), mode == ReadLock ? F_RDLCK : F_WRLCK, block)) {
        // Held by another process is the expected "no"; only real errors are worth a word.
        if (errno != EAGAIN && errno != EACCES && errno != EINTR)
            qWarning("QtLockedFile::lock(): fcntl: %s", std::strerror(errno));
        return false;
    }
    m_lock_mode = mode;
    return true;
}

bool QtLockedFile::unlock()
{
    if (!isOpen()) {
        qWarning("QtLockedFile::unlock(): file is not opened");
        return false;
    }
    if (!isLocked())
        return true;
    if (!setRecordLock(handle(), F_UNLCK, true)) {
        qWarning("QtLockedFile::lock(): fcntl: %s", std::strerror(errno));
        return false;
    }
    m_lock_mode = NoLock;
    return true;
}

bool QtLockedFile::isLocked() const
{
    return m_lock_mode != NoLock;
}

QtLockedFile::LockMode QtLockedFile::lockMode() const
{
    return m_lock_mode;
}

} // namespace QtLP_Private
