// What every modal message of the toolkit promises, whatever its kind: keys
// and clicks answer it, the first answer wins, tearing it down mid-run ends
// the run, the window cannot be closed under it (on X11 it loses its close
// button too), nested runs answer in order, the focus stays inside and comes
// back, and assistive technology hears of it as of a modal dialog.

#include "testmain.h"
#include "testenvironment.h"
#include "modalrun.h"
#include "motifhints.h"

#include <orvacat/messagehelpers.h>
#include <orvacat/orvacountdownmessagebox.h>
#include <orvacat/orvainputsheet.h>
#include <orvacat/orvamask.h>
#include <orvacat/orvamessagesheet.h>

#include <QAccessible>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QWindow>

#include <algorithm>
#include <memory>

using namespace ModalRun;

namespace {

constexpr int Ok = QMessageBox::Ok;
constexpr int Cancel = QMessageBox::Discard;

enum Kind { MessageSheet, InputSheet, HelperSheet, CountdownBox };
/** What is done once the keys are pressed. */
enum Action { None, ClickOk, ClickCancel, AnswerTwice, DeleteIt, DeleteWindow };
const char* const kindNames[] = {"message sheet", "input sheet", "helper sheet", "countdown box"};

bool onX11()
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

/** Whether the window manager may offer "close" for @p window. */
bool allowsClose(QWidget* window)
{
    return MotifHintsReader::readMotifHints(window->windowHandle()->winId()).allowsClose();
}

/**
 * One modal message of a kind over a host window: a sheet laid over a mask,
 * the confirm helper's sheet face, or a countdown box too long to answer
 * itself during a test.
 */
class Modal
{
public:
    Modal(Kind kind, QWidget* window)
        : m_window(window)
    {
        if (kind == MessageSheet)
            m_own = new OrvaMessageSheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Go?"), QStringLiteral("Details"), window);
        else if (kind == InputSheet)
            m_own = new OrvaInputSheet(QStringLiteral("Name"), window);
        else if (kind == CountdownBox) {
            auto* box = new OrvaCountdownMessageBox(600, window);
            box->setIcon(QMessageBox::Question);
            box->setText(QStringLiteral("Wait?"));
            m_own = box;
        }
        if (kind == MessageSheet || kind == InputSheet)
            OrvaMask::createMask(m_own, window, QColor(0, 0, 0, 20));
    }
    ~Modal() { delete m_own.data(); }

    /** The sheet or box; the helper's only while it is up (the newest, when they nest). */
    QWidget* widget() const
    {
        QWidget* newest = m_own;
        for (OrvaMessageSheet* sheet : m_own || !m_window ? QList<OrvaMessageSheet*>() : m_window->findChildren<OrvaMessageSheet*>())
            newest = sheet->isVisible() ? sheet : newest;
        return newest;
    }
    /** Where the user's keys and close requests arrive: the host window, or the box's own. */
    QWidget* window() const { return qobject_cast<QMessageBox*>(m_own) ? m_own.data() : m_window.data(); }
    int exec()
    {
        if (auto* sheet = qobject_cast<OrvaMessageSheet*>(m_own))
            return sheet->exec();
        if (auto* sheet = qobject_cast<OrvaInputSheet*>(m_own))
            return sheet->exec();
        if (auto* box = qobject_cast<QMessageBox*>(m_own))
            return box->exec();
        return showConfirmMsg(QStringLiteral("Title"), QStringLiteral("Sure?"), m_window);
    }
    void done(int result)
    {
        if (QWidget* target = widget())
            QMetaObject::invokeMethod(target, "done", Q_ARG(int, result));
    }
    void press(Qt::Key key) { QTest::keyClick(window(), key); }
    void click(int which)
    {
        QAbstractButton* button = widget()->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::StandardButton(which));
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
    }
    /** A run with @p action queued into its loop and a watchdog that ends it. */
    int run(std::function<void()> action)
    {
        return ModalRun::run([this]() { return exec(); }, std::move(action), [this]() { done(0); });
    }

private:
    QPointer<QWidget> m_window;
    QPointer<QWidget> m_own;
};

/** Remembers the keys that reach the object it watches. */
class KeyRecorder : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress)
            keys << static_cast<QKeyEvent*>(event)->key();
        return QObject::eventFilter(watched, event);
    }
    QList<int> keys;
};

