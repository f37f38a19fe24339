#ifndef ORVACAT_TESTS_MOTIFHINTS_H
#define ORVACAT_TESTS_MOTIFHINTS_H

// What the X server holds as a window's _MOTIF_WM_HINTS, read with xprop:
// how the tests see whether a window's close button is offered.

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QWindow>

namespace MotifHintsReader {

// Bits of the Motif window-manager hints that the xcb platform writes.
constexpr quint32 MwmHintsFunctions = 0x1;
constexpr quint32 MwmHintsDecorations = 0x2;
constexpr quint32 MwmFuncResize = 0x2;
constexpr quint32 MwmFuncMove = 0x4;
constexpr quint32 MwmFuncClose = 0x20;

struct MotifHints
{
    bool present = false;
    quint32 flags = 0;
    quint32 functions = 0;
    quint32 decorations = 0;

    /** Whether the window manager is allowed to offer "close". */
    bool allowsClose() const
    {
        // Without the functions bit every function is allowed.
        return !present || !(flags & MwmHintsFunctions) || (functions & MwmFuncClose);
    }
};

/** The window's _MOTIF_WM_HINTS as the X server holds them, read with xprop. */
inline MotifHints readMotifHints(WId window)
{
    MotifHints hints;
    QProcess xprop;
    xprop.start(QStringLiteral("xprop"),
                {QStringLiteral("-id"), QString::number(window), QStringLiteral("_MOTIF_WM_HINTS")});
    if (!xprop.waitForFinished(10000) || xprop.exitCode() != 0)
        return hints;
    // "_MOTIF_WM_HINTS(_MOTIF_WM_HINTS) = 0x3, 0x3e, 0x7e, 0x0, 0x0", or "... not found."
    const QString output = QString::fromLocal8Bit(xprop.readAllStandardOutput()).trimmed();
    const int equals = output.indexOf(QLatin1Char('='));
    if (equals < 0)
        return hints;
    const QStringList values = output.mid(equals + 1).split(QLatin1Char(','), Qt::SkipEmptyParts);
    bool ok[3] = {false, false, false};
    quint32* fields[3] = {&hints.flags, &hints.functions, &hints.decorations};
    for (int i = 0; i < 3 && i < values.size(); ++i)
        *fields[i] = values.at(i).trimmed().toUInt(&ok[i], 0);
    hints.present = ok[0] && ok[1] && ok[2];
    return hints;
}

inline QString describe(const MotifHints& hints)
{
    if (!hints.present)
        return QStringLiteral("no _MOTIF_WM_HINTS");
    return QStringLiteral("flags 0x%1 functions 0x%2 decorations 0x%3")
        .arg(hints.flags, 0, 16)
        .arg(hints.functions, 0, 16)
        .arg(hints.decorations, 0, 16);
}

} // namespace MotifHintsReader

#endif // ORVACAT_TESTS_MOTIFHINTS_H
