// Draws every picture of a theme:
//
//   orvacat-themepainter <themeDir> [light|dark]
//
// writes <themeDir>/images/*.png (the image registry's files) and
// <themeDir>/filetypes/*.png (the file-type icons for hosts' file lists) and
// <themeDir>/help/image/*.png (the offline help's pictures).

#include "themepainter.h"

#include <QDir>
#include <QGuiApplication>

#include <cstdio>

namespace ThemePainter {

ThemePalette ThemePalette::light()
{
    ThemePalette p;
    p.accent = QColor(0x1A, 0x73, 0xE8);
    p.accentHover = QColor(0x17, 0x65, 0xCC);
    p.accentPressed = QColor(0x15, 0x57, 0xB0);
    p.accentLight = QColor(0xE8, 0xF0, 0xFE);
    p.accentLightPressed = QColor(0xD2, 0xE3, 0xFC);
    p.text = QColor(0x20, 0x21, 0x24);
    p.textSecondary = QColor(0x5F, 0x63, 0x68);
    p.textDisabled = QColor(0xBD, 0xC1, 0xC6);
    p.border = QColor(0xDA, 0xDC, 0xE0);
    p.borderStrong = QColor(0x80, 0x86, 0x8B);
    p.surface = QColor(0xFF, 0xFF, 0xFF);
    p.surfaceDisabled = QColor(0xF1, 0xF3, 0xF4);
    p.onAccent = QColor(0xFF, 0xFF, 0xFF);
    p.red = QColor(0xD9, 0x30, 0x25);
    p.amber = QColor(0xF2, 0x99, 0x00);
    p.shadow = QColor(0x10, 0x18, 0x28);
    p.shadowStrength = 1.0;
    return p;
}

ThemePalette ThemePalette::dark()
{
    ThemePalette p;
    p.accent = QColor(0x8A, 0xB4, 0xF8);
    p.accentHover = QColor(0xAE, 0xCB, 0xFA);
    p.accentPressed = QColor(0x66, 0x9D, 0xF6);
    p.accentLight = QColor(0x28, 0x3B, 0x57);
    p.accentLightPressed = QColor(0x31, 0x4B, 0x70);
    p.text = QColor(0xE8, 0xEA, 0xED);
    p.textSecondary = QColor(0xBD, 0xC1, 0xC6);
    p.textDisabled = QColor(0x6F, 0x74, 0x79);
    p.border = QColor(0x5F, 0x63, 0x68);
    p.borderStrong = QColor(0x9A, 0xA0, 0xA6);
    p.surface = QColor(0x29, 0x2A, 0x2D);
    p.surfaceDisabled = QColor(0x35, 0x36, 0x3A);
    p.onAccent = QColor(0x20, 0x21, 0x24);
    p.red = QColor(0xF2, 0x8B, 0x82);
    p.amber = QColor(0xFD, 0xD6, 0x63);
    // On a dark window a shadow must be darker and denser to be seen at all.
    p.shadow = QColor(0x00, 0x00, 0x00);
    p.shadowStrength = 2.2;
    return p;
}

namespace {
ThemePalette currentPalette = ThemePalette::light();
} // namespace

const ThemePalette& palette()
{
    return currentPalette;
}

void setPalette(const ThemePalette& palette)
{
    currentPalette = palette;
}

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
    if (args.size() < 2 || args.size() > 3
        || (args.size() == 3 && args.at(2) != QLatin1String("light") && args.at(2) != QLatin1String("dark"))) {
        std::fprintf(stderr, "usage: orvacat-themepainter <themeDir> [light|dark]\n");
        return 2;
    }
    if (args.size() == 3 && args.at(2) == QLatin1String("dark"))
        ThemePainter::setPalette(ThemePainter::ThemePalette::dark());
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
