// Gallery page: a filter bar that filters a list of names when Return is
// pressed, with a menu of match options behind its search button (Down opens
// it too), and a combo box that sorts the same list.

#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>

#include <QActionGroup>
#include <QApplication>
#include <QCollator>
#include <QDir>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace {

const QStringList& people()
{
    static const QStringList names = [] {
        const char* const first[] = {"Ada", "Alan", "Anna", "Barbara", "Brian", "Dana", "Donald", "Edsger",
                                     "Frances", "Grace", "Hanna", "Ivan", "Jean", "Joan", "Ken", "Lena"};
        const char* const last[] = {"Lovelace", "Turing", "Liskov", "Kernighan", "Knuth", "Dijkstra",
                                    "Allen", "Hopper", "Sammet", "Clarke"};
        QStringList list;
        int i = 0;
        for (const char* f : first) {
            // Four surnames per first name, rotating, so the list is varied but stable.
            for (int k = 0; k < 4; ++k)
                list << QString::fromLatin1(f) + QLatin1Char(' ') + QString::fromLatin1(last[(i + 3 * k) % 10]);
            ++i;
        }
        return list;
    }();
    return names;
}

enum class Match { Anywhere, StartsWith, Exact };

/** The list and what filters and sorts it. */
class NameFinder : public QObject
{
public:
    NameFinder(QListWidget* list, QLabel* count, QObject* parent)
        : QObject(parent)
        , m_list(list)
        , m_count(count)
    {
        apply();
    }

    void setKeyword(const QString& keyword)
    {
        m_keyword = keyword.trimmed();
        apply();
    }
    void setMatch(Match match)
    {
        m_match = match;
        apply();
    }
    void setSort(int sort)
    {
        m_sort = sort;
        apply();
    }

private:
    bool matches(const QString& name) const
    {
        if (m_keyword.isEmpty())
            return true;
        switch (m_match) {
        case Match::StartsWith: {
            const QStringList words = name.split(QLatin1Char(' '), Qt::SkipEmptyParts);
            return std::any_of(words.begin(), words.end(), [this](const QString& word) {
                return word.startsWith(m_keyword, Qt::CaseInsensitive);
            });
        }
        case Match::Exact:
            return name.compare(m_keyword, Qt::CaseInsensitive) == 0;
        case Match::Anywhere:
            break;
        }
        return name.contains(m_keyword, Qt::CaseInsensitive);
    }

    void apply()
    {
        QStringList shown;
        for (const QString& name : people()) {
            if (matches(name))
                shown << name;
        }
        QCollator collator(QLocale(QLocale::English));
        auto surname = [](const QString& name) { return name.section(QLatin1Char(' '), -1); };
        if (m_sort == 1) {
            std::sort(shown.begin(), shown.end(),
                      [&](const QString& a, const QString& b) { return collator.compare(a, b) < 0; });
        } else if (m_sort == 2) {
            std::sort(shown.begin(), shown.end(), [&](const QString& a, const QString& b) {
                const int bySurname = collator.compare(surname(a), surname(b));
                return bySurname != 0 ? bySurname < 0 : collator.compare(a, b) < 0;
            });
        }
        m_list->clear();
        m_list->addItems(shown);
        if (m_keyword.isEmpty())
            m_count->setText(QStringLiteral("All %1 names").arg(people().size()));
        else
            m_count->setText(QStringLiteral("%1 of %2 names match “%3”").arg(shown.size()).arg(people().size()).arg(m_keyword));
    }

    QListWidget* m_list;
    QLabel* m_count;
    QString m_keyword;
    Match m_match = Match::Anywhere;
    int m_sort = 0;
};

