// Gallery page: the sheet frame over its mask. A sample application window is
// dimmed by the mask, and the sheet sits in its middle with its drop shadow
// and its card. A button puts the same sheet over the gallery window itself,
// where the mask follows the window as it is resized.

#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>

#include <QApplication>
#include <QDir>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPair>
#include <QPushButton>
#include <QPointer>
#include <QVBoxLayout>

namespace {

const QColor maskColour(0, 0, 0, 20);

QString caption(const char* key)
{
    return ComponentStrings::getInstance()->getString(QString::fromLatin1(key));
}

/**
 * The content a sheet dialog would put on its card: a title, a text and a
 * row of buttons (role and caption each), returned through @p buttonsOut.
 */
QWidget* sheetContent(const QString& title, const QString& text, const QList<QPair<int, QString>>& buttonRoles,
                      QList<QPushButton*>* buttonsOut)
{
    auto* content = new QWidget;
    content->setFixedWidth(px(300));
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(px(8), px(6), px(8), px(4));
    layout->setSpacing(px(10));

    auto* heading = new QLabel(title);
    heading->setStyleSheet(lookSheet(QStringLiteral("color: @text; font-weight: bold;")));
    layout->addWidget(heading);

    auto* body = new QLabel(text);
    body->setWordWrap(true);
    body->setStyleSheet(lookSheet(QStringLiteral("color: @itemink;")));
    layout->addWidget(body);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(px(8));
    buttons->addStretch(1);
    for (const auto& roleAndText : buttonRoles) {
        auto* button = new OrvaButton(roleAndText.second, roleAndText.first);
        buttons->addWidget(button);
        if (buttonsOut)
            buttonsOut->append(button);
    }
    layout->addLayout(buttons);
    return content;
}

OrvaSheet* makeSheet(QWidget* parent, QWidget* content)
{
    auto* sheet = new OrvaSheet(parent);
    sheet->setWidget(content);
    // As the sheet dialogs do: a fixed width, and no taller than its content,
    // so that the mask's layout centres it in the window.
    sheet->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Maximum);
    return sheet;
}

/** A small application window: a title strip, a folder list and a document. */
QWidget* sampleWindow(QWidget* owner)
{
    auto* window = new QWidget(owner, Qt::Window);
    window->setAttribute(Qt::WA_DontShowOnScreen);
    window->setObjectName(QStringLiteral("sampleWindow"));
    window->setStyleSheet(lookSheet(QStringLiteral("#sampleWindow { background: @card; }")));
    auto* outer = new QVBoxLayout(window);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);

    auto* titleBar = new QLabel(QStringLiteral("Invoices - Orva Ledger"));
    titleBar->setAlignment(Qt::AlignCenter);
    titleBar->setFixedHeight(px(26));
    titleBar->setStyleSheet(lookSheet(QStringLiteral("background: @hover; color: @itemink; border-bottom: 1px solid @line;")));
    outer->addWidget(titleBar);

    auto* body = new QHBoxLayout;
    body->setContentsMargins(0, 0, 0, 0);
    body->setSpacing(0);
    auto* folders = new QListWidget;
    folders->addItems({QStringLiteral("Inbox"), QStringLiteral("Drafts"), QStringLiteral("Sent"),
                       QStringLiteral("Paid"), QStringLiteral("Archive")});
    folders->setCurrentRow(0);
    folders->setFixedWidth(px(120));
    folders->setFrameShape(QFrame::NoFrame);
    folders->setStyleSheet(lookSheet(QStringLiteral("QListWidget { background: @list; color: @itemink; padding-top: 6px; }"
                                                    "QListWidget::item { padding: 4px 10px; }"
                                                    "QListWidget::item:selected { background: @pick; color: @pickink; }")));
    body->addWidget(folders);

    auto* document = new QWidget;
    auto* lines = new QVBoxLayout(document);
    lines->setContentsMargins(px(16), px(12), px(16), px(12));
    lines->setSpacing(px(6));
    auto* heading = new QLabel(QStringLiteral("March invoices"));
    heading->setStyleSheet(lookSheet(QStringLiteral("color: @text; font-weight: bold;")));
    lines->addWidget(heading);
    const char* const rows[] = {
        "2026-031  Harbour Logistics      1 240.00",
        "2026-032  Fenwick & Daughters      385.50",
        "2026-033  Northwind Studio       2 010.00",
        "2026-034  Alder Bakery              96.20",
        "2026-035  Quay Street Clinic       740.00",
        "2026-036  Marlow Print House       412.75",
    };
    for (const char* row : rows) {
        auto* line = new QLabel(QString::fromUtf8(row));
        line->setStyleSheet(lookSheet(QStringLiteral("color: @itemink; font-family: monospace; "
                                                     "border-bottom: 1px solid @line; padding-bottom: 3px;")));
        lines->addWidget(line);
    }
    lines->addStretch(1);
    body->addWidget(document, 1);
    outer->addLayout(body, 1);
    return window;
}

