#ifndef ORVACAT_IMAGEMANAGER_H
#define ORVACAT_IMAGEMANAGER_H

#include <orvacat/orvacat_export.h>

#include <QMap>
#include <QPixmap>
#include <QString>

/**
 * The toolkit's source of icons. "images.json" in the resource path lists
 * the image names ("images") and the images that style sheets use
 * ("tmp_images"); the PNGs, drawn at four times their shown size, live in
 * resource_path/images as name.png, name_hover.png, name_click.png and
 * name_disable.png. Pixmaps are scaled for the screen and cached.
 *
 * Set "resource_path" and "user_data_path" in UIPathManager first. Asking
 * for a folder before initialize() ends the process.
 */
class ORVACAT_EXPORT ImageManager
{
public:
    enum InitializeType {
        Eager = 0, ///< load and scale every image in initialize()
        Lazy = 1   ///< load an image on its first request
    };

    enum ImageType {
        Normal = 0,
        Hover = 1,   ///< name + "_hover"
        Click = 2,   ///< name + "_click"
        Disable = 3  ///< name + "_disable"
    };

    ImageManager();

    static ImageManager* getInstance();

    /**
     * Sets the folders from the path registry, creates the temporary-image
     * folder, reads the catalogue and, for Eager, loads every image.
     */
    void initialize(ImageManager::InitializeType type);

    /**
     * The cached pixmap of @p key in state @p type. An unknown key gives a
     * null pixmap, a state whose file is missing the Normal pixmap; both warn.
     */
    QPixmap getImage(const QString& key, ImageManager::ImageType type);

    /** resource_path + "/images"; aborts the process before initialize(). */
    const QString& getImageFolder();
    /** user_data_path + "/tmp_images"; aborts the process before initialize(). */
    const QString& getTempImageFolder();

    QString getImageFullPath(const QString& name);
    QString getTempImageFullPath(const QString& name);

    void readJson();
    void parseJson(const QString& name);
    void prepareImages();
    void lazyLoad(const QString& key);
    /** Writes the image scaled by the DPI factor as tmp_<name>.png for style sheets. */
    void prepareTempImage(const QString& name);

private:
    struct ImageEntry
    {
        QString fileNames[4];
        QPixmap pixmaps[4];
        bool loaded = false;
    };

    void loadEntry(ImageEntry& entry);

    InitializeType m_initializeType;
    QString m_imageFolder;
    QString m_tempImageFolder;
    QMap<QString, ImageEntry> m_cache;
};

/** ImageManager::getInstance()->getImage(key, type); what widgets call. */
ORVACAT_EXPORT QPixmap getGlobalImage(const char* key, ImageManager::ImageType type);
ORVACAT_EXPORT QPixmap getGlobalImage(const QString& key, ImageManager::ImageType type);

#endif // ORVACAT_IMAGEMANAGER_H
