#include <orvacat/orvalabels.h>

#include <orvacat/stylemanager.h>

#include "accessibletext_p.h"
#include "resources/dpiscaling_p.h"

#include <QAccessibleWidget>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QResizeEvent>

OrvaLabel::OrvaLabel(QWidget* parent, Qt::WindowFlags flags)
    : QLabel(parent, flags)
{
    setStyleSheet(getStyleSheet("component.label", false));
}

OrvaLabel::OrvaLabel(const QString& text, QWidget* parent, Qt::WindowFlags flags)
    : QLabel(text, parent, flags)
{
    setStyleSheet(getStyleSheet("component.label", false));
}

void OrvaLabel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (wordWrap() && sizePolicy().verticalPolicy() == QSizePolicy::Minimum) {
        // Reset first: the height for the new width may be smaller than the old minimum.
        setMinimumHeight(0);
        setMinimumHeight(heightForWidth(width()));
    }
}

namespace {

// The link label's focus ring, as wide as the themes' rings on other controls.
int focusRingWidth()
{
    return qMax(1, scaled(2.0));
}

// Takes the pointing hand a link label pushed off the application's override
// cursors; whatever a host pushed over it since is put back as it was.
void removePointingHand()
{
    QList<QCursor> above;
    while (const QCursor* top = QGuiApplication::overrideCursor()) {
        const bool hand = top->shape() == Qt::PointingHandCursor;
        if (!hand)
            above.prepend(*top);
        QGuiApplication::restoreOverrideCursor();
        if (hand)
            break;
    }
    for (const QCursor& cursor : qAsConst(above))
        QGuiApplication::setOverrideCursor(cursor);
}

// A link label is a link to a screen reader, not static text: it takes the
// focus, can be pressed, and its target is its value.
class LinkAccessible : public QAccessibleWidget
{
public:
    explicit LinkAccessible(LinkLabel* label)
        : QAccessibleWidget(label, QAccessible::Link)
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.linked = true;
        return state;
    }

    QString text(QAccessible::Text t) const override
    {
        switch (t) {
        case QAccessible::Name:
            if (!label()->accessibleName().isEmpty())
                return label()->accessibleName();
            return AccessibleText::plain(label()->text());
        case QAccessible::Description: {
            if (!label()->accessibleDescription().isEmpty())
                return label()->accessibleDescription();
            const QString tip = AccessibleText::plain(label()->toolTip());
            return tip == text(QAccessible::Name) ? QString() : tip;
        }
        case QAccessible::Value:
            return label()->getHyperLink();
        default:
            return QAccessibleWidget::text(t);
        }
    }

    QStringList actionNames() const override
    {
        QStringList names;
        if (label()->isEnabled())
            names << pressAction();
        return names + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& action) override
    {
        if (action != pressAction())
            QAccessibleWidget::doAction(action);
        else if (label()->isEnabled())
            Q_EMIT label()->clicked();
    }

    QStringList keyBindingsForAction(const QString& action) const override
    {
        if (action == pressAction())
            return QStringList(QKeySequence(Qt::Key_Return).toString(QKeySequence::NativeText));
        return QAccessibleWidget::keyBindingsForAction(action);
    }

private:
    LinkLabel* label() const { return static_cast<LinkLabel*>(object()); }
};

QAccessibleInterface* linkAccessibleFactory(const QString& className, QObject* object)
{
    if (className == QLatin1String("LinkLabel"))
        return new LinkAccessible(static_cast<LinkLabel*>(object));
    return nullptr;
}

} // namespace

LinkLabel::LinkLabel(const QString& text, QLabel* parent)
    : QLabel(text, parent)
{
    // Reachable with Tab like a button; a click focuses it like a button too.
    // The margin leaves room for the focus ring, so the text never moves.
    setFocusPolicy(Qt::StrongFocus);
    const int ring = focusRingWidth();
    setContentsMargins(ring, ring, ring, ring);
    static const bool installed = (QAccessible::installFactory(&linkAccessibleFactory), true);
    Q_UNUSED(installed);
    AccessibleText::forgetEarlyInterface(this);
}

LinkLabel::~LinkLabel()
{
    // Closing the page from a click handler deletes the label under the pointer.
    if (m_hoverLook)
        removePointingHand();
}

void LinkLabel::setHyperLink(const QString& link)
{
    m_hyperLink = link;
}

QString LinkLabel::getHyperLink()
{
    return m_hyperLink;
}

void LinkLabel::paintEvent(QPaintEvent* event)
{
    QLabel::paintEvent(event);
    if (!hasFocus())
        return;
    // Drawn in the text's own colour, which the host or theme already chose to
    // stand out from the background; a style sheet cannot select this label's
    // focus unless the host gives it one.
    QPainter painter(this);
    const int ring = focusRingWidth();
    painter.setPen(QPen(palette().color(foregroundRole()), ring));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(rect()).adjusted(ring / 2.0, ring / 2.0, -ring / 2.0, -ring / 2.0));
}

void LinkLabel::setHoverLook(bool on)
{
    // Enter and leave do not always come in pairs: only what was set is taken back.
    if (on == m_hoverLook)
        return;
    m_hoverLook = on;
    if (on)
        QGuiApplication::setOverrideCursor(QCursor(Qt::PointingHandCursor));
    else
        removePointingHand();
    QFont underlined = font();
    underlined.setUnderline(on);
    setFont(underlined);
}

void LinkLabel::enterEvent(OrvaEnterEvent* event)
{
    if (isEnabled())
        setHoverLook(true);
    QLabel::enterEvent(event);
}

void LinkLabel::leaveEvent(QEvent* event)
{
    if (isEnabled()) {
        setHoverLook(false);
        QLabel::leaveEvent(event);
    } else {
        // Kept as it always was: the base enter handler does nothing visible here.
        // Under Qt 6 a leave is no enter event, so that handler gets null there.
        QLabel::enterEvent(dynamic_cast<OrvaEnterEvent*>(event));
    }
}

void LinkLabel::changeEvent(QEvent* event)
{
    // Disabled, the label gets no leave event to take its look back with.
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        setHoverLook(false);
    QLabel::changeEvent(event);
}

void LinkLabel::hideEvent(QHideEvent* event)
{
    setHoverLook(false);
    QLabel::hideEvent(event);
}

void LinkLabel::mousePressEvent(QMouseEvent* event)
{
    // A receiver may delete the label (closing the page it sits on).
    QPointer<LinkLabel> alive(this);
    Q_EMIT clicked();
    if (alive)
        QLabel::mousePressEvent(event);
}

void LinkLabel::keyPressEvent(QKeyEvent* event)
{
    const bool activates = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter
                        || event->key() == Qt::Key_Space;
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (!activates || modifiers != Qt::NoModifier) {
        QLabel::keyPressEvent(event);
        return;
    }
    event->accept();
    // Held down, the key would open the link again and again.
    if (!event->isAutoRepeat())
        Q_EMIT clicked();
}

QString getHtmlEscapedStringForToolTip(const QString& text)
{
    QString escaped = text.toHtmlEscaped();
    escaped.replace(QLatin1String("\n"), QLatin1String("<br>"));
    return QLatin1String("<p style='white-space:pre'>") + escaped + QLatin1String("</p>");
}
