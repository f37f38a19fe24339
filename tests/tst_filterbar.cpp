// The filter bar and the combo box, typed into and clicked as a user would.

#include "testmain.h"

#include "modalrun.h"
#include "testenvironment.h"

#include <orvacat/orvacat.h>

#include <QCompleter>
#include <QMenu>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <memory>

namespace {

/** A window holding @p field, shown and active, with the field focused. */
std::unique_ptr<QWidget> showFocused(QWidget* field)
{
    std::unique_ptr<QWidget> window(new QWidget);
    auto* layout = new QVBoxLayout(window.get());
    layout->addWidget(field);
    window->resize(TestEnvironment::scaled(320), TestEnvironment::scaled(120));
    window->show();
    if (QTest::qWaitForWindowActive(window.get()))
        field->setFocus();
    return window;
}

/**
 * Runs @p open, which pops a menu up, with @p inMenu queued into the menu's
 * loop; answers the popup that was up, or null. A watchdog closes it.
 */
QWidget* runMenu(const std::function<void()>& open, const std::function<void(QWidget*)>& inMenu)
{
    QWidget* seen = nullptr;
    ModalRun::run([&]() { open(); return 0; },
                  [&]() {
                      seen = QApplication::activePopupWidget();
                      // Closed before the platform hands it the focus, the menu would keep the focus after.
                      if (seen && QTest::qWaitFor([seen]() { return QGuiApplication::focusWindow() == seen->windowHandle(); }))
                          inMenu(seen);
                  },
                  []() {
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
    void initTestCase();
    void cleanup();

    void searchButtonSitsInsideTheField();
    void keywordIsReportedOnReturnOnly();
    void downOpensTheMenuAndNeverMovesTheCursor();
    void comboFillsItsTemplateAndPicksFromItsPopup();
};

void TestFilterBar::initTestCase()
{
    TestEnvironment::installDefaultTheme();
}

void TestFilterBar::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestFilterBar::searchButtonSitsInsideTheField()
{
    auto* bar = new OrvaFilterBar;
    auto window = showFocused(bar);
    QTRY_VERIFY(bar->hasFocus());
    auto* button = bar->findChild<OrvaIconButton*>();
    QVERIFY(button);
    QCOMPARE(button->geometry(), QRect(TestEnvironment::scaled(4), TestEnvironment::scaled(2),
                                       TestEnvironment::scaled(34), TestEnvironment::scaled(24)));
    QCOMPARE(bar->height(), TestEnvironment::scaled(28));

    // The typed text starts right of the button.
    QTest::keyClicks(bar, QStringLiteral("W"));
    bar->setCursorPosition(0);
    QVERIFY(bar->inputMethodQuery(Qt::ImCursorRectangle).toRect().left()
            >= button->geometry().right() - TestEnvironment::scaled(2));

    // The pointer shows an arrow over the button, the text cursor over the text.
    QCOMPARE(bar->childAt(button->geometry().center()), button);
    QCOMPARE(button->cursor().shape(), Qt::ArrowCursor);
    QCOMPARE(bar->cursor().shape(), Qt::IBeamCursor);
}

void TestFilterBar::keywordIsReportedOnReturnOnly()
{
    auto* bar = new OrvaFilterBar;
    auto window = showFocused(bar);
    QTRY_VERIFY(bar->hasFocus());
    QSignalSpy keyword(bar, &OrvaFilterBar::sigKeywordChanged);
    QVERIFY(keyword.isValid());

    QTest::keyClicks(bar, QStringLiteral("report"));
    QCOMPARE(keyword.count(), 0);
    QTest::keyClick(bar, Qt::Key_Return);
    QTest::keyClick(bar, Qt::Key_Return);
    // An empty field reports an empty keyword: the host shows everything again.
    bar->selectAll();
    QTest::keyClick(bar, Qt::Key_Delete);
    QTest::keyClick(bar, Qt::Key_Return);
    QCOMPARE(keyword.count(), 3);
    QCOMPARE(keyword.at(0).at(0).toString(), QStringLiteral("report"));
    QCOMPARE(keyword.at(1).at(0).toString(), QStringLiteral("report"));
    QCOMPARE(keyword.at(2).at(0).toString(), QString());
}

void TestFilterBar::downOpensTheMenuAndNeverMovesTheCursor()
{
    auto* bar = new OrvaFilterBar;
    QMenu menu;
    menu.addAction(QStringLiteral("By name"));
    QAction* bySize = menu.addAction(QStringLiteral("By size"));
    bar->setMenu(&menu);
    auto window = showFocused(bar);
    QTRY_VERIFY(bar->hasFocus());
    QTest::keyClicks(bar, QStringLiteral("alp"));
    bar->setCursorPosition(1);

    // A click on the search button opens the menu and leaves the focus in the text.
    auto* button = bar->findChild<OrvaIconButton*>();
    QWidget* popup = runMenu([button]() { QTest::mouseClick(button, Qt::LeftButton); },
                             [](QWidget* up) { QTest::keyClick(up, Qt::Key_Escape); });
    QCOMPARE(popup, &menu);
    QTRY_VERIFY(bar->hasFocus());

    // So does Down: the user picks the second option with the keyboard.
    QSignalSpy triggered(&menu, &QMenu::triggered);
    popup = runMenu([bar]() { QTest::keyClick(bar, Qt::Key_Down); },
                    [](QWidget* up) {
                        QTest::keyClick(up, Qt::Key_Down);
                        QTest::keyClick(up, Qt::Key_Down);
                        QTest::keyClick(up, Qt::Key_Return);
                    });
    QCOMPARE(popup, &menu);
    QCOMPARE(triggered.count(), 1);
    QCOMPARE(triggered.at(0).at(0).value<QAction*>(), bySize);
    QCOMPARE(bar->text(), QStringLiteral("alp"));
    QCOMPARE(bar->cursorPosition(), 1);

    // Without a menu Down does nothing at all, not even open the completer
    // that it opens in a plain field.
    bar->setMenu(nullptr);
    bar->setCompleter(new QCompleter(QStringList{QStringLiteral("alpha"), QStringLiteral("alphabet")}, bar));
    QTest::keyClick(bar, Qt::Key_Down);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(bar->text(), QStringLiteral("alp"));
    QCOMPARE(bar->cursorPosition(), 1);
    // The completer is live: typing opens it.
    bar->end(false);
    QTest::keyClick(bar, Qt::Key_H);
    QTRY_VERIFY(bar->completer()->popup()->isVisible());
    bar->completer()->popup()->hide();
}

void TestFilterBar::comboFillsItsTemplateAndPicksFromItsPopup()
{
    // The theme's template gets no padding and no border.
    const QString raw = getStyleSheet("component.combobox", false);
    QVERIFY(raw.contains(QLatin1String("%1")) && raw.contains(QLatin1String("%2")));
    auto* box = new OrvaComboBox;
    QCOMPARE(box->styleSheet(), raw.arg(QString(), QStringLiteral("border: none;"))
                                    + getStyleSheet("component.scrollbar", false));
    // Qt's own popup delegate would ignore the sheet's item rules.
    QVERIFY(qobject_cast<QStyledItemDelegate*>(box->view()->itemDelegate()));

    box->addItems({QStringLiteral("Newest first"), QStringLiteral("Oldest first"), QStringLiteral("By name")});
    auto window = showFocused(box);
    QSignalSpy activated(box, qOverload<int>(&QComboBox::activated));
    QVERIFY(activated.isValid());
    QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, box->rect().center());
    QTRY_VERIFY(box->view()->isVisible());
    QTest::keyClick(box->view(), Qt::Key_Down);
    QTest::keyClick(box->view(), Qt::Key_Down);
    QTest::keyClick(box->view(), Qt::Key_Return);
    QTRY_VERIFY(!box->view()->isVisible());
    QCOMPARE(box->currentText(), QStringLiteral("By name"));
    QCOMPARE(activated.count(), 1);
}

ORVACAT_TEST_MAIN(TestFilterBar)
#include "tst_filterbar.moc"
