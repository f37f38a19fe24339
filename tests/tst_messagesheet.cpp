// The message sheet: its seven kinds, its width rule, and its modal run driven
// by keys, clicks and the window around it.

#include "testmain.h"
#include "testenvironment.h"
#include "warningcollector.h"
#include "modalrun.h"
#include "factorone.h"

#include <orvacat/componentstrings.h>
#include <orvacat/dpiinfo.h>
#include <orvacat/imagemanager.h>
#include <orvacat/orvamask.h>
#include <orvacat/orvamessagesheet.h>
#include <orvacat/stylemanager.h>

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMovie>
#include <QProxyStyle>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QWindow>

using namespace ModalRun;

namespace {

constexpr int Ok = QMessageBox::Ok;
constexpr int Cancel = QMessageBox::Discard;

QString caption(const char* key)
{
    return ComponentStrings::getInstance()->getString(QString::fromLatin1(key));
}

/** The sheet's width rule, from the parent's width in pixels. */
int expectedSheetWidth(int parentWidth)
{
    const double s = DPIinfo::getInstance()->getDPI();
    const double p = parentWidth / s;
    int logical;
    if (p < 540)
        logical = int(p - 40);
    else if (p == 540)
        logical = 480;
    else
        logical = int(qMin(540.0, p - 40));
    return int(s * logical);
}

QList<QLabel*> labelsOfClass(QWidget* sheet, const char* className)
{
    QList<QLabel*> labels;
    const QList<QLabel*> all = sheet->findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
    for (QLabel* label : all) {
        if (qstrcmp(label->metaObject()->className(), className) == 0)
            labels << label;
    }
    return labels;
}

QLabel* iconLabel(QWidget* sheet) { return labelsOfClass(sheet, "QLabel").value(0); }
QLabel* textLabel(QWidget* sheet) { return labelsOfClass(sheet, "MessageLabel").value(0); }

/** A gif of two 2 x 2 frames, black and white checkers swapping, written by hand. */
const char twoFrameGif[] =
    "\x47\x49\x46\x38\x39\x61\x02\x00\x02\x00\x80\x00\x00\x00\x00\x00\xff\xff\xff\x21\xff\x0b\x4e\x45"
    "\x54\x53\x43\x41\x50\x45\x32\x2e\x30\x03\x01\x00\x00\x00\x21\xf9\x04\x00\x0a\x00\x00\x00\x2c\x00"
    "\x00\x00\x00\x02\x00\x02\x00\x00\x02\x04\x04\xc3\x10\x05\x00\x21\xf9\x04\x00\x0a\x00\x00\x00\x2c"
    "\x00\x00\x00\x00\x02\x00\x02\x00\x00\x02\x04\x0c\x41\x30\x05\x00\x3b";

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

/** Lays buttons out the Gnome way (cancel before Ok), as some desktops do. */
class GnomeOrderStyle : public QProxyStyle
{
public:
    GnomeOrderStyle()
        : QProxyStyle(QStringLiteral("fusion"))
    {
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override
    {
        if (hint == QStyle::SH_DialogButtonLayout)
            return QDialogButtonBox::GnomeLayout;
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

} // namespace

class TestMessageSheet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void typesSetIconButtonsAndStyle_data();
    void typesSetIconButtonsAndStyle();
    void customCaptionsReplaceDefaults();
    void okComesBeforeCancelWhateverTheDesktop();
    void widthFollowsParent_data();
    void widthFollowsParent();
    void literalWidthsAtFactorOne();
    void textIsScaledAndHeightFollowsWidth();
    void informativeTextAddsAndRemovesLine();
    void setMessageTypeRebuildsButtons();

    void keysAndClicksAnswer_data();
    void keysAndClicksAnswer();
    void otherKeysAreSwallowed();
    void focusStartsOnTextAndTabCyclesInside();
    void windowCloseDuringRun_data();
    void windowCloseDuringRun();
    void runEndsOnceWithFirstResult();
    void nestedRunsAnswerInOrder();
    void windowResizedDuringRun();
    void goneDuringRun_data();
    void goneDuringRun();
    void showSheetReturnsAtOnceAndWatchesKeys();
    void busySheetRunsItsAnimation();
    void busySheetWithMissingMovie();

private:
    /** A sheet over a mask in @p window, as the helpers open it. */
    static OrvaMessageSheet* maskedSheet(OrvaMessageSheet::MessageType type, const QString& text, QWidget* window)
    {
        return static_cast<OrvaMessageSheet*>(OrvaMask::createMask(new OrvaMessageSheet(type, text, window), window,
                                                                   QColor(0, 0, 0, 20)));
    }

    QWidget* m_window = nullptr;
};

void TestMessageSheet::initTestCase()
{
    TestEnvironment::installDefaultTheme();
}

void TestMessageSheet::init()
{
    m_window = new QWidget;
    m_window->setObjectName(QStringLiteral("window"));
    m_window->resize(TestEnvironment::scaled(1000), TestEnvironment::scaled(700));
}

void TestMessageSheet::cleanup()
{
    delete m_window;
    m_window = nullptr;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestMessageSheet::typesSetIconButtonsAndStyle_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("iconKey");
    QTest::addColumn<QString>("okCaption");
    QTest::addColumn<bool>("hasCancel");
    QTest::addColumn<QString>("styleKey");

    const QString other = QStringLiteral("component.message_sheet_other");
    const QString processing = QStringLiteral("component.message_sheet_processing");
    QTest::newRow("app") << 0 << "app_img" << QString() << false << processing;
    QTest::newRow("information") << 1 << "icon_information" << caption("ok") << false << other;
    QTest::newRow("warning") << 2 << "icon_warning" << caption("ok") << false << other;
    QTest::newRow("question") << 3 << "icon_question" << caption("ok") << true << other;
    QTest::newRow("upgrade") << 4 << "icon_information" << caption("wizard_client_upgrade") << true << other;
    QTest::newRow("warning question") << 5 << "icon_warning" << caption("ok") << true << other;
    QTest::newRow("processing") << 6 << QString() << QString() << false << processing;
    QTest::newRow("beyond the last") << 7 << QString() << QString() << false << other;
}

void TestMessageSheet::typesSetIconButtonsAndStyle()
{
    QFETCH(int, type);
    QFETCH(QString, iconKey);
    QFETCH(QString, okCaption);
    QFETCH(bool, hasCancel);
    QFETCH(QString, styleKey);

    OrvaMessageSheet sheet(OrvaMessageSheet::MessageType(type), QStringLiteral("Text"), m_window);
    QCOMPARE(sheet.styleSheet(), getStyleSheet(styleKey, false));
    QCOMPARE(textLabel(&sheet)->styleSheet(), getStyleSheet("component.message_sheet_text", false));
    const QPixmap icon = iconLabel(&sheet)->pixmap(Qt::ReturnByValue);
    if (iconKey.isEmpty())
        QVERIFY(icon.isNull());
    else
        QCOMPARE(icon.cacheKey(), getGlobalImage(iconKey, ImageManager::Normal).cacheKey());

    QVERIFY(!sheet.button(QMessageBox::Cancel));
    QPushButton* ok = sheet.button(QMessageBox::Ok);
    QPushButton* cancel = sheet.button(QMessageBox::Discard);
    QCOMPARE(ok != nullptr, !okCaption.isEmpty());
    QCOMPARE(cancel != nullptr, hasCancel);
    QVERIFY(!ok || ok->isDefault());
    const auto checkButton = [](QPushButton* button, const QString& text, const char* style, int minimumWidth) {
        QVERIFY(!button || (button->text() == text && button->styleSheet() == getStyleSheet(style, false)
                            && button->height() == TestEnvironment::scaled(28)
                            && button->minimumWidth() == TestEnvironment::scaled(minimumWidth)));
    };
    checkButton(ok, okCaption, "component.apply_button", 120);
    checkButton(cancel, caption("cancel"), "component.cancel_button", 80);
}

void TestMessageSheet::customCaptionsReplaceDefaults()
{
    MsgBoxCustomBtnText both{QStringLiteral("Delete"), QStringLiteral("Keep")};
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Delete?"), both, m_window);
    QCOMPARE(sheet.button(QMessageBox::Ok)->text(), QStringLiteral("Delete"));
    QCOMPARE(sheet.button(QMessageBox::Discard)->text(), QStringLiteral("Keep"));

    MsgBoxCustomBtnText okOnly{QStringLiteral("Go"), QString()};
    OrvaMessageSheet upgrade(OrvaMessageSheet::UpgradeMessage, QStringLiteral("New version"), okOnly, m_window);
    QCOMPARE(upgrade.button(QMessageBox::Ok)->text(), QStringLiteral("Go"));
    QCOMPARE(upgrade.button(QMessageBox::Discard)->text(), caption("cancel"));
}

void TestMessageSheet::okComesBeforeCancelWhateverTheDesktop()
{
    const QString previousStyle = QApplication::style()->objectName();
    QApplication::setStyle(new GnomeOrderStyle);
    {
        // The desktop's order puts the destructive button first...
        QDialogButtonBox plain(QDialogButtonBox::Ok | QDialogButtonBox::Discard);
        plain.resize(plain.sizeHint());
        plain.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plain));
        QVERIFY(plain.button(QDialogButtonBox::Discard)->x() < plain.button(QDialogButtonBox::Ok)->x());

