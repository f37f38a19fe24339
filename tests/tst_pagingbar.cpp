// The paging model's arithmetic and the paging bar as a user pages through a list.

#include "testenvironment.h"
#include "testmain.h"
#include "warningcollector.h"

#include <orvacat/orvacat.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>

#include <limits>
#include <memory>

using TestEnvironment::scaled;

namespace {

const int most = std::numeric_limits<int>::max();
const int least = std::numeric_limits<int>::min();

int left(const QWidget* w) { return w->mapTo(w->window(), QPoint()).x(); }
int right(const QWidget* w) { return left(w) + w->width(); }

/** A shown bar over its model, its buttons found by what a user reads on them. */
struct Bar
{
    explicit Bar(int rowLimit = 50)
        : model(rowLimit)
        , window(new QWidget)
    {
        bar = new OrvaPagingBar(&model, window.get());
        auto* layout = new QHBoxLayout(window.get());
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(bar);
        window->resize(scaled(900), bar->sizeHint().height());
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    OrvaIconButton* arrow(const char* key, bool byAccessibleName = false) const
    {
        const QString caption = ComponentStrings::getInstance()->getString(QLatin1String(key));
        for (OrvaIconButton* button : bar->findChildren<OrvaIconButton*>()) {
            if ((byAccessibleName ? button->accessibleName() : button->toolTip()) == caption)
                return button;
        }
        return nullptr;
    }
    OrvaIconButton* first() const { return arrow("first_page"); }
    OrvaIconButton* back() const { return arrow("prev_5_pages"); }
    OrvaIconButton* next() const { return arrow("next_5_pages"); }
    OrvaIconButton* last() const { return arrow("last_page"); }
    OrvaIconButton* refresh() const { return arrow("pagebar_refresh", true); }
    QList<OrvaButton*> pageButtons() const { return TestEnvironment::leftToRight<OrvaButton>(bar); }

    /** The page buttons as read left to right; a disabled one in brackets. */
    QString pages() const
    {
        QStringList shown;
        for (OrvaButton* button : pageButtons())
            shown << (button->isEnabled() ? button->text() : '(' + button->text() + ')');
        return shown.join('|');
    }

    /** Which of first, back, next and last take clicks, as + or -. */
    QString arrows() const
    {
        QString shown;
        for (QWidget* button : {first(), back(), next(), last()})
            shown += button && button->isEnabled() ? '+' : '-';
        return shown;
    }

    /** The footer labels in the layout, right to left (the order they were made in). */
    QList<QLabel*> labels() const
    {
        QApplication::processEvents(); // new labels are placed when the layout runs
        QList<QLabel*> shown = TestEnvironment::leftToRight<QLabel>(bar);
        std::reverse(shown.begin(), shown.end());
        return shown;
    }

    static void click(QWidget* button)
    {
        QVERIFY(button);
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
    }

    OrvaPagingModel model;
    std::unique_ptr<QWidget> window;
    OrvaPagingBar* bar = nullptr;
};

} // namespace

class TestPagingBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { TestEnvironment::installDefaultTheme(); }
    void cleanup() { QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList()); }

    void pageCountAndStartItem_data();
    void pageCountAndStartItem();
    void constructionResetsTheModel();
    void barReadsLeftToRight();
    void pagingThroughTheEdges();
    void jumpByFive_data();
    void jumpByFive();
    void shrinkingTheCountKeepsThePage();
    void onlyUserActionsEmit();
    void footerLabelsAreReused();
    void rightmostLabelStyleFollowsHiddenRefresh();
    void extremePagesAndAMissingModel();
};

