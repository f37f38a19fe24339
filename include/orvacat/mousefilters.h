#ifndef ORVACAT_MOUSEFILTERS_H
#define ORVACAT_MOUSEFILTERS_H

#include <orvacat/orvacat_export.h>

#include <QObject>

/**
 * Swallows mouse-button releases: presses still reach the widget (it looks
 * pressed) but a click never completes.
 */
class ORVACAT_EXPORT MouseReleaseFilter : public QObject
{
    Q_OBJECT

public:
    explicit MouseReleaseFilter(QObject* parent = nullptr);

    bool eventFilter(QObject* watched, QEvent* event) override;
};

/**
 * Swallows mouse-button presses, releases and double clicks; moves, wheel
 * and keyboard events pass.
 */
class ORVACAT_EXPORT MouseButtonFilter : public QObject
{
    Q_OBJECT

public:
    explicit MouseButtonFilter(QObject* parent = nullptr);

    bool eventFilter(QObject* watched, QEvent* event) override;
};

#endif // ORVACAT_MOUSEFILTERS_H
