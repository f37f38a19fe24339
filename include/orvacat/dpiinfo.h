#ifndef ORVACAT_DPIINFO_H
#define ORVACAT_DPIINFO_H

/**
 * @file
 * DPIinfo, the screen scale factor that every built-in length and style
 * sheet length is multiplied by.
 */

#include <orvacat/orvacat_export.h>

#include <QString>

/**
 * The screen's scale factor (logical DPI / 72) and device-pixel ratio,
 * measured once on the primary screen when the instance is first asked for.
 * Needs a live QApplication at that moment.
 *
 * A length of n pixels at 72 dpi covers trunc(n * getDPI()) logical pixels,
 * which Qt paints on that many times getDPR() device pixels. Qt 5 and Qt 6
 * split one screen differently between the two numbers; their product is
 * what stays:
 *
 * | screen (QT_FONT_DPI, QT_SCALE_FACTOR) | Qt 5 getDPI(), getDPR() | Qt 6 getDPI(), getDPR() |
 * |---|---|---|
 * | 72 dpi, 1                             | 1.0, 1.0                | 1.0, 1.0                |
 * | 96 dpi, 1                             | 4/3, 1.0                | 4/3, 1.0                |
 * | 72 dpi, 2                             | 1.0, 2.0                | 1.0, 2.0                |
 * | 96 dpi, 1.5                           | 4/3, 1.5                | 4/3, 1.5                |
 * | 144 dpi, 1                            | 2.0, 1.0                | 4/3, 1.5                |
 *
 * With its default rounding policy Qt 6 reports a logical DPI of at most 96
 * and moves the rest of the density into the ratio; up to 96 dpi both majors
 * report the same two numbers, so a widget, a style-sheet length and a
 * picture come out with the same device pixels. Above 96 dpi they agree to
 * within the rounding of each length (a 64-pixel picture file is 32 device
 * pixels at 144 dpi under both, a 12px style length 24).
 */
class ORVACAT_EXPORT DPIinfo
{
public:
    DPIinfo();

    /** The process's one instance, measured on first use (which needs a QApplication). */
    static DPIinfo* getInstance();

    /**
     * The scale factor: the screen's logical horizontal DPI, rounded to an
     * integer, divided by 72.0 (1.0 at 72 dpi, 4/3 at 96). Under Qt 6 the
     * logical DPI is 96 on any denser screen, so the factor stays at 4/3 there
     * and getDPR() grows instead.
     */
    double getDPI();
    /**
     * The screen's device-pixel ratio as Qt reports it, fractions included:
     * 1.0 or 2.0 on usual screens, 1.25, 1.5 or 1.75 on scaled ones (and
     * under Qt 6 also the density above 96 dpi, 1.5 on a 144-dpi screen).
     * The image registry makes its pictures at this ratio, so that they are
     * drawn one to one on the device. A ratio Qt reports as not positive
     * reads as 1.0, with a warning.
     */
    double getDPR();

    /**
     * @p styleSheet with every length written as digits and "px" multiplied by
     * getDPI() and truncated. Lengths of more than three characters before
     * "px" are not supported by the format (the text after them is shifted).
     */
    QString getScaledStyleSheet(QString styleSheet);

private:
    double m_dpi;
    double m_dpr;
};

#endif // ORVACAT_DPIINFO_H
