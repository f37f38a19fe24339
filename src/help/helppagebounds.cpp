#include "helppagebounds_p.h"

namespace {

bool isNameChar(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('-') || c == QLatin1Char(':');
}

// Elements that never hold others, and those Qt closes by itself when the
// next one opens (an unclosed <p> does not nest the following paragraph).
bool isNonNesting(QStringView name)
{
    static const char* const names[] = {
        "area", "base", "br", "col", "embed", "hr", "img", "input", "link", "meta", "param", "source", "track",
        "wbr", "p", "li", "dt", "dd", "tr", "td", "th", "option", "thead", "tbody", "tfoot", "colgroup", "html",
        "head", "body",
    };
    for (const char* candidate : names) {
        if (name.compare(QLatin1String(candidate), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

} // namespace

namespace HelpPageBounds {

bool exceedsNesting(const QString& html)
{
    int depth = 0;
    int tables = 0;
    const int size = html.size();
    int pos = html.indexOf(QLatin1Char('<'));
    while (pos >= 0 && pos + 1 < size) {
        if (QStringView(html).mid(pos, 4) == QLatin1String("<!--")) {
            const int end = html.indexOf(QLatin1String("-->"), pos + 4);
            if (end < 0)
                return false;
            pos = html.indexOf(QLatin1Char('<'), end + 3);
            continue;
        }
        const bool closing = html.at(pos + 1) == QLatin1Char('/');
        int nameEnd = pos + (closing ? 2 : 1);
        const int nameStart = nameEnd;
        while (nameEnd < size && isNameChar(html.at(nameEnd)))
            ++nameEnd;
        const int tagEnd = html.indexOf(QLatin1Char('>'), nameEnd);
        if (tagEnd < 0)
            return false;
        const QStringView name = QStringView(html).mid(nameStart, nameEnd - nameStart);
        if (!name.isEmpty() && name.at(0).isLetter()) {
            const bool table = name.compare(QLatin1String("table"), Qt::CaseInsensitive) == 0;
            const bool nests = !isNonNesting(name) && html.at(tagEnd - 1) != QLatin1Char('/');
            if (closing) {
                tables = qMax(0, tables - int(table));
                depth = qMax(0, depth - int(nests));
            } else if ((table && ++tables > kMaxTableDepth) || (nests && ++depth > kMaxElementDepth)) {
                return true;
            }
        }
        pos = html.indexOf(QLatin1Char('<'), tagEnd + 1);
    }
    return false;
}

QString flattened(const QString& html)
{
    QString text;
    text.reserve(html.size());
    bool inTag = false;
    for (const QChar c : html) {
        if (c == QLatin1Char('<'))
            inTag = true;
        else if (c == QLatin1Char('>') && inTag)
            inTag = false;
        else if (!inTag)
            text += c;
    }
    return text;
}

} // namespace HelpPageBounds
