// Icons that widgets request by key: the icon buttons of the paging bar, the
// filter bar and the calendar (four states each), the message icons and the
// breadcrumb pictures.

#include "themepainter.h"

#include <QPainterPath>
#include <QLinearGradient>

namespace ThemePainter {

namespace {

// Icon buttons carry their state in the picture: the hover look doubles as
// the focus indication, so it is tinted with the accent rather than grey.
struct StateLook
{
    QColor background; // invalid: none
    QColor glyph;
};

StateLook lookOf(ButtonState state)
{
    switch (state) {
    case ButtonState::Normal:
        return {QColor(), palette().textSecondary};
    case ButtonState::Hover:
        return {palette().accentLight, palette().accent};
    case ButtonState::Click:
        return {palette().accentLightPressed, palette().accentPressed};
    case ButtonState::Disable:
        return {QColor(), palette().textDisabled};
    }
    return {};
}

const ButtonState allStates[] = {ButtonState::Normal, ButtonState::Hover, ButtonState::Click,
                                 ButtonState::Disable};

// Paints the rounded state background of an icon button and hands the glyph colour on.
bool paintIconButton(const QString& dir, const QString& name, int width, int height,
                     const std::function<void(QPainter&, const QColor&)>& glyph)
{
    bool ok = true;
    for (ButtonState state : allStates) {
        const StateLook look = lookOf(state);
        ok = paintPicture(dir, name + stateSuffix(state), width, height, [&](QPainter& p) {
                 if (look.background.isValid()) {
                     p.setPen(Qt::NoPen);
                     p.setBrush(look.background);
                     p.drawRoundedRect(QRectF(0.5, 0.5, width - 1.0, height - 1.0), 5, 5);
                 }
                 glyph(p, look.glyph);
             })
            && ok;
    }
    return ok;
}

void chevron(QPainter& p, qreal tipX, qreal centerY, qreal depth, qreal halfHeight)
{
    // depth > 0 points right, < 0 points left.
    QPainterPath path;
    path.moveTo(tipX - depth, centerY - halfHeight);
    path.lineTo(tipX, centerY);
    path.lineTo(tipX - depth, centerY + halfHeight);
    p.drawPath(path);
}

void drawFirstLast(QPainter& p, const QColor& color, bool towardsEnd)
{
    p.setPen(roundPen(color, 1.7));
    p.setBrush(Qt::NoBrush);
    if (towardsEnd) {
        chevron(p, 14.0, 12.0, 4.5, 4.5);
        p.drawLine(QPointF(16.5, 7.5), QPointF(16.5, 16.5));
    } else {
        chevron(p, 10.0, 12.0, -4.5, 4.5);
        p.drawLine(QPointF(7.5, 7.5), QPointF(7.5, 16.5));
    }
}

void drawFastStep(QPainter& p, const QColor& color, bool forward)
{
    p.setPen(roundPen(color, 1.7));
    p.setBrush(Qt::NoBrush);
    if (forward) {
        chevron(p, 12.0, 12.0, 4.0, 4.5);
        chevron(p, 17.0, 12.0, 4.0, 4.5);
    } else {
        chevron(p, 12.0, 12.0, -4.0, 4.5);
        chevron(p, 7.0, 12.0, -4.0, 4.5);
    }
}

void drawRefresh(QPainter& p, const QColor& color)
{
    const QRectF ring(6.0, 6.0, 12.0, 12.0);
    p.setPen(roundPen(color, 1.7));
    p.setBrush(Qt::NoBrush);
    // Qt's angles run counter-clockwise from three o'clock, in 1/16 degree.
    p.drawArc(ring, 60 * 16, 285 * 16);
    // Arrow head at the start of the arc (upper right), pointing along it.
    QPainterPath head;
    head.moveTo(18.6, 5.2);
    head.lineTo(18.4, 10.0);
    head.lineTo(13.8, 8.9);
    head.closeSubpath();
    p.setPen(roundPen(color, 1.0));
    p.setBrush(color);
    p.drawPath(head);
}

void drawSearchDropdown(QPainter& p, const QColor& color)
{
    p.setPen(roundPen(color, 1.7));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(13.0, 11.0), 5.0, 5.0);
    p.drawLine(QPointF(16.7, 14.7), QPointF(20.0, 18.0));
    QPainterPath caret;
    caret.moveTo(23.5, 10.5);
    caret.lineTo(29.5, 10.5);
    caret.lineTo(26.5, 14.0);
    caret.closeSubpath();
    p.setPen(roundPen(color, 0.8));
    p.setBrush(color);
    p.drawPath(caret);
}

bool paintFolder(const QString& dir)
{
    return paintPicture(dir, QStringLiteral("folder"), 20, 20, [](QPainter& p) {
        p.setPen(Qt::NoPen);
        // Back with its tab.
        QPainterPath back;
        back.moveTo(2.0, 5.0);
        back.quadTo(2.0, 3.5, 3.5, 3.5);
        back.lineTo(7.6, 3.5);
        back.lineTo(9.4, 5.3);
        back.lineTo(16.5, 5.3);
        back.quadTo(18.0, 5.3, 18.0, 6.8);
        back.lineTo(18.0, 15.0);
        back.lineTo(2.0, 15.0);
        back.closeSubpath();
        p.setBrush(QColor(0x4A, 0x8A, 0xF4));
        p.drawPath(back);
        // Front flap.
        QLinearGradient front(0, 7, 0, 16.5);
        front.setColorAt(0.0, QColor(0x8A, 0xB4, 0xF8));
        front.setColorAt(1.0, QColor(0x6F, 0xA3, 0xF7));
        p.setBrush(front);
        p.drawRoundedRect(QRectF(2.0, 7.2, 16.0, 9.3), 1.5, 1.5);
    });
}

bool paintBreadcrumbArrow(const QString& dir)
{
    return paintPicture(dir, QStringLiteral("bt_next"), 6, 12, [](QPainter& p) {
        p.setPen(roundPen(QColor(0x9A, 0xA0, 0xA6), 1.3));
        chevron(p, 4.2, 6.0, 2.7, 3.0);
    });
}

bool paintAppImage(const QString& dir)
{
    return paintPicture(dir, QStringLiteral("app_img"), 40, 40, [](QPainter& p) {
        QLinearGradient tile(0, 2, 0, 38);
        tile.setColorAt(0.0, QColor(0x4C, 0x8D, 0xF6));
        tile.setColorAt(1.0, palette().accentPressed);
        p.setPen(Qt::NoPen);
        p.setBrush(tile);
        p.drawRoundedRect(QRectF(2, 2, 36, 36), 9, 9);
        // A cat's head: two ears and a round face.
        QPainterPath head;
        head.moveTo(10.5, 14.5);
        head.lineTo(11.5, 8.5);
        head.lineTo(16.5, 12.0);
        head.lineTo(23.5, 12.0);
        head.lineTo(28.5, 8.5);
        head.lineTo(29.5, 14.5);
        head.closeSubpath();
        head.addEllipse(QRectF(9.5, 11.0, 21.0, 19.0));
        head.setFillRule(Qt::WindingFill);
        p.setBrush(white);
        p.drawPath(head.simplified());
        p.setBrush(palette().accent);
        p.drawEllipse(QPointF(16.0, 20.0), 1.8, 2.2);
        p.drawEllipse(QPointF(24.0, 20.0), 1.8, 2.2);
        QPainterPath nose;
        nose.moveTo(18.6, 23.6);
        nose.lineTo(21.4, 23.6);
        nose.lineTo(20.0, 25.2);
        nose.closeSubpath();
        p.drawPath(nose);
    });
}

bool paintInformation(const QString& dir)
{
    return paintPicture(dir, QStringLiteral("icon_information"), 40, 40, [](QPainter& p) {
        p.setPen(Qt::NoPen);
        p.setBrush(palette().accent);
        p.drawEllipse(QRectF(3, 3, 34, 34));
        p.setBrush(palette().onAccent);
        p.drawEllipse(QPointF(20.0, 12.8), 2.2, 2.2);
        p.drawRoundedRect(QRectF(18.2, 17.0, 3.6, 12.0), 1.8, 1.8);
    });
}

bool paintWarning(const QString& dir)
{
    return paintPicture(dir, QStringLiteral("icon_warning"), 40, 40, [](QPainter& p) {
        QPainterPath triangle;
        triangle.moveTo(20.0, 5.0);
        triangle.lineTo(36.0, 33.5);
        triangle.lineTo(4.0, 33.5);
        triangle.closeSubpath();
        // A thick pen of the fill colour rounds the triangle's corners.
        QPen edge = roundPen(palette().amber, 4.0);
        p.setPen(edge);
        p.setBrush(palette().amber);
        p.drawPath(triangle);
        p.setPen(Qt::NoPen);
        p.setBrush(palette().onAccent);
        p.drawRoundedRect(QRectF(18.3, 13.5, 3.4, 11.0), 1.7, 1.7);
        p.drawEllipse(QPointF(20.0, 28.7), 2.0, 2.0);
    });
}

bool paintQuestion(const QString& dir)
{
    return paintPicture(dir, QStringLiteral("icon_question"), 40, 40, [](QPainter& p) {
        p.setPen(Qt::NoPen);
        p.setBrush(palette().accent);
        p.drawEllipse(QRectF(3, 3, 34, 34));
        const QRectF bow(15.0, 10.0, 10.0, 10.0);
        QPainterPath mark;
        mark.arcMoveTo(bow, 160);
        mark.arcTo(bow, 160, -250);
        mark.lineTo(20.0, 23.0);
        p.setPen(roundPen(palette().onAccent, 3.4));
        p.setBrush(Qt::NoBrush);
        p.drawPath(mark);
        p.setPen(Qt::NoPen);
        p.setBrush(palette().onAccent);
        p.drawEllipse(QPointF(20.0, 28.6), 2.1, 2.1);
    });
}

} // namespace

