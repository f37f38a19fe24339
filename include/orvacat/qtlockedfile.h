#ifndef ORVACAT_QTLOCKEDFILE_H
#define ORVACAT_QTLOCKEDFILE_H

/**
 * @file
 * QtLP_Private::QtLockedFile, the lock file that single-instance peers share.
 */

#include <orvacat/orvacat_export.h>

#include <QFile>

namespace QtLP_Private {

/**
 * A QFile that can hold an advisory lock (fcntl record lock on the whole
 * file) shared with other processes. The lock belongs to the process: two
 * QtLockedFile objects of one process never block each other. Open the file
 * before locking; Truncate is refused so that opening never disturbs a file
 * another process holds. The destructor releases the lock.
 */
class ORVACAT_EXPORT QtLockedFile : public QFile
{
public:
    /** The lock held or asked for. */
    enum LockMode {
        NoLock = 0, ///< no lock
        ReadLock,   ///< shared: other processes may read-lock too
        WriteLock   ///< exclusive: no other process holds any lock
    };

    QtLockedFile();
    /** A closed, unlocked file named @p name. */
    explicit QtLockedFile(const QString& name);
    ~QtLockedFile() override;

    using QFile::open;
    /** QFile::open(), except that Truncate is refused with a warning. */
    bool open(OpenMode mode) override;

    /**
     * Takes a lock of @p mode (NoLock releases). With @p block false it
     * returns false at once when another process holds a conflicting lock.
     * A lock of a different mode held before is released first.
     */
    bool lock(LockMode mode, bool block = true);
    /** Releases the lock; true when none is held afterwards. */
    bool unlock();
    /** True while this object holds a lock. */
    bool isLocked() const;
    /** The lock this object holds; NoLock when none. */
    LockMode lockMode() const;

private:
    LockMode m_lock_mode = NoLock;
};

} // namespace QtLP_Private

#endif // ORVACAT_QTLOCKEDFILE_H
