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

QLabel* iconLabel(QWidget* sheet)
{
    return labelsOfClass(sheet, "QLabel").value(0);
}

QLabel* textLabel(QWidget* sheet)
{
    return labelsOfClass(sheet, "MessageLabel").value(0);
}

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
    void textIsScaledAndWrapped();
    void messageLabelHeightFollowsWidth();
    void informativeTextAddsAndRemovesLine();
    void setMessageTypeRebuildsButtons();

    void keysAnswerQuestion_data();
    void keysAnswerQuestion();
    void escapeIsSwallowedWithoutCancel();
    void otherKeysAreSwallowed();
    void clickingButtonsAnswers_data();
    void clickingButtonsAnswers();
    void execFocusesTextAndMarksEnds();
    void tabStaysInsideSheet();
    void backtabWrapsToLast();
    void windowCannotBeClosedWhileBlocking();
    void windowClosesWhenNotBlocking();
    void quitReturnsZero();
    void doneTwiceKeepsFirstResult();
    void doneOnHiddenSheetIsIgnored();
    void execWhileRunningReturnsAtOnce();
    void sheetCanRunAgain();
    void nestedRunsAnswerInOrder();
    void windowResizedDuringRun();
    void parentDestroyedDuringRun();
    void sheetDeletedDuringRun();
    void showSheetReturnsAtOnceAndWatchesKeys();
    void busySheetRunsItsAnimation();
    void busySheetWithMissingMovie();
    void keysOutsideRunAreLeftAlone();

private:
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
    QTest::addColumn<bool>("hasOk");
    QTest::addColumn<bool>("hasCancel");
    QTest::addColumn<QString>("okCaption");
    QTest::addColumn<QString>("styleKey");

    const QString other = QStringLiteral("component.message_sheet_other");
    const QString processing = QStringLiteral("component.message_sheet_processing");
    QTest::newRow("app") << 0 << "app_img" << false << false << QString() << processing;
    QTest::newRow("information") << 1 << "icon_information" << true << false << caption("ok") << other;
    QTest::newRow("warning") << 2 << "icon_warning" << true << false << caption("ok") << other;
    QTest::newRow("question") << 3 << "icon_question" << true << true << caption("ok") << other;
    QTest::newRow("upgrade") << 4 << "icon_information" << true << true << caption("wizard_client_upgrade") << other;
    QTest::newRow("warning question") << 5 << "icon_warning" << true << true << caption("ok") << other;
    QTest::newRow("processing") << 6 << QString() << false << false << QString() << processing;
    QTest::newRow("beyond the last") << 7 << QString() << false << false << QString() << other;
}

