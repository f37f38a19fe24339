// The filter bar and the combo box, typed into and clicked as a user would.

#include "testenvironment.h"
#include "testmain.h"

#include <orvacat/orvacat.h>

#include <QCompleter>
#include <QItemDelegate>
#include <QMenu>
#include <QPointer>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QVBoxLayout>

#include <functional>
#include <memory>

namespace {

OrvaIconButton* searchButtonOf(OrvaFilterBar* bar)
{
    return bar->findChild<OrvaIconButton*>();
}

/** A window holding @p field, shown and active, with the field focused. */
std::unique_ptr<QWidget> showFocused(QWidget* field)
{
    std::unique_ptr<QWidget> window(new QWidget);
    auto* layout = new QVBoxLayout(window.get());
    layout->addWidget(field);
    window->resize(TestEnvironment::scaled(320), TestEnvironment::scaled(120));
    window->show();
    if (!QTest::qWaitForWindowActive(window.get()))
        return window;
    field->setFocus();
    return window;
}

/**
 * Runs @p whileOpen once a popup is up, from inside the nested event loop
 * that opened it. A watchdog closes any popup left open so a failure cannot
 * hang the suite.
 */
class PopupWatcher : public QObject
{
public:
    explicit PopupWatcher(std::function<void(QWidget*)> whileOpen)
        : m_whileOpen(std::move(whileOpen))
    {
        connect(&m_poll, &QTimer::timeout, this, [this] {
            if (QWidget* popup = QApplication::activePopupWidget()) {
                m_poll.stop();
                m_seen = popup;
                m_whileOpen(popup);
            }
        });
        connect(&m_watchdog, &QTimer::timeout, this, [] {
            while (QWidget* popup = QApplication::activePopupWidget())
                popup->close();
        });
        m_poll.start(10);
        m_watchdog.setSingleShot(true);
        m_watchdog.start(5000);
    }

    QWidget* seen() const { return m_seen; }

private:
    std::function<void(QWidget*)> m_whileOpen;
    QTimer m_poll;
    QTimer m_watchdog;
    QPointer<QWidget> m_seen;
};

/** Counts the Down keys that reach the object it filters. */
class KeyRecorder : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Down)
            ++downKeys;
        return QObject::eventFilter(watched, event);
    }

    int downKeys = 0;
};

} // namespace

class TestFilterBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void searchButtonSitsInsideTheField();
    void keywordIsReportedOnReturnOnly();
    void downOpensTheSearchMenu();
    void clickingTheSearchButtonOpensTheMenu();
    void otherKeysReachTheFieldAndDownIsConsumed();
    void droppedOrDeletedMenuIsSurvived();

    void comboIsStyled();
    void comboPicksAnItemFromItsPopup();
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
    OrvaIconButton* button = searchButtonOf(bar);
    QVERIFY(button);
    QCOMPARE(button->geometry(), QRect(TestEnvironment::scaled(4), TestEnvironment::scaled(2),
                                       TestEnvironment::scaled(34), TestEnvironment::scaled(24)));
    QCOMPARE(bar->height(), TestEnvironment::scaled(28));

    // The typed text starts right of the button.
    QTest::keyClicks(bar, QStringLiteral("W"));
    bar->setCursorPosition(0);
    const QRect cursorAtStart = bar->inputMethodQuery(Qt::ImCursorRectangle).toRect();
    QVERIFY2(cursorAtStart.left() >= button->geometry().right() - TestEnvironment::scaled(2),
             qPrintable(QStringLiteral("%1 vs %2").arg(cursorAtStart.left()).arg(button->geometry().right())));

    // What the pointer finds under it: an arrow on the button at the left end, the text cursor after it.
    QCOMPARE(button->cursor().shape(), Qt::ArrowCursor);
    QCOMPARE(bar->cursor().shape(), Qt::IBeamCursor);
    QCOMPARE(bar->childAt(button->geometry().center()), button);
    QCOMPARE(bar->childAt(QPoint(bar->width() - TestEnvironment::scaled(20), bar->height() / 2)), nullptr);
}

