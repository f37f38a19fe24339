#ifndef ORVACAT_IMAGEMANAGER_H
#define ORVACAT_IMAGEMANAGER_H

/**
 * @file
 * ImageManager, the image registry, and getGlobalImage(), through which the
 * toolkit's widgets take their pictures.
 */

#include <orvacat/orvacat_export.h>

#include <QMap>
#include <QPixmap>
#include <QString>

/**
 * The toolkit's source of icons. "images.json" in the resource path lists
 * the image names ("images") and the images that style sheets use
 * ("tmp_images"); the PNGs, drawn at four times their shown size, live in
 * resource_path/images as name.png, name_hover.png, name_click.png and
 * name_disable.png. Pixmaps are scaled for the screen and cached: a side of
 * s file pixels becomes round(round(round(s / 4) * DPIinfo::getDPI()) *
 * DPIinfo::getDPR()) device pixels, and the pixmap carries getDPR() as its
 * device-pixel ratio, fractions included, so that Qt draws it one to one on
 * a 125 % or 150 % screen as on a 200 % one. A picture
 * whose header declares more than 8192 pixels a side or 32 megapixels is
 * refused with a warning before it is decoded, and counts as missing.
 *
 * Set "resource_path" and "user_data_path" in UIPathManager first. Asking
 * for a folder before initialize() ends the process.
 */
class ORVACAT_EXPORT ImageManager
{
public:
    /** When initialize() loads the catalogue's pictures. */
    enum InitializeType {
        Eager = 0, ///< load and scale every image in initialize()
        Lazy = 1   ///< load an image on its first request
    };

    /** The state of an image, also its index in four-state arrays. */
    enum ImageType {
        Normal = 0,  ///< name itself, the picture at rest
        Hover = 1,   ///< name + "_hover"
        Click = 2,   ///< name + "_click"
        Disable = 3  ///< name + "_disable"
    };

    ImageManager();

    /** The process's one registry, empty until initialize(). */
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

    /** The image folder + "/" + @p name + ".png"; before initialize() the folder part is empty. */
    QString getImageFullPath(const QString& name);
    /** The temporary-image folder + "/tmp_" + @p name + ".png"; before initialize() the folder part is empty. */
    QString getTempImageFullPath(const QString& name);

    /**
     * Reads "images.json" from the resource path: catalogues every name of
     * "images" and writes the scaled copy of every name of "tmp_images".
     * initialize() calls it; a missing or unreadable file adds nothing.
     */
    void readJson();
    /** Catalogues @p name with its four state file names, not yet loaded, replacing an entry of that name. */
    void parseJson(const QString& name);
    /**
     * Loads and scales every catalogued image, as initialize() does for Eager.
     * A state whose file is missing is dropped, and getImage() answers Normal for it.
     */
    void prepareImages();
    /**
     * Loads and scales @p key's pictures if they are not loaded yet; getImage()
     * calls it for Lazy. Pass a catalogued key: another one is added as an
     * entry without pictures.
     */
    void lazyLoad(const QString& key);
    /**
     * Writes the image scaled by the DPI factor alone (round(round(s / 4) *
     * getDPI()), ratio 1) as tmp_<name>.png for style sheets.
     */
    void prepareTempImage(const QString& name);

private:
    struct ImageEntry
    {
        QString fileNames[4];
        QPixmap pixmaps[4];
        bool loaded = false;
    };

    ORVACAT_NO_EXPORT void loadEntry(ImageEntry& entry);

    InitializeType m_initializeType;
    QString m_imageFolder;
    QString m_tempImageFolder;
    QMap<QString, ImageEntry> m_cache;
};

/** ImageManager::getInstance()->getImage(key, type); what widgets call. */
ORVACAT_EXPORT QPixmap getGlobalImage(const char* key, ImageManager::ImageType type);
/** The same, for a key held in a QString. */
ORVACAT_EXPORT QPixmap getGlobalImage(const QString& key, ImageManager::ImageType type);

#endif // ORVACAT_IMAGEMANAGER_H
