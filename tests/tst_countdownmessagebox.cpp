// The self-answering countdown box, and the two filters that make a widget
// deaf to mouse buttons.

#include "testmain.h"
#include "testenvironment.h"
#include "modalrun.h"

#include <orvacat/componentstrings.h>
#include <orvacat/mousefilters.h>
#include <orvacat/orvacountdownmessagebox.h>
#include <orvacat/stylemanager.h>

#include <QPushButton>
#include <QSignalSpy>
#include <QWheelEvent>

using namespace ModalRun;

namespace {

QString okCaption(int shown)
{
    return QStringLiteral("%1(%2)").arg(ComponentStrings::getInstance()->getString(QStringLiteral("ok"))).arg(shown);
}

/** Counts the events of some types that reach the widget it watches. */
class EventCounter : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        counts[event->type()] += 1;
        return QObject::eventFilter(watched, event);
    }

    QHash<int, int> counts;
};

} // namespace

class TestCountdownMessageBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void constructionShowsFullCount_data();
    void constructionShowsFullCount();
    void clicksOkWhenCountRunsOut_data();
    void clicksOkWhenCountRunsOut();
    void userAnswersFirst_data();
    void userAnswersFirst();
    void answeredBoxDoesNotAnswerAgain();

    void releaseFilterKeepsClicksFromCompleting();
    void buttonFilterSwallowsPressesAndDoubleClicks();
    void buttonFilterLetsKeyboardMovesAndWheelsPass();
};

void TestCountdownMessageBox::initTestCase()
{
    TestEnvironment::installDefaultTheme();
}

void TestCountdownMessageBox::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestCountdownMessageBox::constructionShowsFullCount_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("shown");
    QTest::newRow("zero") << 0 << 0;
    QTest::newRow("three") << 3 << 3;
    QTest::newRow("negative counts as zero") << -4 << 0;
}

void TestCountdownMessageBox::constructionShowsFullCount()
{
    QFETCH(int, seconds);
    QFETCH(int, shown);
    OrvaCountdownMessageBox box(seconds, nullptr);
    QCOMPARE(box.button(QMessageBox::Ok)->text(), okCaption(shown));
    QCOMPARE(box.button(QMessageBox::Discard)->text(), ComponentStrings::getInstance()->getString(QStringLiteral("cancel")));
    QCOMPARE(box.defaultButton(), box.button(QMessageBox::Ok));
    QCOMPARE(box.styleSheet(), getStyleSheet("component.info_message_box", false));
    QCOMPARE(box.button(QMessageBox::Ok)->styleSheet(), getStyleSheet("component.apply_button", false));
    QCOMPARE(box.button(QMessageBox::Discard)->styleSheet(), getStyleSheet("component.cancel_button", false));
}

void TestCountdownMessageBox::clicksOkWhenCountRunsOut_data()
{
    QTest::addColumn<int>("seconds");
    QTest::newRow("0 s") << 0;
    QTest::newRow("1 s") << 1;
    QTest::newRow("2 s") << 2;
    QTest::newRow("-1 s") << -1;
}

void TestCountdownMessageBox::clicksOkWhenCountRunsOut()
{
    QFETCH(int, seconds);
    OrvaCountdownMessageBox box(seconds, nullptr);
    box.setText(QStringLiteral("Restarting"));
    QStringList captions;
    auto* okButton = box.button(QMessageBox::Ok);
    // Every caption the user gets to see, in order.
    QObject watcher;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &watcher, [&]() {
        const QString text = okButton->text();
        if (captions.isEmpty() || captions.last() != text)
            captions << text;
    });
    poll.start(20);
    QSignalSpy clicked(okButton, &QAbstractButton::clicked);
    Watchdog watchdog([&]() { box.done(-1); });
    QCOMPARE(box.exec(), int(QMessageBox::Ok));
    QVERIFY(!watchdog.fired);
    QCOMPARE(clicked.count(), 1);

    QStringList expected;
    for (int shown = qMax(0, seconds - 1); shown >= 0; --shown)
        expected << okCaption(shown);
    QCOMPARE(captions, expected);
}

