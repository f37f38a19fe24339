#ifndef ORVACAT_UIPATHMANAGER_H
#define ORVACAT_UIPATHMANAGER_H

/**
 * @file
 * UIPathManager, the registry of named folders that the image registry reads.
 */

#include <orvacat/orvacat_export.h>

#include <QMap>
#include <QString>

/**
 * The process-wide table of named folders. The host sets "resource_path"
 * (read-only theme folder with images.json and images/) and "user_data_path"
 * (writable per-user folder) before it initializes the image registry.
 */
class ORVACAT_EXPORT UIPathManager
{
public:
    UIPathManager();

    /** The process's one table, created empty on first use. */
    static UIPathManager* getInstance();

    /** Stores @p path under @p key; overwriting an existing key warns. */
    void setPath(const QString& key, const QString& path);
    /** The path stored under @p key, or "" with a warning when it was never set. */
    QString getPath(const QString& key);

private:
    QMap<QString, QString> m_paths;
};

#endif // ORVACAT_UIPATHMANAGER_H
