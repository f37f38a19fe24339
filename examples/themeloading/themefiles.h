#ifndef ORVACAT_EXAMPLES_THEMEFILES_H
#define ORVACAT_EXAMPLES_THEMEFILES_H

#include <orvacat/imagemanager.h>

#include <QMap>
#include <QString>
#include <QStringList>

#include <vector>

/**
 * What a host does with a theme folder at start-up: find the style files and
 * the string tables, read a table, and run the registries' start-up order.
 * The toolkit itself reads no configuration file; this is host code shared by
 * the gallery, the example hosts and the tests.
 *
 * A theme folder holds images.json, images/ (the PNGs), style/ (*.qss files,
 * read in name order) and strings/ (one <language>.strings table per
 * three-letter language code).
 */
class ThemeFiles
{
public:
    /** The default theme assembled in the build tree. */
    static QString buildTreeThemeDir();

    /** The style files of @p themeDir, sorted by name. */
    static std::vector<QString> styleFiles(const QString& themeDir);

    /** The language codes that @p themeDir has string tables for, sorted. */
    static QStringList languages(const QString& themeDir);

    /** The path of the string table of @p language in @p themeDir. */
    static QString stringTablePath(const QString& themeDir, const QString& language);

    /**
     * Reads a string table: UTF-8 lines "key = value"; blank lines and lines
     * starting with '#' are skipped; "\n" in a value is a line break and "\\"
     * a backslash. Lines without '=' are reported in @p errors and skipped.
     */
    static QMap<QString, QString> readStringTable(const QString& path, QStringList* errors = nullptr);

    /**
     * The host start-up order: paths, images, style sheets, strings.
     * @p userDataDir must be writable (the scaled style-sheet images go there).
     */
    static void install(const QString& themeDir, const QString& userDataDir, const QString& language,
                        ImageManager::InitializeType type = ImageManager::Eager);
};

#endif // ORVACAT_EXAMPLES_THEMEFILES_H