void TestFilterBar::keywordIsReportedOnReturnOnly()
{
    auto* bar = new OrvaFilterBar;
    auto window = showFocused(bar);
    QVERIFY(bar->hasFocus());
    QSignalSpy keyword(bar, &OrvaFilterBar::sigKeywordChanged);
    QVERIFY(keyword.isValid());

    QTest::keyClicks(bar, QStringLiteral("report"));
    QCOMPARE(keyword.count(), 0);
    // Return twice reports twice.
    QTest::keyClick(bar, Qt::Key_Return);
    QTest::keyClick(bar, Qt::Key_Return);
    QCOMPARE(keyword.count(), 2);
    QCOMPARE(keyword.at(0).at(0).toString(), QStringLiteral("report"));
    QCOMPARE(keyword.at(1).at(0).toString(), QStringLiteral("report"));

    // The keypad's Enter counts as Return.
    QTest::keyClick(bar, Qt::Key_Backspace);
    QTest::keyClick(bar, Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(keyword.count(), 3);
    QCOMPARE(keyword.at(2).at(0).toString(), QStringLiteral("repor"));

    // An empty field reports an empty keyword: the host shows everything again.
    bar->selectAll();
    QTest::keyClick(bar, Qt::Key_Delete);
    QTest::keyClick(bar, Qt::Key_Return);
    QCOMPARE(keyword.count(), 4);
    QCOMPARE(keyword.at(3).at(0).toString(), QString());
}

void TestFilterBar::downOpensTheSearchMenu()
{
    auto* bar = new OrvaFilterBar;
    QMenu menu;
    menu.addAction(QStringLiteral("By name"));
    QAction* bySize = menu.addAction(QStringLiteral("By size"));
    bar->setMenu(&menu);
    auto window = showFocused(bar);
    QTest::keyClicks(bar, QStringLiteral("abc"));
    bar->setCursorPosition(1);
    QSignalSpy triggered(&menu, &QMenu::triggered);

    // Pick the second option with the keyboard while the menu is up.
    PopupWatcher watcher([](QWidget* popup) {
        QTest::keyClick(popup, Qt::Key_Down);
        QTest::keyClick(popup, Qt::Key_Down);
        QTest::keyClick(popup, Qt::Key_Return);
    });
    QTest::keyClick(bar, Qt::Key_Down);
    QTRY_VERIFY(watcher.seen() || !triggered.isEmpty());
    QTRY_COMPARE(triggered.count(), 1);
    QCOMPARE(watcher.seen(), &menu);
    QCOMPARE(triggered.at(0).at(0).value<QAction*>(), bySize);
    QTRY_VERIFY(!menu.isVisible());

    // The Down key never reached the field.
    QCOMPARE(bar->text(), QStringLiteral("abc"));
    QCOMPARE(bar->cursorPosition(), 1);
}

void TestFilterBar::clickingTheSearchButtonOpensTheMenu()
{
    auto* bar = new OrvaFilterBar;
    QMenu menu;
    menu.addAction(QStringLiteral("Everywhere"));
    bar->setMenu(&menu);
    auto window = showFocused(bar);
    OrvaIconButton* button = searchButtonOf(bar);

    PopupWatcher watcher([](QWidget* popup) { QTest::keyClick(popup, Qt::Key_Escape); });
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
    QTRY_VERIFY(watcher.seen());
    QCOMPARE(watcher.seen(), &menu);
    QTRY_VERIFY(!menu.isVisible());
    // The button takes no focus away from the text (it comes back once the popup is gone).
    QVERIFY(QApplication::focusWidget() != button);
    QTRY_VERIFY(bar->hasFocus());
}

void TestFilterBar::otherKeysReachTheFieldAndDownIsConsumed()
{
    auto* bar = new OrvaFilterBar;
    auto window = showFocused(bar);
    QTest::keyClicks(bar, QStringLiteral("fiter"));
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(bar, Qt::Key_Left);
    QTest::keyClicks(bar, QStringLiteral("l"));
    QTest::keyClick(bar, Qt::Key_Home);
    QTest::keyClick(bar, Qt::Key_Up); // only Down is the bar's own
    QCOMPARE(bar->text(), QStringLiteral("filter"));
    QCOMPARE(bar->cursorPosition(), 0);

    // Without a menu, Down does nothing at all.
    bar->setCursorPosition(2);
    QTest::keyClick(bar, Qt::Key_Down);
    QCOMPARE(bar->text(), QStringLiteral("filter"));
    QCOMPARE(bar->cursorPosition(), 2);
    QVERIFY(!QApplication::activePopupWidget());

    // A completer would open its list on Down in a plain field; not here.
    auto* completer = new QCompleter(QStringList{QStringLiteral("alpha"), QStringLiteral("alphabet")}, bar);
    bar->setCompleter(completer);
    bar->setText(QStringLiteral("alp"));
    QTest::keyClick(bar, Qt::Key_Down);
    QVERIFY(!completer->popup()->isVisible());
    QCOMPARE(bar->text(), QStringLiteral("alp"));

    // Consumed: the key does not travel on to the window, as it does from a plain field.
    KeyRecorder recorder;
    window->installEventFilter(&recorder);
    QTest::keyClick(bar, Qt::Key_Down);
    QCOMPARE(recorder.downKeys, 0);
    auto* control = new QLineEdit(window.get());
    control->show();
    control->setFocus();
    QTRY_VERIFY(control->hasFocus());
    QTest::keyClick(control, Qt::Key_Down);
    QCOMPARE(recorder.downKeys, 1);
}

void TestFilterBar::droppedOrDeletedMenuIsSurvived()
{
    auto* bar = new OrvaFilterBar;
    auto window = showFocused(bar);
    QTest::keyClicks(bar, QStringLiteral("xyz"));

    auto* menu = new QMenu;
    menu->addAction(QStringLiteral("Option"));
    bar->setMenu(menu);
    bar->setMenu(nullptr);
    QTest::keyClick(bar, Qt::Key_Down);
    QVERIFY(!QApplication::activePopupWidget());

    bar->setMenu(menu);
    delete menu; // the host's, gone without telling the bar
    QTest::keyClick(bar, Qt::Key_Down);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(bar->text(), QStringLiteral("xyz"));
    QCOMPARE(bar->cursorPosition(), 3);
}

void TestFilterBar::comboIsStyled()
{
    const QString raw = getStyleSheet("component.combobox", false);
    QVERIFY2(raw.contains(QLatin1String("%1")) && raw.contains(QLatin1String("%2")),
             "the theme's combo box sheet is a template with %1 and %2");
    QString expected = raw;
    expected.replace(QLatin1String("%1"), QString());
    expected.replace(QLatin1String("%2"), QLatin1String("border: none;"));
    expected += getStyleSheet("component.scrollbar", false);

    QPointer<QAbstractItemDelegate> delegate;
    {
        OrvaComboBox box;
        QCOMPARE(box.styleSheet(), expected);
        // Qt's own combo delegate is an item delegate, which ignores the style sheet's item rules.
        delegate = box.view()->itemDelegate();
        QVERIFY(qobject_cast<QStyledItemDelegate*>(delegate));
        QVERIFY(!qobject_cast<QItemDelegate*>(delegate));
    }
    // It goes with the box.
    QVERIFY(delegate.isNull());
}

void TestFilterBar::comboPicksAnItemFromItsPopup()
{
    auto* box = new OrvaComboBox;
    box->addItems({QStringLiteral("Newest first"), QStringLiteral("Oldest first"), QStringLiteral("By name")});
    auto window = showFocused(box);
    QSignalSpy activated(box, qOverload<int>(&QComboBox::activated));

    QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, box->rect().center());
    QTRY_VERIFY(box->view()->isVisible());
    QTest::keyClick(box->view(), Qt::Key_Down);
    QTest::keyClick(box->view(), Qt::Key_Down);
    QTest::keyClick(box->view(), Qt::Key_Return);
    QTRY_VERIFY(!box->view()->isVisible());
    QCOMPARE(box->currentIndex(), 2);
    QCOMPARE(box->currentText(), QStringLiteral("By name"));
    QCOMPARE(activated.count(), 1);
}

ORVACAT_TEST_MAIN(TestFilterBar)
#include "tst_filterbar.moc"
