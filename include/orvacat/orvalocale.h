#ifndef ORVACAT_ORVALOCALE_H
#define ORVACAT_ORVALOCALE_H

/**
 * @file
 * OrvaLocale, which picks the three-letter language code a host chooses its
 * string table and help folder by.
 */

#include <orvacat/orvacat_export.h>

#include <QMap>
#include <QString>

/**
 * Maps a system locale name ("en", "pt_pt", "zh_tw") to the three-letter
 * language code the host's string tables and help folders are named after
 * ("enu", "ptg", "cht"). Portuguese and Chinese are decided by rule, every
 * other language by a table the host may extend; anything unknown is "enu".
 */
class ORVACAT_EXPORT OrvaLocale
{
public:
    OrvaLocale();

    /** The process's one instance, with the built-in language table. */
    static OrvaLocale* getInstance();

    /** The code for the running system: QLocale::system()'s name in lower case, mapped. */
    QString getDefaultLanguage();
    /**
     * The code for a lower-case locale name such as "de_de". Only the part
     * before the first "_" is looked up; the name is not case-folded.
     */
    QString getLanguageByLocale(const QString& locale);
    /** "ptg" for exactly "pt" or "pt_pt", otherwise "ptb". */
    QString getPortugueseLanguage(const QString& locale);
    /**
     * "chs" when the first preferred language of the desktop is a
     * Simplified Chinese tag (contains "zh-Hans"), otherwise "cht". The
     * argument is ignored: the region of the locale does not decide the
     * script. The preferred list is the "AppleLanguages" value of a default
     * QSettings when present, else on Linux the desktop's LANGUAGE, LC_ALL,
     * LC_MESSAGES and LANG; it is read anew on every call.
     */
    QString getChineseLanguage(const QString& locale);
    /** Adds or replaces the code of a language part ("xx" -> "abc"). */
    void setLanguageMap(QString language, QString code);

private:
    QMap<QString, QString> m_language_map;
    QString m_default_language;
};

#endif // ORVACAT_ORVALOCALE_H