void TestPagingBar::pageCountAndStartItem_data()
{
    QTest::addColumn<int>("rowLimit");
    QTest::addColumn<int>("itemCount");
    QTest::addColumn<int>("nowPage");
    QTest::addColumn<int>("pageCount");
    QTest::addColumn<int>("startItem");

    QTest::newRow("no rows still make a page") << 50 << 0 << 1 << 1 << 0;
    QTest::newRow("a full page") << 50 << 50 << 1 << 1 << 0;
    QTest::newRow("one row over") << 50 << 51 << 2 << 2 << 50;
    QTest::newRow("negative count") << 50 << -120 << 1 << 1 << 0;
    QTest::newRow("page beyond the count, not clamped") << 50 << 10 << 4 << 1 << 150;
    QTest::newRow("largest count") << 1 << most << 1 << most << 0;
    QTest::newRow("largest page does not overflow") << 10 << 0 << most << 1 << most;
    QTest::newRow("smallest page does not overflow") << 10 << 0 << least << 1 << least;
}

void TestPagingBar::pageCountAndStartItem()
{
    QFETCH(int, rowLimit);
    QFETCH(int, itemCount);
    QFETCH(int, nowPage);

    OrvaPagingModel model(rowLimit);
    model.setItemCount(itemCount);
    model.setNowPage(nowPage);
    QTEST(model.pageCount(), "pageCount");
    QTEST(model.startItem(), "startItem");
}

void TestPagingBar::constructionResetsTheModel()
{
    OrvaPagingModel model(50);
    model.setItemCount(999);
    model.setNowPage(7);
    OrvaPagingBar bar(&model);
    QCOMPARE(model.nowPage(), 1);
    QCOMPARE(model.itemCount(), 0);

    // Until the first setPage only the middle button reads a page, and nothing is disabled yet.
    QStringList texts;
    for (OrvaButton* button : bar.findChildren<OrvaButton*>())
        texts << button->text() + (button->isEnabled() ? "" : "(disabled)");
    texts.sort();
    QCOMPARE(texts, (QStringList{"", "", "", "", "1"}));
}

void TestPagingBar::barReadsLeftToRight()
{
    Bar f;
    f.bar->setItemCount(1000);
    f.bar->setFooterInfos({{QStringLiteral("first"), 60}, {QStringLiteral("second"), 60}});
    const QList<QLabel*> labels = f.labels();
    const QList<OrvaButton*> pages = f.pageButtons();
    QCOMPARE(labels.size(), 2);
    QCOMPARE(pages.size(), 5);
    for (QWidget* w : {f.first(), f.back(), f.next(), f.last(), f.refresh()})
        QVERIFY(w);

    // 50 px in: first and back side by side, then the five pages 4 px apart,
    // centred between back and next.
    QCOMPARE(left(f.first()), scaled(50));
    QCOMPARE(left(f.back()), right(f.first()));
    for (int i = 0; i + 1 < pages.size(); ++i)
        QCOMPARE(left(pages.at(i + 1)) - right(pages.at(i)), scaled(4));
    const int gapBefore = left(pages.first()) - right(f.back());
    const int gapAfter = left(f.next()) - right(pages.last());
    QVERIFY2(gapBefore > scaled(50) && qAbs(gapBefore - gapAfter) <= 1,
             qPrintable(QStringLiteral("%1 before, %2 after").arg(gapBefore).arg(gapAfter)));
    // Next and last side by side, 50 px, then the labels stacking leftwards
    // from the refresh button, which ends the row.
    QCOMPARE(left(f.last()), right(f.next()));
    QCOMPARE(left(labels.at(1)) - right(f.last()), scaled(50));
    QCOMPARE(labels.at(0)->text(), QStringLiteral("first"));
    QCOMPARE(left(labels.at(0)), right(labels.at(1)));
    QCOMPARE(left(f.refresh()), right(labels.at(0)));
    QCOMPARE(right(f.refresh()), f.bar->width());

    // Heights: a 29 px strip holding 27 px pages, a 24 px refresh button 2 px
    // below the footer's centre, 19 px labels.
    QWidget* border = f.bar->findChild<QWidget*>(QStringLiteral("PAGINGBARBORDER"));
    QVERIFY(border);
    QCOMPARE(border->geometry(), QRect(0, 0, f.bar->width(), scaled(29)));
    for (OrvaButton* page : pages) {
        QCOMPARE(page->height(), scaled(27));
        QVERIFY(page->width() >= scaled(28));
    }
    QCOMPARE(f.refresh()->size(), QSize(scaled(24), scaled(24)));
    QCOMPARE(labels.at(0)->height(), scaled(19));
    const bool factorOne = scaled(3) == 3;
    QCOMPARE(f.refresh()->y(), factorOne ? 3 : 4);
}

