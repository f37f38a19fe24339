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

    void clicksOkWhenCountRunsOut_data();
    void clicksOkWhenCountRunsOut();
    void userAnswersFirst_data();
    void userAnswersFirst();

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

void TestCountdownMessageBox::clicksOkWhenCountRunsOut_data()
{
    QTest::addColumn<int>("seconds");
    QTest::newRow("0 s") << 0;
    QTest::newRow("1 s") << 1;
    QTest::newRow("2 s") << 2;
    QTest::newRow("negative counts as zero") << -4;
}

void TestCountdownMessageBox::clicksOkWhenCountRunsOut()
{
    QFETCH(int, seconds);
    OrvaCountdownMessageBox box(seconds, nullptr);
    box.setText(QStringLiteral("Restarting"));
    auto* okButton = box.button(QMessageBox::Ok);
    QCOMPARE(okButton->text(), okCaption(qMax(0, seconds)));
    QCOMPARE(box.defaultButton(), okButton);
    QCOMPARE(box.button(QMessageBox::Discard)->text(), ComponentStrings::getInstance()->getString(QStringLiteral("cancel")));
    QCOMPARE(box.styleSheet(), getStyleSheet("component.info_message_box", false));

    QStringList captions;
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
    QSignalSpy finished(&box, &QDialog::finished);
    QCOMPARE(run([&]() { return box.exec(); }, {}, [&]() { box.done(-1); }), int(QMessageBox::Ok));
    QCOMPARE(clicked.count(), 1);
    if (seconds <= 0) {
        // Answered at once; the timer still fires a second later and must
        // leave the kept box alone.
        QTest::qWait(1300);
        QCOMPARE(finished.count(), 1);
        QVERIFY(!box.isVisible());
    }

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
    QCOMPARE(run([&]() { return box.exec(); },
                 [&]() {
                     captionWhenClicked = box.button(QMessageBox::Ok)->text();
                     QTest::mouseClick(box.button(QMessageBox::StandardButton(button)), Qt::LeftButton);
                 },
                 [&]() { box.done(-1); }),
             button);
    QCOMPARE(captionWhenClicked, okCaption(1));
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
    const QPointF at(2, 2);
    QMouseEvent move(QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QWheelEvent wheel(at, at, QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    QMouseEvent press(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QMouseEvent dbl(QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    // Which of the events each filter takes.
    QString taken;
    for (QEvent* event : {static_cast<QEvent*>(&move), static_cast<QEvent*>(&wheel), static_cast<QEvent*>(&key),
                          static_cast<QEvent*>(&press), static_cast<QEvent*>(&release), static_cast<QEvent*>(&dbl)}) {
        taken += buttons.eventFilter(&target, event) ? QLatin1Char('B') : QLatin1Char('-');
        taken += releases.eventFilter(&target, event) ? QLatin1Char('R') : QLatin1Char('-');
    }
    QCOMPARE(taken, QStringLiteral("------B-BRB-"));
}

ORVACAT_TEST_MAIN(TestCountdownMessageBox)

#include "tst_countdownmessagebox.moc"