/** An accessibility event: what happened to which object, and the object while it lives. */
struct AccessibilityEvent
{
    QAccessible::Event type;
    const QObject* object;
    QPointer<QObject> living;
};
/** The events sent while accessibility is active. */
QList<AccessibilityEvent> accessibilityEvents;

void recordAccessibilityEvent(QAccessibleEvent* event)
{
    accessibilityEvents.append({event->type(), event->object(), event->object()});
}

} // namespace

class TestSheetContract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void answers_data();
    void answers();
    void windowBlockedUntilLastRunEnds_data();
    void windowBlockedUntilLastRunEnds();
    void focusStaysInside_data();
    void focusStaysInside();
    void dismissedSheetStillEnds_data();
    void dismissedSheetStillEnds();
    void announcedAsModalDialogs();

private:
    QWidget* m_window = nullptr;
};

void TestSheetContract::initTestCase()
{
    TestEnvironment::installDefaultTheme();
    QAccessible::installUpdateHandler(recordAccessibilityEvent);
    if (onX11() && QStandardPaths::findExecutable(QStringLiteral("xprop")).isEmpty())
        QSKIP("Reading the close button under X11 needs xprop");
}

void TestSheetContract::init()
{
    m_window = new QWidget;
    m_window->setObjectName(QStringLiteral("window"));
    m_window->resize(TestEnvironment::scaled(900), TestEnvironment::scaled(600));
    m_window->show();
    // Not judged active: under a bare X server no window manager activates it.
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
}

void TestSheetContract::cleanup()
{
    delete m_window;
    m_window = nullptr;
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestSheetContract::answers_data()
{
    // The keys pressed at the window (all but the last leave the run going),
    // then what the user or the host does; what exec() returns.
    QTest::addColumn<int>("kind");
    QTest::addColumn<QList<int>>("keys");
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("expected");
    for (Kind kind : {MessageSheet, InputSheet, HelperSheet, CountdownBox}) {
        const QByteArray name(kindNames[kind]);
        // The box has no escape button, and Space is its focused button's business.
        const QList<int> thenReturn = kind == CountdownBox ? QList<int>{Qt::Key_Return} : QList<int>();
        QTest::newRow(name + ", return") << int(kind) << QList<int>{Qt::Key_Return} << int(None) << Ok;
        QTest::newRow(name + ", enter") << int(kind) << QList<int>{Qt::Key_Enter} << int(None) << Ok;
        QTest::newRow(name + ", space") << int(kind) << (QList<int>{Qt::Key_Space} + thenReturn) << int(None) << Ok;
        QTest::newRow(name + ", escape") << int(kind) << (QList<int>{Qt::Key_Escape} + thenReturn) << int(None)
                                         << (thenReturn.isEmpty() ? Cancel : Ok);
        QTest::newRow(name + ", other keys swallowed")
            << int(kind) << QList<int>{Qt::Key_A, Qt::Key_Down, Qt::Key_F1, Qt::Key_Return} << int(None) << Ok;
        QTest::newRow(name + ", click ok") << int(kind) << QList<int>() << int(ClickOk) << Ok;
        QTest::newRow(name + ", click cancel") << int(kind) << QList<int>() << int(ClickCancel) << Cancel;
        QTest::newRow(name + ", first answer wins") << int(kind) << QList<int>() << int(AnswerTwice) << Ok;
        QTest::newRow(name + " deleted") << int(kind) << QList<int>() << int(DeleteIt) << 0;
        QTest::newRow(name + ", window destroyed") << int(kind) << QList<int>() << int(DeleteWindow) << 0;
    }
}

void TestSheetContract::answers()
{
    QFETCH(int, kind);
    QFETCH(QList<int>, keys);
    QFETCH(int, action);
    QFETCH(int, expected);
    // Installed before the sheet's own filter, the recorder sees only the
    // keys that the sheet lets through to the window.
    KeyRecorder recorder;
    m_window->installEventFilter(&recorder);
    QPointer<QWidget> window = m_window;
    Modal modal(Kind(kind), m_window);
    std::unique_ptr<QSignalSpy> finished;
    QPointer<QWidget> shown;
    bool upUntilLast = true;
    QCOMPARE(modal.run([&]() {
                 shown = modal.widget();
                 finished.reset(new QSignalSpy(shown, SIGNAL(finished(int))));
                 for (int key : keys) {
                     QCoreApplication::processEvents();
                     upUntilLast = upUntilLast && shown && shown->isVisible() && finished->isEmpty();
                     modal.press(Qt::Key(key));
                 }
                 if (action == ClickOk || action == ClickCancel)
                     modal.click(action == ClickOk ? Ok : Cancel);
                 if (action == AnswerTwice) {
                     // A second run of a running sheet answers 0 at once and ends nothing.
                     upUntilLast = (kind == HelperSheet || modal.exec() == 0) && shown->isVisible();
                     modal.done(Ok);
                     modal.done(Cancel);
                 }
                 if (action == DeleteIt)
                     shown->deleteLater();
                 if (action == DeleteWindow)
                     delete window.data();
             }),
             expected);
    QVERIFY(upUntilLast);
    QVERIFY(finished && finished->isValid());
    // Torn down, it reports nothing; answered, it reports its answer once.
    QCOMPARE(finished->count(), expected ? 1 : 0);
    QCOMPARE(finished->value(0).value(0, expected).toInt(), expected);
    QVERIFY(action < DeleteIt ? !shown || !shown->isVisible() : shown.isNull());
    QCOMPARE(recorder.keys, QList<int>());
    QCOMPARE(window.isNull(), action == DeleteWindow);
    // A window that lives on is free to close.
    QVERIFY(!window || window->close());
    m_window = window;
}

void TestSheetContract::windowBlockedUntilLastRunEnds_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("x11");
    for (Kind kind : {MessageSheet, InputSheet, HelperSheet, CountdownBox}) {
        QTest::newRow(kindNames[kind]) << int(kind) << false;
        // The box is a window of its own: the host's close button is not its business.
        if (kind != CountdownBox)
            QTest::newRow(QByteArray(kindNames[kind]) + ", X11 close button") << int(kind) << true;
    }
}

