#ifndef ORVACAT_FILETYPEMAP_H
#define ORVACAT_FILETYPEMAP_H

/**
 * @file
 * FileTypeMap, the table from file name extensions to file-type icon names.
 */

#include <orvacat/orvacat_export.h>

#include <QString>

#include <map>

/**
 * Tells which file-type icon to show for a file name extension: "pdf" gives
 * "pdf.png", anything unknown "xxx.png", and the removed variant
 * "pdf_removed.png". The icons themselves belong to the host's theme.
 *
 * The table is one for the process and ignores letter case. Constructing a
 * FileTypeMap (getInstance() does it once) registers the built-in types;
 * hosts add or redirect extensions with mappingFile().
 */
class ORVACAT_EXPORT FileTypeMap
{
public:
    FileTypeMap();

    /** The process's one instance; the first call registers the built-in types. */
    static FileTypeMap* getInstance();

    /**
     * Maps every extension of @p extensions (separated by single spaces) to
     * @p type, replacing the type an extension had before.
     */
    void mappingFile(const QString& type, const QString& extensions);
    /**
     * The icon file name for @p extension, given without its leading dot
     * ("tar.gz" is one key, not two): type + ".png", or type + "_removed.png"
     * when @p removed is set; the type is "xxx" when the extension is unknown.
     */
    QString getFiletypeMapping(const QString& extension, bool removed = false) const;

private:
    struct CaseInsensitiveLess
    {
        bool operator()(const QString& a, const QString& b) const
        {
            return QString::compare(a, b, Qt::CaseInsensitive) < 0;
        }
    };

    static std::map<QString, QString, CaseInsensitiveLess> m_file_type_map;
};

#endif // ORVACAT_FILETYPEMAP_H
