// The filter bar and the combo box, typed into and clicked as a user would.

#include "testmain.h"

#include "modalrun.h"
#include "testenvironment.h"

#include <orvacat/orvacat.h>

#include <QCompleter>
#include <QMenu>
#include <QStyledItemDelegate>

namespace {

/**
 * Runs @p open, which pops a menu up, with @p inMenu queued into the menu's
 * loop; answers the popup that was up, or null. A watchdog closes it.
 */
QWidget* runMenu(const std::function<void()>& open, const std::function<void(QWidget*)>& inMenu)
{
    QWidget* seen = nullptr;
    const auto act = [&]() {
        seen = QApplication::activePopupWidget();
        // Closed before the platform hands it the focus, the menu would keep the focus after.
        if (seen && QTest::qWaitFor([seen]() { return QGuiApplication::focusWindow() == seen->windowHandle(); }))
            inMenu(seen);
    };
    ModalRun::run([&]() { open(); return 0; }, act, []() {
        if (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
    });
    return seen;
}

} // namespace

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
}

void TestFilterBar::downOpensTheMenuAndNeverMovesTheCursor()
{
    OrvaFilterBar bar;
    QMenu menu;
    menu.addAction(QStringLiteral("By name"));
    QAction* bySize = menu.addAction(QStringLiteral("By size"));
    bar.setMenu(&menu);
    bar.show();
    QVERIFY(QTest::qWaitForWindowActive(&bar));
    QTest::keyClicks(&bar, QStringLiteral("alp"));
    bar.setCursorPosition(1);

    // A click on the search button opens the menu and leaves the focus in the text.
    auto* button = bar.findChild<OrvaIconButton*>();
    QCOMPARE(runMenu([button]() { QTest::mouseClick(button, Qt::LeftButton); },
                     [](QWidget* up) { QTest::keyClick(up, Qt::Key_Escape); }),
             &menu);
    QTRY_VERIFY(bar.hasFocus());
    // So does Down: the user picks the second option with the keyboard.
    QSignalSpy triggered(&menu, &QMenu::triggered);
    QCOMPARE(runMenu([&bar]() { QTest::keyClick(&bar, Qt::Key_Down); },
                     [](QWidget* up) {
                         QTest::keyClick(up, Qt::Key_Down);
                         QTest::keyClick(up, Qt::Key_Down);
                         QTest::keyClick(up, Qt::Key_Return);
                     }),
             &menu);
    QCOMPARE(triggered.count(), 1);
    QCOMPARE(triggered.at(0).at(0).value<QAction*>(), bySize);
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
}

ORVACAT_TEST_MAIN(TestFilterBar)
#include "tst_filterbar.moc"