void TestSheetContract::windowBlockedUntilLastRunEnds()
{
    QFETCH(int, kind);
    QFETCH(bool, x11);
    if (x11 && !onX11())
        QSKIP("Reads the close button from an X server: runs under xvfb-run on xcb");
    QVERIFY(!x11 || allowsClose(m_window));
    // Blocked: a close request is refused, and under X11 no close button is offered.
    const auto blocked = [x11](QWidget* window) {
        return !window->close() && window->isVisible() && (!x11 || !allowsClose(window));
    };
    Modal outer(Kind(kind), m_window);
    // Blocked during the outer run, during the inner one, and after it.
    int blockedTimes = 0;
    int innerResult = -1;
    std::unique_ptr<QSignalSpy> outerFinished;
    QCOMPARE(outer.run([&]() {
                 QPointer<QWidget> outerWidget = outer.widget();
                 outerFinished.reset(new QSignalSpy(outerWidget, SIGNAL(finished(int))));
                 blockedTimes += blocked(outer.window());
                 Modal inner(Kind(kind), m_window);
                 innerResult = inner.run([&]() {
                     blockedTimes += blocked(inner.window());
                     // The newest run takes the key.
                     inner.press(Qt::Key_Return);
                 });
                 blockedTimes += outerWidget->isVisible() && outerFinished->isEmpty() && blocked(outer.window());
                 outer.click(Cancel);
             }),
             Cancel);
    QCOMPARE(innerResult, Ok);
    QCOMPARE(blockedTimes, 3);
    QCOMPARE(outerFinished->count(), 1);
    // Free again once the last run ended.
    QVERIFY(!x11 || allowsClose(m_window));
    QVERIFY(m_window->close());
}

void TestSheetContract::focusStaysInside_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("stops");
    // Text, details, Ok, cancel; the field and the buttons; or the buttons alone.
    QTest::newRow(kindNames[MessageSheet]) << int(MessageSheet) << 4;
    QTest::newRow(kindNames[InputSheet]) << int(InputSheet) << 3;
    QTest::newRow(kindNames[HelperSheet]) << int(HelperSheet) << 3;
    QTest::newRow(kindNames[CountdownBox]) << int(CountdownBox) << 2;
}