bool paintIcons(const QString& imageDir)
{
    bool ok = paintIconButton(imageDir, QStringLiteral("bt_pagebar_backend"), 24, 24,
                              [](QPainter& p, const QColor& c) { drawFirstLast(p, c, false); });
    ok = paintIconButton(imageDir, QStringLiteral("bt_pagebar_nextend"), 24, 24,
                         [](QPainter& p, const QColor& c) { drawFirstLast(p, c, true); })
        && ok;
    ok = paintIconButton(imageDir, QStringLiteral("bt_pagebar_back"), 24, 24,
                         [](QPainter& p, const QColor& c) { drawFastStep(p, c, false); })
        && ok;
    ok = paintIconButton(imageDir, QStringLiteral("bt_pagebar_next"), 24, 24,
                         [](QPainter& p, const QColor& c) { drawFastStep(p, c, true); })
        && ok;
    ok = paintIconButton(imageDir, QStringLiteral("bt_pagebar_refresh"), 24, 24, &drawRefresh) && ok;
    ok = paintIconButton(imageDir, QStringLiteral("bt_search_dropdown"), 34, 24, &drawSearchDropdown) && ok;
    ok = paintFolder(imageDir) && ok;
    ok = paintBreadcrumbArrow(imageDir) && ok;
    ok = paintAppImage(imageDir) && ok;
    ok = paintInformation(imageDir) && ok;
    ok = paintWarning(imageDir) && ok;
    ok = paintQuestion(imageDir) && ok;
    return ok;
}

} // namespace ThemePainter
