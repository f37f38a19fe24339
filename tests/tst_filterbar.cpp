// The filter bar and the combo box, typed into and clicked as a user would.

#include "testmain.h"

#include "testenvironment.h"

#include <orvacat/orvacat.h>

#include <QAccessible>
#include <QCompleter>
#include <QMenu>
#include <QStyledItemDelegate>
#include <QTimer>

class TestFilterBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { TestEnvironment::installDefaultTheme(); }
    void cleanup() { QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList()); }

    void typedKeywordIsReportedOnReturn();
    void downOpensTheMenuAndNeverMovesTheCursor();
    void comboFillsItsTemplateAndStylesItsPopup();
};

void TestFilterBar::typedKeywordIsReportedOnReturn()
{
    OrvaFilterBar bar;
    bar.show();
    QVERIFY(QTest::qWaitForWindowActive(&bar));
    auto* button = bar.findChild<OrvaIconButton*>();
    QCOMPARE(button->geometry(), QRect(TestEnvironment::scaled(4), TestEnvironment::scaled(2),
                                       TestEnvironment::scaled(34), TestEnvironment::scaled(24)));
    QCOMPARE(bar.height(), TestEnvironment::scaled(28));
    // The pointer shows an arrow over the button, the text cursor over the text.
    QCOMPARE(bar.childAt(button->geometry().center()), button);
    QCOMPARE(button->cursor().shape(), Qt::ArrowCursor);
    QCOMPARE(bar.cursor().shape(), Qt::IBeamCursor);

    // Typing reports nothing; each Return reports the text, which starts right of the button.
    QSignalSpy keyword(&bar, &OrvaFilterBar::sigKeywordChanged);
    QVERIFY(keyword.isValid());
    QTest::keyClicks(&bar, QStringLiteral("report"));
    QCOMPARE(keyword.count(), 0);
    bar.setCursorPosition(0);
    QVERIFY(bar.inputMethodQuery(Qt::ImCursorRectangle).toRect().left() >= button->geometry().right() - 2);
    QTest::keyClick(&bar, Qt::Key_Return);
    QTest::keyClick(&bar, Qt::Key_Return);
    // An empty field reports an empty keyword: the host shows everything again.
    bar.selectAll();
    QTest::keyClick(&bar, Qt::Key_Delete);
    QTest::keyClick(&bar, Qt::Key_Return);
    QCOMPARE(QList<QVariantList>(keyword), (QList<QVariantList>{{"report"}, {"report"}, {QString()}}));

    // A screen reader, which sees no magnifying glass, hears both named.
    QCOMPARE(QAccessible::queryAccessibleInterface(&bar)->text(QAccessible::Name), QStringLiteral("Search"));
    QCOMPARE(QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name), QStringLiteral("Search options"));

    // Right to left, the button moves to the right end and the text starts left of it.
    bar.setText(QString::fromUtf8("\u05d3\u05d5\u05d7"));
    bar.setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(button->geometry(), QRect(bar.width() - TestEnvironment::scaled(4) - TestEnvironment::scaled(34),
                                       TestEnvironment::scaled(2), TestEnvironment::scaled(34), TestEnvironment::scaled(24)));
    bar.resize(bar.width() + 50, bar.height());
    QCOMPARE(button->geometry().right(), bar.width() - 1 - TestEnvironment::scaled(4));
    bar.setCursorPosition(0);
    QVERIFY(bar.inputMethodQuery(Qt::ImCursorRectangle).toRect().right() <= button->geometry().left() + 2);
}

void TestFilterBar::downOpensTheMenuAndNeverMovesTheCursor()
{
    OrvaFilterBar bar;
    QMenu menu;
    menu.addAction(QStringLiteral("By name"));
    bar.setMenu(&menu);
    // The menu closes itself once it is up, as a choice of the user's would.
    QSignalSpy opened(&menu, &QMenu::aboutToShow);
    connect(&menu, &QMenu::aboutToShow, &menu, [&menu]() { QTimer::singleShot(0, &menu, &QMenu::close); });
    bar.show();
    QVERIFY(QTest::qWaitForWindowActive(&bar));
    QTest::keyClicks(&bar, QStringLiteral("alp"));
    bar.setCursorPosition(1);

    // Down opens it, as a click on the search button does; the cursor stays.
    QTest::keyClick(&bar, Qt::Key_Down);
    QCOMPARE(opened.count(), 1);
    QTest::mouseClick(bar.findChild<OrvaIconButton*>(), Qt::LeftButton);
    QCOMPARE(opened.count(), 2);
    QCOMPARE(bar.cursorPosition(), 1);

    // Without a menu Down does nothing at all, not even open the completer
    // that it opens in a plain field.
    bar.setMenu(nullptr);
    bar.setCompleter(new QCompleter(QStringList{QStringLiteral("alpha"), QStringLiteral("alphabet")}, &bar));
    QTest::keyClick(&bar, Qt::Key_Down);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(bar.text(), QStringLiteral("alp"));
    QCOMPARE(bar.cursorPosition(), 1);
}

void TestFilterBar::comboFillsItsTemplateAndStylesItsPopup()
{
    // The theme's template gets no padding and no border.
    const QString raw = getStyleSheet("component.combobox", false);
    QVERIFY(raw.contains(QLatin1String("%1")) && raw.contains(QLatin1String("%2")));
    OrvaComboBox box;
    QCOMPARE(box.styleSheet(), raw.arg(QString(), QStringLiteral("border: none;")) + getStyleSheet("component.scrollbar", false));
    // Qt's own popup delegate would ignore the sheet's item rules.
    QVERIFY(qobject_cast<QStyledItemDelegate*>(box.view()->itemDelegate()));

    // A rich tooltip reaches a screen reader as words; a host's own description stays.
    box.setToolTip(getHtmlEscapedStringForToolTip(QStringLiteral("Sort <by>\n  date")));
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&box);
    QCOMPARE(face->text(QAccessible::Description), QStringLiteral("Sort <by> date"));
    box.setAccessibleDescription(QStringLiteral("Order of the rows"));
    box.setToolTip(QStringLiteral("Sort"));
    QCOMPARE(face->text(QAccessible::Description), QStringLiteral("Order of the rows"));
}

ORVACAT_TEST_MAIN(TestFilterBar)
#include "tst_filterbar.moc"
