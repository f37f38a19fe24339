#include <orvacat/dpiinfo.h>

#include <orvacat/globals.h>

#include "stylesheetscanner_p.h"

#include <QGuiApplication>
#include <QScreen>

#include <cmath>

DPIinfo::DPIinfo()
    : m_dpi(1.0)
    , m_dpr(1.0)
{
    // The rounded logical DPI, as the desktop widget's PdmDpiX metric gives
    // it. The ratio is kept whole: cut to an integer, a 150 % screen would get
    // pictures of ratio 1 that Qt stretches by half.
    const QScreen* screen = qGuiApp ? QGuiApplication::primaryScreen() : nullptr;
    if (!screen) {
        qCWarning(debug_message) << "DPIinfo: no screen to measure, using 72 dpi and ratio 1";
        return;
    }
    m_dpi = qRound(screen->logicalDotsPerInchX()) / 72.0;
    const double ratio = screen->devicePixelRatio();
    if (!(ratio > 0.0) || !std::isfinite(ratio)) {
        qCWarning(debug_message) << "DPIinfo: device-pixel ratio" << ratio << "of the screen is not usable, using 1";
        return;
    }
    // A ratio that Qt derived by division (a density over 96 dpi under Qt 6)
    // may miss a whole number by a rounding error; whole ratios must give
    // exactly the sizes of a whole ratio.
    const double whole = std::round(ratio);
    m_dpr = std::abs(ratio - whole) < 1e-6 ? whole : ratio;
}

DPIinfo* DPIinfo::getInstance()
{
    static DPIinfo instance;
    return &instance;
}

double DPIinfo::getDPI()
{
    return m_dpi;
}

double DPIinfo::getDPR()
{
    return m_dpr;
}

QString DPIinfo::getScaledStyleSheet(QString styleSheet)
{
    return StyleSheetScanner::scalePixelLengths(styleSheet, m_dpi);
}
