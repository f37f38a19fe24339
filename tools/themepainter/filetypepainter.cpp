// File-type icons for hosts' file lists: a page with a coloured band and a
// short label, one per type name of the toolkit's file-type table plus "xxx"
// for anything unknown, each also as "<name>_removed" (greyed and struck
// through) for files that were deleted.

#include "themepainter.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainterPath>

namespace ThemePainter {

namespace {

constexpr int kIconSize = 32; // shown pixels

struct FileType
{
    const char* name;
    const char* label;
    QRgb band;
};

const FileType fileTypes[] = {
    {"acc", "ACC", 0xA4373A},   {"ai", "AI", 0xE8710A},     {"audio", "AUD", 0xD81B60},
    {"bkpi", "BKPI", 0x5F6368}, {"doc", "DOC", 0x2B579A},   {"exe", "EXE", 0x455A64},
    {"fla", "FLA", 0xC62828},   {"htm", "HTML", 0xE44D26},  {"idn", "IDN", 0x3949AB},
    {"image", "IMG", 0x188038}, {"iso", "ISO", 0x6D4C41},   {"code", "CODE", 0x00838F},
    {"pdf", "PDF", 0xD93025},   {"ppt", "PPT", 0xC43E1C},   {"psd", "PSD", 0x1967D2},
    {"swf", "SWF", 0xAD1457},   {"ttf", "TTF", 0x37474F},   {"txt", "TXT", 0x5F6368},
    {"video", "VID", 0x7B1FA2}, {"xls", "XLS", 0x1E7145},   {"zip", "ZIP", 0xE37400},
    {"xxx", "FILE", 0x9AA0A6},
};

QImage drawIcon(const FileType& type)
{
    const int size = kIconSize * kFileScale;
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    p.scale(kFileScale, kFileScale);

    // The page with its folded corner.
    const qreal left = 6.5, top = 2.5, right = 26.5, bottom = 29.5, fold = 7.0;
    QPainterPath page;
    page.moveTo(left + 1.5, top);
    page.lineTo(right - fold, top);
    page.lineTo(right, top + fold);
    page.lineTo(right, bottom - 1.5);
    page.quadTo(right, bottom, right - 1.5, bottom);
    page.lineTo(left + 1.5, bottom);
    page.quadTo(left, bottom, left, bottom - 1.5);
    page.lineTo(left, top + 1.5);
    page.quadTo(left, top, left + 1.5, top);
    p.setPen(QPen(QColor(0xC4, 0xC7, 0xCC), 1.0));
    p.setBrush(white);
    p.drawPath(page);
    QPainterPath corner;
    corner.moveTo(right - fold, top);
    corner.lineTo(right - fold, top + fold - 1.5);
    corner.quadTo(right - fold, top + fold, right - fold + 1.5, top + fold);
    corner.lineTo(right, top + fold);
    p.setBrush(QColor(0xE8, 0xEA, 0xED));
    p.drawPath(corner);

    // Text lines on the page.
    p.setPen(roundPen(QColor(0xDA, 0xDC, 0xE0), 1.2));
    p.drawLine(QPointF(10.0, 8.5), QPointF(16.5, 8.5));
    p.drawLine(QPointF(10.0, 12.0), QPointF(23.0, 12.0));

    // The band sticks out on the left, as a label stuck to the page.
    const QColor bandColor = QColor::fromRgb(type.band);
    const QRectF band(3.0, 16.0, 20.5, 10.0);
    p.setPen(Qt::NoPen);
    p.setBrush(bandColor);
    p.drawRoundedRect(band, 2.0, 2.0);

    // The label, in file pixels so the font is sized exactly.
    p.resetTransform();
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setBold(true);
    font.setPixelSize(7 * kFileScale);
    const QString label = QString::fromLatin1(type.label);
    const QRectF bandPixels(band.x() * kFileScale, band.y() * kFileScale, band.width() * kFileScale,
                            band.height() * kFileScale);
    const qreal room = bandPixels.width() - 3.0 * kFileScale;
    const qreal advance = QFontMetricsF(font).horizontalAdvance(label);
    if (advance > room)
        font.setStretch(qMax(50, int(100.0 * room / advance)));
    p.setFont(font);
    p.setPen(white);
    p.drawText(bandPixels, Qt::AlignCenter, label);
    p.end();
    return image;
}

// Greys the icon out and strikes it through with a red line.
QImage removedVariant(const QImage& icon)
{
    QImage image = icon.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = line[x];
            const int grey = qGray(pixel);
            const int light = grey + (255 - grey) * 45 / 100;
            line[x] = qRgba(light, light, light, qAlpha(pixel) * 80 / 100);
        }
    }
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(kFileScale, kFileScale);
    p.setPen(roundPen(white, 4.0));
    p.drawLine(QPointF(4.5, 28.0), QPointF(27.5, 5.0));
    p.setPen(roundPen(palette().red, 2.0));
    p.drawLine(QPointF(4.5, 28.0), QPointF(27.5, 5.0));
    p.end();
    return image;
}

} // namespace

bool paintFileTypes(const QString& fileTypeDir)
{
    bool ok = true;
    for (const FileType& type : fileTypes) {
        const QImage icon = drawIcon(type);
        const QString name = QString::fromLatin1(type.name);
        ok = saveImage(icon, fileTypeDir, name) && ok;
        ok = saveImage(removedVariant(icon), fileTypeDir, name + QLatin1String("_removed")) && ok;
    }
    return ok;
}

} // namespace ThemePainter
