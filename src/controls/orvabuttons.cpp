#include <orvacat/orvabuttons.h>

#include <orvacat/imagemanager.h>
#include <orvacat/stylemanager.h>

#include "accessibletext_p.h"
#include "resources/dpiscaling_p.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QKeySequence>
#include <QMenu>

namespace {

// What a screen reader learns of the toolkit's buttons. Qt's own interface
// would name an icon-only button after the group box around it and read its
// tooltip's markup out as the description; this one names every button from
// what the user sees and keeps Qt's roles, states and actions.
class ButtonAccessible : public QAccessibleWidget
{
public:
    explicit ButtonAccessible(QAbstractButton* button)
        : QAccessibleWidget(button, QAccessible::PushButton)
    {
    }

    QAccessible::Role role() const override
    {
        if (qobject_cast<QCheckBox*>(button()))
            return QAccessible::CheckBox;
        if (qobject_cast<QRadioButton*>(button()))
            return QAccessible::RadioButton;
        if (auto* tool = qobject_cast<QToolButton*>(button())) {
            if (!tool->menu())
                return tool->isCheckable() ? QAccessible::CheckBox : QAccessible::PushButton;
            return tool->popupMode() == QToolButton::DelayedPopup ? QAccessible::ButtonDropDown
                                                                  : QAccessible::ButtonMenu;
        }
        return menu() ? QAccessible::ButtonMenu : QAccessible::PushButton;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        QAbstractButton* b = button();
        state.checkable = b->isCheckable();
        state.checked = b->isChecked();
        if (auto* box = qobject_cast<QCheckBox*>(b))
            state.checkStateMixed = box->checkState() == Qt::PartiallyChecked;
        state.pressed = b->isDown();
        if (auto* push = qobject_cast<QPushButton*>(b))
            state.defaultButton = push->isDefault();
        state.hasPopup = menu() != nullptr;
        return state;
    }

    QString text(QAccessible::Text t) const override
    {
        QAbstractButton* b = button();
        switch (t) {
        case QAccessible::Name: {
            if (!b->accessibleName().isEmpty())
                return b->accessibleName();
            const QString caption = AccessibleText::withoutMnemonic(b->text());
            if (!caption.isEmpty())
                return caption;
            // An icon-only button says what its tooltip says.
            const QString tip = AccessibleText::plain(b->toolTip());
            return tip.isEmpty() ? AccessibleText::buddyText(b) : tip;
        }
        case QAccessible::Description: {
            if (!b->accessibleDescription().isEmpty())
                return b->accessibleDescription();
            const QString tip = AccessibleText::plain(b->toolTip());
            return tip == text(QAccessible::Name) ? QString() : tip;
        }
        case QAccessible::Accelerator:
            return QKeySequence::mnemonic(b->text()).toString(QKeySequence::NativeText);
        default:
            return QAccessibleWidget::text(t);
        }
    }

    QStringList actionNames() const override
    {
        QStringList names;
        if (button()->isEnabled()) {
            if (menu())
                names << showMenuAction();
            if (!menu() || role() == QAccessible::ButtonDropDown)
                names << (button()->isCheckable() ? toggleAction() : pressAction());
        }
        return names + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& action) override
    {
        QAbstractButton* b = button();
        if (!b->isEnabled())
            return;
        if (action == showMenuAction() && menu()) {
            if (auto* tool = qobject_cast<QToolButton*>(b))
                tool->showMenu();
            else
                static_cast<QPushButton*>(b)->showMenu();
        } else if (action == pressAction() || action == toggleAction()) {
            // A click, as the mouse gives one: toggles and emits clicked().
            b->click();
        } else {
            QAccessibleWidget::doAction(action);
        }
    }

    QStringList keyBindingsForAction(const QString& action) const override
    {
        const QString accelerator = text(QAccessible::Accelerator);
        if (!accelerator.isEmpty() && (action == pressAction() || action == toggleAction()))
            return QStringList(accelerator);
        return QAccessibleWidget::keyBindingsForAction(action);
    }

private:
    QAbstractButton* button() const { return static_cast<QAbstractButton*>(object()); }

    QMenu* menu() const
    {
        if (auto* tool = qobject_cast<QToolButton*>(button()))
            return tool->menu();
        if (auto* push = qobject_cast<QPushButton*>(button()))
            return push->menu();
        return nullptr;
    }
};

QAccessibleInterface* buttonAccessibleFactory(const QString& className, QObject* object)
{
    // Only for the classes themselves: a host's subclass with a factory of
    // its own is asked first and keeps its answer.
    static const QStringList ours = {QStringLiteral("OrvaButton"), QStringLiteral("OrvaIconButton"),
                                     QStringLiteral("OrvaCheckBox"), QStringLiteral("OrvaRadioButton")};
    auto* button = qobject_cast<QAbstractButton*>(object);
    if (button && ours.contains(className))
        return new ButtonAccessible(button);
    return nullptr;
}

// Called last in each constructor: see forgetEarlyInterface().
void installButtonAccessibility(QAbstractButton* button)
{
    static const bool installed = (QAccessible::installFactory(&buttonAccessibleFactory), true);
    Q_UNUSED(installed);
    AccessibleText::forgetEarlyInterface(button);
}

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
    installButtonAccessibility(this);
}

OrvaIconButton::OrvaIconButton(const QPixmap& pixmap)
    : QToolButton()
    , m_iconSize(-1, -1)
{
    setDefaultIcon(pixmap);
    initialize();
    installButtonAccessibility(this);
}

OrvaIconButton::OrvaIconButton(const QString& imageKey)
    : QToolButton()
    , m_iconSize(-1, -1)
{
    setAllIcon(imageKey);
    initialize();
    installButtonAccessibility(this);
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
    installButtonAccessibility(this);
}

OrvaRadioButton::OrvaRadioButton(const QString& text, QWidget* parent)
    : QRadioButton(text, parent)
{
    setStyleSheet(getStyleSheet("component.radio_button", false));
    installButtonAccessibility(this);
}