        // ...the sheet keeps Ok first.
        OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Sure?"), m_window);
        m_window->show();
        sheet.showSheet();
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
        QVERIFY(sheet.button(QMessageBox::Ok)->x() < sheet.button(QMessageBox::Discard)->x());
        sheet.done(0);
    }
    QApplication::setStyle(previousStyle);
}

void TestMessageSheet::widthFollowsParent_data()
{
    QTest::addColumn<int>("logicalParentWidth");
    QTest::newRow("wide") << 1000;
    QTest::newRow("just wider than the cap") << 560;
    QTest::newRow("narrow") << 300;
    QTest::newRow("exactly the cap") << 540;
    QTest::newRow("one below the cap") << 539;
}

void TestMessageSheet::widthFollowsParent()
{
    QFETCH(int, logicalParentWidth);
    QWidget parent;
    parent.resize(int(logicalParentWidth * DPIinfo::getInstance()->getDPI()), 400);
    OrvaMessageSheet sheet(OrvaMessageSheet::InformationMessage, QStringLiteral("Some text"), &parent);
    QCOMPARE(sheet.width(), expectedSheetWidth(parent.width()));
    QCOMPARE(sheet.minimumWidth(), sheet.maximumWidth());

    // The rule is read again whenever the content changes.
    parent.resize(int(300 * DPIinfo::getInstance()->getDPI()), 400);
    sheet.setText(QStringLiteral("Other text"));
    QCOMPARE(sheet.width(), expectedSheetWidth(parent.width()));
}

