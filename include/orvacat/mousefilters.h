#ifndef ORVACAT_MOUSEFILTERS_H
#define ORVACAT_MOUSEFILTERS_H

/**
 * @file
 * MouseReleaseFilter and MouseButtonFilter, event filters that keep clicks
 * from completing where a popup would take them for a choice.
 */

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
    /** Install it with installEventFilter(); @p parent owns it, the toolkit never deletes it. */
    explicit MouseReleaseFilter(QObject* parent = nullptr);

    /** Consumes mouse-button releases. */
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
    /** Install it with installEventFilter(); @p parent owns it, the toolkit never deletes it. */
    explicit MouseButtonFilter(QObject* parent = nullptr);

    /** Consumes mouse-button presses, releases and double clicks. */
    bool eventFilter(QObject* watched, QEvent* event) override;
};

#endif // ORVACAT_MOUSEFILTERS_H
