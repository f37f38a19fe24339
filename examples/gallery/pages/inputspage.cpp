// Gallery page: the composite line edit with its error look, labels, a link,
// a menu opened from a button, a footbar and a tooltip.

#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>

#include <QApplication>
#include <QDir>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>

namespace {

bool isPortNumber(const QString& text)
{
    bool ok = false;
    const int port = text.toInt(&ok);
    return ok && port > 0 && port < 65536;
}

OrvaLineEdit* lineEdit(const QString& pre, const QString& post, const QString& placeholder)
{
    auto* edit = new OrvaLineEdit;
    edit->getPreLabel()->setText(pre);
    edit->getPostLabel()->setText(post);
    edit->getLineEdit()->setPlaceholderText(placeholder);
    edit->getLineEdit()->setFixedWidth(px(180));
    edit->setSpacing(8);
    // One width for every pre label so that the fields line up.
    edit->getPreLabel()->setFixedWidth(px(60));
    return edit;
}

QGroupBox* lineEditSection()
{
    auto* box = new QGroupBox(QStringLiteral("Line edits"));
    auto* layout = new QVBoxLayout(box);
    layout->setSpacing(px(8));

    auto* name = lineEdit(QStringLiteral("Name"), QStringLiteral("@example.org"), QStringLiteral("first.last"));
    name->getLineEdit()->setText(QStringLiteral("ada.lovelace"));
    layout->addWidget(name);

    // Validated as the user types; starts out wrong to show the error look.
    auto* port = lineEdit(QStringLiteral("Port"), QStringLiteral("1 to 65535"), QStringLiteral("8080"));
    port->setValidator(&isPortNumber);
    port->getLineEdit()->setText(QStringLiteral("80a"));
    port->setError(!port->validate());
    QObject::connect(port->getLineEdit(), &QLineEdit::textChanged, port,
                     [port] { port->setError(!port->validate()); });
    layout->addWidget(port);

    auto* disabled = lineEdit(QStringLiteral("Server"), QString(), QStringLiteral("Set by your administrator"));
    disabled->setEnabled(false);
    layout->addWidget(disabled);

    layout->addWidget(note(QStringLiteral("The port field is checked on every key press and switches "
                                          "to its error look while the number is not valid.")));
    return box;
}

QGroupBox* labelSection()
{
    auto* box = new QGroupBox(QStringLiteral("Labels"));
    auto* layout = new QVBoxLayout(box);
    layout->setSpacing(px(8));

    auto* wrapped = new OrvaLabel(QStringLiteral(
        "This label wraps its text and, with a vertical policy of Minimum, never gets shorter than the "
        "wrapped text needs at its width: narrow the window and it grows instead of cutting lines off."));
    wrapped->setWordWrap(true);
    wrapped->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    layout->addWidget(wrapped);

    auto* linkRow = new QHBoxLayout;
    auto* link = new LinkLabel(QStringLiteral("Open the online help"));
    link->setHyperLink(QStringLiteral("https://help.example.org/orvacat"));
    link->setStyleSheet(lookSheet(QStringLiteral("color: @link;")));
    auto* linkStatus = note(QStringLiteral("(not clicked yet)"));
    linkStatus->setWordWrap(false);
    QObject::connect(link, &LinkLabel::clicked, linkStatus, [link, linkStatus] {
        linkStatus->setText(QStringLiteral("clicked: would open %1").arg(link->getHyperLink()));
    });
    linkRow->addWidget(link);
    linkRow->addSpacing(px(10));
    linkRow->addWidget(linkStatus);
    linkRow->addStretch(1);
    layout->addLayout(linkRow);

    return box;
}

QGroupBox* tooltipSection()
{
    auto* box = new QGroupBox(QStringLiteral("Tooltip"));
    auto* layout = new QVBoxLayout(box);
    layout->setSpacing(px(8));

    // The tooltip helper keeps angle brackets, runs of spaces and line breaks.
    const QString raw = QStringLiteral("Saved to <Documents>/Reports\n    2 files,  3 folders");
    const QString tip = getHtmlEscapedStringForToolTip(raw);
    auto* tipTarget = new OrvaLabel(QStringLiteral("Point here for a tooltip made with "
                                                   "getHtmlEscapedStringForToolTip; it reads:"));
    tipTarget->setWordWrap(true);
    tipTarget->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    tipTarget->setToolTip(tip);
    auto* preview = new QLabel(tip);
    preview->setTextFormat(Qt::RichText);
    preview->setToolTip(tip);
    preview->setStyleSheet(lookSheet(QStringLiteral("QLabel { background: @strip; color: @text; border: 1px solid @line;"
                                                    " border-radius: %1px; padding: %2px %3px; }"))
                               .arg(px(3)).arg(px(2)).arg(px(6)));
    layout->addWidget(tipTarget);
    layout->addWidget(preview, 0, Qt::AlignLeft);
    return box;
}

QGroupBox* menuSection(OrvaMenu** menuOut, OrvaButton** buttonOut)
{
    auto* box = new QGroupBox(QStringLiteral("Menu"));
    auto* layout = new QHBoxLayout(box);
    layout->setSpacing(px(10));

    auto* button = new OrvaButton(QStringLiteral("Actions"), 4);
    button->setMinimumWidth(px(72));
    auto* menu = new OrvaMenu(button);
    menu->setStyleSheet(getStyleSheet("component.menu", false));
    menu->addAction(QStringLiteral("Open"));
    menu->addAction(QStringLiteral("Rename"));
    QAction* pinned = menu->addAction(QStringLiteral("Pin to the side bar"));
    pinned->setCheckable(true);
    pinned->setChecked(true);
    menu->addSeparator();
    menu->addAction(QStringLiteral("Move to trash"));
    QAction* unavailable = menu->addAction(QStringLiteral("Restore"));
    unavailable->setEnabled(false);
    auto* chosen = note(QStringLiteral("Opens under the button, and moves itself back onto the screen "
                                       "when it would not fit."));
    QObject::connect(button, &QPushButton::clicked, menu,
                     [button, menu] { menu->popup(button->mapToGlobal(QPoint(0, button->height()))); });
    QObject::connect(menu, &QMenu::triggered, chosen,
                     [chosen](QAction* action) { chosen->setText(QStringLiteral("Chose \"%1\".").arg(action->text())); });
    layout->addWidget(button, 0, Qt::AlignTop);
    layout->addWidget(chosen, 1);
    *menuOut = menu;
    *buttonOut = button;
    return box;
}

QGroupBox* footbarSection()
{
    auto* box = new QGroupBox(QStringLiteral("Footbar"));
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, px(6), 0, 0);
    layout->setSpacing(0);