void TestMessageSheet::typesSetIconButtonsAndStyle()
{
    QFETCH(int, type);
    QFETCH(QString, iconKey);
    QFETCH(bool, hasOk);
    QFETCH(bool, hasCancel);
    QFETCH(QString, okCaption);
    QFETCH(QString, styleKey);

    OrvaMessageSheet sheet(OrvaMessageSheet::MessageType(type), QStringLiteral("Text"), m_window);
    QCOMPARE(sheet.styleSheet(), getStyleSheet(styleKey, false));

    const QPixmap icon = iconLabel(&sheet)->pixmap(Qt::ReturnByValue);
    if (iconKey.isEmpty()) {
        QVERIFY(icon.isNull());
    } else {
        const QPixmap expected = getGlobalImage(iconKey, ImageManager::Normal);
        QVERIFY2(!expected.isNull(), qPrintable(iconKey));
        QCOMPARE(icon.cacheKey(), expected.cacheKey());
    }

    QPushButton* ok = sheet.button(QMessageBox::Ok);
    QPushButton* cancel = sheet.button(QMessageBox::Discard);
    QCOMPARE(ok != nullptr, hasOk);
    QCOMPARE(cancel != nullptr, hasCancel);
    QVERIFY(!sheet.button(QMessageBox::Cancel));
    if (ok) {
        QCOMPARE(ok->text(), okCaption);
        QVERIFY(ok->isDefault());
        QCOMPARE(ok->styleSheet(), getStyleSheet("component.apply_button", false));
        QCOMPARE(ok->height(), TestEnvironment::scaled(28));
        QCOMPARE(ok->minimumWidth(), TestEnvironment::scaled(120));
    }
    if (cancel) {
        QCOMPARE(cancel->text(), caption("cancel"));
        QCOMPARE(cancel->styleSheet(), getStyleSheet("component.cancel_button", false));
        QCOMPARE(cancel->height(), TestEnvironment::scaled(28));
        QCOMPARE(cancel->minimumWidth(), TestEnvironment::scaled(80));
    }
    QCOMPARE(textLabel(&sheet)->styleSheet(), getStyleSheet("component.message_sheet_text", false));
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
    QCOMPARE(sheet.sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(sheet.sizePolicy().verticalPolicy(), QSizePolicy::Maximum);

    // The rule is read again whenever the content changes.
    parent.resize(int(300 * DPIinfo::getInstance()->getDPI()), 400);
    sheet.setText(QStringLiteral("Other text"));
    QCOMPARE(sheet.width(), expectedSheetWidth(parent.width()));
}

void TestMessageSheet::literalWidthsAtFactorOne()
{
    // The numbers below hold at 72 dpi; other settings repeat them in a
    // child process pinned to it.
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

void TestMessageSheet::textIsScaledAndWrapped()
{
    OrvaMessageSheet sheet(OrvaMessageSheet::InformationMessage, QStringLiteral("Hello <b>there</b>"), m_window);
    QLabel* label = textLabel(&sheet);
    QVERIFY(label);
    QCOMPARE(label->text(), QStringLiteral("<p style='line-height: %1px;'>Hello <b>there</b></p>")
                                .arg(TestEnvironment::scaled(24)));
    QVERIFY(label->wordWrap());
    QCOMPARE(label->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(label->textInteractionFlags(),
             Qt::TextSelectableByMouse | Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    QVERIFY(label->openExternalLinks());
    QCOMPARE(label->sizePolicy().horizontalPolicy(), QSizePolicy::Minimum);
    QCOMPARE(label->sizePolicy().verticalPolicy(), QSizePolicy::Maximum);
}

void TestMessageSheet::messageLabelHeightFollowsWidth()
{
    const QString longText = QStringLiteral("A long sentence that must wrap onto several lines when the label is narrow. ")
                                 .repeated(4);
    OrvaMessageSheet sheet(OrvaMessageSheet::InformationMessage, longText, m_window);
    m_window->show();
    sheet.showSheet();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    QLabel* label = textLabel(&sheet);
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
    QVERIFY(finished.isValid());
    m_window->show();
    whenRunning([&]() { sheet.button(QMessageBox::Discard)->click(); });
    Watchdog watchdog([&]() { sheet.quit(); });
    QCOMPARE(sheet.exec(), Cancel);
    QVERIFY(!watchdog.fired);
    QCOMPARE(finished.count(), 1);
}

void TestMessageSheet::keysAnswerQuestion_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("expected");
    QTest::newRow("return") << int(Qt::Key_Return) << Ok;
    QTest::newRow("enter") << int(Qt::Key_Enter) << Ok;
    QTest::newRow("space") << int(Qt::Key_Space) << Ok;
    QTest::newRow("escape") << int(Qt::Key_Escape) << Cancel;
}

void TestMessageSheet::keysAnswerQuestion()
{
    QFETCH(int, key);
    QFETCH(int, expected);

    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    auto* mask = OrvaMask::createMask(new OrvaMessageSheet(OrvaMessageSheet::QuestionMessage,
                                                           QStringLiteral("Proceed?"), m_window),
                                      m_window, QColor(0, 0, 0, 20));
    auto* sheet = static_cast<OrvaMessageSheet*>(mask);
    QSignalSpy finished(sheet, &OrvaSheet::finished);
    QVERIFY(finished.isValid());

    bool wasVisible = false;
    whenRunning([&]() {
        wasVisible = sheet->isVisible() && sheet->parentWidget()->isVisible();
        press(m_window, Qt::Key(key));
    });
    Watchdog watchdog([&]() { sheet->quit(); });
    QCOMPARE(sheet->exec(), expected);
    QVERIFY(!watchdog.fired);
    QVERIFY(wasVisible);
    QVERIFY(!sheet->isVisible());
    QVERIFY(!sheet->parentWidget()->isVisible());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toInt(), expected);
}

void TestMessageSheet::escapeIsSwallowedWithoutCancel()
{
    m_window->show();
    OrvaMessageSheet sheet(OrvaMessageSheet::InformationMessage, QStringLiteral("Saved."), m_window);
    bool stillUpAfterEscape = false;
    whenRunning([&]() {
        press(m_window, Qt::Key_Escape);
        QCoreApplication::processEvents();
        stillUpAfterEscape = sheet.isVisible();
        press(m_window, Qt::Key_Return);
    });
    Watchdog watchdog([&]() { sheet.quit(); });
    QCOMPARE(sheet.exec(), Ok);
    QVERIFY(!watchdog.fired);
    QVERIFY(stillUpAfterEscape);
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
    whenRunning([&]() {
        press(m_window, Qt::Key_A);
        press(m_window, Qt::Key_Down);
        QTest::keyClick(m_window, Qt::Key_X);
        QTest::keyClick(sheet.button(QMessageBox::Ok), Qt::Key_B);
        upAfterKeys = sheet.isVisible() && finished.isEmpty();
        press(m_window, Qt::Key_Escape);
    });
    Watchdog watchdog([&]() { sheet.quit(); });
    QCOMPARE(sheet.exec(), Cancel);
    QVERIFY(!watchdog.fired);
    QVERIFY(upAfterKeys);
    QCOMPARE(recorder.keys, QList<int>());

    // Without a sheet the same keys do reach the window.
    QTest::keyClick(m_window, Qt::Key_X);
    QCOMPARE(recorder.keys, QList<int>{Qt::Key_X});
}

void TestMessageSheet::clickingButtonsAnswers_data()
{
    QTest::addColumn<int>("which");
    QTest::newRow("ok") << Ok;
    QTest::newRow("cancel") << Cancel;
}

void TestMessageSheet::clickingButtonsAnswers()
{
    QFETCH(int, which);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    OrvaMessageSheet sheet(OrvaMessageSheet::WarningQuestionMessage, QStringLiteral("Overwrite?"), m_window);
    whenRunning([&]() {
        QPushButton* button = sheet.button(QMessageBox::StandardButton(which));
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
    });
    Watchdog watchdog([&]() { sheet.quit(); });
    QCOMPARE(sheet.exec(), which);
    QVERIFY(!watchdog.fired);
}

void TestMessageSheet::execFocusesTextAndMarksEnds()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Go?"), m_window);
    QWidget* focusDuringRun = nullptr;
    Qt::FocusPolicy boxPolicy = Qt::TabFocus;
    whenRunning([&]() {
        focusDuringRun = QApplication::focusWidget();
        boxPolicy = sheet.findChild<QDialogButtonBox*>()->focusPolicy();
        sheet.quit();
    });
    Watchdog watchdog([&]() { sheet.quit(); });
    QCOMPARE(sheet.exec(), 0);
    QVERIFY(!watchdog.fired);
    QCOMPARE(focusDuringRun, static_cast<QWidget*>(textLabel(&sheet)));
    QCOMPARE(boxPolicy, Qt::NoFocus);
    QCOMPARE(sheet.button(QMessageBox::Ok)->focusPolicy(), Qt::StrongFocus);
}

void TestMessageSheet::tabStaysInsideSheet()
{
    // Focusable widgets of the window before and after the sheet in the
    // focus chain: Tab must never reach them.
    auto* before = new QLineEdit(m_window);
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Go?"), QStringLiteral("Details"),
                           m_window);
    auto* after = new QLineEdit(m_window);
    before->move(0, 0);
    after->move(0, TestEnvironment::scaled(40));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window));

    QList<QWidget*> visited;
    whenRunning([&]() {
        for (int i = 0; i < 9; ++i) {
            press(m_window, Qt::Key_Tab);
            visited << QApplication::focusWidget();
        }
        sheet.quit();
    });
    Watchdog watchdog([&]() { sheet.quit(); });
    QCOMPARE(sheet.exec(), 0);
    QVERIFY(!watchdog.fired);

    const QList<QLabel*> labels = labelsOfClass(&sheet, "MessageLabel");
    QCOMPARE(labels.size(), 2);
    QList<QWidget*> cycle{sheet.button(QMessageBox::Ok), sheet.button(QMessageBox::Discard), labels.at(1), labels.at(0)};
    QCOMPARE(visited.size(), 9);
    for (int i = 0; i < visited.size(); ++i) {
        QVERIFY2(visited.at(i) != before && visited.at(i) != after, qPrintable(QString::number(i)));
        QCOMPARE(visited.at(i), cycle.at(i % cycle.size()));
    }
}

