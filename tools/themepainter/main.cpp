// Draws every picture of the default theme:
//
//   orvacat-themepainter <themeDir>
//
// writes <themeDir>/images/*.png (the image registry's files) and
// <themeDir>/filetypes/*.png (the file-type icons for hosts' file lists) and
// <themeDir>/help/image/*.png (the offline help's pictures).

#include "themepainter.h"

#include <QDir>
#include <QGuiApplication>

#include <cstdio>

namespace ThemePainter {

QString stateSuffix(ButtonState state)
{
    switch (state) {
    case ButtonState::Normal:
        return QString();
    case ButtonState::Hover:
        return QStringLiteral("_hover");
    case ButtonState::Click:
        return QStringLiteral("_click");
    case ButtonState::Disable:
        return QStringLiteral("_disable");
    }
    return QString();
}

bool saveImage(const QImage& image, const QString& dir, const QString& name)
{
    const QString path = QDir(dir).filePath(name + QLatin1String(".png"));
    if (!image.save(path, "PNG")) {
        std::fprintf(stderr, "orvacat-themepainter: cannot write %s\n", qPrintable(path));
        return false;
    }
    return true;
}

bool paintPicture(const QString& dir, const QString& name, int width, int height,
                  const std::function<void(QPainter&)>& draw)
{
    QImage image(width * kFileScale, height * kFileScale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::TextAntialiasing);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.scale(kFileScale, kFileScale);
        draw(painter);
    }
    return saveImage(image, dir, name);
}

QPen roundPen(const QColor& color, qreal width)
{
    return QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

} // namespace ThemePainter

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: orvacat-themepainter <themeDir>\n");
        return 2;
    }
    const QString imageDir = args.at(1) + QLatin1String("/images");
    const QString fileTypeDir = args.at(1) + QLatin1String("/filetypes");
    const QString helpImageDir = args.at(1) + QLatin1String("/help/image");
    if (!QDir().mkpath(imageDir) || !QDir().mkpath(fileTypeDir) || !QDir().mkpath(helpImageDir)) {
        std::fprintf(stderr, "orvacat-themepainter: cannot create the folders under %s\n", qPrintable(args.at(1)));
        return 1;
    }
    bool ok = ThemePainter::paintIcons(imageDir);
    ok = ThemePainter::paintShadows(imageDir) && ok;
    ok = ThemePainter::paintIndicators(imageDir) && ok;
    ok = ThemePainter::paintFileTypes(fileTypeDir) && ok;
    ok = ThemePainter::paintHelpPictures(helpImageDir) && ok;
    return ok ? 0 : 1;
}
