#include "stylesheetscanner_p.h"

#include <QLocale>

#include <cmath>
#include <limits>

namespace {

inline bool isDigit(QChar c)
{
    return c.unicode() >= '0' && c.unicode() <= '9';
}

struct PixelMatch
{
    int start = -1;     // first digit
    int numberEnd = -1; // one past the number, where "px" starts
};

// The leftmost match of (\d+\.?\d*)(px) at or after `from`. The match from a
// given start is unique: the digits run as far as they go, then an optional
// '.', then digits again, then "px". A run of digits that does not lead to a
// match cannot lead to one from any later digit of the same run either.
PixelMatch findPixelLength(const QChar* s, int size, int from)
{
    int p = from;
    while (p < size) {
        if (!isDigit(s[p])) {
            ++p;
            continue;
        }
        int q = p;
        while (q < size && isDigit(s[q]))
            ++q;
        int numberEnd = -1;
        if (q < size && s[q] == QLatin1Char('.')) {
            int r = q + 1;
            while (r < size && isDigit(s[r]))
                ++r;
            if (r + 1 < size && s[r] == QLatin1Char('p') && s[r + 1] == QLatin1Char('x'))
                numberEnd = r;
        } else if (q + 1 < size && s[q] == QLatin1Char('p') && s[q + 1] == QLatin1Char('x')) {
            numberEnd = q;
        }
        if (numberEnd >= 0)
            return {p, numberEnd};
        p = q;
    }
    return {};
}

double numberValue(const QChar* s, int length)
{
    // Plain integers of up to 15 digits are exact in a double: skip the parser.
    if (length <= 15) {
        qint64 value = 0;
        int i = 0;
        for (; i < length && isDigit(s[i]); ++i)
            value = value * 10 + (s[i].unicode() - '0');
        if (i == length)
            return double(value);
    }
    return QLocale::c().toDouble(QStringView(s, length));
}

} // namespace

namespace StyleSheetScanner {

int truncatedPixels(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= double(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    if (value <= double(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return int(value);
}

QString scalePixelLengths(const QString& text, double factor)
{
    const QChar* s = text.constData();
    const int size = text.size();

    QString result;
    result.reserve(size + size / 8);

    // Two cursors over the same matches: `split` walks them end to end and
    // delimits the pieces of text between lengths; `search` resumes three
    // characters after each match start and decides which number is written.
    PixelMatch split = findPixelLength(s, size, 0);
    int pieceStart = 0;
    bool piecesLeft = true;
    int searchFrom = 0;

    while (piecesLeft) {
        const PixelMatch found = findPixelLength(s, size, searchFrom);
        if (found.start < 0)
            break;
        // The piece that ends at the next split match, or the tail of the text.
        if (split.start >= 0) {
            result.append(s + pieceStart, split.start - pieceStart);
            pieceStart = split.numberEnd + 2;
            split = findPixelLength(s, size, pieceStart);
        } else {
            result.append(s + pieceStart, size - pieceStart);
            piecesLeft = false;
        }
        const double value = numberValue(s + found.start, found.numberEnd - found.start) * factor;
        result.append(QString::number(truncatedPixels(value)));
        result.append(QLatin1String("px"));
        searchFrom = found.start + 3;
    }
    if (piecesLeft) {
        const int pieceEnd = split.start >= 0 ? split.start : size;
        result.append(s + pieceStart, pieceEnd - pieceStart);
    }
    return result;
}

QString stripBlockComments(const QString& text)
{
    const QChar* s = text.constData();
    const int size = text.size();
    QString result;
    result.reserve(size);

    int copyFrom = 0;
    int i = 0;
    while (i + 1 < size) {
        if (s[i] == QLatin1Char('/') && s[i + 1] == QLatin1Char('*')) {
            int j = i + 2;
            while (j + 1 < size && !(s[j] == QLatin1Char('*') && s[j + 1] == QLatin1Char('/')))
                ++j;
            if (j + 1 >= size)
                break; // unterminated: no later "/*" can close either
            result.append(s + copyFrom, i - copyFrom);
            i = j + 2;
            copyFrom = i;
        } else {
            ++i;
        }
    }
    result.append(s + copyFrom, size - copyFrom);
    return result;
}

QString stripLineComments(const QString& text)
{
    const QChar* s = text.constData();
    const int size = text.size();
    QString result;
    result.reserve(size);

    int copyFrom = 0;
    int i = 0;
    while (i + 1 < size) {
        if (s[i] == QLatin1Char('/') && s[i + 1] == QLatin1Char('/')) {
            int j = i + 2;
            while (j < size && s[j] != QLatin1Char('\n'))
                ++j;
            if (j >= size)
                break; // a "//" without a line feed after it stays
            result.append(s + copyFrom, i - copyFrom);
            i = j + 1;
            copyFrom = i;
        } else {
            ++i;
        }
    }
    result.append(s + copyFrom, size - copyFrom);
    return result;
}

void splitSections(const QString& text, QMap<QString, QString>& sections)
{
    const QChar* s = text.constData();
    const int size = text.size();

    QString key;
    QString body;
    int lineStart = 0;
    while (lineStart < size) {
        // Lines end at '\n'; a '\r' right before it, or at the very end, is
        // part of the line ending, as QTextStream::readLine has it.
        int lineEnd = lineStart;
        while (lineEnd < size && s[lineEnd] != QLatin1Char('\n'))
            ++lineEnd;
        const int next = lineEnd + 1;
        if (lineEnd > lineStart && s[lineEnd - 1] == QLatin1Char('\r'))
            --lineEnd;
        const QStringView line(s + lineStart, lineEnd - lineStart);
        lineStart = next;

        if (line.startsWith(QLatin1String("==")) && line.endsWith(QLatin1String("=="))) {
            if (!key.isEmpty()) {
                sections.insert(key, body);
                body.clear();
            }
            key.clear();
            key.reserve(line.size());
            for (QChar c : line) {
                if (c != QLatin1Char('=') && c != QLatin1Char(' '))
                    key.append(c);
            }
            // A key made of nothing but '=' and spaces keeps the body running.
        } else {
            body.append(QLatin1Char('\n'));
            body.append(line);
        }
    }
    if (!key.isEmpty())
        sections.insert(key, body);
}

} // namespace StyleSheetScanner