void TestMessageSheet::backtabWrapsToLast()
{
    auto* before = new QLineEdit(m_window);
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Go?"), m_window);
    auto* after = new QLineEdit(m_window);
    Q_UNUSED(after)
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window));

    QList<QWidget*> visited;
    whenRunning([&]() {
        press(m_window, Qt::Key_Backtab);
        visited << QApplication::focusWidget();
        press(m_window, Qt::Key_Tab, Qt::ShiftModifier);
        visited << QApplication::focusWidget();
        press(m_window, Qt::Key_Backtab);
        visited << QApplication::focusWidget();
        sheet.quit();
    });
    Watchdog watchdog([&]() { sheet.quit(); });
    QCOMPARE(sheet.exec(), 0);
    QVERIFY(!watchdog.fired);
    // From the text (first) to cancel (last), then back to Ok and the text.
    QCOMPARE(visited, (QList<QWidget*>{sheet.button(QMessageBox::Discard), sheet.button(QMessageBox::Ok),
                                       textLabel(&sheet)}));
    QVERIFY(!visited.contains(before));
}

void TestMessageSheet::windowCannotBeClosedWhileBlocking()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    OrvaMessageSheet sheet(OrvaMessageSheet::InformationMessage, QStringLiteral("Busy"), m_window);
    bool closeAccepted = true;
    bool platformCloseAccepted = true;
    bool visibleAfter = false;
    whenRunning([&]() {
        closeAccepted = m_window->close();
        platformCloseAccepted = m_window->windowHandle()->close();
        visibleAfter = m_window->isVisible() && sheet.isVisible();
        press(m_window, Qt::Key_Return);
    });
    Watchdog watchdog([&]() { sheet.quit(); });
    QCOMPARE(sheet.exec(), Ok);
    QVERIFY(!watchdog.fired);
    QVERIFY(!closeAccepted);
    QVERIFY(!platformCloseAccepted);
    QVERIFY(visibleAfter);

    // The window is free again afterwards.
    QVERIFY(m_window->close());
    QVERIFY(!m_window->isVisible());
}

