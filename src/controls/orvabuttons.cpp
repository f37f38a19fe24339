#include <orvacat/orvabuttons.h>

#include <orvacat/imagemanager.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QEvent>

namespace {

const char* roleStyleKey(int role)
{
    switch (role) {
    case 0: return "component.apply_button";
    case 1: return "component.cancel_button";
    case 2: return "component.select_paging_button";
    case 3: return "component.nonselect_paging_button";
    case 4: return "component.default_button";
    case 5: return "component.red_button";
    default: return nullptr;
    }
}

} // namespace

OrvaButton::OrvaButton(const QString& text, int role)
    : QPushButton()
{
    setText(text);
    setFlat(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    if (const char* key = roleStyleKey(role))
        setStyleSheet(getStyleSheet(key, false));
}

OrvaIconButton::OrvaIconButton(const QPixmap& pixmap)
    : QToolButton()
    , m_iconSize(-1, -1)
{
    setDefaultIcon(pixmap);
    initialize();
}

OrvaIconButton::OrvaIconButton(const QString& imageKey)
    : QToolButton()
    , m_iconSize(-1, -1)
{
    setAllIcon(imageKey);
    initialize();
}

void OrvaIconButton::initialize()
{
    setToolButtonStyle(Qt::ToolButtonIconOnly);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setStyleSheet(getStyleSheet("component.icon_button", false));
    setPopupMode(QToolButton::InstantPopup);
}

void OrvaIconButton::setDefaultIcon(const QPixmap& pixmap)
{
    const QIcon icon(pixmap);
    m_defaultIcon = icon;
    m_pressIcon = icon;
    m_hoverIcon = icon;
    m_disableIcon = icon;
    setIconSizeFrom(pixmap);
    // The size takes effect at the next state change or show.
    setIcon(m_defaultIcon);
}

void OrvaIconButton::setAllIcon(const QString& imageKey)
{
    m_defaultIcon = QIcon(getGlobalImage(imageKey, ImageManager::Normal));
    m_hoverIcon = QIcon(getGlobalImage(imageKey, ImageManager::Hover));
    m_pressIcon = QIcon(getGlobalImage(imageKey, ImageManager::Click));
    m_disableIcon = QIcon(getGlobalImage(imageKey, ImageManager::Disable));
    setIconSizeFrom(getGlobalImage(imageKey, ImageManager::Normal));
    setIcon(m_defaultIcon);
}

void OrvaIconButton::setPressIcon(const QPixmap& pixmap)
{
    m_pressIcon = QIcon(pixmap);
}

void OrvaIconButton::setHoverIcon(const QPixmap& pixmap)
{
    m_hoverIcon = QIcon(pixmap);
}

void OrvaIconButton::setDisableIcon(const QPixmap& pixmap)
{
    m_disableIcon = QIcon(pixmap);
}

void OrvaIconButton::enterEvent(OrvaEnterEvent* event)
{
    if (isEnabled())
        showStateIcon(m_hoverIcon);
    QToolButton::enterEvent(event);
}

void OrvaIconButton::leaveEvent(QEvent* event)
{
    // With focus the hover picture stays: it doubles as the focus indication.
    if (isEnabled() && !hasFocus())
        showStateIcon(m_defaultIcon);
    QToolButton::leaveEvent(event);
}

void OrvaIconButton::mousePressEvent(QMouseEvent* event)
{
    if (isEnabled())
        showStateIcon(m_pressIcon);
    QToolButton::mousePressEvent(event);
}

void OrvaIconButton::mouseReleaseEvent(QMouseEvent* event)
{
    if (isEnabled())
        showStateIcon(m_defaultIcon);
    QToolButton::mouseReleaseEvent(event);
}

void OrvaIconButton::showEvent(QShowEvent* event)
{
    showStateIcon(isEnabled() ? m_defaultIcon : m_disableIcon);
    QToolButton::showEvent(event);
}

void OrvaIconButton::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::EnabledChange)
        showStateIcon(isEnabled() ? m_defaultIcon : m_disableIcon);
    QToolButton::changeEvent(event);
}

void OrvaIconButton::showStateIcon(const QIcon& icon)
{
    setIcon(icon);
    setIconSize(m_iconSize);
}

void OrvaIconButton::setIconSizeFrom(const QPixmap& pixmap)
{
    m_iconSize = logicalIconSize(pixmap.size());
}

OrvaCheckBox::OrvaCheckBox(const QString& text, QWidget* parent)
    : QCheckBox(text, parent)
{
    setStyleSheet(getStyleSheet("component.checkbox", false));
}

OrvaRadioButton::OrvaRadioButton(const QString& text, QWidget* parent)
    : QRadioButton(text, parent)
{
    setStyleSheet(getStyleSheet("component.radio_button", false));
}
