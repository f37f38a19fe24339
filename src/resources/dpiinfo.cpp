#include <orvacat/dpiinfo.h>

#include <orvacat/globals.h>

#include "stylesheetscanner_p.h"

#include <QGuiApplication>
#include <QScreen>

DPIinfo::DPIinfo()
    : m_dpi(1.0)
    , m_dpr(1.0)
{
    // The same numbers the desktop widget reports as its PdmDpiX and
    // PdmDevicePixelRatio metrics: the rounded logical DPI of the primary
    // screen and its ratio cut to an integer.
    const QScreen* screen = qGuiApp ? QGuiApplication::primaryScreen() : nullptr;
    if (!screen) {
        qCWarning(debug_message) << "DPIinfo: no screen to measure, using 72 dpi and ratio 1";
        return;
    }
    m_dpi = qRound(screen->logicalDotsPerInchX()) / 72.0;
    m_dpr = double(int(screen->devicePixelRatio()));
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