QWidget* createPage()
{
    auto* page = new QWidget;

    auto* bar = new OrvaFilterBar;
    bar->setObjectName(QStringLiteral("galleryFilterBar"));
    bar->setPlaceholderText(QStringLiteral("Search names, then press Return"));
    bar->setFixedWidth(px(300));
    bar->setAccessibleName(QStringLiteral("Search names"));

    // The menu belongs to the page; the bar only shows it.
    auto* menu = new QMenu(page);
    // A popup menu is named by its window title.
    menu->setWindowTitle(QStringLiteral("Match options"));
    menu->setStyleSheet(getStyleSheet("component.menu", false));
    auto* group = new QActionGroup(menu);
    const QList<QPair<QString, Match>> options{{QStringLiteral("Match anywhere"), Match::Anywhere},
                                               {QStringLiteral("Match start of a name"), Match::StartsWith},
                                               {QStringLiteral("Match whole name"), Match::Exact}};
    QList<QAction*> actions;
    for (const auto& option : options) {
        QAction* action = menu->addAction(option.first);
        action->setCheckable(true);
        action->setData(int(option.second));
        group->addAction(action);
        actions << action;
    }
    actions.first()->setChecked(true);
    bar->setMenu(menu);

    auto* sort = new OrvaComboBox;
    sort->addItems({QStringLiteral("As entered"), QStringLiteral("By first name"), QStringLiteral("By surname")});
    sort->setFixedSize(px(160), px(28));

    auto* list = new QListWidget;
    list->setAccessibleName(QStringLiteral("Names"));
    list->setFrameShape(QFrame::NoFrame);
    list->setStyleSheet(lookSheet(QStringLiteral("QListWidget { background: @card; outline: none; }"
                                                 "QListWidget::item { padding: %1px %2px; color: @text; }"
                                                 "QListWidget::item:selected { background: @pick; color: @pickink; }"))
                            .arg(px(3))
                            .arg(px(8))
                        + getStyleSheet("component.scrollbar", false));
    auto* frame = new QFrame;
    frame->setObjectName(QStringLiteral("namesFrame"));
    frame->setStyleSheet(lookSheet(QStringLiteral("QFrame#namesFrame { border: 1px solid @line; background: @card; }")));
    auto* frameLayout = new QVBoxLayout(frame);
    frameLayout->setContentsMargins(1, 1, 1, 1);
    frameLayout->addWidget(list);

    auto* count = new QLabel;
    count->setStyleSheet(lookSheet(QStringLiteral("color: @quiet;")));
    auto* finder = new NameFinder(list, count, page);

    QObject::connect(bar, &OrvaFilterBar::sigKeywordChanged, finder, [finder](const QString& keyword) {
        finder->setKeyword(keyword);
    });
    QObject::connect(group, &QActionGroup::triggered, finder, [finder](QAction* action) {
        finder->setMatch(Match(action->data().toInt()));
    });
    QObject::connect(sort, qOverload<int>(&QComboBox::currentIndexChanged), finder,
                     [finder](int index) { finder->setSort(index); });

    auto* controls = new QHBoxLayout;
    controls->setSpacing(px(12));
    controls->addWidget(bar);
    controls->addStretch(1);
    auto* sortLabel = new QLabel(QStringLiteral("Sort"));
    sortLabel->setBuddy(sort);
    controls->addWidget(sortLabel);
    controls->addWidget(sort);

    auto* layout = pageLayout(page);
    layout->setSpacing(px(10));
    layout->addWidget(note(QStringLiteral(
        "Type in the filter bar and press Return: the list keeps the names that match. The search button (or "
        "the Down key in the field) opens the match options. The combo box on the right sorts what is shown.")));
    layout->addLayout(controls);
    layout->addWidget(frame, 1);
    layout->addWidget(count);

    // Shown filtered, as after a search.
    bar->setText(QStringLiteral("an"));
    finder->setKeyword(bar->text());
    return page;
}

// The match options open under the search button, and the sort list dropped down.
void menuScreenshot(QWidget* window, QWidget* page, const QString& dir)
{
    auto* bar = page->findChild<OrvaFilterBar*>(QStringLiteral("galleryFilterBar"));
    auto* button = bar ? bar->findChild<OrvaIconButton*>() : nullptr;
    if (!button || !button->menu())
        return;
    QMenu* menu = button->menu();
    menu->ensurePolished();
    menu->adjustSize();
    QPixmap picture = window->grab();
    {
        QPainter painter(&picture);
        painter.drawPixmap(button->mapTo(window, QPoint(0, button->height())), menu->grab());
    }
    picture.save(QDir(dir).filePath(QStringLiteral("search-menu.png")));

    auto* sort = page->findChild<OrvaComboBox*>();
    if (!sort)
        return;
    sort->showPopup();
    QApplication::processEvents();
    QWidget* popup = sort->view()->window();
    if (popup && popup->isVisible()) {
        // The screenshot screen may be narrower than the window, which pushes
        // the popup sideways: keep Qt's height, line it up with the box.
        QPoint at = sort->mapTo(window, QPoint(0, popup->y() - sort->mapToGlobal(QPoint()).y()));
        at.setX(qMin(at.x(), window->width() - popup->width()));
        QPixmap withList = window->grab();
        {
            QPainter painter(&withList);
            painter.drawPixmap(at, popup->grab());
        }
        withList.save(QDir(dir).filePath(QStringLiteral("search-combo.png")));
    }
    sort->hidePopup();
}

GalleryPageRegistration registration("search", "Search", 57, &createPage, &menuScreenshot);

} // namespace
