#ifndef ORVACAT_STYLESHEETSCANNER_P_H
#define ORVACAT_STYLESHEETSCANNER_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the public API. It is used by the style-sheet
// registry, DPIinfo, the tests and the benchmarks, and may change at any time.
//

#include <QMap>
#include <QString>

namespace StyleSheetScanner {

/**
 * The text with every pixel length scaled by @p factor. Matches of
 * "(\d+\.?\d*)(px)" are rewritten as trunc(number * factor) + "px" (\d is any
 * decimal digit, and a number with one outside ASCII reads as 0); after each
 * match the search resumes three characters after its start, so a number of
 * four or more characters is found a second time and the output stops when it
 * runs out of text between matches.
 */
QString scalePixelLengths(const QString& text, double factor);

/** Removes every "/*...*\/" block comment (shortest match, may span lines). */
QString stripBlockComments(QString text);

/** Removes every "//" up to and including the next line feed. */
QString stripLineComments(QString text);

/**
 * Splits @p text into "== key ==" sections and stores them in @p sections
 * (replacing earlier bodies of the same key). Lines before the first header
 * run on into the first section; a header whose key is empty stores nothing.
 * A caller that knows the text holds no '\r' passes false for
 * @p mayHaveCarriageReturns and saves a search through every body.
 */
void splitSections(const QString& text, QMap<QString, QString>& sections,
                                  bool mayHaveCarriageReturns = true);

/**
 * The text with every "TMPIMG_LOC" replaced by @p tempImageFolder and then
 * every "IMG_LOC" by @p imageFolder, in one pass where that gives the same.
 */
QString replacePlaceholders(const QString& text, const QString& tempImageFolder,
                                           const QString& imageFolder);

/**
 * False when @p tempImageFolder could take part in an "IMG_LOC" match once it
 * stands in the text; appendReplacingPlaceholders() must not be used then.
 */
bool placeholdersReplaceInOnePass(const QString& tempImageFolder);

/**
 * Appends @p text to @p out with the placeholders replaced as by
 * replacePlaceholders(), without an intermediate copy. When @p out must
 * grow, it grows by @p spare characters more, for what is still to come.
 */
void appendReplacingPlaceholders(QString& out, QStringView text, const QString& tempImageFolder,
                                                const QString& imageFolder, int spare);
/** The same for text in Latin-1 (and so for UTF-8 that is all ASCII). */
void appendReplacingPlaceholders(QString& out, QLatin1String text, const QString& tempImageFolder,
                                                const QString& imageFolder, int spare);

/**
 * trunc(value) as an int; values beyond the int range saturate and NaN gives
 * 0, so a hostile length never reaches undefined behaviour.
 */
int truncatedPixels(double value);

} // namespace StyleSheetScanner

#endif // ORVACAT_STYLESHEETSCANNER_P_H
