// Taking a window's close button away and giving it back, as the sheets do
// while they block.

#include "testmain.h"
#include "motifhints.h"
#include "testenvironment.h"

#include <orvacat/closebutton.h>

#include <QDialog>
#include <QGuiApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <QWindow>

using namespace MotifHintsReader;

namespace {

// Set by the parent run when it repeats the X11 cases under a virtual server.
const char childMarker[] = "ORVACAT_CLOSEBUTTON_CHILD";

/** Whether the X server has the window mapped and viewable, read with xwininfo. */
bool isViewable(WId window)
{
    QProcess xwininfo;
    xwininfo.start(QStringLiteral("xwininfo"), {QStringLiteral("-id"), QString::number(window)});
    if (!xwininfo.waitForFinished(10000) || xwininfo.exitCode() != 0)
        return false;
    return xwininfo.readAllStandardOutput().contains("Map State: IsViewable");
}

/** Shows @p window and answers its native window, 0 if it never appeared. */
WId showNative(QWidget& window)
{
    window.show();
    return QTest::qWaitForWindowExposed(&window) ? window.windowHandle()->winId() : 0;
}

bool onXcb()
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

} // namespace

class TestCloseButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void missingWindowIsLeftAlone();
    void otherPlatformsLeaveTheWindowAlone();
    void x11CasesPassUnderVirtualServer();

    void closeButtonIsRemovedAndRestored_data();
    void closeButtonIsRemovedAndRestored();
    void callSequences_data();
    void callSequences();
};

void TestCloseButton::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestCloseButton::missingWindowIsLeftAlone()
{
    void* state = nullptr;
    SHAPISetCloseButtonOfWindowEnable(nullptr, false, &state);
    SHAPISetCloseButtonOfWindowEnable(nullptr, true, &state);
    SHAPISetCloseButtonOfWindowEnable(nullptr, false, nullptr);
    QCOMPARE(state, nullptr);

    // A window that has no native handle yet is neither created nor shown.
    QWidget window;
    auto* button = new QPushButton(QStringLiteral("Inner"), &window);
    const Qt::WindowFlags before = window.windowFlags();
    SHAPISetCloseButtonOfWindowEnable(button, false, &state);
    SHAPISetCloseButtonOfWindowEnable(&window, true, &state);
    QCOMPARE(window.windowHandle(), nullptr);
    QCOMPARE(window.windowFlags(), before);
    QVERIFY(!window.isVisible());
}

void TestCloseButton::otherPlatformsLeaveTheWindowAlone()
{
    if (onXcb())
        QSKIP("On X11 the close button is really taken away (see the cases below)");

    QWidget window;
    window.resize(200, 120);
    QVERIFY(showNative(window));
    const Qt::WindowFlags widgetFlags = window.windowFlags();
    const Qt::WindowFlags nativeFlags = window.windowHandle()->flags();
    const QRect geometry = window.geometry();

    void* state = nullptr;
    for (bool enable : {false, true}) {
        SHAPISetCloseButtonOfWindowEnable(&window, enable, &state);
        QCOMPARE(window.windowFlags(), widgetFlags);
        QCOMPARE(window.windowHandle()->flags(), nativeFlags);
        QVERIFY(window.isVisible());
        QCOMPARE(window.geometry(), geometry);
    }
}

void TestCloseButton::x11CasesPassUnderVirtualServer()
{
    if (onXcb())
        QSKIP("Already running on X11");
    if (qEnvironmentVariableIsSet(childMarker))
        QSKIP("Nested run");
    const QString xvfbRun = QStandardPaths::findExecutable(QStringLiteral("xvfb-run"));
    if (xvfbRun.isEmpty())
        QSKIP("xvfb-run is not installed (package xvfb): the close button can only be checked on an X server");
    if (QStandardPaths::findExecutable(QStringLiteral("xprop")).isEmpty()
        || QStandardPaths::findExecutable(QStringLiteral("xwininfo")).isEmpty())
        QSKIP("xprop or xwininfo is not installed (package x11-utils): the window cannot be inspected");

    // The same binary on a virtual X server runs the X11 cases for real.
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QString::fromLatin1(childMarker), QStringLiteral("1"));
    // The child's exit code is part of the verdict; leaks in the platform
    // plugin at its exit are not this test's business (the parent still checks its own).
    const QString sanitizerOptions = environment.value(QStringLiteral("ASAN_OPTIONS"));
    environment.insert(QStringLiteral("ASAN_OPTIONS"),
                       sanitizerOptions + (sanitizerOptions.isEmpty() ? "" : ":") + QStringLiteral("detect_leaks=0"));
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(xvfbRun, {QStringLiteral("-a"), QStringLiteral("-s"), QStringLiteral("-screen 0 1280x1024x24"),
                          QCoreApplication::applicationFilePath()});
    QVERIFY2(child.waitForStarted(), qPrintable(child.errorString()));
    if (!child.waitForFinished(120000)) {
        child.kill();
        child.waitForFinished();
        QFAIL("The X11 run did not finish");
    }
    const QByteArray output = child.readAll();
    QVERIFY2(child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0, output.constData());
    // Make sure the cases really ran there and were not skipped.
    QVERIFY2(output.contains("PASS   : TestCloseButton::closeButtonIsRemovedAndRestored(plain window)"),
             output.constData());
}

void TestCloseButton::closeButtonIsRemovedAndRestored_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("extraFlags");

    QTest::newRow("plain window") << 0 << 0;
    QTest::newRow("dialog") << 1 << 0;
    QTest::newRow("customized hints")
        << 0
        << int(Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowMinimizeButtonHint
               | Qt::WindowCloseButtonHint);
}

