#ifndef ORVACAT_GALLERY_PAGEBUILDING_H
#define ORVACAT_GALLERY_PAGEBUILDING_H

#include <orvacat/dpiinfo.h>

#include <QLabel>
#include <QVBoxLayout>
#include <QString>

// Small pieces every gallery page is built from, so that the pages share one
// look.

/** A length of @p n pixels at 72 dpi on this screen, as the toolkit scales its own. */
inline int px(int n)
{
    return int(n * DPIinfo::getInstance()->getDPI());
}

/** A wrapped grey explanation under or beside a control. */
inline QLabel* note(const QString& text)
{
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    label->setStyleSheet(QStringLiteral("color: #5F6368;"));
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
