#include <orvacat/orvafootbar.h>

#include "resources/dpiscaling_p.h"

#include <QHBoxLayout>

OrvaFootbar::OrvaFootbar(QWidget* parent)
    : QWidget(parent)
    , m_layout(new QHBoxLayout(this))
{
}

void OrvaFootbar::pushLeftWidget(QWidget* widget)
{
    if (widget)
        m_leftWidgets.append(widget);
}

void OrvaFootbar::pushRightWidget(QWidget* widget)
{
    if (widget)
        m_rightWidgets.append(widget);
}

void OrvaFootbar::init()
{
    // A second call starts again rather than adding everything twice.
    while (QLayoutItem* item = m_layout->takeAt(0))
        delete item;

    m_layout->setContentsMargins(scaled(20), scaled(8), scaled(20), scaled(8));
    m_layout->setSpacing(scaled(10));
    m_layout->setAlignment(Qt::AlignLeft);
    for (QWidget* widget : qAsConst(m_leftWidgets))
        m_layout->addWidget(widget, 0, Qt::AlignVCenter);
    m_layout->addStretch(1);
    for (QWidget* widget : qAsConst(m_rightWidgets))
        m_layout->addWidget(widget, 0, Qt::AlignVCenter);
}

void OrvaFootbar::setMargins(int left, int top, int right, int bottom)
{
    m_layout->setContentsMargins(scaled(left), scaled(top), scaled(right), scaled(bottom));
}

void OrvaFootbar::setSpacing(int spacing)
{
    m_layout->setSpacing(scaled(spacing));
}
