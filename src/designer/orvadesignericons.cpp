#include "orvadesignericons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace {

// Drawn on a 32-unit grid into a 64-pixel picture, so that the widget box
// shows them sharp at its usual sizes and on screens of ratio 2.
constexpr int grid = 32;
constexpr int pixels = 64;

const QColor ink(0x4a, 0x55, 0x60);
const QColor accent(0x2f, 0x7b, 0xd8);
const QColor paper(Qt::white);
const QColor shade(0xd5, 0xdb, 0xe1);

void field(QPainter& p, const QRectF& rect)
{
    p.setPen(QPen(ink, 1.5));
    p.setBrush(paper);
    p.drawRoundedRect(rect, 2, 2);
}

void bar(QPainter& p, qreal x, qreal y, qreal width, const QColor& colour, qreal thickness = 3)
{
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    p.drawRoundedRect(QRectF(x, y, width, thickness), thickness / 2, thickness / 2);
}

void downArrow(QPainter& p, qreal centreX, qreal centreY)
{
    QPainterPath path;
    path.moveTo(centreX - 3.5, centreY - 2);
    path.lineTo(centreX + 3.5, centreY - 2);
    path.lineTo(centreX, centreY + 2.5);
    path.closeSubpath();
    p.fillPath(path, ink);
}

