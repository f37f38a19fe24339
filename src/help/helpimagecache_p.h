#ifndef ORVACAT_HELPIMAGECACHE_P_H
#define ORVACAT_HELPIMAGECACHE_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the public API.
//

#include <QByteArray>
#include <QString>

/**
 * The help image cache lives in the shared temporary folder, where other
 * users can create files and folders before us. Everything that touches it
 * goes through here: the folders are made private to the user, and a file
 * is only ever written through descriptors of folders that were checked to
 * be real folders of ours, with links at the last step refused.
 */
namespace HelpImageCache {

/** QDir::tempPath() + "/orvana_help/image". */
QString folder();

/**
 * Creates the cache folders (mode 0700) as needed and checks that they are
 * real folders owned by the user. False, with a warning, when they are not.
 */
bool prepare();

/** True if @p name can only name a file inside a folder: no separator, not empty, "." or "..". */
bool isSafeFileName(const QString& name);

/**
 * Writes @p data to @p path, creating or truncating the file, never through
 * a symbolic link. A path inside the cache folder is written through the
 * checked folders. False, with a warning, when the file was not written.
 */
bool writeFile(const QString& path, const QByteArray& data);

} // namespace HelpImageCache

#endif // ORVACAT_HELPIMAGECACHE_P_H