void TestMessageSheet::literalWidthsAtFactorOne()
{
    if (DPIinfo::getInstance()->getDPI() != 1.0) {
        FactorOne::runInChild("literalWidthsAtFactorOne");
        return;
    }
    const QList<QPair<int, int>> rows = {{1000, 540}, {560, 520}, {300, 260}, {540, 480}, {541, 501}};
    for (const auto& row : rows) {
        QWidget parent;
        parent.resize(row.first, 300);
        OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("x"), &parent);
        QVERIFY2(sheet.width() == row.second, qPrintable(QString::number(row.first)));
    }
}

void TestMessageSheet::textIsScaledAndHeightFollowsWidth()
{
    const QString longText = QStringLiteral("A long sentence that must wrap onto several lines when the label is narrow. ")
                                 .repeated(4);
    OrvaMessageSheet sheet(OrvaMessageSheet::InformationMessage, longText, m_window);
    QLabel* label = textLabel(&sheet);
    QCOMPARE(label->text(), QStringLiteral("<p style='line-height: %1px;'>%2</p>").arg(TestEnvironment::scaled(24)).arg(longText));
    QVERIFY(label->openExternalLinks());
    m_window->show();
    sheet.showSheet();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    QTRY_COMPARE(label->height(), label->heightForWidth(label->width()));
    QVERIFY(label->height() > 2 * TestEnvironment::scaled(24));

    label->resize(TestEnvironment::scaled(150), 5);
    QCOMPARE(label->height(), label->heightForWidth(TestEnvironment::scaled(150)));
    const int narrow = label->height();
    label->resize(TestEnvironment::scaled(450), 5);
    QCOMPARE(label->height(), label->heightForWidth(TestEnvironment::scaled(450)));
    QVERIFY(label->height() < narrow);
    sheet.done(0);
}

