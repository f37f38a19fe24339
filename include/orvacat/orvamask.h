#ifndef ORVACAT_ORVAMASK_H
#define ORVACAT_ORVAMASK_H

/**
 * @file
 * OrvaMask, the translucent cover that a sheet is shown on.
 */

#include <orvacat/orvacat_export.h>

#include <QColor>
#include <QFrame>

class OrvaMaskPrivate;

/**
 * A translucent cover over a whole top-level window that holds one child
 * widget (typically a sheet) centred in its layout. The mask appears and
 * disappears with the child and follows the size of the parent's window.
 * It stays at its parent's origin, so pass the window itself as the parent.
 * To assistive technology it is a nameless filler that offers no action.
 */
class ORVACAT_EXPORT OrvaMask : public QFrame
{
    Q_OBJECT

public:
    /**
     * Lays @p child inside a new mask filled with @p colour and owned by
     * @p parent, or by the child's parent widget when @p parent is null.
     * Returns @p child, or null (creating nothing) when @p child is null or
     * no parent can be found.
     */
    static QWidget* createMask(QWidget* child, QWidget* parent, QColor colour);

    /**
     * Prefer createMask(). Takes @p child into the mask's layout and stays
     * hidden until the child is shown (or shows at once if the child already
     * was); @p parent should be the window itself.
     */
    OrvaMask(QWidget* child, QWidget* parent, QColor colour);
    ~OrvaMask() override;

    /** Fixes the mask's size to its top-level window's size again. */
    void resize();
    using QFrame::resize;

    /** Shows and hides the mask with its child; never consumes an event. */
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    OrvaMaskPrivate* d;
};

#endif // ORVACAT_ORVAMASK_H