void TestSheetContract::focusStaysInside()
{
    QFETCH(int, kind);
    QFETCH(int, stops);
    // Focusable neighbours on both sides of the sheet in the window's focus chain.
    (new QPushButton(QStringLiteral("Before"), m_window))->show();
    Modal modal(Kind(kind), m_window);
    (new QPushButton(QStringLiteral("After"), m_window))->show();
    QList<QWidget*> forward;
    QList<QWidget*> backward;
    bool allInside = true;
    bool iconless = true;
    QCOMPARE(modal.run([&]() {
                 // On X11 the desktop style would put a tick and a bin on Ok and cancel.
                 for (QAbstractButton* button : modal.widget()->findChildren<QAbstractButton*>())
                     iconless = iconless && button->icon().isNull();
                 // Keys go where the focus of the sheet's window is, as the user types them.
                 const auto step = [&](Qt::Key key, QList<QWidget*>& into, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
                     QWidget* window = modal.window();
                     QTest::keyClick(window->focusWidget() ? window->focusWidget() : window, key, modifiers);
                     into << window->focusWidget();
                     allInside = allInside && isInside(into.last(), modal.widget());
                 };
                 forward << modal.window()->focusWidget();
                 for (int i = 0; i < 2 * stops; ++i)
                     step(Qt::Key_Tab, forward);
                 backward << forward.last();
                 // Backward by Backtab and by Shift+Tab, as keyboards send it either way.
                 for (int i = 0; i < 2 * stops; ++i)
                     step(i % 2 ? Qt::Key_Backtab : Qt::Key_Tab, backward, i % 2 ? Qt::NoModifier : Qt::ShiftModifier);
                 modal.done(0);
             }),
             0);
    QVERIFY(allInside);
    QVERIFY(iconless);
    // Tab walks the stops round and round; Backtab walks them the other way.
    const QList<QWidget*> round = forward.mid(0, stops);
    QCOMPARE(QSet<QWidget*>(round.begin(), round.end()).size(), stops);
    for (int i = 0; i <= 2 * stops; ++i) {
        QCOMPARE(forward.at(i), round.at(i % stops));
        QCOMPARE(backward.at(i), round.at((2 * stops - i) % stops));
    }
}

void TestSheetContract::dismissedSheetStillEnds_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow(kindNames[MessageSheet]) << int(MessageSheet);
    QTest::newRow(kindNames[InputSheet]) << int(InputSheet);
}

void TestSheetContract::dismissedSheetStillEnds()
{
    QFETCH(int, kind);
    Modal modal(Kind(kind), m_window);
    QSignalSpy finished(modal.widget(), SIGNAL(finished(int)));
    QVERIFY(finished.isValid());
    // Never shown, and told to end all the same: it reports the end, once.
    modal.done(0);
    modal.done(Ok);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toInt(), 0);

    // Shown without a run and hidden by someone else before it is answered:
    // the answer must still free the window and its close button.
    for (bool byClose : {false, true}) {
        if (kind == MessageSheet)
            static_cast<OrvaMessageSheet*>(modal.widget())->showSheetWithBlock();
        else
            static_cast<OrvaInputSheet*>(modal.widget())->showSheet();
        QVERIFY(!m_window->close());
        QVERIFY(byClose ? modal.widget()->close() : (modal.widget()->hide(), true));
        modal.done(Ok);
        QCOMPARE(finished.count(), 2 + int(byClose));
        QCOMPARE(finished.last().at(0).toInt(), Ok);
        QVERIFY(!onX11() || allowsClose(m_window));
        QVERIFY(m_window->close());
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
    }
    // Not blocking, the sheet leaves the window its close button and its closing.
    if (auto* sheet = qobject_cast<OrvaMessageSheet*>(modal.widget())) {
        sheet->setBlockWindowButton(false);
        sheet->showSheetWithBlock();
        QVERIFY(!onX11() || allowsClose(m_window));
        QVERIFY(m_window->close());
        sheet->done(0);
    }
}