void TestMessageSheet::informativeTextAddsAndRemovesLine()
{
    OrvaMessageSheet sheet(OrvaMessageSheet::WarningMessage, QStringLiteral("Disk full"),
                           QStringLiteral("Free 2 GB and try again."), m_window);
    m_window->show();
    sheet.showSheet();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));

    QList<QLabel*> labels = labelsOfClass(&sheet, "MessageLabel");
    QCOMPARE(labels.size(), 2);
    QLabel* informative = labels.at(1);
    QCOMPARE(informative->text(), QStringLiteral("<p style='line-height: %1px;'>Free 2 GB and try again.</p>")
                                      .arg(TestEnvironment::scaled(20)));
    QVERIFY(informative->isVisible());
    QTRY_VERIFY(informative->geometry().top() > textLabel(&sheet)->geometry().bottom() + TestEnvironment::scaled(6));
    const int withInformative = sheet.sizeHint().height();

    QPointer<QLabel> guard(informative);
    sheet.setInformativeText(QString());
    QVERIFY(!informative->isVisible());
    QTRY_VERIFY(guard.isNull());
    QVERIFY(sheet.sizeHint().height() < withInformative);

    sheet.setInformativeText(QStringLiteral("Again"));
    QCOMPARE(labelsOfClass(&sheet, "MessageLabel").size(), 2);
    sheet.done(0);
}

void TestMessageSheet::setMessageTypeRebuildsButtons()
{
    OrvaMessageSheet sheet(OrvaMessageSheet::InformationMessage, QStringLiteral("Info"), m_window);
    QVERIFY(!sheet.button(QMessageBox::Discard));
    sheet.setMessageType(OrvaMessageSheet::QuestionMessage);
    QVERIFY(sheet.button(QMessageBox::Discard));
    QCOMPARE(iconLabel(&sheet)->pixmap(Qt::ReturnByValue).cacheKey(),
             getGlobalImage("icon_question", ImageManager::Normal).cacheKey());

    // Re-initialising must not make one click end the sheet twice.
    QSignalSpy finished(&sheet, &OrvaSheet::finished);
    m_window->show();
    QCOMPARE(runSheet(&sheet, [&]() { sheet.button(QMessageBox::Discard)->click(); }), Cancel);
    QCOMPARE(finished.count(), 1);
}

void TestMessageSheet::keysAndClicksAnswer_data()
{
    // Every key but the last must leave the sheet up; a click comes last.
    QTest::addColumn<int>("type");
    QTest::addColumn<QList<int>>("keys");
    QTest::addColumn<int>("click");
    QTest::addColumn<int>("expected");
    const int question = OrvaMessageSheet::QuestionMessage;
    QTest::newRow("return") << question << QList<int>{Qt::Key_Return} << 0 << Ok;
    QTest::newRow("enter") << question << QList<int>{Qt::Key_Enter} << 0 << Ok;
    QTest::newRow("space") << question << QList<int>{Qt::Key_Space} << 0 << Ok;
    QTest::newRow("escape") << question << QList<int>{Qt::Key_Escape} << 0 << Cancel;
    QTest::newRow("escape is swallowed without cancel")
        << int(OrvaMessageSheet::InformationMessage) << QList<int>{Qt::Key_Escape, Qt::Key_Return} << 0 << Ok;
    QTest::newRow("click ok") << int(OrvaMessageSheet::WarningQuestionMessage) << QList<int>() << Ok << Ok;
    QTest::newRow("click cancel") << int(OrvaMessageSheet::WarningQuestionMessage) << QList<int>() << Cancel << Cancel;
}

void TestMessageSheet::keysAndClicksAnswer()
{
    QFETCH(int, type);
    QFETCH(QList<int>, keys);
    QFETCH(int, click);
    QFETCH(int, expected);

    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    OrvaMessageSheet* sheet = maskedSheet(OrvaMessageSheet::MessageType(type), QStringLiteral("Proceed?"), m_window);
    QSignalSpy finished(sheet, &OrvaSheet::finished);

    bool upUntilLast = false;
    const int result = runSheet(sheet, [&]() {
        upUntilLast = sheet->isVisible() && sheet->parentWidget()->isVisible();
        for (int i = 0; i < keys.size(); ++i) {
            if (i > 0) {
                QCoreApplication::processEvents();
                upUntilLast = upUntilLast && sheet->isVisible();
            }
            press(m_window, Qt::Key(keys.at(i)));
        }
        if (QPushButton* button = click ? sheet->button(QMessageBox::StandardButton(click)) : nullptr)
            QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
    });
    QCOMPARE(result, expected);
    QVERIFY(upUntilLast);
    QVERIFY(!sheet->isVisible());
    QVERIFY(!sheet->parentWidget()->isVisible());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toInt(), expected);
}

