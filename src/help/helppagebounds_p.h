#ifndef ORVACAT_HELPPAGEBOUNDS_P_H
#define ORVACAT_HELPPAGEBOUNDS_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the public API.
//

#include <QString>

/**
 * Help pages come from a server or a folder that the toolkit does not
 * control, and Qt's rich-text engine is not built for hostile markup: its
 * layout time grows exponentially with nested tables (20 levels take
 * seconds, 50 minutes) and quadratically with nested elements. A page is
 * measured here before it reaches a document.
 */
namespace HelpPageBounds {

/** Nested tables accepted in one page. */
constexpr int kMaxTableDepth = 10;
/** Nested elements accepted in one page (void elements and those whose end tag may be left out do not count). */
constexpr int kMaxElementDepth = 256;

/** True if @p html nests tables or elements deeper than the bounds above; one pass, no allocation. */
bool exceedsNesting(const QString& html);

/** The text of @p html without its tags, for showing a page that cannot be laid out. */
QString flattened(const QString& html);

} // namespace HelpPageBounds

#endif // ORVACAT_HELPPAGEBOUNDS_P_H