void chevron(QPainter& p, qreal x, qreal centreY, const QColor& colour)
{
    p.setPen(QPen(colour, 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawPolyline(QPolygonF({QPointF(x, centreY - 5), QPointF(x + 5, centreY), QPointF(x, centreY + 5)}));
}

void draw(QPainter& p, OrvaDesignerGlyph glyph)
{
    switch (glyph) {
    case OrvaDesignerGlyph::PushButton:
        p.setPen(Qt::NoPen);
        p.setBrush(accent);
        p.drawRoundedRect(QRectF(3, 9, 26, 14), 3, 3);
        bar(p, 9, 14.5, 14, paper);
        break;
    case OrvaDesignerGlyph::IconButton:
        p.setPen(QPen(ink, 1.5));
        p.setBrush(paper);
        p.drawRoundedRect(QRectF(5, 5, 22, 22), 4, 4);
        p.setPen(Qt::NoPen);
        p.setBrush(accent);
        p.drawEllipse(QPointF(16, 16), 6, 6);
        break;
    case OrvaDesignerGlyph::CheckBox:
        p.setPen(Qt::NoPen);
        p.setBrush(accent);
        p.drawRoundedRect(QRectF(6, 6, 20, 20), 3, 3);
        p.setPen(QPen(paper, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawPolyline(QPolygonF({QPointF(10.5, 16), QPointF(14.5, 20.5), QPointF(21.5, 11.5)}));
        break;
    case OrvaDesignerGlyph::RadioButton:
        p.setPen(QPen(ink, 1.5));
        p.setBrush(paper);
        p.drawEllipse(QPointF(16, 16), 10, 10);
        p.setPen(Qt::NoPen);
        p.setBrush(accent);
        p.drawEllipse(QPointF(16, 16), 5, 5);
        break;
    case OrvaDesignerGlyph::LineEdit:
        field(p, QRectF(3, 9, 26, 14));
        p.setPen(QPen(accent, 1.5));
        p.drawLine(QPointF(8, 12.5), QPointF(8, 19.5));
        break;
    case OrvaDesignerGlyph::Label:
        bar(p, 4, 9, 24, ink);
        bar(p, 4, 15, 18, ink);
        bar(p, 4, 21, 12, ink);
        break;
    case OrvaDesignerGlyph::LinkLabel:
        bar(p, 4, 11, 24, accent);
        bar(p, 4, 17.5, 24, accent, 1.5);
        break;
    case OrvaDesignerGlyph::Footbar:
        p.setPen(QPen(ink, 1.5));
        p.setBrush(shade);
        p.drawRect(QRectF(2, 18, 28, 10));
        p.setPen(Qt::NoPen);
        p.setBrush(accent);
        p.drawRoundedRect(QRectF(16, 20.5, 5.5, 5), 1, 1);
        p.drawRoundedRect(QRectF(23, 20.5, 5.5, 5), 1, 1);
        bar(p, 5, 21.75, 7, ink, 2.5);
        break;
    case OrvaDesignerGlyph::PagingBar:
        for (int i = 0; i < 3; ++i) {
            const QRectF box(3.5 + i * 9, 11, 7, 10);
            if (i == 1) {
                p.setPen(Qt::NoPen);
                p.setBrush(accent);
                p.drawRoundedRect(box, 1.5, 1.5);
            } else {
                field(p, box);
            }
        }
        break;
    case OrvaDesignerGlyph::Calendar:
        field(p, QRectF(4, 5, 24, 23));
        p.setPen(Qt::NoPen);
        p.setBrush(accent);
        p.drawRect(QRectF(4.75, 5.75, 22.5, 5));
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 4; ++column)
                p.fillRect(QRectF(7.5 + column * 5, 14 + row * 4.5, 2.5, 2.5), row == 1 && column == 2 ? accent : ink);
        }
        break;
    case OrvaDesignerGlyph::DateSelector:
        field(p, QRectF(2, 9, 28, 14));
        bar(p, 5, 14.5, 9, ink);
        p.setPen(QPen(ink, 1.2));
        p.setBrush(paper);
        p.drawRect(QRectF(19, 11.5, 8, 9));
        p.fillRect(QRectF(19, 11.5, 8, 2.5), accent);
        break;
    case OrvaDesignerGlyph::Table:
        field(p, QRectF(3, 6, 26, 21));
        p.fillRect(QRectF(3.75, 6.75, 24.5, 5), shade);
        p.setPen(QPen(ink, 1));
        for (qreal y : {12.0, 17.0, 22.0})
            p.drawLine(QPointF(3.75, y), QPointF(28.25, y));
        p.drawLine(QPointF(13, 6.75), QPointF(13, 26.25));
        break;
    case OrvaDesignerGlyph::Tree:
        p.setPen(QPen(ink, 1.5));
        p.drawLine(QPointF(8, 8), QPointF(8, 24));
        for (qreal y : {14.0, 24.0})
            p.drawLine(QPointF(8, y), QPointF(14, y));
        p.setPen(Qt::NoPen);
        p.setBrush(accent);
        p.drawRoundedRect(QRectF(4, 3, 8, 6), 1, 1);
        p.setBrush(ink);
        p.drawRoundedRect(QRectF(15, 11, 13, 6), 1, 1);
        p.drawRoundedRect(QRectF(15, 21, 13, 6), 1, 1);
        break;
    case OrvaDesignerGlyph::ButtonPath:
        bar(p, 2, 14.5, 6, ink);
        chevron(p, 10, 16, accent);
        bar(p, 17, 14.5, 6, ink);
        chevron(p, 25, 16, accent);
        break;
    case OrvaDesignerGlyph::FilterBar:
        field(p, QRectF(2, 9, 28, 14));
        p.setPen(QPen(accent, 1.8));
        p.setBrush(Qt::NoBrush);
        p.drawEllipse(QPointF(21.5, 15), 3.5, 3.5);
        p.drawLine(QPointF(24, 17.5), QPointF(27, 20.5));
        break;
    case OrvaDesignerGlyph::ComboBox:
        field(p, QRectF(2, 9, 28, 14));
        bar(p, 5, 14.5, 12, ink);
        downArrow(p, 24, 16);
        break;
    }
}

} // namespace

QIcon orvaDesignerIcon(OrvaDesignerGlyph glyph)
{
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(qreal(pixels) / grid, qreal(pixels) / grid);
    draw(painter, glyph);
    painter.end();
    return QIcon(pixmap);
}