void TestMessageSheet::otherKeysAreSwallowed()
{
    // Keys that the sheet lets pass would reach the window last; a recorder
    // installed before the sheet's filter sees only those.
    KeyRecorder recorder;
    m_window->installEventFilter(&recorder);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Go?"), m_window);
    QSignalSpy finished(&sheet, &OrvaSheet::finished);
    bool upAfterKeys = false;
    QCOMPARE(runSheet(&sheet, [&]() {
                 press(m_window, Qt::Key_A);
                 press(m_window, Qt::Key_Down);
                 QTest::keyClick(m_window, Qt::Key_X);
                 QTest::keyClick(sheet.button(QMessageBox::Ok), Qt::Key_B);
                 upAfterKeys = sheet.isVisible() && finished.isEmpty();
                 press(m_window, Qt::Key_Escape);
             }),
             Cancel);
    QVERIFY(upAfterKeys);
    QCOMPARE(recorder.keys, QList<int>());

    // Once the sheet is down the same keys do reach the window; the sheet
    // filters its own labels and buttons for good, yet steals no one's keys.
    QTest::keyClick(m_window, Qt::Key_X);
    QCOMPARE(recorder.keys, QList<int>{Qt::Key_X});
    auto* edit = new QLineEdit(m_window);
    edit->show();
    edit->setFocus();
    QTest::keyClicks(edit, QStringLiteral("ab c"));
    QCOMPARE(edit->text(), QStringLiteral("ab c"));
    QTest::keyClick(edit, Qt::Key_Return);
    QTest::keyClick(edit, Qt::Key_Escape);
    QCOMPARE(finished.count(), 1);
    QVERIFY(m_window->close());
}

void TestMessageSheet::focusStartsOnTextAndTabCyclesInside()
{
    // Focusable widgets of the window before and after the sheet in the
    // focus chain: neither Tab nor Backtab may reach them.
    auto* before = new QLineEdit(m_window);
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Go?"), QStringLiteral("Details"),
                           m_window);
    auto* after = new QLineEdit(m_window);
    after->move(0, TestEnvironment::scaled(40));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window));

    QWidget* first = nullptr;
    QList<QWidget*> forward;
    QList<QWidget*> backward;
    QCOMPARE(runSheet(&sheet, [&]() {
                 first = QApplication::focusWidget();
                 for (int i = 0; i < 9; ++i) {
                     press(m_window, Qt::Key_Tab);
                     forward << QApplication::focusWidget();
                 }
                 for (int i = 0; i < 4; ++i) {
                     press(m_window, i % 2 ? Qt::Key_Backtab : Qt::Key_Tab, i % 2 ? Qt::NoModifier : Qt::ShiftModifier);
                     backward << QApplication::focusWidget();
                 }
                 sheet.quit();
             }),
             0);

    const QList<QLabel*> labels = labelsOfClass(&sheet, "MessageLabel");
    QCOMPARE(labels.size(), 2);
    QCOMPARE(first, static_cast<QWidget*>(labels.at(0)));
    const QList<QWidget*> cycle{sheet.button(QMessageBox::Ok), sheet.button(QMessageBox::Discard), labels.at(1),
                                labels.at(0)};
    QCOMPARE(forward.size(), 9);
    for (int i = 0; i < forward.size(); ++i)
        QCOMPARE(forward.at(i), cycle.at(i % cycle.size()));
    // From Ok (the ninth stop) back through every stop, the wrap included.
    QCOMPARE(backward, (QList<QWidget*>{labels.at(0), labels.at(1), cycle.at(1), cycle.at(0)}));
    QVERIFY(!forward.contains(before) && !forward.contains(after) && !backward.contains(before)
            && !backward.contains(after));
}

void TestMessageSheet::windowCloseDuringRun_data()
{
    QTest::addColumn<bool>("block");
    QTest::newRow("blocking") << true;
    QTest::newRow("not blocking") << false;
}