void TestMessageSheet::windowClosesWhenNotBlocking()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    OrvaMessageSheet sheet(OrvaMessageSheet::InformationMessage, QStringLiteral("Free"), m_window);
    sheet.setBlockWindowButton(false);
    bool closeAccepted = false;
    whenRunning([&]() {
        closeAccepted = m_window->close();
        sheet.quit();
    });
    Watchdog watchdog([&]() { sheet.quit(); });
    QCOMPARE(sheet.exec(), 0);
    QVERIFY(!watchdog.fired);
    QVERIFY(closeAccepted);
}

void TestMessageSheet::quitReturnsZero()
{
    m_window->show();
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("?"), m_window);
    QSignalSpy finished(&sheet, &OrvaSheet::finished);
    QVERIFY(finished.isValid());
    whenRunning([&]() { sheet.quit(); });
    Watchdog watchdog([&]() { sheet.done(-1); });
    QCOMPARE(sheet.exec(), 0);
    QVERIFY(!watchdog.fired);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toInt(), 0);
    QVERIFY(sheet.isHidden());
}

void TestMessageSheet::doneTwiceKeepsFirstResult()
{
    m_window->show();
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("?"), m_window);
    QSignalSpy finished(&sheet, &OrvaSheet::finished);
    whenRunning([&]() {
        sheet.done(Ok);
        sheet.done(Cancel);
    });
    Watchdog watchdog([&]() { sheet.quit(); });
    QCOMPARE(sheet.exec(), Ok);
    QVERIFY(!watchdog.fired);
    QCOMPARE(finished.count(), 1);

    sheet.done(Cancel);
    QCOMPARE(finished.count(), 1);
}

void TestMessageSheet::doneOnHiddenSheetIsIgnored()
{
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("?"), m_window);
    QSignalSpy finished(&sheet, &OrvaSheet::finished);
    sheet.done(Ok);
    sheet.quit();
    QCOMPARE(finished.count(), 0);

    // A sheet shown without a run is ended by done() all the same.
    m_window->show();
    sheet.showSheet();
    QVERIFY(sheet.isVisible());
    sheet.done(Ok);
    QVERIFY(!sheet.isVisible());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toInt(), Ok);
}

