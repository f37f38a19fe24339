#include <orvacat/orvafilterbar.h>

#include <orvacat/orvabuttons.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QKeyEvent>
#include <QMenu>

OrvaFilterBar::OrvaFilterBar(QWidget* parent)
    : QLineEdit(parent)
{
    setAttribute(Qt::WA_MacShowFocusRect, false);

    m_searchButton = new OrvaIconButton(QStringLiteral("bt_search_dropdown"));
    m_searchButton->setFocusPolicy(Qt::NoFocus);
    m_searchButton->setParent(this);
    m_searchButton->setStyleSheet(getStyleSheet("component.filter_search_button", false));
    m_searchButton->move(scaled(4), scaled(2));
    // The field's I-beam would otherwise show over the button.
    m_searchButton->setCursor(Qt::ArrowCursor);
    m_searchButton->setFixedSize(scaled(34), scaled(24));

    // The padding keeps typed text clear of the button.
    setStyleSheet(getStyleSheet("component.lineedit", false) + getStyleSheet("component.filter_bar_padding", false));
    setFixedHeight(scaled(28));

    connect(this, &QLineEdit::returnPressed, this, &OrvaFilterBar::slotKeywordChange);
}

void OrvaFilterBar::setMenu(QMenu* menu)
{
    m_searchButton->setMenu(menu);
}

void OrvaFilterBar::slotKeywordChange()
{
    Q_EMIT sigKeywordChanged(text());
}

void OrvaFilterBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Down) {
        // Consumed even without a menu: Down must not move the cursor or open a completer.
        if (m_searchButton->menu())
            m_searchButton->showMenu();
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}