void TestCloseButton::closeButtonIsRemovedAndRestored()
{
    if (!onXcb())
        QSKIP("Needs the xcb platform");
    QFETCH(int, kind);
    QFETCH(int, extraFlags);

    QScopedPointer<QWidget> window(kind == 1 ? new QDialog : new QWidget);
    if (extraFlags)
        window->setWindowFlags(Qt::Window | Qt::WindowFlags(QFlag(extraFlags)));
    window->setWindowTitle(QStringLiteral("Close button"));
    window->setGeometry(100, 100, 320, 200);
    const WId id = showNative(*window);
    QVERIFY(id);
    const Qt::WindowFlags widgetFlags = window->windowFlags();
    const Qt::WindowFlags nativeFlags = window->windowHandle()->flags();
    const QRect geometry = window->geometry();
    const MotifHints original = readMotifHints(id);
    QVERIFY2(original.allowsClose(), qPrintable(describe(original)));

    void* state = nullptr;
    SHAPISetCloseButtonOfWindowEnable(window.data(), false, &state);
    QTRY_VERIFY2(!readMotifHints(id).allowsClose(), qPrintable(describe(readMotifHints(id))));
    const MotifHints disabled = readMotifHints(id);
    // Only the close function goes; moving, resizing and the other buttons stay.
    QVERIFY2(disabled.flags & MwmHintsFunctions, qPrintable(describe(disabled)));
    QCOMPARE(disabled.functions, original.functions & ~MwmFuncClose);
    QVERIFY2(disabled.functions & MwmFuncMove, qPrintable(describe(disabled)));
    QVERIFY2(disabled.functions & MwmFuncResize, qPrintable(describe(disabled)));
    // Decorations stay as they were; a window left with no button at all
    // leaves them to the window manager's default, which has a title bar.
    if (disabled.flags & MwmHintsDecorations)
        QCOMPARE(disabled.decorations, original.decorations);
    QVERIFY(isViewable(id));

    // The widget and its native window agree, and the window was neither re-created, hidden nor moved.
    QVERIFY(!(window->windowFlags() & Qt::WindowCloseButtonHint));
    QCOMPARE(window->windowHandle()->flags(), window->windowFlags());
    QCOMPARE(window->windowHandle()->winId(), id);
    QVERIFY(window->windowHandle()->isVisible());
    QCOMPARE(window->geometry(), geometry);

    SHAPISetCloseButtonOfWindowEnable(window.data(), true, &state);
    QTRY_VERIFY2(readMotifHints(id).allowsClose(), qPrintable(describe(readMotifHints(id))));
    const MotifHints restored = readMotifHints(id);
    QCOMPARE(restored.present, original.present);
    QCOMPARE(restored.flags, original.flags);
    QCOMPARE(restored.functions, original.functions);
    QCOMPARE(restored.decorations, original.decorations);
    QCOMPARE(window->windowFlags(), widgetFlags);
    QCOMPARE(window->windowHandle()->flags(), nativeFlags);
    QCOMPARE(window->windowHandle()->winId(), id);
    QVERIFY(isViewable(id));
    QCOMPARE(window->geometry(), geometry);
}

void TestCloseButton::callSequences_data()
{
    // Calls ("-" disable, "+" enable), each followed by "=" and whether the
    // close button is offered after it ("y"/"n"). Whatever the sequence, the
    // window ends with the flags and hints it started with.
    QTest::addColumn<int>("flags");
    QTest::addColumn<bool>("inner");
    QTest::addColumn<QString>("calls");
    const int noClose = int(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowMinimizeButtonHint);
    QTest::newRow("inner widget acts on its window") << 0 << true << "-=n +=y";
    QTest::newRow("repeated disable restores the original") << 0 << false << "-=n -=n +=y";
    QTest::newRow("enable without disable changes nothing") << 0 << false << "+=y";
    QTest::newRow("window without close button stays unchanged") << noClose << false << "-=n +=n";
}

void TestCloseButton::callSequences()
{
    if (!onXcb())
        QSKIP("Needs the xcb platform");
    QFETCH(int, flags);
    QFETCH(bool, inner);
    QFETCH(QString, calls);
    QWidget window(nullptr, flags ? Qt::WindowFlags(QFlag(flags)) : Qt::WindowFlags());
    auto* layout = new QVBoxLayout(&window);
    auto* button = new QPushButton(QStringLiteral("Inner"));
    layout->addWidget(button);
    const WId id = showNative(window);
    QVERIFY(id);
    const Qt::WindowFlags before = window.windowFlags();
    const MotifHints original = readMotifHints(id);

    for (const QString& call : calls.split(QLatin1Char(' '))) {
        const bool allow = call.endsWith(QLatin1Char('y'));
        SHAPISetCloseButtonOfWindowEnable(inner ? static_cast<QWidget*>(button) : &window, call.startsWith('+'),
                                          nullptr);
        QTRY_VERIFY2(readMotifHints(id).allowsClose() == allow, qPrintable(call + ": " + describe(readMotifHints(id))));
        QCOMPARE(window.windowFlags().testFlag(Qt::WindowCloseButtonHint), allow);
        QCOMPARE(window.windowHandle()->flags(), window.windowFlags());
    }
    QCOMPARE(window.windowFlags(), before);
    const MotifHints after = readMotifHints(id);
    QCOMPARE(after.flags, original.flags);
    QCOMPARE(after.functions, original.functions);
    // The inner widget did not become a window of its own.
    QVERIFY(!button->isWindow());
    QCOMPARE(button->windowHandle(), nullptr);
}

ORVACAT_TEST_MAIN(TestCloseButton)
#include "tst_closebutton.moc"
