#ifndef ORVACAT_COMPONENTSTRINGS_H
#define ORVACAT_COMPONENTSTRINGS_H

/**
 * @file
 * ComponentStrings, the registry of the captions the toolkit's own widgets
 * show. Install the table before constructing widgets: captions are read then.
 */

#include <orvacat/orvacat_export.h>

#include <QMap>
#include <QString>

/**
 * The localized captions of the toolkit's own widgets ("ok", "cancel",
 * "month_jan", ...). The host installs a table for its language; a missing
 * key is answered with the key itself.
 */
class ORVACAT_EXPORT ComponentStrings
{
public:
    ComponentStrings();

    /** The process's one table, created empty on first use. */
    static ComponentStrings* getInstance();

    /** Replaces the whole table (keys of an earlier table are gone). */
    void installStrings(const QMap<QString, QString>& strings);
    /** The caption under @p key, or @p key itself with a warning. */
    QString getString(const QString& key);
    /**
     * The caption under @p key, or @p fallback without a warning. For the
     * names the toolkit gives assistive technology: a host's own table may
     * predate those keys, and a name must never be empty or a raw key.
     */
    QString getString(const QString& key, const QString& fallback) const;

private:
    QMap<QString, QString> m_strings;
};

#endif // ORVACAT_COMPONENTSTRINGS_H