void TestCountdownMessageBox::userAnswersFirst_data()
{
    QTest::addColumn<int>("button");
    QTest::newRow("cancel") << int(QMessageBox::Discard);
    QTest::newRow("ok") << int(QMessageBox::Ok);
}

void TestCountdownMessageBox::userAnswersFirst()
{
    QFETCH(int, button);
    OrvaCountdownMessageBox box(2, nullptr);
    QString captionWhenClicked;
    whenRunning([&]() {
        captionWhenClicked = box.button(QMessageBox::Ok)->text();
        QTest::mouseClick(box.button(QMessageBox::StandardButton(button)), Qt::LeftButton);
    });
    Watchdog watchdog([&]() { box.done(-1); });
    QCOMPARE(box.exec(), button);
    QVERIFY(!watchdog.fired);
    QCOMPARE(captionWhenClicked, okCaption(1));
}

void TestCountdownMessageBox::answeredBoxDoesNotAnswerAgain()
{
    // Answered by the count at once; the timer still fires a second later
    // and must leave the kept box alone.
    OrvaCountdownMessageBox box(0, nullptr);
    QSignalSpy finished(&box, &QDialog::finished);
    Watchdog watchdog([&]() { box.done(-1); });
    QCOMPARE(box.exec(), int(QMessageBox::Ok));
    QVERIFY(!watchdog.fired);
    QTest::qWait(1300);
    QCOMPARE(finished.count(), 1);
    QVERIFY(!box.isVisible());
}

void TestCountdownMessageBox::releaseFilterKeepsClicksFromCompleting()
{
    QPushButton button(QStringLiteral("Busy"));
    MouseReleaseFilter filter;
    button.installEventFilter(&filter);
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QSignalSpy clicked(&button, &QAbstractButton::clicked);

    QTest::mousePress(&button, Qt::LeftButton);
    QVERIFY(button.isDown());
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(clicked.count(), 0);
    QVERIFY(button.isDown());

    button.removeEventFilter(&filter);
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
}

void TestCountdownMessageBox::buttonFilterSwallowsPressesAndDoubleClicks()
{
    QPushButton button(QStringLiteral("Busy"));
    // Filters installed later run first: the counter sees what the filter
    // lets through.
    EventCounter behind;
    button.installEventFilter(&behind);
    MouseButtonFilter filter;
    button.installEventFilter(&filter);
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QSignalSpy clicked(&button, &QAbstractButton::clicked);

    QTest::mouseClick(&button, Qt::LeftButton);
    QTest::mouseDClick(&button, Qt::LeftButton);
    QCOMPARE(clicked.count(), 0);
    QVERIFY(!button.isDown());
    QCOMPARE(behind.counts.value(QEvent::MouseButtonPress), 0);
    QCOMPARE(behind.counts.value(QEvent::MouseButtonRelease), 0);
    QCOMPARE(behind.counts.value(QEvent::MouseButtonDblClick), 0);

    QTest::keyClick(&button, Qt::Key_Space);
    QCOMPARE(clicked.count(), 1);
}

void TestCountdownMessageBox::buttonFilterLetsKeyboardMovesAndWheelsPass()
{
    MouseButtonFilter buttons;
    MouseReleaseFilter releases;
    QObject target;
    QMouseEvent move(QEvent::MouseMove, QPointF(2, 2), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QWheelEvent wheel(QPointF(2, 2), QPointF(2, 2), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(2, 2), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(2, 2), Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QMouseEvent dbl(QEvent::MouseButtonDblClick, QPointF(2, 2), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);

    QVERIFY(!buttons.eventFilter(&target, &move));
    QVERIFY(!buttons.eventFilter(&target, &wheel));
    QVERIFY(!buttons.eventFilter(&target, &key));
    QVERIFY(buttons.eventFilter(&target, &press));
    QVERIFY(buttons.eventFilter(&target, &release));
    QVERIFY(buttons.eventFilter(&target, &dbl));

    QVERIFY(!releases.eventFilter(&target, &move));
    QVERIFY(!releases.eventFilter(&target, &press));
    QVERIFY(!releases.eventFilter(&target, &dbl));
    QVERIFY(releases.eventFilter(&target, &release));
}

ORVACAT_TEST_MAIN(TestCountdownMessageBox)

#include "tst_countdownmessagebox.moc"
