#ifndef ORVACAT_STYLEMANAGER_H
#define ORVACAT_STYLEMANAGER_H

/**
 * @file
 * StyleManager, the style sheet registry, and getStyleSheet(), through which
 * every widget of the toolkit takes its look.
 */

#include <orvacat/orvacat_export.h>

#include <QMap>
#include <QString>

#include <vector>

/**
 * The registry of style-sheet sections, keyed by names such as
 * "component.checkbox". The host passes its style files once at start-up,
 * after ImageManager::initialize() (the "IMG_LOC" and "TMPIMG_LOC"
 * placeholders are resolved to the image registry's folders).
 */
class ORVACAT_EXPORT StyleManager
{
public:
    StyleManager();

    /** The process's one registry, created empty on first use. */
    static StyleManager* getInstance();

    /**
     * Reads @p files in order, resolves the placeholders, strips comments and
     * adds the "== key ==" sections to the registry (later sections win).
     * A missing file is reported and skipped.
     */
    void initialize(const std::vector<QString>& files);

    /**
     * The section stored under @p key, DPI-scaled unless @p raw is true;
     * "" with a warning for an unknown key.
     */
    QString getStyleSheet(const QString& key, bool raw);

private:
    QMap<QString, QString> m_sheets;
};

/** StyleManager::getInstance()->getStyleSheet(key, raw); what widgets call. */
ORVACAT_EXPORT QString getStyleSheet(const char* key, bool raw);
/** The same, for a key held in a QString. */
ORVACAT_EXPORT QString getStyleSheet(const QString& key, bool raw);

#endif // ORVACAT_STYLEMANAGER_H