void TestSheetContract::announcedAsModalDialogs()
{
    // Qt sends accessibility events only while assistive technology listens:
    // the suite's AT-SPI registration checks them too.
    const bool listening = qEnvironmentVariableIsSet("QT_LINUX_ACCESSIBILITY_ALWAYS_ON");
    QVERIFY2(!listening || QTest::qWaitFor([]() { return QAccessible::isActive(); }, 5000), "No AT-SPI bus to talk to");
    // The window's first widget, and the one the user was in.
    (new QPushButton(QStringLiteral("First"), m_window))->show();
    auto* behind = new QPushButton(QStringLiteral("Behind"), m_window);
    behind->move(0, TestEnvironment::scaled(40));
    behind->show();
    QSignalSpy pressedBehind(behind, &QAbstractButton::clicked);
    QVERIFY(pressedBehind.isValid());
    // One the host disabled stays so.
    auto* off = new QPushButton(QStringLiteral("Off"), m_window);
    off->setEnabled(false);
    off->show();
    struct Expected
    {
        Kind kind;
        QAccessible::Role role;
        QString name;
        QString description;
    };
    const QList<Expected> all{{MessageSheet, QAccessible::AlertMessage, "Go?", "Go?\nDetails"},
                              {InputSheet, QAccessible::Dialog, "Name", "Name"},
                              {HelperSheet, QAccessible::AlertMessage, "Title", "Sure?"},
                              {CountdownBox, QAccessible::AlertMessage, "Wait?", "Wait?"}};
    for (const Expected& expected : all) {
        for (Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
            const QString row = QString::fromLatin1(kindNames[expected.kind]) + (key == Qt::Key_Space ? ", space" : ", return");
            behind->setFocus();
            Modal modal(expected.kind, m_window);
            accessibilityEvents.clear();
            // Announced as a modal dialog; the focus is announced inside it.
            QStringList seen;
            QPointer<QWidget> shown;
            const QObject* announcedObject = nullptr;
            bool focusInside = false;
            QCOMPARE(modal.run([&]() {
                         shown = modal.widget();
                         announcedObject = shown;
                         QAccessibleInterface* sheet = QAccessible::queryAccessibleInterface(shown);
                         seen << row << QString::number(sheet->role()) << sheet->text(QAccessible::Name)
                              << sheet->text(QAccessible::Description) << QString::number(sheet->state().modal);
                         for (const AccessibilityEvent& event : accessibilityEvents) {
                             focusInside = focusInside
                                 || (event.type == QAccessible::Focus && isInside(qobject_cast<QWidget*>(event.living), shown));
                         }
                         // The mask is a nameless filler; behind it, the window is out of reach.
                         if (auto* mask = qobject_cast<OrvaMask*>(shown->parentWidget())) {
                             QAccessibleInterface* filler = QAccessible::queryAccessibleInterface(mask);
                             seen << QString::number(filler->role()) << filler->text(QAccessible::Name)
                                  << QString::number(!filler->actionInterface() && !filler->state().focusable);
                         }
                         QAccessibleInterface* button = QAccessible::queryAccessibleInterface(behind);
                         if (expected.kind != CountdownBox) {
                             seen << QString::number(button->state().disabled);
                             button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
                         }
                         // Tabbed to cancel, the user gets cancel from Space and Return alike.
                         QWidget* cancel = shown->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Discard);
                         for (int i = 0; i < 5 && modal.window()->focusWidget() != cancel; ++i)
                             QTest::keyClick(modal.window()->focusWidget(), Qt::Key_Tab);
                         QTest::keyClick(modal.window()->focusWidget(), key);
                     }),
                     Cancel);
            QStringList wanted{row, QString::number(expected.role), expected.name, expected.description, "1"};
            if (expected.kind != CountdownBox)
                wanted << QString::number(QAccessible::Client) << QString() << "1" << "1";
            QCOMPARE(seen, wanted);
            // The focus is back where the user left it, and so is the window.
            QCOMPARE(m_window->focusWidget(), behind);
            QVERIFY(behind->isEnabled() && !off->isEnabled());
            if (!listening)
                continue;
            // Started and ended as a dialog (an alert too, announced with the start in either order).
            QList<QAccessible::Event> announced;
            for (const AccessibilityEvent& event : accessibilityEvents) {
                const bool dialogEvent = event.type == QAccessible::DialogStart || event.type == QAccessible::DialogEnd
                    || event.type == QAccessible::Alert;
                if (event.object == announcedObject && dialogEvent)
                    announced << event.type;
            }
            QVERIFY2(!announced.isEmpty() && announced.last() == QAccessible::DialogEnd, qPrintable(row));
            std::sort(announced.begin(), announced.end());
            QList<QAccessible::Event> sequence{QAccessible::Alert, QAccessible::DialogStart, QAccessible::DialogEnd};
            if (expected.role != QAccessible::AlertMessage)
                sequence.removeAll(QAccessible::Alert);
            QCOMPARE(announced, sequence);
            // The box's own window is focused only once a window manager activates it.
            if (expected.kind == CountdownBox)
                continue;
            QVERIFY2(focusInside, qPrintable(row));
            QVERIFY(accessibilityEvents.last().type == QAccessible::Focus && accessibilityEvents.last().object == behind);
        }
    }
    QCOMPARE(pressedBehind.count(), 0);
}

ORVACAT_TEST_MAIN(TestSheetContract)

#include "tst_sheetcontract.moc"