void TestMessageSheet::execWhileRunningReturnsAtOnce()
{
    m_window->show();
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("?"), m_window);
    int innerResult = -1;
    bool stillUp = false;
    WarningCollector warnings;
    whenRunning([&]() {
        innerResult = sheet.exec();
        stillUp = sheet.isVisible();
        press(m_window, Qt::Key_Return);
    });
    Watchdog watchdog([&]() { sheet.quit(); });
    QCOMPARE(sheet.exec(), Ok);
    QVERIFY(!watchdog.fired);
    QCOMPARE(innerResult, 0);
    QVERIFY(stillUp);
    QCOMPARE(warnings.count(), 1);
}

void TestMessageSheet::sheetCanRunAgain()
{
    m_window->show();
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("?"), m_window);
    QSignalSpy finished(&sheet, &OrvaSheet::finished);
    for (int round = 0; round < 3; ++round) {
        const Qt::Key key = round % 2 ? Qt::Key_Escape : Qt::Key_Return;
        whenRunning([&]() { press(m_window, key); });
        Watchdog watchdog([&]() { sheet.quit(); });
        QCOMPARE(sheet.exec(), round % 2 ? Cancel : Ok);
        QVERIFY(!watchdog.fired);
    }
    QCOMPARE(finished.count(), 3);
}

void TestMessageSheet::nestedRunsAnswerInOrder()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    auto* outer = static_cast<OrvaMessageSheet*>(OrvaMask::createMask(
        new OrvaMessageSheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Outer?"), m_window), m_window,
        QColor(0, 0, 0, 20)));
    QSignalSpy outerFinished(outer, &OrvaSheet::finished);

    int innerResult = -1;
    bool outerUpDuringInner = false;
    bool outerUpAfterInner = false;
    bool outerFinishedEarly = true;
    // Judged during the inner run: the focused widget is gone with the inner sheet.
    bool focusOutsideOuter = false;
    OrvaMessageSheet* innerSheet = nullptr;
    whenRunning([&]() {
        auto* inner = static_cast<OrvaMessageSheet*>(OrvaMask::createMask(
            new OrvaMessageSheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Inner?"), m_window), m_window,
            QColor(0, 0, 0, 20)));
        innerSheet = inner;
        whenRunning([&]() {
            outerUpDuringInner = outer->isVisible();
            QWidget* focusDuringInner = QApplication::focusWidget();
            focusOutsideOuter = focusDuringInner && !isInside(focusDuringInner, outer);
            // Return must answer the inner sheet only.
            press(m_window, Qt::Key_Escape);
        });
        Watchdog innerWatchdog([&]() { inner->quit(); });
        innerResult = inner->exec();
        outerUpAfterInner = outer->isVisible();
        outerFinishedEarly = !outerFinished.isEmpty();
        delete inner;
        innerSheet = nullptr;
        press(m_window, Qt::Key_Return);
    });
    Watchdog watchdog([&]() { outer->quit(); });
    QCOMPARE(outer->exec(), Ok);
    QVERIFY(!watchdog.fired);
    QCOMPARE(innerResult, Cancel);
    QVERIFY(outerUpDuringInner);
    QVERIFY(outerUpAfterInner);
    QVERIFY(!outerFinishedEarly);
    QVERIFY(focusOutsideOuter);
    QCOMPARE(outerFinished.count(), 1);
    QVERIFY(!innerSheet);
}

void TestMessageSheet::windowResizedDuringRun()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    auto* sheet = static_cast<OrvaMessageSheet*>(OrvaMask::createMask(
        new OrvaMessageSheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Resize me"), m_window), m_window,
        QColor(0, 0, 0, 20)));
    QWidget* mask = sheet->parentWidget();
    const QSize bigger(TestEnvironment::scaled(1200), TestEnvironment::scaled(800));

    QRect maskAfter;
    QPoint sheetCentreAfter;
    bool settled = false;
    whenRunning([&]() {
        m_window->resize(bigger);
        settled = QTest::qWaitFor([&]() {
            return mask->size() == bigger && qAbs(sheet->geometry().center().x() - bigger.width() / 2) <= 2;
        }, 3000);
        maskAfter = mask->geometry();
        sheetCentreAfter = sheet->geometry().center();
        press(m_window, Qt::Key_Return);
    });
    Watchdog watchdog([&]() { sheet->quit(); });
    QCOMPARE(sheet->exec(), Ok);
    QVERIFY(!watchdog.fired);
    QVERIFY(settled);
    QCOMPARE(maskAfter, QRect(QPoint(0, 0), bigger));
    QVERIFY(qAbs(sheetCentreAfter.x() - bigger.width() / 2) <= 2);
    QVERIFY(qAbs(sheetCentreAfter.y() - bigger.height() / 2) <= 2);
}