    auto* content = note(QStringLiteral("Widgets pushed to the left and to the right of a stretch, "
                                        "centred vertically, with the bar's own margins."));
    content->setContentsMargins(px(20), 0, px(20), px(8));
    layout->addWidget(content);

    auto* bar = new OrvaFootbar;
    bar->setObjectName(QStringLiteral("galleryFootbar"));
    bar->setAttribute(Qt::WA_StyledBackground);
    bar->setStyleSheet(lookSheet(QStringLiteral("#galleryFootbar { background: @strip; border-top: 1px solid @line; }")));
    auto* help = new LinkLabel(QStringLiteral("Help"));
    help->setStyleSheet(lookSheet(QStringLiteral("color: @link;")));
    bar->pushLeftWidget(help);
    bar->pushLeftWidget(note(QStringLiteral("3 items selected")));
    auto* cancel = new OrvaButton(ComponentStrings::getInstance()->getString(QStringLiteral("cancel")), 1);
    cancel->setMinimumWidth(px(72));
    auto* ok = new OrvaButton(ComponentStrings::getInstance()->getString(QStringLiteral("ok")), 0);
    ok->setMinimumWidth(px(72));
    bar->pushRightWidget(cancel);
    bar->pushRightWidget(ok);
    bar->init();
    layout->addWidget(bar);
    return box;
}

QWidget* createPage()
{
    auto* page = new QWidget;
    auto* layout = pageLayout(page);
    layout->setSpacing(px(14));

    auto* top = new QHBoxLayout;
    top->setSpacing(px(14));
    top->addWidget(lineEditSection(), 1);
    OrvaMenu* menu = nullptr;
    OrvaButton* menuButton = nullptr;
    auto* right = new QVBoxLayout;
    right->setSpacing(px(14));
    right->addWidget(menuSection(&menu, &menuButton));
    right->addWidget(tooltipSection());
    right->addStretch(1);
    top->addLayout(right, 1);
    layout->addLayout(top);
    layout->addWidget(labelSection());
    layout->addWidget(footbarSection());
    layout->addStretch(1);

    menu->setObjectName(QStringLiteral("galleryMenu"));
    menuButton->setObjectName(QStringLiteral("galleryMenuButton"));
    return page;
}

// The open menu is a window of its own: paint it over the page where it opened.
void menuScreenshot(QWidget* window, QWidget* page, const QString& dir)
{
    auto* button = page->findChild<OrvaButton*>(QStringLiteral("galleryMenuButton"));
    auto* menu = page->findChild<OrvaMenu*>(QStringLiteral("galleryMenu"));
    if (!button || !menu)
        return;
    menu->popup(button->mapToGlobal(QPoint(0, button->height())));
    QApplication::processEvents();
    QPixmap shot = window->grab();
    {
        // Under the button, where it opens on a screen large enough for the
        // window (the offscreen screen is smaller, so the menu moved itself).
        QPainter painter(&shot);
        painter.drawPixmap(button->mapTo(window, QPoint(0, button->height())), menu->grab());
    }
    menu->hide();
    QApplication::processEvents();
    shot.save(QDir(dir).filePath(QStringLiteral("inputs-menu.png")));
}

GalleryPageRegistration registration("inputs", "Inputs and labels", 20, &createPage, &menuScreenshot);

} // namespace
