#include "helpimagecache_p.h"

#include <orvacat/globals.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

const char* const kCacheRoot = "orvana_help";
const char* const kCacheImages = "image";

#ifdef Q_OS_UNIX

QString errorText()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

// An open descriptor that closes itself.
class Descriptor
{
public:
    explicit Descriptor(int fd = -1) : m_fd(fd) {}
    ~Descriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_fd; }
    bool isValid() const { return m_fd >= 0; }

private:
    int m_fd;
};

// A folder of the cache, reached from @p parent without following a link,
// must be ours: otherwise whoever owns it can swap what we write for a link.
int openOwnFolder(int parent, const char* name, const QString& path)
{
    const int fd = ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0) {
        qCWarning(debug_message) << "Help image cache folder cannot be used:" << path << errorText();
        return -1;
    }
    struct stat info;
    if (::fstat(fd, &info) != 0 || !S_ISDIR(info.st_mode) || info.st_uid != ::geteuid()) {
        qCWarning(debug_message) << "Help image cache folder belongs to someone else:" << path;
        ::close(fd);
        return -1;
    }
    return fd;
}

bool makeOwnFolder(int parent, const char* name, const QString& path)
{
    if (::mkdirat(parent, name, 0700) != 0 && errno != EEXIST) {
        qCWarning(debug_message) << "Cannot create the help image cache folder" << path << errorText();
        return false;
    }
    return true;
}

bool writeAll(int fd, const QByteArray& data)
{
    const char* next = data.constData();
    qint64 left = data.size();
    while (left > 0) {
        const ssize_t written = ::write(fd, next, size_t(left));
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        next += written;
        left -= written;
    }
    return true;
}

bool writeAt(int folder, const QString& name, const QString& path, const QByteArray& data, mode_t mode)
{
    const QByteArray encoded = QFile::encodeName(name);
    Descriptor file(::openat(folder, encoded.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!file.isValid()) {
        qCWarning(debug_message) << "Cannot write the downloaded file" << path << errorText();
        return false;
    }
    if (!writeAll(file.get(), data)) {
        qCWarning(debug_message) << "Cannot write the downloaded file" << path << errorText();
        return false;
    }
    return true;
}

#endif // Q_OS_UNIX

} // namespace

namespace HelpImageCache {

QString folder()
{
    return QDir::tempPath() + QLatin1Char('/') + QLatin1String(kCacheRoot) + QLatin1Char('/')
        + QLatin1String(kCacheImages);
}

bool isSafeFileName(const QString& name)
{
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String(".."))
        return false;
    if (name.contains(QLatin1Char('/')) || name.contains(QChar(0)))
        return false;
#ifdef Q_OS_WIN
    if (name.contains(QLatin1Char('\\')) || name.contains(QLatin1Char(':')))
        return false;
#endif
    return true;
}

bool prepare()
{
    const QString temp = QDir::tempPath();
    if (!QDir().mkpath(temp)) {
        qCWarning(debug_message) << "Cannot create the temporary folder" << temp;
        return false;
    }
#ifdef Q_OS_UNIX
    const QString rootPath = temp + QLatin1Char('/') + QLatin1String(kCacheRoot);
    Descriptor tempFolder(::open(QFile::encodeName(temp).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!tempFolder.isValid()) {
        qCWarning(debug_message) << "Cannot open the temporary folder" << temp << errorText();
        return false;
    }
    if (!makeOwnFolder(tempFolder.get(), kCacheRoot, rootPath))
        return false;
    Descriptor root(openOwnFolder(tempFolder.get(), kCacheRoot, rootPath));
    if (!root.isValid())
        return false;
    if (!makeOwnFolder(root.get(), kCacheImages, folder()))
        return false;
    Descriptor images(openOwnFolder(root.get(), kCacheImages, folder()));
    return images.isValid();
#else
    return QDir().mkpath(folder());
#endif
}

bool writeFile(const QString& path, const QByteArray& data)
{
    const QFileInfo target(QDir::cleanPath(path));
    const bool inCache = target.absolutePath() == QDir::cleanPath(folder());
    if (inCache && !isSafeFileName(target.fileName())) {
        qCWarning(debug_message) << "Refusing to write outside the help image cache:" << path;
        return false;
    }
#ifdef Q_OS_UNIX
    if (inCache) {
        const QString temp = QDir::tempPath();
        Descriptor tempFolder(::open(QFile::encodeName(temp).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!tempFolder.isValid()) {
            qCWarning(debug_message) << "Cannot open the temporary folder" << temp << errorText();
            return false;
        }
        Descriptor root(openOwnFolder(tempFolder.get(), kCacheRoot, temp + QLatin1Char('/') + QLatin1String(kCacheRoot)));
        if (!root.isValid())
            return false;
        Descriptor images(openOwnFolder(root.get(), kCacheImages, folder()));
        if (!images.isValid())
            return false;
        return writeAt(images.get(), target.fileName(), path, data, 0600);
    }
    // Outside the cache the host chose the path; only the last step is guarded.
    return writeAt(AT_FDCWD, path, path, data, 0666);
#else
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        qCWarning(debug_message) << "Cannot write the downloaded file" << path << file.errorString();
        return false;
    }
    return file.write(data) == data.size();
#endif
}

} // namespace HelpImageCache
