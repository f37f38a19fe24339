// The paging model's arithmetic and the paging bar as a user pages through a list.

#include "testenvironment.h"
#include "testmain.h"
#include "warningcollector.h"

#include <orvacat/orvacat.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>

#include <algorithm>
#include <limits>
#include <memory>

namespace {

QString pageText(int page)
{
    return page > 0 ? QString::number(page) : QStringLiteral(" ");
}

/** A shown bar over its model, with its children found the way a user sees them. */
struct BarFixture
{
    explicit BarFixture(int rowLimit = 50)
        : model(rowLimit)
        , window(new QWidget)
    {
        bar = new OrvaPagingBar(&model, window.get());
        auto* layout = new QHBoxLayout(window.get());
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(bar);
        window->resize(TestEnvironment::scaled(900), bar->sizeHint().height());
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    /** The five page buttons, left to right. */
    QList<OrvaButton*> pageButtons() const
    {
        QList<OrvaButton*> buttons = bar->findChildren<OrvaButton*>();
        std::sort(buttons.begin(), buttons.end(), [](QWidget* a, QWidget* b) {
            return a->mapTo(a->window(), QPoint()).x() < b->mapTo(b->window(), QPoint()).x();
        });
        return buttons;
    }

    QStringList pageTexts() const
    {
        QStringList texts;
        for (OrvaButton* button : pageButtons())
            texts << button->text();
        return texts;
    }

    QList<bool> pageEnabled() const
    {
        QList<bool> enabled;
        for (OrvaButton* button : pageButtons())
            enabled << button->isEnabled();
        return enabled;
    }

    OrvaIconButton* iconButton(const char* stringKey, bool byAccessibleName = false) const
    {
        const QString caption = ComponentStrings::getInstance()->getString(QLatin1String(stringKey));
        const QList<OrvaIconButton*> buttons = bar->findChildren<OrvaIconButton*>();
        for (OrvaIconButton* button : buttons) {
            if ((byAccessibleName ? button->accessibleName() : button->toolTip()) == caption)
                return button;
        }
        return nullptr;
    }

    /** first, back, next, last: which of the four arrows take clicks. */
    QList<bool> navEnabled() const
    {
        return {first()->isEnabled(), back()->isEnabled(), next()->isEnabled(), last()->isEnabled()};
    }

    OrvaIconButton* first() const { return iconButton("first_page"); }
    OrvaIconButton* back() const { return iconButton("prev_5_pages"); }
    OrvaIconButton* next() const { return iconButton("next_5_pages"); }
    OrvaIconButton* last() const { return iconButton("last_page"); }
    OrvaIconButton* refresh() const { return iconButton("pagebar_refresh", true); }

    /** The footer labels in the layout, right to left (the order they were made in). */
    QList<QLabel*> footerLabels() const
    {
        // New labels are shown, and placed, when the bar's layout runs.
        QApplication::processEvents();
        QList<QLabel*> labels;
        const QList<QLabel*> all = bar->findChildren<QLabel*>();
        for (QLabel* label : all) {
            if (!label->isHidden())
                labels << label;
        }
        std::sort(labels.begin(), labels.end(), [](QWidget* a, QWidget* b) {
            return a->mapTo(a->window(), QPoint()).x() > b->mapTo(b->window(), QPoint()).x();
        });
        return labels;
    }

    void click(QWidget* button)
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
    void initTestCase();
    void cleanup();

    void pageCountAndStartItem_data();
    void pageCountAndStartItem();

    void constructionResetsTheModel();
    void barReadsLeftToRight();
    void pagingThroughTheEdges();
    void pageButtonsKeepTheCurrentPageInTheMiddle();
    void jumpByFive_data();
    void jumpByFive();
    void shrinkingTheCountKeepsThePage();
    void onlyUserActionsAndResetEmit();

    void footerLabelsAreReused();
    void rightmostLabelStyleFollowsHiddenRefresh();

    void strangePagesDoNotCrash();
    void missingModelIsSurvived();
};

void TestPagingBar::initTestCase()
{
    TestEnvironment::installDefaultTheme();
}

void TestPagingBar::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestPagingBar::pageCountAndStartItem_data()
{
    QTest::addColumn<int>("rowLimit");
    QTest::addColumn<int>("itemCount");
    QTest::addColumn<int>("nowPage");
    QTest::addColumn<int>("pageCount");
    QTest::addColumn<int>("startItem");

    const int most = std::numeric_limits<int>::max();
    const int least = std::numeric_limits<int>::min();
    QTest::newRow("no rows") << 50 << 0 << 1 << 1 << 0;
    QTest::newRow("one full page") << 50 << 50 << 1 << 1 << 0;
    QTest::newRow("one row over") << 50 << 51 << 2 << 2 << 50;
    QTest::newRow("three pages") << 50 << 101 << 3 << 3 << 100;
    QTest::newRow("exact multiple") << 50 << 3000 << 60 << 60 << 2950;
    QTest::newRow("one per page") << 1 << 7 << 7 << 7 << 6;
    QTest::newRow("negative count") << 50 << -120 << 1 << 1 << 0;
    QTest::newRow("page beyond count, not clamped") << 50 << 10 << 4 << 1 << 150;
    QTest::newRow("page 0, not clamped") << 50 << 10 << 0 << 1 << -50;
    QTest::newRow("largest count") << 1 << most << 1 << most << 0;
    // Far pages do not overflow the row index.
    QTest::newRow("largest page") << 10 << 0 << most << 1 << most;
    QTest::newRow("smallest page") << 10 << 0 << least << 1 << least;
}

void TestPagingBar::pageCountAndStartItem()
{
    QFETCH(int, rowLimit);
    QFETCH(int, itemCount);
    QFETCH(int, nowPage);
    QFETCH(int, pageCount);
    QFETCH(int, startItem);

    OrvaPagingModel model(rowLimit);
    model.setItemCount(itemCount);
    model.setNowPage(nowPage);
    QCOMPARE(model.pageCount(), pageCount);
    QCOMPARE(model.startItem(), startItem);
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
    for (OrvaButton* button : bar.findChildren<OrvaButton*>()) {
        QVERIFY(button->isEnabled());
        texts << button->text();
    }
    texts.sort();
    QCOMPARE(texts, (QStringList{"", "", "", "", "1"}));
}

void TestPagingBar::barReadsLeftToRight()
{
    BarFixture f;
    f.bar->setItemCount(1000);
    f.bar->setFooterInfos({{QStringLiteral("first"), 60}, {QStringLiteral("second"), 60}});
    QApplication::processEvents();

    // Footer labels stack right to left: the first one sits next to the refresh button.
    auto x = [](QWidget* w) { return w->mapTo(w->window(), QPoint()).x(); };
    const QList<OrvaButton*> pages = f.pageButtons();
    QCOMPARE(pages.size(), 5);
    const QList<QLabel*> labels = f.footerLabels();
    QCOMPARE(labels.size(), 2);
    QCOMPARE(labels.at(0)->text(), QStringLiteral("first"));
    QList<QWidget*> order{f.first(), f.back()};
    for (OrvaButton* b : pages)
        order << b;
    order << f.next() << f.last() << labels.at(1) << labels.at(0) << f.refresh();
    for (QWidget* w : order)
        QVERIFY(w);
    for (int i = 0; i + 1 < order.size(); ++i)
        QVERIFY2(x(order.at(i)) + order.at(i)->width() <= x(order.at(i + 1)), qPrintable(QString::number(i)));

    // The built-in sizes follow the screen's factor.
    QCOMPARE(x(f.first()), TestEnvironment::scaled(50));
    for (OrvaButton* b : pages) {
        QCOMPARE(b->height(), TestEnvironment::scaled(27));
        QVERIFY(b->width() >= TestEnvironment::scaled(28));
    }
    for (int i = 0; i + 1 < pages.size(); ++i)
        QCOMPARE(x(pages.at(i + 1)) - x(pages.at(i)) - pages.at(i)->width(), TestEnvironment::scaled(4));
    QCOMPARE(f.refresh()->size(), QSize(TestEnvironment::scaled(24), TestEnvironment::scaled(24)));
    QCOMPARE(f.bar->findChild<QWidget*>(QStringLiteral("PAGINGBARBORDER"))->height(), TestEnvironment::scaled(29));
    // The refresh button ends the row: nothing but the margin of the bar after it.
    QVERIFY(x(f.refresh()) + f.refresh()->width() <= f.bar->width());
    QVERIFY(f.bar->width() - (x(f.refresh()) + f.refresh()->width()) < TestEnvironment::scaled(4) + 1);
}

void TestPagingBar::pagingThroughTheEdges()
{
    BarFixture f;
    QSignalSpy changed(f.bar, &OrvaPagingBar::sigPageChanged);
    QVERIFY(changed.isValid());

    // An empty list: one page, no way anywhere.
    f.bar->setItemCount(0);
    QCOMPARE(f.pageTexts(), (QStringList{" ", " ", "1", " ", " "}));
    QCOMPARE(f.pageEnabled(), (QList<bool>{false, false, true, false, false}));
    QCOMPARE(f.navEnabled(), (QList<bool>{false, false, false, false}));

    // Page 1: nothing to the left.
    f.bar->setItemCount(101);
    QCOMPARE(f.pageTexts(), (QStringList{" ", " ", "1", "2", "3"}));
    QCOMPARE(f.pageEnabled(), (QList<bool>{false, false, true, true, true}));
    QCOMPARE(f.navEnabled(), (QList<bool>{false, false, true, true}));

    // Last page: the window is not shifted, the right side goes blank.
    f.click(f.last());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(f.model.nowPage(), 3);
    QCOMPARE(f.model.startItem(), 100);
    QCOMPARE(f.pageTexts(), (QStringList{"1", "2", "3", " ", " "}));
    QCOMPARE(f.pageEnabled(), (QList<bool>{true, true, true, false, false}));
    QCOMPARE(f.navEnabled(), (QList<bool>{true, true, false, false}));

    // A disabled button takes no click.
    f.click(f.next());
    QCOMPARE(changed.count(), 1);

    f.click(f.first());
    QCOMPARE(changed.count(), 2);
    QCOMPARE(f.model.nowPage(), 1);
    QCOMPARE(f.pageTexts(), (QStringList{" ", " ", "1", "2", "3"}));

    // Blank buttons are disabled: clicking one changes nothing.
    f.click(f.pageButtons().at(0));
    QCOMPARE(changed.count(), 2);
    QCOMPARE(f.model.nowPage(), 1);
}

void TestPagingBar::pageButtonsKeepTheCurrentPageInTheMiddle()
{
    BarFixture f;
    QSignalSpy changed(f.bar, &OrvaPagingBar::sigPageChanged);
    f.bar->setItemCount(500); // 10 pages

    // Clicking "3" (the rightmost on page 1) brings page 3 to the middle.
    f.click(f.pageButtons().at(4));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(f.model.nowPage(), 3);
    QCOMPARE(f.pageTexts(), (QStringList{"1", "2", "3", "4", "5"}));

    f.click(f.pageButtons().at(3));
    QCOMPARE(f.model.nowPage(), 4);
    QCOMPARE(f.pageTexts(), (QStringList{"2", "3", "4", "5", "6"}));
    f.click(f.pageButtons().at(0));
    QCOMPARE(f.model.nowPage(), 2);
    QCOMPARE(f.pageTexts(), (QStringList{" ", "1", "2", "3", "4"}));
    QCOMPARE(changed.count(), 3);

    // The middle button names the current page again, and says so.
    f.click(f.pageButtons().at(2));
    QCOMPARE(changed.count(), 4);
    QCOMPARE(f.model.nowPage(), 2);

    // The middle button alone carries the "selected" look, whatever the page.
    const QList<OrvaButton*> buttons = f.pageButtons();
    for (int i = 0; i < buttons.size(); ++i) {
        QCOMPARE(buttons.at(i)->styleSheet(), getStyleSheet(i == 2 ? "component.select_paging_button"
                                                                    : "component.nonselect_paging_button",
                                                            false));
    }
}

void TestPagingBar::jumpByFive_data()
{
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("from");
    QTest::addColumn<bool>("forward");
    QTest::addColumn<int>("to");

    QTest::newRow("next five from 2 of 4 stops at 4") << 200 << 2 << true << 4;
    QTest::newRow("next five from 2 of 20") << 1000 << 2 << true << 7;
    QTest::newRow("next five lands on the last") << 1000 << 15 << true << 20;
    QTest::newRow("back five from 5 goes to 1") << 1000 << 5 << false << 1;
    QTest::newRow("back five from 6 goes to 1") << 1000 << 6 << false << 1;
    QTest::newRow("back five from 7 goes to 2") << 1000 << 7 << false << 2;
    QTest::newRow("back five from 20") << 1000 << 20 << false << 15;
}

void TestPagingBar::jumpByFive()
{
    QFETCH(int, items);
    QFETCH(int, from);
    QFETCH(bool, forward);
    QFETCH(int, to);

    BarFixture f;
    f.bar->setItemCount(items);
    f.bar->setPage(from);
    QSignalSpy changed(f.bar, &OrvaPagingBar::sigPageChanged);
    f.click(forward ? f.next() : f.back());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(f.model.nowPage(), to);
    QStringList expected;
    for (int n = to - 2; n <= to + 2; ++n)
        expected << pageText(n <= f.model.pageCount() ? n : 0);
    QCOMPARE(f.pageTexts(), expected);
}

void TestPagingBar::shrinkingTheCountKeepsThePage()
{
    BarFixture f;
    f.bar->setItemCount(200);
    f.click(f.last());
    QCOMPARE(f.model.nowPage(), 4);

    QSignalSpy changed(f.bar, &OrvaPagingBar::sigPageChanged);
    f.bar->setItemCount(10);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(f.model.nowPage(), 4);
    QCOMPARE(f.pageTexts(), (QStringList{" ", " ", " ", " ", " "}));
    QCOMPARE(f.pageEnabled(), (QList<bool>{false, false, false, false, false}));
    QCOMPARE(f.navEnabled(), (QList<bool>{true, true, false, false}));

    // The way back is the host's, or the user's first-page button.
    f.click(f.first());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(f.model.nowPage(), 1);
    QCOMPARE(f.pageTexts(), (QStringList{" ", " ", "1", " ", " "}));
}

void TestPagingBar::onlyUserActionsAndResetEmit()
{
    BarFixture f;
    QSignalSpy changed(f.bar, &OrvaPagingBar::sigPageChanged);
    QSignalSpy refreshed(f.bar, &OrvaPagingBar::sigRefresh);
    QVERIFY(refreshed.isValid());
    f.bar->setItemCount(300);
    f.bar->setPage(4);
    f.bar->setItemCount(250);
    f.bar->setFooterText(QStringLiteral("x"));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(refreshed.count(), 0);
    QCOMPARE(f.pageTexts(), (QStringList{"2", "3", "4", "5", " "}));

    f.click(f.refresh());
    QCOMPARE(refreshed.count(), 1);
    QCOMPARE(changed.count(), 0);

    f.bar->reset();
    QCOMPARE(changed.count(), 1);
    QCOMPARE(f.model.nowPage(), 1);
    QCOMPARE(f.pageTexts(), (QStringList{" ", " ", "1", "2", "3"}));
    f.bar->reset();
    QCOMPARE(changed.count(), 2);

    f.bar->setRefreshButtonHidden(true);
    QVERIFY(!f.refresh()->isVisible());
    f.bar->setRefreshButtonHidden(false);
    QVERIFY(f.refresh()->isVisible());
}

void TestPagingBar::footerLabelsAreReused()
{
    BarFixture f;
    f.bar->setFooterInfos({{QStringLiteral("Rows 1-50 of 3000"), 120},
                           {QStringLiteral("3 selected"), 80},
                           {QStringLiteral("Filtered"), 0}});
    const QList<QLabel*> before = f.footerLabels();
    QCOMPARE(before.size(), 3);
    QCOMPARE(before.at(0)->text(), QStringLiteral("Rows 1-50 of 3000"));
    QCOMPARE(before.at(0)->width(), TestEnvironment::scaled(120));
    QCOMPARE(before.at(1)->width(), TestEnvironment::scaled(80));
    QCOMPARE(before.at(0)->height(), TestEnvironment::scaled(19));
    const QPointer<QLabel> second = before.at(1);
    const QPointer<QLabel> third = before.at(2);

    f.bar->setFooterInfos({{QStringLiteral("Rows 51-100 of 3000"), 0}});
    const QList<QLabel*> after = f.footerLabels();
    QCOMPARE(after.size(), 1);
    QCOMPARE(after.at(0), before.at(0)); // the same label, relabelled
    QCOMPARE(after.at(0)->text(), QStringLiteral("Rows 51-100 of 3000"));
    QCOMPARE(after.at(0)->width(), TestEnvironment::scaled(120)); // width 0 keeps it

    // Surplus labels are hidden and out of the layout, but not deleted.
    QVERIFY(second && third);
    QVERIFY(second->isHidden());
    QVERIFY(third->isHidden());
    for (QHBoxLayout* layout : f.bar->findChildren<QHBoxLayout*>()) {
        QCOMPARE(layout->indexOf(second.data()), -1);
        QCOMPARE(layout->indexOf(third.data()), -1);
    }

    // Growing again makes new labels; the dropped ones stay dropped.
    f.bar->setFooterInfos({{QStringLiteral("a"), 0}, {QStringLiteral("b"), 0}});
    const QList<QLabel*> regrown = f.footerLabels();
    QCOMPARE(regrown.size(), 2);
    QCOMPARE(regrown.at(0), before.at(0));
    QVERIFY(regrown.at(1) != second.data());
    QVERIFY(second->isHidden());

    // One info, or one text, leaves one label; a text alone keeps its width.
    f.bar->setFooterInfo({QStringLiteral("only"), 70});
    QCOMPARE(f.footerLabels().size(), 1);
    QCOMPARE(f.footerLabels().at(0)->text(), QStringLiteral("only"));
    f.bar->setFooterText(QStringLiteral("text"));
    QCOMPARE(f.footerLabels().size(), 1);
    QCOMPARE(f.footerLabels().at(0)->text(), QStringLiteral("text"));
    QCOMPARE(f.footerLabels().at(0)->width(), TestEnvironment::scaled(70));

    // A negative width is refused with a warning, and the label keeps its width.
    WarningCollector warnings;
    f.bar->setFooterInfo({QStringLiteral("label"), -40});
    QCOMPARE(warnings.count(), 1);
    QCOMPARE(f.footerLabels().at(0)->width(), TestEnvironment::scaled(70));

    f.bar->setFooterInfos({});
    QCOMPARE(f.footerLabels().size(), 0);
}

void TestPagingBar::rightmostLabelStyleFollowsHiddenRefresh()
{
    const QString plain = getStyleSheet("component.paging_bar_label", false);
    const QString rightmost = getStyleSheet("component.paging_bar_rightmost_label", false);
    QVERIFY2(plain != rightmost, "the theme must tell the two label looks apart");

    for (const bool hiddenFirst : {false, true}) {
        BarFixture f;
        if (hiddenFirst)
            f.bar->setRefreshButtonHidden(true);
        f.bar->setFooterInfos({{QStringLiteral("one"), 0}, {QStringLiteral("two"), 0}});
        QCOMPARE(f.footerLabels().size(), 2);
        QCOMPARE(f.footerLabels().at(0)->styleSheet(), hiddenFirst ? rightmost : plain);
        QCOMPARE(f.footerLabels().at(1)->styleSheet(), plain);
        // Hiding the button later restyles nothing.
        f.bar->setRefreshButtonHidden(true);
        f.bar->setFooterText(QStringLiteral("one again"));
        QCOMPARE(f.footerLabels().at(0)->styleSheet(), hiddenFirst ? rightmost : plain);
    }
    {
        // Explicitly hidden counts, not being off screen: a bar never shown still has a visible refresh button.
        OrvaPagingModel model(50);
        OrvaPagingBar bar(&model);
        bar.setFooterText(QStringLiteral("one"));
        const QList<QLabel*> labels = bar.findChildren<QLabel*>();
        QCOMPARE(labels.size(), 1);
        QCOMPARE(labels.at(0)->styleSheet(), plain);
    }
}

void TestPagingBar::strangePagesDoNotCrash()
{
    BarFixture f;
    f.bar->setItemCount(100);

    f.bar->setPage(-3);
    QCOMPARE(f.model.nowPage(), -3);
    QCOMPARE(f.pageTexts(), (QStringList{" ", " ", " ", " ", " "}));
    QVERIFY(f.first()->isEnabled()); // only exactly page 1 disables the way back
    QVERIFY(f.next()->isEnabled());

    f.bar->setPage(0);
    QCOMPARE(f.pageTexts(), (QStringList{" ", " ", " ", "1", "2"}));
    QVERIFY(f.back()->isEnabled());

    f.bar->setPage(std::numeric_limits<int>::max());
    QCOMPARE(f.pageTexts(), (QStringList{" ", " ", " ", " ", " "}));
    QVERIFY(!f.last()->isEnabled());
    // Five on from the largest page stays on it rather than wrapping round.
    f.click(f.first());
    f.bar->setPage(std::numeric_limits<int>::max());
    f.bar->next_5_page();
    QCOMPARE(f.model.nowPage(), 2);

    f.bar->setPage(std::numeric_limits<int>::min());
    QCOMPARE(f.pageTexts(), (QStringList{" ", " ", " ", " ", " "}));
    f.bar->prev_5_page();
    QCOMPARE(f.model.nowPage(), 1);

    // Page buttons past the five are refused with a warning; a blank one names no page.
    QSignalSpy changed(f.bar, &OrvaPagingBar::sigPageChanged);
    WarningCollector warnings;
    f.bar->pageClick(5);
    f.bar->pageClick(-1);
    QCOMPARE(warnings.count(), 2);
    f.bar->pageClick(0);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(f.model.nowPage(), 1);
    // A numbered one works by hand as by click.
    f.bar->pageClick(3);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(f.model.nowPage(), 2);
}

void TestPagingBar::missingModelIsSurvived()
{
    WarningCollector warnings;
    {
        OrvaPagingBar bar(nullptr);
        QCOMPARE(warnings.count(), 1);
        bar.setItemCount(5);
        bar.setPage(3);
        bar.next_5_page();
        bar.last_page();
        bar.reset();
    }
    {
        auto* model = new OrvaPagingModel(10);
        OrvaPagingBar bar(model);
        bar.setItemCount(100);
        delete model; // too early, but the bar must not follow it
        bar.next_5_page();
        bar.setFooterText(QStringLiteral("still here"));
    }
}

ORVACAT_TEST_MAIN(TestPagingBar)
#include "tst_pagingbar.moc"