void TestMessageSheet::windowCloseDuringRun()
{
    QFETCH(bool, block);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    OrvaMessageSheet sheet(OrvaMessageSheet::InformationMessage, QStringLiteral("Busy"), m_window);
    sheet.setBlockWindowButton(block);
    bool closeAccepted = !block;
    bool platformCloseAccepted = false;
    bool visibleAfter = false;
    QCOMPARE(runSheet(&sheet, [&]() {
                 closeAccepted = m_window->close();
                 if (!closeAccepted)
                     platformCloseAccepted = m_window->windowHandle()->close();
                 visibleAfter = m_window->isVisible() && sheet.isVisible();
                 sheet.quit();
             }),
             0);
    QCOMPARE(closeAccepted, !block);
    QVERIFY(!platformCloseAccepted);
    QCOMPARE(visibleAfter, block);

    // The window is free again afterwards.
    m_window->show();
    QVERIFY(m_window->close());
}

void TestMessageSheet::runEndsOnceWithFirstResult()
{
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("?"), m_window);
    QSignalSpy finished(&sheet, &OrvaSheet::finished);
    // done() and quit() on a sheet that is not up are ignored.
    sheet.done(Ok);
    sheet.quit();
    QCOMPARE(finished.count(), 0);

    // exec() while running returns 0 at once with a warning; the first done() wins.
    m_window->show();
    int innerResult = -1;
    bool stillUp = false;
    WarningCollector warnings;
    QCOMPARE(runSheet(&sheet, [&]() {
                 innerResult = sheet.exec();
                 stillUp = sheet.isVisible();
                 sheet.done(Ok);
                 sheet.done(Cancel);
             }),
             Ok);
    QCOMPARE(innerResult, 0);
    QVERIFY(stillUp);
    QCOMPARE(warnings.count(), 1);
    QCOMPARE(finished.count(), 1);
    sheet.done(Cancel);
    QCOMPARE(finished.count(), 1);

    // The sheet runs again, and quit() answers 0.
    QCOMPARE(runSheet(&sheet, [&]() { press(m_window, Qt::Key_Escape); }), Cancel);
    QCOMPARE(runSheet(&sheet, [&]() { sheet.quit(); }), 0);
    QVERIFY(sheet.isHidden());
    QCOMPARE(finished.count(), 3);
    QCOMPARE(finished.at(2).at(0).toInt(), 0);

    // A sheet shown without a run is ended by done() all the same.
    sheet.showSheet();
    QVERIFY(sheet.isVisible());
    sheet.done(Ok);
    QVERIFY(!sheet.isVisible());
    QCOMPARE(finished.count(), 4);
    QCOMPARE(finished.at(3).at(0).toInt(), Ok);
}

void TestMessageSheet::nestedRunsAnswerInOrder()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    OrvaMessageSheet* outer = maskedSheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Outer?"), m_window);
    QSignalSpy outerFinished(outer, &OrvaSheet::finished);

    int innerResult = -1;
    bool outerUpDuringInner = false;
    bool outerUpAfterInner = false;
    bool outerFinishedEarly = true;
    // Judged during the inner run: the focused widget is gone with the inner sheet.
    bool focusOutsideOuter = false;
    QCOMPARE(runSheet(outer, [&]() {
                 OrvaMessageSheet* inner = maskedSheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Inner?"), m_window);
                 innerResult = runSheet(inner, [&]() {
                     outerUpDuringInner = outer->isVisible();
                     QWidget* focusDuringInner = QApplication::focusWidget();
                     focusOutsideOuter = focusDuringInner && !isInside(focusDuringInner, outer);
                     // Escape must answer the inner sheet only.
                     press(m_window, Qt::Key_Escape);
                 });
                 outerUpAfterInner = outer->isVisible();
                 outerFinishedEarly = !outerFinished.isEmpty();
                 delete inner;
                 press(m_window, Qt::Key_Return);
             }),
             Ok);
    QCOMPARE(innerResult, Cancel);
    QVERIFY(outerUpDuringInner);
    QVERIFY(outerUpAfterInner);
    QVERIFY(!outerFinishedEarly);
    QVERIFY(focusOutsideOuter);
    QCOMPARE(outerFinished.count(), 1);
}

void TestMessageSheet::windowResizedDuringRun()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    OrvaMessageSheet* sheet = maskedSheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Resize me"), m_window);
    QWidget* mask = sheet->parentWidget();
    const QSize bigger(TestEnvironment::scaled(1200), TestEnvironment::scaled(800));
    // The mask covers the grown window and the sheet stays in its middle.
    bool settled = false;
    QCOMPARE(runSheet(sheet, [&]() {
                 m_window->resize(bigger);
                 settled = QTest::qWaitFor([&]() {
                     const QPoint offCentre = sheet->geometry().center() - QRect(QPoint(0, 0), bigger).center();
                     return mask->geometry() == QRect(QPoint(0, 0), bigger) && qAbs(offCentre.x()) <= 2
                         && qAbs(offCentre.y()) <= 2;
                 }, 3000);
                 press(m_window, Qt::Key_Return);
             }),
             Ok);
    QVERIFY(settled);
}