void TestPagingBar::pagingThroughTheEdges()
{
    Bar f;
    QSignalSpy changed(f.bar, &OrvaPagingBar::sigPageChanged);
    QVERIFY(changed.isValid());

    // An empty list: one page and no way anywhere.
    f.bar->setItemCount(0);
    QCOMPARE(f.pages(), QStringLiteral("( )|( )|1|( )|( )"));
    QCOMPARE(f.arrows(), QStringLiteral("----"));

    f.bar->setItemCount(101);
    QCOMPARE(f.pages(), QStringLiteral("( )|( )|1|2|3"));
    QCOMPARE(f.arrows(), QStringLiteral("--++"));
    f.click(f.pageButtons().at(0)); // a blank button takes no click
    QCOMPARE(changed.count(), 0);

    // The last page: the window of pages is not shifted, its right side goes blank.
    f.click(f.last());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(f.model.nowPage(), 3);
    QCOMPARE(f.model.startItem(), 100);
    QCOMPARE(f.pages(), QStringLiteral("1|2|3|( )|( )"));
    QCOMPARE(f.arrows(), QStringLiteral("++--"));
    f.click(f.next());
    QCOMPARE(changed.count(), 1);

    // A clicked page moves to the middle; the middle one re-emits its own page.
    f.bar->setItemCount(500);
    f.click(f.pageButtons().at(4));
    QCOMPARE(f.model.nowPage(), 5);
    QCOMPARE(f.pages(), QStringLiteral("3|4|5|6|7"));
    f.click(f.pageButtons().at(1));
    QCOMPARE(f.pages(), QStringLiteral("2|3|4|5|6"));
    f.click(f.pageButtons().at(2));
    QCOMPARE(f.model.nowPage(), 4);
    QCOMPARE(changed.count(), 4);

    f.click(f.first());
    QCOMPARE(changed.count(), 5);
    QCOMPARE(f.model.nowPage(), 1);
    QCOMPARE(f.pages(), QStringLiteral("( )|( )|1|2|3"));

    // The middle button alone carries the "selected" look, whatever the page.
    const QList<OrvaButton*> buttons = f.pageButtons();
    for (int i = 0; i < buttons.size(); ++i) {
        QCOMPARE(buttons.at(i)->styleSheet(),
                 getStyleSheet(i == 2 ? "component.select_paging_button" : "component.nonselect_paging_button", false));
    }
}

void TestPagingBar::jumpByFive_data()
{
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("from");
    QTest::addColumn<bool>("forward");
    QTest::addColumn<QString>("pages");
    QTest::addColumn<QString>("arrows");

    QTest::newRow("next from 2 of 4 stops at the last") << 200 << 2 << true << "2|3|4|( )|( )" << "++--";
    QTest::newRow("next from 14 of 20") << 1000 << 14 << true << "17|18|19|20|( )" << "++++";
    QTest::newRow("next from 15 of 20 lands on the last") << 1000 << 15 << true << "18|19|20|( )|( )" << "++--";
    QTest::newRow("next from 16 of 20 stops at the last") << 1000 << 16 << true << "18|19|20|( )|( )" << "++--";
    QTest::newRow("back from 5 goes to 1") << 1000 << 5 << false << "( )|( )|1|2|3" << "--++";
    QTest::newRow("back from 6 goes to 1") << 1000 << 6 << false << "( )|( )|1|2|3" << "--++";
    QTest::newRow("back from 7 goes to 2") << 1000 << 7 << false << "( )|1|2|3|4" << "++++";
}