void TestMessageSheet::parentDestroyedDuringRun()
{
    auto* window = new QWidget;
    window->resize(TestEnvironment::scaled(800), TestEnvironment::scaled(600));
    window->show();
    auto* sheet = static_cast<OrvaMessageSheet*>(OrvaMask::createMask(
        new OrvaMessageSheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Doomed"), window), window,
        QColor(0, 0, 0, 20)));
    QPointer<OrvaMessageSheet> guard(sheet);
    whenRunning([window]() { delete window; });
    Watchdog watchdog([&]() {
        if (guard)
            guard->quit();
    });
    QCOMPARE(sheet->exec(), 0);
    QVERIFY(!watchdog.fired);
    QVERIFY(guard.isNull());
}

void TestMessageSheet::sheetDeletedDuringRun()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    auto* sheet = new OrvaMessageSheet(OrvaMessageSheet::InformationMessage, QStringLiteral("Gone"), m_window);
    QPointer<OrvaMessageSheet> guard(sheet);
    whenRunning([sheet]() { sheet->deleteLater(); });
    Watchdog watchdog([&]() {
        if (guard)
            guard->quit();
    });
    QCOMPARE(sheet->exec(), 0);
    QVERIFY(!watchdog.fired);
    QVERIFY(guard.isNull());
    // The window lives on and can be closed again.
    QVERIFY(m_window->close());
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
    QMovie* movie = iconLabel(&sheet)->movie();
    QVERIFY(movie);
    const int n = qRound(DPIinfo::getInstance()->getDPI() * 32);
    QCOMPARE(movie->scaledSize(), QSize(n, n));
    QCOMPARE(movie->state(), QMovie::NotRunning);
    QCOMPARE(sheet.styleSheet(), getStyleSheet("component.message_sheet_processing", false));

    QMovie::MovieState stateDuringRun = QMovie::NotRunning;
    bool iconShown = false;
    bool returnIgnored = false;
    whenRunning([&]() {
        stateDuringRun = movie->state();
        iconShown = iconLabel(&sheet)->isVisible();
        press(m_window, Qt::Key_Return);
        QCoreApplication::processEvents();
        returnIgnored = sheet.isVisible();
        sheet.done(7);
    });
    Watchdog watchdog([&]() { sheet.quit(); });
    QCOMPARE(sheet.exec(), 7);
    QVERIFY(!watchdog.fired);
    QCOMPARE(stateDuringRun, QMovie::Running);
    QVERIFY(iconShown);
    QVERIFY(returnIgnored);
}

void TestMessageSheet::busySheetWithMissingMovie()
{
    m_window->show();
    OrvaMessageSheet sheet(QStringLiteral("Working..."), QStringLiteral("/nonexistent/busy.gif"), m_window);
    whenRunning([&]() { sheet.quit(); });
    Watchdog watchdog([&]() { sheet.done(-1); });
    QCOMPARE(sheet.exec(), 0);
    QVERIFY(!watchdog.fired);

    // No parent at all: the sheet is its own window and still ends.
    OrvaMessageSheet orphan(OrvaMessageSheet::QuestionMessage, QStringLiteral("Alone"), nullptr);
    QVERIFY(orphan.width() > 0);
    whenRunning([&]() { press(&orphan, Qt::Key_Escape); });
    Watchdog orphanWatchdog([&]() { orphan.quit(); });
    QCOMPARE(orphan.exec(), Cancel);
    QVERIFY(!orphanWatchdog.fired);
}

void TestMessageSheet::keysOutsideRunAreLeftAlone()
{
    // The sheet filters its own labels and buttons for good; a hidden sheet
    // must not steal their keys, nor the window's.
    auto* edit = new QLineEdit(m_window);
    OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, QStringLiteral("Idle"), m_window);
    sheet.hide();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    edit->setFocus();
    QTest::keyClicks(edit, QStringLiteral("ab c"));
    QCOMPARE(edit->text(), QStringLiteral("ab c"));
    QSignalSpy finished(&sheet, &OrvaSheet::finished);
    QTest::keyClick(edit, Qt::Key_Return);
    QTest::keyClick(edit, Qt::Key_Escape);
    QCOMPARE(finished.count(), 0);
    QVERIFY(m_window->close());
}

ORVACAT_TEST_MAIN(TestMessageSheet)

#include "tst_messagesheet.moc"
