// The paging model's arithmetic and the paging bar as a user pages through a list.

#include "testenvironment.h"
#include "testmain.h"
#include "warningcollector.h"

#include <orvacat/orvacat.h>

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QScopeGuard>

using TestEnvironment::scaled;

namespace {

int left(const QWidget* w) { return w->mapTo(w->window(), QPoint()).x(); }
int right(const QWidget* w) { return left(w) + w->width(); }
void click(QWidget* button) { QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center()); }

/** A shown bar over a model of 50 rows a page. */
struct Bar
{
    enum Arrow { First, Back, Next, Last, Refresh }; // as they stand, left to right

    Bar()
    {
        bar->resize(scaled(900), bar->sizeHint().height());
        bar->show();
        QVERIFY(QTest::qWaitForWindowExposed(bar));
    }
    ~Bar() { delete bar; }

    QWidget* arrow(Arrow which) const { return TestEnvironment::leftToRight<OrvaIconButton>(bar).value(which); }
    QList<OrvaButton*> pageButtons() const { return TestEnvironment::leftToRight<OrvaButton>(bar); }

    /** The bar as read: arrows as + or -, a dead page in brackets, the page that looks selected starred. */
    QString shown() const
    {
        auto live = [this](Arrow which) { return arrow(which)->isEnabled() ? '+' : '-'; };
        const QString selected = getStyleSheet("component.select_paging_button", false);
        QStringList pages;
        for (OrvaButton* page : pageButtons()) {
            const QString text = (page->styleSheet() == selected ? "*" : "") + page->text();
            pages << (page->isEnabled() ? text : '(' + text + ')');
        }
        return QString("%1%2 %3 %4%5").arg(live(First)).arg(live(Back)).arg(pages.join('|'))
            .arg(live(Next)).arg(live(Last));
    }

    /** An arrow by its name, wherever the layout direction puts it. */
    QWidget* arrowNamed(const QString& name) const
    {
        for (OrvaIconButton* button : bar->findChildren<OrvaIconButton*>())
            if (button->accessibleName() == name)
                return button;
        return nullptr;
    }

    /** The row as a screen reader reads it: names, "-" for disabled, "*" for checked, blanks unheard. */
    QString heard() const
    {
        QStringList words;
        for (QAbstractButton* button : TestEnvironment::leftToRight<QAbstractButton>(bar)) {
            QAccessibleInterface* access = QAccessible::queryAccessibleInterface(button);
            const QAccessible::State state = access->state();
            if (!state.invisible)
                words << (state.disabled ? "-" : "") + access->text(QAccessible::Name) + (state.checked ? "*" : "");
        }
        return words.join('|');
    }

    /** The footer labels shown, left to right (placed when the layout runs). */
    QList<QLabel*> labels() const { QApplication::processEvents(); return TestEnvironment::leftToRight<QLabel>(bar); }

    OrvaPagingModel model{50};
    OrvaPagingBar* bar = new OrvaPagingBar(&model);
};

} // namespace

class TestPagingBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { TestEnvironment::installDefaultTheme(); }
    void cleanup() { QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList()); }

    void barReadsLeftToRight()
    {
        Bar f;
        f.bar->setItemCount(1000);
        f.bar->setFooterInfos({{QStringLiteral("first"), 60}, {QStringLiteral("second"), 60}});
        const QList<QLabel*> labels = f.labels();
        QCOMPARE(labels.size(), 2);
        QCOMPARE(labels.at(1)->text(), QStringLiteral("first"));
        QWidget* refresh = f.arrow(Bar::Refresh);

        // The gap before each: first 50 px in, back five, pages 4 px apart centred (-1) between back and next
        // five, last, 50 px, the labels stacking leftwards from the refresh button, which ends the row.
        QList<QWidget*> row{f.arrow(Bar::First), f.arrow(Bar::Back)};
        for (OrvaButton* page : f.pageButtons())
            row << page;
        row << f.arrow(Bar::Next) << f.arrow(Bar::Last) << labels.at(0) << labels.at(1) << refresh;
        const QList<int> gaps{50, 0, -1, 4, 4, 4, 4, -1, 0, 50, 0, 0};
        QCOMPARE(row.size(), gaps.size());
        for (int i = 0; i < row.size(); ++i) {
            const int gap = left(row.at(i)) - (i ? right(row.at(i - 1)) : 0);
            QVERIFY2(gaps.at(i) < 0 ? qAbs(gap - left(row.at(2)) + right(row.at(1))) <= 1 && gap > scaled(50)
                                    : gap == scaled(gaps.at(i)),
                     qPrintable(QStringLiteral("%1 px before item %2").arg(gap).arg(i)));
        }
        QCOMPARE(right(refresh), f.bar->width());
        QCOMPARE(QStringList({row.at(0)->toolTip(), row.at(1)->toolTip(), row.at(7)->toolTip(), row.at(8)->toolTip(),
                              refresh->accessibleName()}).join('|'),
                 QStringLiteral("First page|Previous 5 pages|Next 5 pages|Last page|Refresh"));

        // A 29 px strip of 27 px pages, 19 px labels and a 24 px refresh button 2 px below the footer's centre.
        QCOMPARE(f.bar->findChild<QWidget*>("PAGINGBARBORDER")->geometry(), QRect(0, 0, f.bar->width(), scaled(29)));
        const QImage strip = f.bar->grab().toImage(); // the theme's rule along its top
        auto colour = [&strip](int y) { return TestEnvironment::pixelAt(strip, QPoint(10, y)).name(); };
        QCOMPARE(colour(0) + colour(5), QStringLiteral("#e8eaed#ffffff"));
        QVERIFY(row.at(2)->height() == scaled(27) && row.at(2)->width() >= scaled(28));
        QCOMPARE(labels.at(0)->height(), scaled(19));
        QCOMPARE(refresh->size(), QSize(scaled(24), scaled(24)));
        QCOMPARE(refresh->y(), scaled(3) == 3 ? 3 : 4);
    }

    void pagingThroughTheEdges()
    {
        OrvaPagingModel stale(50);
        stale.setItemCount(999);
        stale.setNowPage(7);
        OrvaPagingBar fresh(&stale); // starts its model afresh
        QCOMPARE(QPoint(stale.nowPage(), stale.itemCount()), QPoint(1, 0));

        // 50 rows a page: no rows still make a page, 50 rows one, 101 three.
        Bar f;
        f.bar->setItemCount(0);
        QCOMPARE(f.shown(), QStringLiteral("-- ( )|( )|*1|( )|( ) --"));
        f.bar->setItemCount(50);
        QCOMPARE(f.shown(), QStringLiteral("-- ( )|( )|*1|( )|( ) --"));
        f.bar->setItemCount(101);
        QCOMPARE(f.shown(), QStringLiteral("-- ( )|( )|*1|2|3 ++"));

        // The last page: the pages are not shifted, their right side goes blank.
        click(f.arrow(Bar::Last));
        QCOMPARE(f.model.startItem(), 100);
        QCOMPARE(f.shown(), QStringLiteral("++ 1|2|*3|( )|( ) --"));

        // A clicked page moves to the middle.
        f.bar->setItemCount(500);
        click(f.pageButtons().at(4));
        QCOMPARE(f.shown(), QStringLiteral("++ 3|4|*5|6|7 ++"));

        // A shrinking count keeps the page: 3 to 7 all lie past the one page left.
        f.bar->setItemCount(10);
        QCOMPARE(f.model.startItem(), 200);
        QCOMPARE(f.shown(), QStringLiteral("++ ( )|( )|(* )|( )|( ) --"));

        QCOMPARE(f.pageButtons().at(0)->styleSheet(), getStyleSheet("component.nonselect_paging_button", false));
    }

    void jumpByFive_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<bool>("forward");
        QTest::addColumn<QString>("shown");

        QTest::newRow("next from 14 of 20 goes to 19") << 14 << true << "++ 17|18|*19|20|( ) ++";
        QTest::newRow("next from 15 lands on the last") << 15 << true << "++ 18|19|*20|( )|( ) --";
        QTest::newRow("next from 16 stops at the last") << 16 << true << "++ 18|19|*20|( )|( ) --";
        QTest::newRow("back from 5 goes to 1") << 5 << false << "-- ( )|( )|*1|2|3 ++";
        QTest::newRow("back from 7 goes to 2") << 7 << false << "++ ( )|1|*2|3|4 ++";
    }

    void jumpByFive()
    {
        QFETCH(int, from);
        QFETCH(bool, forward);

        Bar f;
        f.bar->setItemCount(1000);
        f.bar->setPage(from);
        click(f.arrow(forward ? Bar::Next : Bar::Back));
        QTEST(f.shown(), "shown");
        QCOMPARE(QString::number(f.model.nowPage()), f.pageButtons().at(2)->text());
    }

    void onlyUserActionsEmit()
    {
        Bar f;
        QSignalSpy changed(f.bar, &OrvaPagingBar::sigPageChanged);
        QSignalSpy refreshed(f.bar, &OrvaPagingBar::sigRefresh);
        QVERIFY(changed.isValid() && refreshed.isValid());

        f.bar->setItemCount(250);
        f.bar->setPage(4);
        QCOMPARE(changed.count(), 0);

        // A live button tells the host once a click, the middle page too; first on page 1 and a blank page not.
        const QList<OrvaButton*> page = f.pageButtons();
        QWidget* first = f.arrow(Bar::First);
        for (QWidget* button : QWidgetList{f.arrow(Bar::Next), first, first, page[0], page[2]})
            click(button);
        QCOMPARE(changed.count(), 3);
        click(f.arrow(Bar::Refresh));
        QCOMPARE(QPoint(changed.count(), refreshed.count()), QPoint(3, 1));
        // A slot connected to the wrong index warns and leaves the page alone.
        {
            WarningCollector warnings;
            for (int index : {-1, 5})
                f.bar->pageClick(index);
            QCOMPARE(warnings.count(), 2);
        }
        QCOMPARE(changed.count(), 3);

        // reset() tells the host every time, also when already on page 1.
        f.bar->reset();
        f.bar->reset();
        QCOMPARE(changed.count(), 5);
        QCOMPARE(f.shown(), QStringLiteral("-- ( )|( )|*1|2|3 ++"));
    }

    void focusAndNamesFollowThePage()
    {
        Bar f;
        QVERIFY(QTest::qWaitForWindowActive(f.bar));
        QSignalSpy changed(f.bar, &OrvaPagingBar::sigPageChanged);
        QSignalSpy refreshed(f.bar, &OrvaPagingBar::sigRefresh);
        QVERIFY(changed.isValid() && refreshed.isValid());
        const auto press = [](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, int times = 1) {
            for (int i = 0; i < times; ++i)
                QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        };
        const auto focused = []() {
            return QAccessible::queryAccessibleInterface(QApplication::focusWidget())->text(QAccessible::Name);
        };
        f.bar->setItemCount(1000);
        QCOMPARE(f.heard(), QStringLiteral("-First page|-Previous 5 pages|Page 1*|Page 2|Page 3|Next 5 pages|Last page|Refresh"));
        QAccessibleInterface* current = QAccessible::queryAccessibleInterface(f.pageButtons().at(2));
        QVERIFY(current->role() == QAccessible::PushButton && current->state().checkable);

        // Page 3, two Tabs along, pressed: the focus stays on the page it chose, now in the middle.
        f.pageButtons().at(2)->setFocus(Qt::TabFocusReason);
        press(Qt::Key_Tab, Qt::NoModifier, 2);
        QCOMPARE(focused(), QStringLiteral("Page 3"));
        press(Qt::Key_Space);
        QCOMPARE(QApplication::focusWidget(), f.pageButtons().at(2));
        QCOMPARE(f.heard(), QStringLiteral("First page|Previous 5 pages|Page 1|Page 2|Page 3*|Page 4|Page 5|Next 5 pages|Last page|Refresh"));

        // Forward five at a time: the arrow keeps the focus while it stays live; on the last
        // page it hands it to that page, not to refresh, so the next Space reloads nothing.
        press(Qt::Key_Tab, Qt::NoModifier, 3);
        QCOMPARE(focused(), QStringLiteral("Next 5 pages"));
        press(Qt::Key_Space, Qt::NoModifier, 3);
        QCOMPARE(QPoint(f.model.nowPage(), QApplication::focusWidget() == f.arrowNamed("Next 5 pages")), QPoint(18, 1));
        press(Qt::Key_Space);
        QCOMPARE(f.model.nowPage(), 20);
        QCOMPARE(focused(), QStringLiteral("Page 20"));
        press(Qt::Key_Space);
        QCOMPARE(QPoint(changed.count(), refreshed.count()), QPoint(6, 0));

        // Back to the first page from the first-page arrow: the focus lands on page 1.
        press(Qt::Key_Backtab, Qt::NoModifier, 4);
        QCOMPARE(focused(), QStringLiteral("First page"));
        press(Qt::Key_Space);
        QCOMPARE(focused(), QStringLiteral("Page 1"));

        // A screen reader presses a page through the accessible action, as a click would.
        QAccessible::queryAccessibleInterface(f.pageButtons().at(4))->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
        QCOMPARE(QPoint(f.model.nowPage(), changed.count()), QPoint(3, 8));
    }

    void arrowsPointTheReadingWay()
    {
        auto restore = qScopeGuard([] { QApplication::setLayoutDirection(Qt::LeftToRight); });
        const QStringList names{"First page", "Previous 5 pages", "Next 5 pages", "Last page"};
        // On page 1 of 20: first and back disabled, next and last live.
        const auto pictures = [&names](Bar& f) {
            f.bar->setItemCount(1000);
            QList<QImage> shown;
            for (const QString& name : names) {
                auto* arrow = static_cast<QToolButton*>(f.arrowNamed(name));
                shown << arrow->icon().pixmap(arrow->iconSize()).toImage();
            }
            return shown;
        };
        Bar f;
        const QList<QImage> leftToRight = pictures(f);
        QList<QImage> turned;
        for (const QImage& picture : leftToRight)
            turned << picture.mirrored(true, false);
        QVERIFY(turned != leftToRight);

        // Right to left, first stands at the right end and every arrow, live or not, is turned
        // round: in a bar that was there already and in one made afterwards.
        QApplication::setLayoutDirection(Qt::RightToLeft);
        QTRY_VERIFY(f.arrowNamed(names.first())->x() > f.arrowNamed(names.last())->x());
        QVERIFY(pictures(f) == turned);
        Bar made;
        QVERIFY(pictures(made) == turned);
        QApplication::setLayoutDirection(Qt::LeftToRight);
        QVERIFY(pictures(f) == leftToRight);
    }

    void footerLabelsAreReused()
    {
        const QString plain = getStyleSheet("component.paging_bar_label", false);
        const QString rightmost = getStyleSheet("component.paging_bar_rightmost_label", false);
        Bar f;
        f.bar->setFooterInfos({{QStringLiteral("Rows 1-50 of 3000"), 120}, {QStringLiteral("3 selected"), 80}, {}});
        const QList<QLabel*> made = f.labels();
        QCOMPARE(made.size(), 3);
        QCOMPARE(made.at(2)->text(), QStringLiteral("Rows 1-50 of 3000"));
        QCOMPARE(QSize(made.at(2)->width(), made.at(1)->width()), QSize(scaled(120), scaled(80)));
        QCOMPARE(made.at(2)->alignment(), Qt::AlignRight | Qt::AlignVCenter);
        const QPointer<QLabel> second = made.at(1);

        // One text relabels the first label, width kept; the rest leave the layout, hidden but not deleted.
        f.bar->setFooterText(QStringLiteral("Rows 51-100 of 3000"));
        QCOMPARE(f.labels(), QList<QLabel*>{made.at(2)});
        QCOMPARE(made.at(2)->text(), QStringLiteral("Rows 51-100 of 3000"));
        QCOMPARE(made.at(2)->width(), scaled(120));
        QVERIFY(second && second->isHidden());
        for (QHBoxLayout* layout : f.bar->findChildren<QHBoxLayout*>())
            QCOMPARE(layout->indexOf(second.data()), -1);
        f.bar->setFooterInfo({QStringLiteral("only"), 70});
        QCOMPARE(made.at(2)->width(), scaled(70));

        // Hiding refresh restyles no label already made; a first label made while hidden keeps the row end's look.
        f.bar->setRefreshButtonHidden(true);
        f.bar->setFooterInfos({{QStringLiteral("a"), 0}, {QStringLiteral("b"), 0}});
        QCOMPARE(f.labels().at(1)->styleSheet() + f.labels().at(0)->styleSheet(), plain + plain);
        f.bar->setFooterInfos({});
        QCOMPARE(f.labels().size(), 0);
        f.bar->setFooterText(QStringLiteral("new"));
        f.bar->setRefreshButtonHidden(false);
        f.bar->setFooterText(QStringLiteral("newer"));
        QVERIFY(plain != rightmost && f.labels().at(0)->styleSheet() == rightmost);
    }
};

ORVACAT_TEST_MAIN(TestPagingBar)
#include "tst_pagingbar.moc"
