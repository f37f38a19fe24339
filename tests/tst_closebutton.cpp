// Taking a window's close button away and giving it back, as the sheets do
// while they block.

#include "testmain.h"
#include "motifhints.h"
#include "testenvironment.h"

#include <orvacat/closebutton.h>

#include <QPushButton>
#include <QWindow>

using namespace MotifHintsReader;

class TestCloseButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList()); }
    void windowsWithoutNativeButtonAreLeftAlone();
    void closeButtonIsTakenAndGivenBack_data();
    void closeButtonIsTakenAndGivenBack();
};

void TestCloseButton::windowsWithoutNativeButtonAreLeftAlone()
{
    void* state = nullptr;
    SHAPISetCloseButtonOfWindowEnable(nullptr, false, &state);
    SHAPISetCloseButtonOfWindowEnable(nullptr, true, nullptr);

    // A window with no native handle yet is neither created nor shown.
    QWidget window;
    auto* button = new QPushButton(QStringLiteral("Inner"), &window);
    const Qt::WindowFlags flags = window.windowFlags();
    SHAPISetCloseButtonOfWindowEnable(button, false, &state);
    QCOMPARE(window.windowHandle(), nullptr);
    QCOMPARE(window.windowFlags(), flags);
    QVERIFY(!window.isVisible());
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        return;

    // Off X11 there is no native close button to take: a shown window keeps everything.
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    SHAPISetCloseButtonOfWindowEnable(button, false, &state);
    QCOMPARE(window.windowHandle()->flags(), flags);
}

void TestCloseButton::closeButtonIsTakenAndGivenBack_data()
{
    // The window's flags (0: a plain widget's), and calls through a widget inside it
    // ("-" disable, "+" enable; "top": the host keeps the window on top), each with
    // "=" and whether the close button is offered after it. The window ends with
    // the flags and hints it started with, plus the host's own change.
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("calls");
    const int custom = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowMinimizeButtonHint;
    QTest::newRow("plain window") << 0 << "-=n +=y";
    QTest::newRow("dialog") << int(Qt::Dialog) << "-=n +=y";
    QTest::newRow("customized hints") << int(custom | Qt::WindowCloseButtonHint) << "-=n +=y";
    QTest::newRow("repeated disable restores the original") << 0 << "-=n -=n +=y";
    QTest::newRow("enable without disable changes nothing") << 0 << "+=y";
    QTest::newRow("window without close button stays so") << custom << "-=n +=n";
    QTest::newRow("host keeps the window on top meanwhile") << 0 << "-=n top=n +=y";
}

void TestCloseButton::closeButtonIsTakenAndGivenBack()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        QSKIP("Only an X11 window manager takes the close button away");
    QFETCH(int, flags);
    QFETCH(QString, calls);
    QWidget window(nullptr, Qt::WindowFlags(flags));
    auto* button = new QPushButton(QStringLiteral("Inner"), &window);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    WId id = window.windowHandle()->winId();
    const Qt::WindowFlags before = window.windowFlags();
    const MotifHints original = readMotifHints(id);

    for (const QString& call : calls.split(QLatin1Char(' '))) {
        const bool offered = call.endsWith(QLatin1Char('y'));
        if (call.startsWith(QLatin1String("top"))) {
            window.setWindowFlag(Qt::WindowStaysOnTopHint);
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            id = window.windowHandle()->winId();
        } else {
            SHAPISetCloseButtonOfWindowEnable(button, call.startsWith(QLatin1Char('+')), nullptr);
        }
        QTRY_VERIFY2(readMotifHints(id).allowsClose() == offered, qPrintable(call + ": " + describe(readMotifHints(id))));
        const MotifHints now = readMotifHints(id);
        if (!offered && original.allowsClose()) {
            // Only the close function goes: moving, resizing, the other buttons
            // and the decorations stay.
            QCOMPARE(now.functions, original.functions & ~MwmFuncClose);
            if (now.flags & MwmHintsDecorations)
                QCOMPARE(now.decorations, original.decorations);
        }
        // The widget and its native window agree; the window was not re-created.
        QCOMPARE(window.windowFlags().testFlag(Qt::WindowCloseButtonHint), offered);
        QCOMPARE(window.windowHandle()->flags(), window.windowFlags());
        QCOMPARE(window.windowHandle()->winId(), id);
    }
    const bool top = calls.contains(QLatin1String("top"));
    QCOMPARE(window.windowFlags(), before | (top ? Qt::WindowStaysOnTopHint : Qt::WindowFlags()));
    QCOMPARE(describe(readMotifHints(id)), describe(original));
}

ORVACAT_TEST_MAIN(TestCloseButton)
#include "tst_closebutton.moc"
