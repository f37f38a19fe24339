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

LinkLabel::LinkLabel(const QString& text, QLabel* parent)
    : QLabel(text, parent)
{
}

void LinkLabel::setHyperLink(const QString& link)
{
    m_hyperLink = link;
}

QString LinkLabel::getHyperLink()
{
    return m_hyperLink;
}

void LinkLabel::enterEvent(QEvent* event)
{
    if (isEnabled()) {
        QGuiApplication::setOverrideCursor(QCursor(Qt::PointingHandCursor));
        QFont underlined = font();
        underlined.setUnderline(true);
        setFont(underlined);
    }
    QLabel::enterEvent(event);
}

void LinkLabel::leaveEvent(QEvent* event)
{
    if (isEnabled()) {
        QGuiApplication::restoreOverrideCursor();
        QFont plain = font();
        plain.setUnderline(false);
        setFont(plain);
        QLabel::leaveEvent(event);
    } else {
        // Kept as it always was: the base enter handler does nothing visible here.
        QLabel::enterEvent(event);
    }
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
