#include <orvacat/orvalabels.h>

#include <orvacat/stylemanager.h>

#include <QGuiApplication>
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

} // namespace

LinkLabel::LinkLabel(const QString& text, QLabel* parent)
    : QLabel(text, parent)
{
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

QString getHtmlEscapedStringForToolTip(const QString& text)
{
    QString escaped = text.toHtmlEscaped();
    escaped.replace(QLatin1String("\n"), QLatin1String("<br>"));
    return QLatin1String("<p style='white-space:pre'>") + escaped + QLatin1String("</p>");
}
