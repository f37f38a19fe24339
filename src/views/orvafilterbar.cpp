#include <orvacat/orvafilterbar.h>

#include <orvacat/componentstrings.h>
#include <orvacat/orvabuttons.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QEvent>
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
    // The field's I-beam would otherwise show over the button.
    m_searchButton->setCursor(Qt::ArrowCursor);
    m_searchButton->setFixedSize(scaled(34), scaled(24));
    placeSearchButton();

    // The button is reached with Down, never with Tab; both still need a
    // name for a screen reader, which sees no magnifying glass. A host that
    // labels the field sets its own accessible name over this one.
    ComponentStrings* strings = ComponentStrings::getInstance();
    m_searchButton->setAccessibleName(
        strings->getString(QStringLiteral("accessible_search_options"), QStringLiteral("Search options")));
    setAccessibleName(strings->getString(QStringLiteral("accessible_search"), QStringLiteral("Search")));

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

void OrvaFilterBar::placeSearchButton()
{
    // At the end where the text starts: the style's padding, which keeps the
    // text clear of the button, changes sides with the layout direction too.
    const int x = scaled(4);
    m_searchButton->move(isRightToLeft() ? width() - x - m_searchButton->width() : x, scaled(2));
}

void OrvaFilterBar::resizeEvent(QResizeEvent* event)
{
    QLineEdit::resizeEvent(event);
    placeSearchButton();
}

void OrvaFilterBar::changeEvent(QEvent* event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        placeSearchButton();
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
