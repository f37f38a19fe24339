// Under a real X server: a blocking sheet takes its window's close button
// away for the run and gives it back afterwards, also when sheets nest.

#include "testmain.h"
#include "testenvironment.h"
#include "modalrun.h"
#include "motifhints.h"

#include <orvacat/messagehelpers.h>
#include <orvacat/orvainputsheet.h>
#include <orvacat/orvamask.h>
#include <orvacat/orvamessagesheet.h>

#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>

using namespace ModalRun;

namespace {

/** Whether the window manager may offer "close" for @p window. */
bool allowsClose(WId window)
{
    return MotifHintsReader::readMotifHints(window).allowsClose();
}

} // namespace

class TestMessageSheetX11 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void closeButtonGoneDuringRun();
    void closeButtonStaysWithoutBlocking();
    void nestedSheetsKeepButtonAwayUntilLastEnds();
    void inputSheetAndHelperTakeButtonAway();

private:
    WId windowId() const { return m_window->windowHandle()->winId(); }

    QWidget* m_window = nullptr;
};

void TestMessageSheetX11::initTestCase()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        QSKIP("Needs an X server (run under xvfb-run on the xcb platform)");
    if (QStandardPaths::findExecutable(QStringLiteral("xprop")).isEmpty())
        QSKIP("Needs xprop");
    TestEnvironment::installDefaultTheme();
}

void TestMessageSheetX11::init()
{
    m_window = new QWidget;
    m_window->resize(TestEnvironment::scaled(800), TestEnvironment::scaled(500));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    QVERIFY(allowsClose(windowId()));
}

void TestMessageSheetX11::cleanup()
{
    delete m_window;
    m_window = nullptr;
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestMessageSheetX11::closeButtonGoneDuringRun()
{
    auto* sheet = static_cast<OrvaMessageSheet*>(OrvaMask::createMask(
        new OrvaMessageSheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Blocking"), m_window), m_window,
        QColor(0, 0, 0, 20)));
    bool closableDuringRun = true;
    bool closedDuringRun = true;
    bool stillShown = false;
    QCOMPARE(runSheet(sheet, [&]() {
                 closableDuringRun = allowsClose(windowId());
                 closedDuringRun = m_window->close();
                 stillShown = m_window->isVisible();
                 press(m_window, Qt::Key_Escape);
             }),
             int(QMessageBox::Discard));
    QVERIFY(!closableDuringRun);
    QVERIFY(!closedDuringRun);
    QVERIFY(stillShown);
    QVERIFY(allowsClose(windowId()));
    QVERIFY(m_window->isVisible());
}

void TestMessageSheetX11::closeButtonStaysWithoutBlocking()
{
    OrvaMessageSheet sheet(OrvaMessageSheet::InformationMessage, QStringLiteral("Free"), m_window);
    sheet.setBlockWindowButton(false);
    bool closableDuringRun = false;
    QCOMPARE(runSheet(&sheet, [&]() {
                 closableDuringRun = allowsClose(windowId());
                 sheet.quit();
             }),
             0);
    QVERIFY(closableDuringRun);

    // showSheet() leaves the button alone, showSheetWithBlock() takes it.
    sheet.setBlockWindowButton(true);
    sheet.showSheet();
    QVERIFY(allowsClose(windowId()));
    sheet.done(0);
    sheet.showSheetWithBlock();
    QVERIFY(!allowsClose(windowId()));
    sheet.done(0);
    QVERIFY(allowsClose(windowId()));
}

void TestMessageSheetX11::nestedSheetsKeepButtonAwayUntilLastEnds()
{
    OrvaMessageSheet outer(OrvaMessageSheet::QuestionMessage, QStringLiteral("Outer"), m_window);
    bool closableDuringInner = true;
    bool closableAfterInner = true;
    int innerResult = 0;
    QCOMPARE(runSheet(&outer, [&]() {
                 OrvaMessageSheet inner(OrvaMessageSheet::InformationMessage, QStringLiteral("Inner"), m_window);
                 innerResult = runSheet(&inner, [&]() {
                     closableDuringInner = allowsClose(windowId());
                     inner.done(QMessageBox::Ok);
                 });
                 closableAfterInner = allowsClose(windowId());
                 outer.done(QMessageBox::Ok);
             }),
             int(QMessageBox::Ok));
    QCOMPARE(innerResult, int(QMessageBox::Ok));
    QVERIFY(!closableDuringInner);
    QVERIFY(!closableAfterInner);
    QVERIFY(allowsClose(windowId()));
}

void TestMessageSheetX11::inputSheetAndHelperTakeButtonAway()
{
    OrvaInputSheet input(QStringLiteral("Name"), m_window);
    bool closableDuringRun = true;
    const auto lookAndAnswer = [&]() {
        closableDuringRun = allowsClose(windowId());
        press(m_window, Qt::Key_Return);
    };
    QCOMPARE(runSheet(&input, lookAndAnswer), int(QMessageBox::Ok));
    QVERIFY(!closableDuringRun);
    QVERIFY(allowsClose(windowId()));

    closableDuringRun = true;
    QCOMPARE(run([&]() { return showConfirmMsg(QStringLiteral("T"), QStringLiteral("Sure?"), m_window); },
                 lookAndAnswer,
                 [&]() {
                     for (OrvaMessageSheet* sheet : m_window->findChildren<OrvaMessageSheet*>())
                         sheet->quit();
                 }),
             int(QMessageBox::Ok));
    QVERIFY(!closableDuringRun);
    QVERIFY(allowsClose(windowId()));
}

ORVACAT_TEST_MAIN(TestMessageSheetX11)

#include "tst_messagesheet_x11.moc"