void TestPagingBar::jumpByFive()
{
    QFETCH(int, items);
    QFETCH(int, from);
    QFETCH(bool, forward);

    Bar f;
    f.bar->setItemCount(items);
    f.bar->setPage(from);
    QSignalSpy changed(f.bar, &OrvaPagingBar::sigPageChanged);
    f.click(forward ? f.next() : f.back());
    QCOMPARE(changed.count(), 1);
    QTEST(f.pages(), "pages");
    QTEST(f.arrows(), "arrows");
    QCOMPARE(QString::number(f.model.nowPage()), f.pageButtons().at(2)->text());
}

void TestPagingBar::shrinkingTheCountKeepsThePage()
{
    Bar f;
    f.bar->setItemCount(200);
    f.click(f.last());
    QCOMPARE(f.model.nowPage(), 4);

    // Pages 2 to 6 all lie past the single page left.
    f.bar->setItemCount(10);
    QCOMPARE(f.model.nowPage(), 4);
    QCOMPARE(f.pages(), QStringLiteral("( )|( )|( )|( )|( )"));
    QCOMPARE(f.arrows(), QStringLiteral("++--"));

    // The way back is the host's, or the user's first-page button.
    f.click(f.first());
    QCOMPARE(f.model.nowPage(), 1);
    QCOMPARE(f.pages(), QStringLiteral("( )|( )|1|( )|( )"));
}

void TestPagingBar::onlyUserActionsEmit()
{
    Bar f;
    QSignalSpy changed(f.bar, &OrvaPagingBar::sigPageChanged);
    QSignalSpy refreshed(f.bar, &OrvaPagingBar::sigRefresh);
    QVERIFY(changed.isValid() && refreshed.isValid());

    f.bar->setItemCount(300);
    f.bar->setPage(4);
    f.bar->setItemCount(250);
    f.bar->setFooterText(QStringLiteral("x"));
    f.bar->setRefreshButtonHidden(true);
    QVERIFY(!f.refresh()->isVisible());
    f.bar->setRefreshButtonHidden(false);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(f.pages(), QStringLiteral("2|3|4|5|( )"));

    f.click(f.refresh());
    QCOMPARE(refreshed.count(), 1);
    QCOMPARE(changed.count(), 0);

    // reset() tells the host every time, also when already on page 1.
    f.bar->reset();
    QCOMPARE(changed.count(), 1);
    QCOMPARE(f.pages(), QStringLiteral("( )|( )|1|2|3"));
    f.bar->reset();
    QCOMPARE(changed.count(), 2);
    QCOMPARE(refreshed.count(), 1);
}

void TestPagingBar::footerLabelsAreReused()
{
    Bar f;
    f.bar->setFooterInfos({{QStringLiteral("Rows 1-50 of 3000"), 120},
                           {QStringLiteral("3 selected"), 80},
                           {QStringLiteral("Filtered"), 0}});
    const QList<QLabel*> before = f.labels();
    QCOMPARE(before.size(), 3);
    QCOMPARE(before.at(0)->text(), QStringLiteral("Rows 1-50 of 3000"));
    QCOMPARE(before.at(2)->text(), QStringLiteral("Filtered"));
    QCOMPARE(before.at(0)->width(), scaled(120));
    QCOMPARE(before.at(1)->width(), scaled(80));
    QCOMPARE(before.at(0)->alignment(), Qt::AlignRight | Qt::AlignVCenter);
    const QPointer<QLabel> second = before.at(1);

    // One entry: the first label is relabelled and keeps its width; the others
    // are hidden and out of the layout, but not deleted (a host may hold them).
    f.bar->setFooterInfos({{QStringLiteral("Rows 51-100 of 3000"), 0}});
    QCOMPARE(f.labels(), QList<QLabel*>{before.at(0)});
    QCOMPARE(before.at(0)->text(), QStringLiteral("Rows 51-100 of 3000"));
    QCOMPARE(before.at(0)->width(), scaled(120));
    QVERIFY(second && second->isHidden());
    for (QHBoxLayout* layout : f.bar->findChildren<QHBoxLayout*>())
        QCOMPARE(layout->indexOf(second.data()), -1);

    // Growing again makes a new label; the dropped one stays dropped.
    f.bar->setFooterInfos({{QStringLiteral("a"), 0}, {QStringLiteral("b"), 0}});
    QCOMPARE(f.labels().size(), 2);
    QVERIFY(f.labels().at(1) != second.data());

    f.bar->setFooterInfo({QStringLiteral("only"), 70});
    f.bar->setFooterText(QStringLiteral("text"));
    QCOMPARE(f.labels(), QList<QLabel*>{before.at(0)});
    QCOMPARE(before.at(0)->text(), QStringLiteral("text"));
    QCOMPARE(before.at(0)->width(), scaled(70));
    WarningCollector warnings;
    f.bar->setFooterInfo({QStringLiteral("label"), -40}); // refused: the width stays
    QCOMPARE(warnings.count(), 1);
    QCOMPARE(before.at(0)->width(), scaled(70));

    f.bar->setFooterInfos({});
    QCOMPARE(f.labels().size(), 0);
}

