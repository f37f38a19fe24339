#ifndef ORVACAT_ORVABUTTONS_H
#define ORVACAT_ORVABUTTONS_H

/**
 * @file
 * The themed buttons and toggles: OrvaButton, OrvaIconButton, OrvaCheckBox
 * and OrvaRadioButton. Their looks come from the style sheet and image
 * registries, so initialize those before constructing one.
 */

#include <orvacat/globals.h>
#include <orvacat/orvacat_export.h>

#include <QCheckBox>
#include <QIcon>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>

/**
 * A flat push button in one of six looks, chosen by @p role:
 * 0 apply, 1 cancel, 2 selected page, 3 other page, 4 default dialog button,
 * 5 destructive action. Any other role leaves the button without a style
 * sheet of its own. Size policy Fixed/Fixed; put it in a layout.
 */
class ORVACAT_EXPORT OrvaButton : public QPushButton
{
    Q_OBJECT

public:
    /**
     * A parentless button showing @p text in the look of @p role; a layout
     * adopts it.
     */
    explicit OrvaButton(const QString& text, int role = 4);
};

/**
 * An icon-only tool button that swaps between four pictures: default at rest,
 * hover while the pointer is over it (kept on leave while it has focus, as the
 * focus indication), press while a mouse button is held, disable while
 * disabled. Icons are shown at the pixmap's size divided by the device-pixel
 * ratio.
 */
class ORVACAT_EXPORT OrvaIconButton : public QToolButton
{
    Q_OBJECT

public:
    /** One picture for every state. */
    explicit OrvaIconButton(const QPixmap& pixmap);
    /** The four states of an image of the image registry. */
    explicit OrvaIconButton(const QString& imageKey);

    /**
     * Icon only, Fixed/Fixed, styled by "component.icon_button", and a menu
     * attached to it opens at once on press. Both constructors call it.
     */
    void initialize();

    /** Uses @p pixmap for all four states and takes the icon size from it. */
    void setDefaultIcon(const QPixmap& pixmap);
    /** Takes the four states of @p imageKey from the image registry. */
    void setAllIcon(const QString& imageKey);
    /** Replaces the press picture; shown from the next press, icon size unchanged. */
    void setPressIcon(const QPixmap& pixmap);
    /** Replaces the hover picture; shown from the next enter, icon size unchanged. */
    void setHoverIcon(const QPixmap& pixmap);
    /** Replaces the disable picture; shown from the next disable or show, icon size unchanged. */
    void setDisableIcon(const QPixmap& pixmap);

protected:
    /** Shows the hover picture when enabled. */
    void enterEvent(OrvaEnterEvent* event) override;
    /** Shows the default picture when enabled and without focus. */
    void leaveEvent(QEvent* event) override;
    /** Shows the press picture when enabled. */
    void mousePressEvent(QMouseEvent* event) override;
    /** Shows the default picture (not hover) when enabled. */
    void mouseReleaseEvent(QMouseEvent* event) override;
    /** Shows the default picture, or the disable one when disabled. */
    void showEvent(QShowEvent* event) override;
    /** On an enabled change, shows the default or the disable picture. */
    void changeEvent(QEvent* event) override;

private:
    ORVACAT_NO_EXPORT void showStateIcon(const QIcon& icon);
    ORVACAT_NO_EXPORT void setIconSizeFrom(const QPixmap& pixmap);

    QIcon m_defaultIcon;
    QIcon m_pressIcon;
    QIcon m_hoverIcon;
    QIcon m_disableIcon;
    QSize m_iconSize;
};

/** A check box styled by "component.checkbox". */
class ORVACAT_EXPORT OrvaCheckBox : public QCheckBox
{
    Q_OBJECT

public:
    /** A QCheckBox showing @p text, then its style sheet from the registry. */
    explicit OrvaCheckBox(const QString& text, QWidget* parent = nullptr);
};

/** A radio button styled by "component.radio_button". */
class ORVACAT_EXPORT OrvaRadioButton : public QRadioButton
{
    Q_OBJECT

public:
    /** A QRadioButton showing @p text, then its style sheet from the registry. */
    explicit OrvaRadioButton(const QString& text, QWidget* parent = nullptr);
};

#endif // ORVACAT_ORVABUTTONS_H
