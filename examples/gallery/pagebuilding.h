#ifndef ORVACAT_GALLERY_PAGEBUILDING_H
#define ORVACAT_GALLERY_PAGEBUILDING_H

#include <orvacat/dpiinfo.h>

#include <QColor>
#include <QLabel>
#include <QRegularExpression>
#include <QVBoxLayout>
#include <QString>

// Small pieces every gallery page is built from, so that the pages share one
// look.

/** A length of @p n pixels at 72 dpi on this screen, as the toolkit scales its own. */
inline int px(int n)
{
    return int(n * DPIinfo::getInstance()->getDPI());
}

/** Whether the gallery wears its dark look; the window sets it with the theme, before it builds the pages. */
inline bool& darkLook()
{
    static bool dark = false;
    return dark;
}

/**
 * The gallery's own colours beside the theme's, light and dark: the one list
 * that the window's sheet, the application palette and every page's sheet
 * take them from. Each text colour keeps at least 4.5:1 on the backgrounds it
 * is used on (text, quiet and link on page, card and strip), in both looks.
 */
inline QColor lookColour(const QString& name, bool dark = darkLook())
{
    struct Entry {
        const char* name;
        const char* light;
        const char* dark;
    };
    static const Entry colours[] = {
        {"page", "#F8F9FA", "#202124"},    // behind the cards
        {"card", "#FFFFFF", "#292A2D"},    // cards, fields, lists, frames
        {"strip", "#F1F3F4", "#35363A"},   // bars and panels set off from a card
        {"line", "#DADCE0", "#3C4043"},    // hairlines and borders
        {"text", "#202124", "#E8EAED"},
        {"quiet", "#5F6368", "#BDC1C6"},   // notes, captions, what was removed
        {"faint", "#9AA0A6", "#80868B"},   // disabled text only
        {"link", "#1967D2", "#8AB4F8"},    // links and results
        {"list", "#F1F3F4", "#202124"},    // the page list
        {"itemink", "#3C4043", "#DADCE0"}, // softer text: the page list's, a sample window's
        {"hover", "#E8EAED", "#35363A"},   // a row under the pointer, a title bar
        {"pick", "#D2E3FC", "#314B70"},    // a picked row
        {"pickink", "#174EA6", "#D2E3FC"}, // its text
    };
    for (const Entry& entry : colours) {
        if (name == QLatin1String(entry.name))
            return QColor(QLatin1String(dark ? entry.dark : entry.light));
    }
    qWarning("The gallery has no colour named %s", qPrintable(name));
    return QColor(QLatin1String(dark ? "#E8EAED" : "#202124"));
}

/** @p sheet with every "@name" replaced by that colour of the current look. */
inline QString lookSheet(QString sheet)
{
    static const QRegularExpression token(QStringLiteral("@([a-z]+)"));
    QRegularExpressionMatch match;
    int from = 0;
    while ((match = token.match(sheet, from)).hasMatch()) {
        const QString colour = lookColour(match.captured(1)).name(QColor::HexRgb);
        sheet.replace(match.capturedStart(), match.capturedLength(), colour);
        from = match.capturedStart() + colour.size();
    }
    return sheet;
}

/** A wrapped quiet explanation under or beside a control. */
inline QLabel* note(const QString& text)
{
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    label->setStyleSheet(lookSheet(QStringLiteral("color: @quiet;")));
    return label;
}

/** The page's own column, with the margins every page keeps from the page list. */
inline QVBoxLayout* pageLayout(QWidget* page)
{
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(px(24), px(18), px(24), px(18));
    return layout;
}

#endif // ORVACAT_GALLERY_PAGEBUILDING_H
