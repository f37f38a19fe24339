#ifndef ORVACAT_ORVABUTTONS_H
#define ORVACAT_ORVABUTTONS_H

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
    OrvaButton(const QString& text, int role = 4);
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

    void initialize();

    /** Uses @p pixmap for all four states and takes the icon size from it. */
    void setDefaultIcon(const QPixmap& pixmap);
    /** Takes the four states of @p imageKey from the image registry. */
    void setAllIcon(const QString& imageKey);
    void setPressIcon(const QPixmap& pixmap);
    void setHoverIcon(const QPixmap& pixmap);
    void setDisableIcon(const QPixmap& pixmap);

protected:
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void showStateIcon(const QIcon& icon);
    void setIconSizeFrom(const QPixmap& pixmap);

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
    explicit OrvaCheckBox(const QString& text, QWidget* parent = nullptr);
};

/** A radio button styled by "component.radio_button". */
class ORVACAT_EXPORT OrvaRadioButton : public QRadioButton
{
    Q_OBJECT

public:
    explicit OrvaRadioButton(const QString& text, QWidget* parent = nullptr);
};

#endif // ORVACAT_ORVABUTTONS_H
