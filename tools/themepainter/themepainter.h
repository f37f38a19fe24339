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

/** The theme's colours: one blue accent, neutral greys, red for destructive actions. */
namespace Palette {
const QColor accent(0x1A, 0x73, 0xE8);
const QColor accentHover(0x17, 0x65, 0xCC);
const QColor accentPressed(0x15, 0x57, 0xB0);
const QColor accentLight(0xE8, 0xF0, 0xFE);
const QColor accentLightPressed(0xD2, 0xE3, 0xFC);
const QColor accentDisabled(0xA8, 0xC7, 0xFA);
const QColor text(0x20, 0x21, 0x24);
const QColor textSecondary(0x5F, 0x63, 0x68);
const QColor textDisabled(0xBD, 0xC1, 0xC6);
const QColor border(0xDA, 0xDC, 0xE0);
const QColor borderStrong(0x80, 0x86, 0x8B);
const QColor surfaceDisabled(0xF1, 0xF3, 0xF4);
const QColor red(0xD9, 0x30, 0x25);
const QColor amber(0xF2, 0x99, 0x00);
const QColor white(0xFF, 0xFF, 0xFF);
} // namespace Palette

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
