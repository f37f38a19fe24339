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
 * measured once when the instance is first asked for. Needs a live
 * QApplication at that moment.
 */
class ORVACAT_EXPORT DPIinfo
{
public:
    DPIinfo();

    /** The process's one instance, measured on first use (which needs a QApplication). */
    static DPIinfo* getInstance();

    /** The scale factor: logical horizontal DPI / 72.0 (1.0 at 72 dpi, 4/3 at 96). */
    double getDPI();
    /** The device-pixel ratio (1.0 or 2.0 on usual screens). */
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
