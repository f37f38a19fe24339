#include "stylesheetscanner_p.h"

#include "dpiscaling_p.h"

#include <QLocale>
#include <QVarLengthArray>

#include <cstring>
#include <utility>
#include <vector>


namespace {

inline bool isAsciiDigit(QChar c)
{
    return c.unicode() >= '0' && c.unicode() <= '9';
}

// Any decimal digit, as QRegExp's \d has it: those of other scripts count
// too (category Nd, one UTF-16 unit each; U+0660 is the lowest).
inline bool isDigit(QChar c)
{
    if (Q_LIKELY(c.unicode() < 0x660))
        return isAsciiDigit(c);
    return c.category() == QChar::Number_DecimalDigit;
}

struct PixelMatch
{
    int start = -1;     // first digit
    int numberEnd = -1; // one past the number, where "px" starts
};

// The first position at or after `from` where `first` is directly followed
// by `second`. The single-character search is the library's vectorised one.
int findPair(QStringView text, int from, QChar first, QChar second)
{
    const int last = text.size() - 1;
    while (from < last) {
        const int at = text.indexOf(first, from);
        if (at < 0 || at >= last)
            return -1;
        if (text[at + 1] == second)
            return at;
        from = at + 1;
    }
    return -1;
}

// The leftmost match of (\d+\.?\d*)(px) at or after `from`. Every match ends
// in "px", so look for those (a vectorised search) and read the number
// backwards: digits, then an optional '.' with at least one digit before
// it. The number starts where its run of digits starts, or at `from`, since
// the search cannot look before it. No match can reach across a "px", so
// the first "px" with a number is the leftmost match.
PixelMatch findPixelLength(const QChar* s, int size, int from)
{
    const QStringView text(s, size);
    int px = findPair(text, from + 1, QLatin1Char('p'), QLatin1Char('x'));
    for (; px >= 0; px = findPair(text, px + 2, QLatin1Char('p'), QLatin1Char('x'))) {
        int start = px;
        while (start > from && isDigit(s[start - 1]))
            --start;
        if (start - 1 > from && s[start - 1] == QLatin1Char('.') && isDigit(s[start - 2])) {
            start -= 2;
            while (start > from && isDigit(s[start - 1]))
                --start;
        }
        if (start < px)
            return {start, px};
    }
    return {};
}

// Appends value + "px" without a temporary string per number.
void appendPixels(QString& out, int value)
{
    char16_t digits[16];
    int at = 16;
    digits[--at] = u'x';
    digits[--at] = u'p';
    // Negative values only come from saturation; work in 64 bits for INT_MIN.
    qint64 magnitude = value < 0 ? -qint64(value) : qint64(value);
    do {
        digits[--at] = char16_t(u'0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude > 0);
    if (value < 0)
        digits[--at] = u'-';
    out.append(reinterpret_cast<const QChar*>(digits + at), 16 - at);
}

double numberValue(const QChar* s, int length)
{
    // Plain integers of up to 15 digits are exact in a double: skip the parser.
    // It reads a number with a digit of another script as 0, as QString does.
    if (length <= 15) {
        qint64 value = 0;
        int i = 0;
        for (; i < length && isAsciiDigit(s[i]); ++i)
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
    return saturatedInt(value);
}

QString scalePixelLengths(const QString& text, double factor)
{
    const QChar* s = text.constData();
    const int size = text.size();

    QString result;
    result.reserve(size + size / 4 + 16);

    // Two cursors over the same matches: `split` walks them end to end and
    // delimits the pieces of text between lengths; `found` resumes three
    // characters after each match start and decides which number is written.
    PixelMatch split = findPixelLength(s, size, 0);
    PixelMatch found = split;
    int pieceStart = 0;
    bool piecesLeft = true;

    while (piecesLeft && found.start >= 0) {
        const PixelMatch current = found;
        const bool currentIsSplit = current.start == split.start;
        // The piece that ends at the next split match, or the tail of the text.
        if (split.start >= 0) {
            result.append(s + pieceStart, split.start - pieceStart);
            pieceStart = split.numberEnd + 2;
            split = findPixelLength(s, size, pieceStart);
        } else {
            result.append(s + pieceStart, size - pieceStart);
            piecesLeft = false;
        }
        appendPixels(result, truncatedPixels(numberValue(s + current.start, current.numberEnd - current.start) * factor));
        // Three characters on from a number of at most three characters is
        // past its "px": the next match found is the next split match.
        if (currentIsSplit && current.numberEnd - current.start <= 3)
            found = split;
        else
            found = findPixelLength(s, size, current.start + 3);
    }
    if (piecesLeft) {
        const int pieceEnd = split.start >= 0 ? split.start : size;
        result.append(s + pieceStart, pieceEnd - pieceStart);
    }
    return result;
}

namespace {

// Removes the given spans from `text` in place: everything before a span's
// start is moved down over the spans removed so far. `next` yields the next
// span at or after a position, as [start, end), or start < 0 when there is
// none. Texts without a span are returned untouched, without a copy.
template<typename NextSpan>
QString removeSpans(QString text, NextSpan next)
{
    const int size = text.size();
    QChar* out = nullptr;
    int written = 0;
    int copyFrom = 0;
    while (true) {
        const QStringView view(text.constData(), size);
        const std::pair<int, int> span = next(view, copyFrom);
        if (span.first < 0)
            break;
        if (!out)
            out = text.data(); // detaches once if shared; positions stay valid
        const int keep = span.first - copyFrom;
        std::memmove(out + written, out + copyFrom, size_t(keep) * sizeof(QChar));
        written += keep;
        copyFrom = span.second;
    }
    if (!out)
        return text;
    const int rest = size - copyFrom;
    std::memmove(out + written, out + copyFrom, size_t(rest) * sizeof(QChar));
    text.truncate(written + rest);
    return text;
}

} // namespace

QString stripBlockComments(QString text)
{
    return removeSpans(std::move(text), [](QStringView view, int from) -> std::pair<int, int> {
        // Style sheets are full of '/' (paths) but have '*' only in comments:
        // find the '*' and look back for the '/'.
        int star = view.indexOf(QLatin1Char('*'), from + 1);
        while (star > 0 && view[star - 1] != QLatin1Char('/'))
            star = view.indexOf(QLatin1Char('*'), star + 1);
        if (star < 0)
            return {-1, -1};
        const int open = star - 1;
        const int close = findPair(view, open + 2, QLatin1Char('*'), QLatin1Char('/'));
        if (close < 0)
            return {-1, -1}; // unterminated: no later "/*" can close either
        return {open, close + 2};
    });
}

QString stripLineComments(QString text)
{
    return removeSpans(std::move(text), [](QStringView view, int from) -> std::pair<int, int> {
        const int open = findPair(view, from, QLatin1Char('/'), QLatin1Char('/'));
        if (open < 0)
            return {-1, -1};
        const int lineFeed = view.indexOf(QLatin1Char('\n'), open + 2);
        if (lineFeed < 0)
            return {-1, -1}; // a "//" without a line feed after it stays
        return {open, lineFeed + 1};
    });
}

void splitSections(const QString& text, QMap<QString, QString>& sections, bool mayHaveCarriageReturns)
{
    const QChar* s = text.constData();
    const int size = text.size();
    const QStringView view(text);

    QString body;

    // Adds the lines of text[from, to) to the body, each as a line feed and
    // the line. The slice already holds them joined by line feeds, so a slice
    // without carriage returns goes in as one piece.
    auto appendLines = [&](int from, int to) {
        if (from >= to)
            return;
        const QStringView slice(s + from, to - from);
        // Sized once: growing by appending would round every body up to a
        // power of two, and the bodies are what the registry keeps.
        body.reserve(body.size() + 1 + slice.size());
        if (!mayHaveCarriageReturns || !slice.contains(QLatin1Char('\r'))) {
            body.append(QLatin1Char('\n'));
            body.append(s + from, slice.endsWith(QLatin1Char('\n')) ? slice.size() - 1 : slice.size());
            return;
        }
        // Lines end at '\n'; a '\r' right before it, or at the very end, is
        // part of the line ending, as QTextStream::readLine has it.
        int lineStart = from;
        while (lineStart < to) {
            int lineEnd = view.indexOf(QLatin1Char('\n'), lineStart);
            if (lineEnd < 0 || lineEnd > to)
                lineEnd = to;
            const int next = lineEnd + 1;
            if (lineEnd > lineStart && s[lineEnd - 1] == QLatin1Char('\r'))
                --lineEnd;
            body.append(QLatin1Char('\n'));
            body.append(s + lineStart, lineEnd - lineStart);
            lineStart = next;
        }
    };

    // Only lines that start with "==" can be headers: look for those and
    // take everything between them as body lines.
    struct Header
    {
        int at;   // where the line starts
        int next; // where the line after it starts
        QString key;
    };
    std::vector<Header> headers;
    int search = 0;
    while (search < size) {
        const int at = findPair(view, search, QLatin1Char('='), QLatin1Char('='));
        if (at < 0)
            break;
        if (at > 0 && s[at - 1] != QLatin1Char('\n')) {
            search = at + 1;
            continue;
        }
        int lineEnd = view.indexOf(QLatin1Char('\n'), at);
        const int next = lineEnd < 0 ? size : lineEnd + 1;
        if (lineEnd < 0)
            lineEnd = size;
        if (lineEnd > at && s[lineEnd - 1] == QLatin1Char('\r'))
            --lineEnd;
        const QStringView line(s + at, lineEnd - at);
        search = next;
        if (!line.endsWith(QLatin1String("==")))
            continue;
        QString key(line.size(), Qt::Uninitialized);
        QChar* out = key.data();
        for (QChar c : line) {
            if (c != QLatin1Char('=') && c != QLatin1Char(' '))
                *out++ = c;
        }
        key.truncate(int(out - key.constData()));
        headers.push_back({at, next, std::move(key)});
    }

    // Every section found replaces its key's body. Let go of the old bodies
    // before the new ones are made, so that these take the old ones' memory
    // instead of growing the heap past what the allocator keeps.
    for (const Header& header : headers) {
        if (header.key.isEmpty())
            continue;
        const auto old = sections.find(header.key);
        if (old != sections.end())
            *old = QString();
    }

    QString key;
    int bodyFrom = 0;
    for (const Header& header : headers) {
        appendLines(bodyFrom, header.at);
        if (!key.isEmpty()) {
            sections.insert(key, body);
            body.clear();
        }
        // A key made of nothing but '=' and spaces keeps the body running.
        key = header.key;
        bodyFrom = header.next;
    }
    appendLines(bodyFrom, size);
    if (!key.isEmpty())
        sections.insert(key, body);
}

namespace {

const QString& imagePlaceholder()
{
    static const QString image = QStringLiteral("IMG_LOC");
    return image;
}

} // namespace

bool placeholdersReplaceInOnePass(const QString& tempImageFolder)
{
    // One pass finds both placeholders: an "IMG_LOC" preceded by "TMP" is the
    // temporary folder's. That equals replacing "TMPIMG_LOC" first and then
    // "IMG_LOC" unless the temporary folder could itself take part in an
    // "IMG_LOC" match after its replacement.
    const QString& image = imagePlaceholder();
    if (tempImageFolder.contains(image))
        return false;
    for (int n = 1; n < image.size(); ++n) {
        if (tempImageFolder.startsWith(QStringView(image).right(n)) || tempImageFolder.endsWith(QStringView(image).left(n)))
            return false;
    }
    return true;
}

namespace {

int findChar(QStringView text, char c, int from)
{
    return text.indexOf(QLatin1Char(c), from);
}

int findChar(QLatin1String text, char c, int from)
{
    if (from >= text.size())
        return -1;
    const void* found = std::memchr(text.data() + from, c, size_t(text.size() - from));
    return found ? int(static_cast<const char*>(found) - text.data()) : -1;
}

void appendPiece(QString& out, QStringView text, int from, int length)
{
    out.append(text.data() + from, length);
}

void appendPiece(QString& out, QLatin1String text, int from, int length)
{
    out.append(QLatin1String(text.data() + from, length)); // widened straight into `out`
}

template<typename View>
void appendReplacing(QString& out, View text, const QString& tempImageFolder, const QString& imageFolder, int spare)
{
    const QString& image = imagePlaceholder();
    // Where each placeholder starts and whether it is the temporary folder's,
    // so that the output's size is known before anything is copied.
    QVarLengthArray<std::pair<int, bool>, 64> matches;
    int grows = 0;
    for (int from = 0;;) {
        // An upper-case 'I' is rare in style sheets: find it, then compare.
        const int found = findChar(text, 'I', from);
        if (found < 0)
            break;
        if (found + image.size() > text.size())
            break;
        if (text.mid(found, image.size()) != image) {
            from = found + 1;
            continue;
        }
        const int copyFrom = matches.isEmpty() ? 0 : matches.last().first + image.size();
        const bool temporary = found - 3 >= copyFrom && text.mid(found - 3, 3) == QLatin1String("TMP");
        matches.append({found, temporary});
        grows += temporary ? tempImageFolder.size() - 3 - image.size() : imageFolder.size() - image.size();
        from = found + image.size();
    }
    const int needed = out.size() + text.size() + grows;
    if (out.capacity() < needed)
        out.reserve(needed + spare);
    int copyFrom = 0;
    for (const auto& match : matches) {
        appendPiece(out, text, copyFrom, match.first - copyFrom - (match.second ? 3 : 0));
        out.append(match.second ? tempImageFolder : imageFolder);
        copyFrom = match.first + image.size();
    }
    appendPiece(out, text, copyFrom, text.size() - copyFrom);
}

} // namespace

void appendReplacingPlaceholders(QString& out, QStringView text, const QString& tempImageFolder,
                                 const QString& imageFolder, int spare)
{
    appendReplacing(out, text, tempImageFolder, imageFolder, spare);
}

void appendReplacingPlaceholders(QString& out, QLatin1String text, const QString& tempImageFolder,
                                 const QString& imageFolder, int spare)
{
    appendReplacing(out, text, tempImageFolder, imageFolder, spare);
}

QString replacePlaceholders(const QString& text, const QString& tempImageFolder, const QString& imageFolder)
{
    if (!placeholdersReplaceInOnePass(tempImageFolder)) {
        QString result = text;
        result.replace(QLatin1String("TMPIMG_LOC"), tempImageFolder);
        result.replace(imagePlaceholder(), imageFolder);
        return result;
    }
    if (!text.contains(imagePlaceholder()))
        return text;
    QString result;
    appendReplacingPlaceholders(result, text, tempImageFolder, imageFolder, 0);
    return result;
}

} // namespace StyleSheetScanner
