#ifndef ORVACAT_TOOLS_THEMEPAINTER_H
#define ORVACAT_TOOLS_THEMEPAINTER_H

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QString>

#include <functional>

/**
 * Shared pieces of the default theme's painter. Every picture is designed in
 * the units in which it is shown on a 72-dpi screen and drawn at four times
 * that size, as the image registry expects its files.
 */
namespace ThemePainter {

/** File pixels per shown pixel. */
constexpr int kFileScale = 4;

/**
 * The colours a theme's pictures are drawn in. One blue accent, neutral greys
 * and red for destructive actions; the dark palette lightens the accent and
 * the text and darkens the surfaces, so that every picture keeps its contrast.
 */
struct ThemePalette
{
    QColor accent;
    QColor accentHover;
    QColor accentPressed;
    QColor accentLight; // tint behind a hovered icon
    QColor accentLightPressed;
    QColor text;
    QColor textSecondary;
    QColor textDisabled;
    QColor border;
    QColor borderStrong;
    QColor surface; // what the pictures stand on: cards, fields
    QColor surfaceDisabled;
    QColor onAccent; // marks drawn over the accent, red or amber
    QColor red;
    QColor amber;
    QColor shadow;
    double shadowStrength; // multiplies the shadow's opacity

    static ThemePalette light();
    static ThemePalette dark();
};

/** The palette being drawn with; light unless main() chose another. */
const ThemePalette& palette();
void setPalette(const ThemePalette& palette);

/** White that stays white in every palette: marks on fixed-colour bands. */
const QColor white(0xFF, 0xFF, 0xFF);

/** The four looks of an icon button, in the image registry's order. */
enum class ButtonState { Normal, Hover, Click, Disable };

/** The file-name suffix of a state: "", "_hover", "_click", "_disable". */
QString stateSuffix(ButtonState state);

/**
 * Draws a picture of @p width x @p height shown pixels into a transparent
 * image at four times that size and saves it as @p dir/@p name.png. The
 * painter handed to @p draw is antialiased and scaled, so it works in shown
 * pixels. Returns false (with a message) when the file cannot be written.
 */
bool paintPicture(const QString& dir, const QString& name, int width, int height,
                  const std::function<void(QPainter&)>& draw);

/** Saves an image drawn without paintPicture; false with a message on failure. */
bool saveImage(const QImage& image, const QString& dir, const QString& name);

/** A round-capped, round-joined pen of @p width shown pixels. */
QPen roundPen(const QColor& color, qreal width);

// The families of pictures; each returns false when a file could not be written.

/** Icons shown by widgets: icon buttons in four states, message icons, breadcrumb pictures. */
bool paintIcons(const QString& imageDir);
/** The eight pieces of the sheet's drop shadow. */
bool paintShadows(const QString& imageDir);
/** Pictures that only style sheets use: indicators, arrows, check marks. */
bool paintIndicators(const QString& imageDir);
/** The file-type icons for the host's file lists, normal and removed. */
bool paintFileTypes(const QString& fileTypeDir);
/** The pictures of the offline help pages, drawn at the size they are shown. */
bool paintHelpPictures(const QString& helpImageDir);

} // namespace ThemePainter

#endif // ORVACAT_TOOLS_THEMEPAINTER_H
