#ifndef ORVACAT_TESTS_STYLESHEETORACLE_H
#define ORVACAT_TESTS_STYLESHEETORACLE_H

// The QRegExp formulation of the style-sheet processing, kept literally as
// the reference that the single-pass scanners must agree with. Used by the
// scanner tests and by the benchmarks. Under Qt 6 QRegExp comes from
// Core5Compat, whose QString no longer takes it: the two calls below say
// that once.

#include "resources/stylesheetscanner_p.h"

#include <QFile>
#include <QMap>
#include <QRegExp>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <vector>

namespace Oracle {

inline QStringList splitByRegExp(const QString& text, const QRegExp& rx)
{
#if QT_VERSION_MAJOR >= 6
    return rx.splitString(text);
#else
    return text.split(rx);
#endif
}

inline QString replacedByRegExp(const QString& text, const QRegExp& rx, const QString& after)
{
#if QT_VERSION_MAJOR >= 6
    return rx.replaceIn(text, after);
#else
    return QString(text).replace(rx, after);
#endif
}

inline QString scalePixelLengths(const QString& text, double factor)
{
    QRegExp rx(QStringLiteral("(\\d+\\.?\\d*)(px)"));
    const QStringList pieces = splitByRegExp(text, rx);
    QString result;
    int pos = 0;
    int counter = 0;
    while ((pos = rx.indexIn(text, pos)) != -1) {
        if (counter >= pieces.size())
            break;
        result += pieces.at(counter);
        result += QStringLiteral("%1px").arg(StyleSheetScanner::truncatedPixels(rx.cap(1).toDouble() * factor));
        pos += 3;
        ++counter;
    }
    if (counter < pieces.size())
        result += pieces.at(counter);
    return result;
}

inline QString stripComments(QString text)
{
    QRegExp block(QStringLiteral("/\\*.*\\*/"));
    block.setMinimal(true);
    text = replacedByRegExp(text, block, QString());
    QRegExp line(QStringLiteral("//.*\n"));
    line.setMinimal(true);
    text = replacedByRegExp(text, line, QString());
    return text;
}

inline QMap<QString, QString> splitSections(QString text)
{
    QMap<QString, QString> sections;
    QTextStream stream(&text, QIODevice::ReadOnly);
    QString key;
    QString body;
    while (!stream.atEnd()) {
        const QString line = stream.readLine();
        if (line.startsWith(QLatin1String("==")) && line.endsWith(QLatin1String("=="))) {
            if (!key.isEmpty()) {
                sections.insert(key, body);
                key.clear();
                body.clear();
            }
            key = line;
            key = replacedByRegExp(key, QRegExp(QStringLiteral("[= ]")), QString());
        } else {
            body += QLatin1Char('\n') + line;
        }
    }
    if (!key.isEmpty())
        sections.insert(key, body);
    return sections;
}

/**
 * What StyleManager::initialize does with @p files, the QRegExp way: read
 * in text mode, join with line feeds, replace the placeholders, strip the
 * comments and split into sections.
 */
inline QMap<QString, QString> processStyleFiles(const std::vector<QString>& files, const QString& tempImageFolder,
                                                const QString& imageFolder)
{
    QString text;
    for (const QString& path : files) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly | QIODevice::Text))
            text += QString::fromUtf8(file.readAll().constData());
        text += QLatin1Char('\n');
    }
    text.replace(QLatin1String("TMPIMG_LOC"), tempImageFolder);
    text.replace(QLatin1String("IMG_LOC"), imageFolder);
    return splitSections(stripComments(text));
}

} // namespace Oracle

#endif // ORVACAT_TESTS_STYLESHEETORACLE_H
