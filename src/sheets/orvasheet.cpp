#include <orvacat/orvasheet.h>

#include <orvacat/imagemanager.h>

#include "resources/dpiscaling_p.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QPixmap>

namespace {

// A sheet squeezed below two bands gives its edges targets of zero or negative
// extent. QPainter would draw an inverted target mirrored, over the corners, so
// such a piece is simply left out.
void drawStretched(QPainter& painter, const QRect& target, const QPixmap& pixmap)
{
    if (target.width() <= 0 || target.height() <= 0 || pixmap.isNull())
        return;
    painter.drawPixmap(target, pixmap, pixmap.rect());
}

// The edge is scaled to the device pixels the band covers, so that it is
// drawn 1:1 on a screen with a device-pixel ratio rather than stretched.
QPixmap scaledEdge(const QPixmap& pixmap, int width, int height)
{
    if (width <= 0 || height <= 0 || pixmap.isNull())
        return QPixmap();
    const qreal ratio = pixmap.devicePixelRatio();
    QPixmap edge = pixmap.scaled(qRound(width * ratio), qRound(height * ratio), Qt::IgnoreAspectRatio,
                                 Qt::FastTransformation);
    edge.setDevicePixelRatio(ratio);
    return edge;
}

} // namespace

OrvaSheet::OrvaSheet(QWidget* parent)
    : QFrame(parent)
    , m_shadowWidth(scaled(22.0))
{
    setContentsMargins(m_shadowWidth, m_shadowWidth, m_shadowWidth, m_shadowWidth);
}

OrvaSheet::~OrvaSheet() = default;

void OrvaSheet::setWidget(QWidget* widget)
{
    delete layout();
    auto* box = new QHBoxLayout(this);
    if (widget)
        box->addWidget(widget, 0, Qt::AlignCenter);
    updateGeometry();
    adjustSize();
}

int OrvaSheet::shadowWidth() const
{
    return m_shadowWidth;
}

QColor OrvaSheet::cardColor() const
{
    return m_cardColor;
}

void OrvaSheet::setCardColor(const QColor& color)
{
    m_cardColor = color;
    update();
}

void OrvaSheet::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    const int m = m_shadowWidth;
    QPainter painter(this);
    drawShadow(painter);

    const QRect card(m, m, width() - 2 * m, height() - 2 * m);
    if (card.width() > 0 && card.height() > 0) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_cardColor.isValid() ? m_cardColor : palette().color(QPalette::Base));
        painter.drawRect(card);
    }
}

void OrvaSheet::showEvent(QShowEvent* event)
{
    setContentsMargins(m_shadowWidth, m_shadowWidth, m_shadowWidth, m_shadowWidth);
    QWidget::showEvent(event);
}

bool OrvaSheet::event(QEvent* event)
{
    const bool result = QFrame::event(event);
    // QFrame recomputes its contents margins from the frame width when it is
    // polished, restyled or reparented, and gives up ours entirely while the
    // sheet is still smaller than two bands (as every new widget is). The band
    // must survive that, or setWidget() would size the sheet without it.
    switch (event->type()) {
    case QEvent::Polish:
    case QEvent::StyleChange:
    case QEvent::ParentChange:
        setContentsMargins(m_shadowWidth, m_shadowWidth, m_shadowWidth, m_shadowWidth);
        break;
    default:
        break;
    }
    return result;
}

void OrvaSheet::drawShadow(QPainter& painter)
{
    const QPixmap left = getGlobalImage("bg_tutorial_l", ImageManager::Normal);
    const QPixmap right = getGlobalImage("bg_tutorial_r", ImageManager::Normal);
    const QPixmap top = getGlobalImage("bg_tutorial_t", ImageManager::Normal);
    const QPixmap bottom = getGlobalImage("bg_tutorial_b", ImageManager::Normal);
    const QPixmap leftTop = getGlobalImage("bg_tutorial_lt", ImageManager::Normal);
    const QPixmap rightTop = getGlobalImage("bg_tutorial_rt", ImageManager::Normal);
    const QPixmap leftBottom = getGlobalImage("bg_tutorial_lb", ImageManager::Normal);
    const QPixmap rightBottom = getGlobalImage("bg_tutorial_rb", ImageManager::Normal);

    const int m = m_shadowWidth;
    const int w = width();
    const int h = height();
    const int innerWidth = w - 2 * m;
    const int innerHeight = h - 2 * m;

    drawStretched(painter, QRect(0, 0, m, m), leftTop);
    drawStretched(painter, QRect(w - m, 0, m, m), rightTop);
    drawStretched(painter, QRect(0, h - m, m, m), leftBottom);
    drawStretched(painter, QRect(w - m, h - m, m, m), rightBottom);

    // The edges are stretched to the side's length before drawing, not tiled.
    drawStretched(painter, QRect(0, m, m, innerHeight), scaledEdge(left, m, innerHeight));
    drawStretched(painter, QRect(w - m, m, m, innerHeight), scaledEdge(right, m, innerHeight));
    drawStretched(painter, QRect(m, 0, innerWidth, m), scaledEdge(top, innerWidth, m));
    drawStretched(painter, QRect(m, h - m, innerWidth, m), scaledEdge(bottom, innerWidth, m));
}