/** The sample window with its sheet up, as a picture for the page. */
QPixmap sampleWindowShot(QWidget* owner, const QSize& size)
{
    QWidget* window = sampleWindow(owner);
    window->resize(size);
    OrvaSheet* sheet = makeSheet(window, sheetContent(QStringLiteral("Delete 3 invoices?"),
                                                      QStringLiteral("The invoices are moved to the bin and can "
                                                                     "be restored from there for 30 days."),
                                                      {{1, caption("cancel")}, {0, caption("ok")}}, nullptr));
    OrvaMask::createMask(sheet, window, maskColour);
    sheet->show();
    window->show();
    QApplication::processEvents();
    const QPixmap shot = window->grab();
    window->hide();
    window->deleteLater();
    return shot;
}

QLabel* framedShot(const QPixmap& shot)
{
    auto* label = new QLabel;
    label->setPixmap(shot);
    label->setStyleSheet(lookSheet(QStringLiteral("border: 1px solid @line;")));
    label->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return label;
}

/**
 * The sheet over the gallery window itself. Built on first use and kept,
 * hidden, between uses; removed with its mask when the page goes.
 */
class LiveSheet : public QObject
{
public:
    explicit LiveSheet(QWidget* page)
        : QObject(page)
        , m_page(page)
    {
    }

    ~LiveSheet() override
    {
        if (m_sheet)
            delete m_sheet->parentWidget();
    }

    void show()
    {
        if (!m_sheet) {
            QList<QPushButton*> buttons;
            QWidget* content = sheetContent(QStringLiteral("A sheet over the gallery"),
                                            QStringLiteral("The whole gallery window is dimmed behind this sheet. "
                                                           "Resize the window: the mask follows it and the sheet "
                                                           "stays in the middle."),
                                            {{4, caption("ok")}}, &buttons);
            m_sheet = makeSheet(m_page->window(), content);
            OrvaMask::createMask(m_sheet, m_page->window(), maskColour);
            for (QPushButton* button : qAsConst(buttons))
                connect(button, &QPushButton::clicked, m_sheet.data(), &QWidget::hide);
        }
        m_sheet->show();
    }

    void hide()
    {
        if (m_sheet)
            m_sheet->hide();
    }

private:
    QWidget* m_page;
    QPointer<OrvaSheet> m_sheet;
};

QWidget* createPage()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("sheetFramePage"));
    auto* layout = pageLayout(page);
    layout->setSpacing(px(12));

    auto* box = new QGroupBox(QStringLiteral("A sheet over its window"));
    auto* boxLayout = new QVBoxLayout(box);
    boxLayout->setSpacing(px(10));
    boxLayout->addWidget(note(QStringLiteral(
        "The mask covers the whole window in black at alpha 20 and holds the sheet in its middle. "
        "The sheet keeps a band of 22 pixels (times the screen factor) on every side for its drop "
        "shadow, painted from eight pictures; its content lies on the card inside the band.")));
    boxLayout->addWidget(framedShot(sampleWindowShot(page, QSize(px(600), px(330)))), 0, Qt::AlignHCenter);
    layout->addWidget(box);

    auto* liveBox = new QGroupBox(QStringLiteral("Over this window"));
    auto* liveLayout = new QHBoxLayout(liveBox);
    liveLayout->setSpacing(px(12));
    auto* showButton = new OrvaButton(QStringLiteral("Show the sheet"), 4);
    showButton->setObjectName(QStringLiteral("showSheetButton"));
    liveLayout->addWidget(showButton);
    liveLayout->addWidget(note(QStringLiteral("Puts a sheet over the gallery window. Resize the window: "
                                              "the mask follows it and the sheet stays in the middle.")),
                          1);
    layout->addWidget(liveBox);
    layout->addStretch(1);

    auto* live = new LiveSheet(page);
    QObject::connect(showButton, &QPushButton::clicked, live, [live] { live->show(); });
    return page;
}

void extraScreenshots(QWidget* window, QWidget* page, const QString& dir)
{
    LiveSheet* live = nullptr;
    for (QObject* child : page->children()) {
        if ((live = dynamic_cast<LiveSheet*>(child)))
            break;
    }
    auto* button = page->findChild<QPushButton*>(QStringLiteral("showSheetButton"));
    if (!live || !button)
        return;
    button->click();
    QApplication::processEvents();
    window->grab().save(QDir(dir).filePath(QStringLiteral("frame-live.png")));
    live->hide();
    QApplication::processEvents();
}

GalleryPageRegistration registration("frame", "Sheet frame", 40, &createPage, &extraScreenshots);

} // namespace
