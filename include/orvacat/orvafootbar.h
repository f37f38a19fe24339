#ifndef ORVACAT_ORVAFOOTBAR_H
#define ORVACAT_ORVAFOOTBAR_H

/**
 * @file
 * OrvaFootbar, the bar at the bottom of a window.
 */

#include <orvacat/orvacat_export.h>

#include <QVector>
#include <QWidget>

class QHBoxLayout;

/**
 * A bar for the bottom of a window: widgets packed to the left and to the
 * right, with a stretch between. Push the widgets, then call init() once;
 * margins and spacing may be changed after init().
 */
class ORVACAT_EXPORT OrvaFootbar : public QWidget
{
    Q_OBJECT

public:
    /** An empty bar with an empty layout: push widgets, then call init(). */
    explicit OrvaFootbar(QWidget* parent = nullptr);

    /** Appends @p widget to the left group; laid out by init(). Null is ignored. */
    void pushLeftWidget(QWidget* widget);
    /** Appends @p widget to the right group; laid out by init(). Null is ignored. */
    void pushRightWidget(QWidget* widget);
    /**
     * Lays the bar out: margins 20, 8, 20, 8 and spacing 10 (72-dpi pixels,
     * scaled), the left widgets in push order, a stretch, the right widgets.
     */
    void init();
    /** Layout margins in 72-dpi pixels, scaled for the screen. */
    void setMargins(int left, int top, int right, int bottom);
    /** Layout spacing in 72-dpi pixels, scaled for the screen. */
    void setSpacing(int spacing);

private:
    QHBoxLayout* m_layout;
    QVector<QWidget*> m_leftWidgets;
    QVector<QWidget*> m_rightWidgets;
};

#endif // ORVACAT_ORVAFOOTBAR_H