void TestMessageSheet::goneDuringRun_data()
{
    QTest::addColumn<bool>("parentGoes");
    QTest::newRow("parent destroyed") << true;
    QTest::newRow("sheet deleted") << false;
}

void TestMessageSheet::goneDuringRun()
{
    QFETCH(bool, parentGoes);
    QPointer<QWidget> window = new QWidget;
    window->resize(TestEnvironment::scaled(800), TestEnvironment::scaled(600));
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    QPointer<OrvaMessageSheet> sheet = maskedSheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Doomed"), window);
    QCOMPARE(runSheet(sheet.data(), [&]() {
                 if (parentGoes)
                     delete window;
                 else
                     sheet->deleteLater();
             }),
             0);
    QVERIFY(sheet.isNull());
    QCOMPARE(window.isNull(), parentGoes);
    // A window that lives on can be closed again.
    if (window)
        QVERIFY(window->close());
    delete window;
}

void TestMessageSheet::showSheetReturnsAtOnceAndWatchesKeys()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Non-blocking"), m_window);
    QSignalSpy finished(&sheet, &OrvaSheet::finished);
    sheet.showSheet();
    QVERIFY(sheet.isVisible());
    // Close events are refused while the sheet is up, even without a run.
    QVERIFY(!m_window->close());
    sheet.button(QMessageBox::Ok)->setFocus();
    press(m_window, Qt::Key_Escape);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toInt(), Cancel);
    QVERIFY(!sheet.isVisible());
    QVERIFY(m_window->close());

    m_window->show();
    sheet.showSheetWithBlock();
    QVERIFY(!m_window->close());
    sheet.done(Ok);
    QVERIFY(m_window->close());
}

void TestMessageSheet::busySheetRunsItsAnimation()
{
    if (!QMovie::supportedFormats().contains("gif"))
        QSKIP("This Qt reads no gif");
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("busy.gif"));
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(twoFrameGif, sizeof(twoFrameGif) - 1);
    }
    m_window->show();
    OrvaMessageSheet sheet(QStringLiteral("Working..."), path, m_window);
    QVERIFY(!sheet.button(QMessageBox::Ok));
    QVERIFY(!sheet.button(QMessageBox::Discard));
    QCOMPARE(sheet.styleSheet(), getStyleSheet("component.message_sheet_processing", false));
    QMovie* movie = iconLabel(&sheet)->movie();
    QVERIFY(movie);
    const int n = qRound(DPIinfo::getInstance()->getDPI() * 32);
    QCOMPARE(movie->scaledSize(), QSize(n, n));
    QCOMPARE(movie->state(), QMovie::NotRunning);

    QMovie::MovieState stateDuringRun = QMovie::NotRunning;
    bool iconShown = false;
    bool returnIgnored = false;
    QCOMPARE(runSheet(&sheet, [&]() {
                 stateDuringRun = movie->state();
                 iconShown = iconLabel(&sheet)->isVisible();
                 press(m_window, Qt::Key_Return);
                 QCoreApplication::processEvents();
                 returnIgnored = sheet.isVisible();
                 sheet.done(7);
             }),
             7);
    QCOMPARE(stateDuringRun, QMovie::Running);
    QVERIFY(iconShown);
    QVERIFY(returnIgnored);
}

void TestMessageSheet::busySheetWithMissingMovie()
{
    m_window->show();
    OrvaMessageSheet sheet(QStringLiteral("Working..."), QStringLiteral("/nonexistent/busy.gif"), m_window);
    QCOMPARE(runSheet(&sheet, [&]() { sheet.quit(); }), 0);

    // No parent at all: the sheet is its own window and still ends.
    OrvaMessageSheet orphan(OrvaMessageSheet::QuestionMessage, QStringLiteral("Alone"), nullptr);
    QVERIFY(orphan.width() > 0);
    QCOMPARE(runSheet(&orphan, [&]() { press(&orphan, Qt::Key_Escape); }), Cancel);
}

ORVACAT_TEST_MAIN(TestMessageSheet)

#include "tst_messagesheet.moc"
