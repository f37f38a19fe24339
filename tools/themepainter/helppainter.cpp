// The picture of the offline help page: the online page fails, the copy
// on disk is shown. Drawn at the size the page shows it.

#include "themepainter.h"

#include <QPainterPath>

namespace ThemePainter {

namespace {

// A small window: title bar with three dots, a few text lines, a badge.
void drawWindow(QPainter& painter, const QRectF& frame, const QColor& titleBar, const QColor& lines)
{
    // Soft shadow under the window.
    for (int i = 3; i >= 1; --i) {
        QColor shade(0, 0, 0, 10);
        painter.setPen(Qt::NoPen);
        painter.setBrush(shade);
        painter.drawRoundedRect(frame.adjusted(-i + 1, -i + 2, i + 1, i + 2), 6 + i, 6 + i);
    }
    QPainterPath body;
    body.addRoundedRect(frame, 6, 6);
    painter.fillPath(body, white);
    painter.setPen(QPen(palette().border, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(body);

    // Rounded at the top, square where it meets the page.
    QPainterPath title;
    title.addRoundedRect(QRectF(frame.left(), frame.top(), frame.width(), 22), 6, 6);
    painter.fillPath(title, titleBar);
    painter.fillRect(QRectF(frame.left(), frame.top() + 12, frame.width(), 10), titleBar);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 200));
    for (int dot = 0; dot < 3; ++dot)
        painter.drawEllipse(QPointF(frame.left() + 12 + dot * 10, frame.top() + 11), 3, 3);

    painter.setBrush(lines);
    const qreal widths[] = {0.62, 0.62, 0.62, 0.32};
    for (int line = 0; line < 4; ++line)
        painter.drawRoundedRect(QRectF(frame.left() + 14, frame.top() + 36 + line * 14, frame.width() * widths[line], 5), 2.5, 2.5);
}

void drawBadge(QPainter& painter, const QPointF& centre, qreal radius, const QColor& colour)
{
    painter.setPen(QPen(white, 2));
    painter.setBrush(colour);
    painter.drawEllipse(centre, radius, radius);
}

} // namespace

bool paintHelpPictures(const QString& helpImageDir)
{
    QImage image(360, 170, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);

    const QColor grey(0x9A, 0xA0, 0xA6);
    const QColor lines(0xDA, 0xDC, 0xE0);

    // The online page: grey, a question mark, a red failure mark.
    const QRectF online(10, 12, 130, 140);
    drawWindow(painter, online, grey, lines);
    const QPointF question(online.right() - 24, online.bottom() - 24);
    drawBadge(painter, question, 15, grey);
    painter.setPen(white);
    QFont font;
    font.setPixelSize(20);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(QRectF(question.x() - 15, question.y() - 15, 30, 30), Qt::AlignCenter, QStringLiteral("?"));
    const QPointF failure(online.right() + 2, online.top());
    drawBadge(painter, failure, 11, palette().red);
    painter.setPen(roundPen(white, 2.2));
    painter.drawLine(failure + QPointF(-4, -4), failure + QPointF(4, 4));
    painter.drawLine(failure + QPointF(-4, 4), failure + QPointF(4, -4));

    // The arrow from one to the other.
    painter.setPen(roundPen(palette().accent, 2.5));
    painter.drawLine(QPointF(160, 82), QPointF(190, 82));
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().accent);
    painter.drawPolygon(QPolygonF({QPointF(200, 82), QPointF(190, 76), QPointF(190, 88)}));

    // The copy on disk: blue, with a folder.
    const QRectF offline(212, 12, 130, 140);
    drawWindow(painter, offline, palette().accent, lines);
    const QPointF folder(offline.right() - 24, offline.bottom() - 24);
    drawBadge(painter, folder, 15, palette().accent);
    painter.setPen(Qt::NoPen);
    painter.setBrush(white);
    QPainterPath shape;
    shape.moveTo(folder + QPointF(-8, -5));
    shape.lineTo(folder + QPointF(-3, -5));
    shape.lineTo(folder + QPointF(-1, -3));
    shape.lineTo(folder + QPointF(8, -3));
    shape.lineTo(folder + QPointF(8, 6));
    shape.lineTo(folder + QPointF(-8, 6));
    shape.closeSubpath();
    painter.drawPath(shape);
    painter.end();

    return saveImage(image, helpImageDir, QStringLiteral("helpwindow"));
}

} // namespace ThemePainter
