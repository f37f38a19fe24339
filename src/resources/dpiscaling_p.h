#ifndef ORVACAT_DPISCALING_P_H
#define ORVACAT_DPISCALING_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the public API.
//

#include <orvacat/dpiinfo.h>

#include <QSize>

#include <cmath>
#include <limits>

/**
 * trunc(value) as an int, for lengths computed from outside input: values
 * beyond the int range saturate and NaN gives 0 instead of undefined
 * behaviour in the conversion.
 */
inline int saturatedInt(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= double(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    if (value <= double(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return int(value);
}

/** A built-in length of @p n pixels at 72 dpi, for this screen: trunc(n * factor). */
inline int scaled(double n)
{
    return int(n * DPIinfo::getInstance()->getDPI());
}

/** The logical size of @p pixelSize device pixels: each side divided by the ratio, halves rounded up. */
inline QSize logicalIconSize(const QSize& pixelSize)
{
    const double ratio = DPIinfo::getInstance()->getDPR();
    return QSize(qRound(pixelSize.width() / ratio), qRound(pixelSize.height() / ratio));
}

#endif // ORVACAT_DPISCALING_P_H