void TestPagingBar::rightmostLabelStyleFollowsHiddenRefresh()
{
    const QString plain = getStyleSheet("component.paging_bar_label", false);
    const QString rightmost = getStyleSheet("component.paging_bar_rightmost_label", false);
    QVERIFY2(plain != rightmost, "the theme must tell the two label looks apart");

    for (const bool hiddenFirst : {false, true}) {
        Bar f;
        if (hiddenFirst)
            f.bar->setRefreshButtonHidden(true);
        f.bar->setFooterInfos({{QStringLiteral("one"), 0}, {QStringLiteral("two"), 0}});
        QCOMPARE(f.labels().size(), 2);
        QCOMPARE(f.labels().at(0)->styleSheet(), hiddenFirst ? rightmost : plain);
        QCOMPARE(f.labels().at(1)->styleSheet(), plain);
        // Hiding the button later restyles nothing.
        f.bar->setRefreshButtonHidden(true);
        f.bar->setFooterText(QStringLiteral("one again"));
        QCOMPARE(f.labels().at(0)->styleSheet(), hiddenFirst ? rightmost : plain);
    }

    // Explicitly hidden counts, not being off screen.
    OrvaPagingModel model(50);
    OrvaPagingBar bar(&model);
    bar.setFooterText(QStringLiteral("one"));
    QCOMPARE(bar.findChild<QLabel*>()->styleSheet(), plain);
}

void TestPagingBar::extremePagesAndAMissingModel()
{
    Bar f;
    f.bar->setItemCount(100); // 2 pages

    // Only exactly page 1 closes the way back.
    f.bar->setPage(0);
    QCOMPARE(f.pages(), QStringLiteral("( )|( )|( )|1|2"));
    QCOMPARE(f.arrows(), QStringLiteral("++++"));
    f.bar->setPage(most);
    QCOMPARE(f.pages(), QStringLiteral("( )|( )|( )|( )|( )"));
    QCOMPARE(f.arrows(), QStringLiteral("++--"));
    f.bar->next_5_page(); // no wrap-around past the largest page
    QCOMPARE(f.model.nowPage(), 2);
    f.bar->setPage(least);
    f.bar->prev_5_page();
    QCOMPARE(f.model.nowPage(), 1);

    // Called by hand: a button past the five is refused aloud, a blank one quietly.
    QSignalSpy changed(f.bar, &OrvaPagingBar::sigPageChanged);
    WarningCollector warnings;
    f.bar->pageClick(5);
    f.bar->pageClick(-1);
    f.bar->pageClick(0);
    QCOMPARE(warnings.count(), 2);
    QCOMPARE(changed.count(), 0);
    f.bar->pageClick(3);
    QCOMPARE(f.model.nowPage(), 2);

    // A bar without a model, or whose model went early, keeps working on its own.
    warnings.clear();
    OrvaPagingBar orphan(nullptr);
    QCOMPARE(warnings.count(), 1);
    orphan.setItemCount(5);
    orphan.last_page();
    auto* model = new OrvaPagingModel(10);
    OrvaPagingBar bar(model);
    bar.setItemCount(100);
    delete model;
    bar.next_5_page();
}

ORVACAT_TEST_MAIN(TestPagingBar)
#include "tst_pagingbar.moc"
