// The mask overlay and the sheet frame that message and input sheets stand on.

#include "testmain.h"
#include "testenvironment.h"

#include <orvacat/dpiinfo.h>
#include <orvacat/imagemanager.h>
#include <orvacat/orvamask.h>
#include <orvacat/orvasheet.h>

#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QPushButton>
#include <QVBoxLayout>

#include <cstdio>

namespace {

// Set by the parent run in a child that only reports the band width.
const char bandProbeVariable[] = "ORVACAT_SHEETFRAME_PRINT_BAND";

const QColor maskColour(0, 0, 0, 20);

/** A sheet whose shadow painter can be called on any canvas. */
class ProbeSheet : public OrvaSheet
{
public:
    using OrvaSheet::OrvaSheet;
    using OrvaSheet::drawShadow;
};

/** A sheet as the sheet dialogs build one: fixed width, content on the card. */
OrvaSheet* makeSheet(QWidget* parent, const QString& text = QStringLiteral("Content"))
{
    auto* sheet = new OrvaSheet(parent);
    auto* content = new QLabel(text);
    content->setObjectName(QStringLiteral("content"));
    sheet->setWidget(content);
    sheet->setFixedWidth(TestEnvironment::scaled(300));
    sheet->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Maximum);
    return sheet;
}

OrvaMask* maskOf(QWidget* parent)
{
    return parent->findChild<OrvaMask*>(QString(), Qt::FindDirectChildrenOnly);
}

/** The colour of logical pixel (x, y) of a grab, whatever its device-pixel ratio. */
QColor pixelAt(const QImage& image, int x, int y)
{
    const qreal ratio = image.devicePixelRatio();
    return image.pixelColor(int(x * ratio + ratio / 2), int(y * ratio + ratio / 2));
}

/** @p top drawn over the opaque @p bottom. */
QColor over(const QColor& top, const QColor& bottom)
{
    const double a = top.alphaF();
    return QColor::fromRgbF(top.redF() * a + bottom.redF() * (1 - a), top.greenF() * a + bottom.greenF() * (1 - a),
                            top.blueF() * a + bottom.blueF() * (1 - a));
}

bool near(const QColor& actual, const QColor& expected, int tolerance)
{
    return qAbs(actual.red() - expected.red()) <= tolerance && qAbs(actual.green() - expected.green()) <= tolerance
        && qAbs(actual.blue() - expected.blue()) <= tolerance;
}

QString describe(const QColor& colour)
{
    return colour.name(QColor::HexArgb);
}

/** Counts every Qt warning while it lives. */
class QtWarningCounter
{
public:
    QtWarningCounter()
    {
        s_count = 0;
        m_previous = qInstallMessageHandler(&QtWarningCounter::handle);
    }
    ~QtWarningCounter() { qInstallMessageHandler(m_previous); }
    int count() const { return s_count; }

private:
    static void handle(QtMsgType type, const QMessageLogContext&, const QString&)
    {
        if (type == QtWarningMsg || type == QtCriticalMsg)
            ++s_count;
    }
    static int s_count;
    QtMessageHandler m_previous;
};

int QtWarningCounter::s_count = 0;

} // namespace

class TestSheetFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    // OrvaMask
    void createMaskRefusesMissingWidgets();
    void createMaskUsesTheChildsParent();
    void maskIsFilledWithTheColour();
    void maskFollowsTheWindowSize();
    void maskOnInnerWidgetTakesTheWindowSize();
    void maskShowsAndHidesWithTheChild();
    void childShownBeforeKeepsTheMaskUp();
    void childIsCentredInTheMask();

    // OrvaSheet
    void bandWidthFollowsTheFactor();
    void bandWidthAtPinnedFactor_data();
    void bandWidthAtPinnedFactor();
    void printBandWidth();
    void showRestoresTheBand();
    void paintsCardAndShadow();
    void setWidgetTwiceReplacesTheLayout();
    void tinySheetsPaintWithoutPieces_data();
    void tinySheetsPaintWithoutPieces();
    void finishedIsASignal();
};

void TestSheetFrame::initTestCase()
{
    if (!qEnvironmentVariableIsSet(bandProbeVariable))
        TestEnvironment::installDefaultTheme();
}

void TestSheetFrame::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestSheetFrame::createMaskRefusesMissingWidgets()
{
    QWidget window;
    QCOMPARE(OrvaMask::createMask(nullptr, &window, maskColour), nullptr);
    QCOMPARE(maskOf(&window), nullptr);

    OrvaSheet loose(nullptr);
    QCOMPARE(OrvaMask::createMask(&loose, nullptr, maskColour), nullptr);
    QCOMPARE(loose.parentWidget(), nullptr);
    QVERIFY(loose.findChildren<OrvaMask*>().isEmpty());

    QCOMPARE(OrvaMask::createMask(nullptr, nullptr, maskColour), nullptr);
}

void TestSheetFrame::createMaskUsesTheChildsParent()
{
    QWidget window;
    window.resize(500, 400);
    OrvaSheet* sheet = makeSheet(&window);

    QCOMPARE(OrvaMask::createMask(sheet, nullptr, maskColour), sheet);
    OrvaMask* mask = maskOf(&window);
    QVERIFY(mask);
    QCOMPARE(sheet->parentWidget(), mask);
    QCOMPARE(mask->size(), QSize(500, 400));
    // Nothing is shown before the sheet is.
    QVERIFY(mask->isHidden());
}

void TestSheetFrame::maskIsFilledWithTheColour()
{
    QWidget window;
    window.setObjectName(QStringLiteral("window"));
    QPalette palette = window.palette();
    palette.setColor(QPalette::Window, QColor(200, 220, 240));
    window.setPalette(palette);
    window.setAutoFillBackground(true);
    window.resize(500, 400);
    OrvaSheet* sheet = makeSheet(&window);

    const QColor colour(40, 80, 120, 100);
    QVERIFY(OrvaMask::createMask(sheet, &window, colour));
    OrvaMask* mask = maskOf(&window);
    QVERIFY(mask);
    QVERIFY(mask->autoFillBackground());
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QCOMPARE(mask->palette().brush(group, QPalette::Window).color(), colour);
        QCOMPARE(mask->palette().brush(group, QPalette::Window).style(), Qt::SolidPattern);
    }

    window.show();
    sheet->show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QImage shot = window.grab().toImage();
    // A corner of the window, far from the sheet: the window dimmed by the mask.
    const QColor expected = over(colour, QColor(200, 220, 240));
    const QColor actual = pixelAt(shot, 5, 5);
    QVERIFY2(near(actual, expected, 2), qPrintable(describe(actual) + " != " + describe(expected)));
}

void TestSheetFrame::maskFollowsTheWindowSize()
{
    QWidget window;
    window.setObjectName(QStringLiteral("window"));
    window.resize(500, 400);
    OrvaSheet* sheet = makeSheet(&window);
    QVERIFY(OrvaMask::createMask(sheet, &window, maskColour));
    OrvaMask* mask = maskOf(&window);
    QVERIFY(mask);
    window.show();
    sheet->show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(mask->geometry(), QRect(QPoint(0, 0), window.size()));

    window.resize(640, 480);
    QTRY_COMPARE(window.size(), QSize(640, 480));
    QCOMPARE(mask->size(), QSize(640, 480));
    QCOMPARE(mask->pos(), QPoint(0, 0));

    window.resize(420, 380);
    QTRY_COMPARE(window.size(), QSize(420, 380));
    QCOMPARE(mask->size(), QSize(420, 380));

    // The size is fixed, so nothing but a window resize changes it.
    QCOMPARE(mask->minimumSize(), mask->maximumSize());
}

void TestSheetFrame::maskOnInnerWidgetTakesTheWindowSize()
{
    QWidget window;
    window.setObjectName(QStringLiteral("window"));
    auto* layout = new QVBoxLayout(&window);
    auto* toolbar = new QLabel(QStringLiteral("Tool bar"));
    auto* inner = new QWidget;
    layout->addWidget(toolbar);
    layout->addWidget(inner, 1);
    window.resize(500, 400);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(inner->width() < window.width());
    QVERIFY(inner->height() < window.height());

    OrvaSheet* sheet = makeSheet(inner);
    QCOMPARE(OrvaMask::createMask(sheet, nullptr, maskColour), sheet);
    OrvaMask* mask = maskOf(inner);
    QVERIFY(mask);
    QCOMPARE(mask->size(), window.size());
    sheet->show();
    QVERIFY(mask->isVisible());

    // The window's resize reaches the inner widget through the layout, and
    // with it the mask.
    window.resize(700, 520);
    QTRY_COMPARE(window.size(), QSize(700, 520));
    QTRY_COMPARE(mask->size(), QSize(700, 520));
    QCOMPARE(mask->pos(), QPoint(0, 0));
}

void TestSheetFrame::maskShowsAndHidesWithTheChild()
{
    QWidget window;
    window.setObjectName(QStringLiteral("window"));
    window.resize(500, 400);
    auto* behind = new QPushButton(QStringLiteral("Behind"), &window);
    OrvaSheet* sheet = makeSheet(&window);
    QVERIFY(OrvaMask::createMask(sheet, &window, maskColour));
    OrvaMask* mask = maskOf(&window);
    QVERIFY(mask);

    // Showing the window alone does not bring up the mask.
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(!mask->isVisible());
    QVERIFY(behind->isVisible());

    sheet->show();
    QVERIFY(mask->isVisible());
    QVERIFY(sheet->isVisible());
    QCOMPARE(window.childAt(QPoint(5, 5)), mask);

    sheet->hide();
    QVERIFY(!mask->isVisible());
    QCOMPARE(window.childAt(behind->geometry().center()), behind);

    // A widget the host adds later does not end up above the mask.
    auto* later = new QPushButton(QStringLiteral("Later"), &window);
    later->move(window.width() - later->sizeHint().width() - 2, window.height() - later->sizeHint().height() - 2);
    later->show();
    QCOMPARE(window.childAt(later->geometry().center()), later);
    sheet->show();
    QVERIFY(mask->isVisible());
    QCOMPARE(window.childAt(later->geometry().center()), mask);

    // The mask outlives its child, hidden, until the window goes.
    QPointer<OrvaMask> guard(mask);
    delete sheet;
    QVERIFY(guard);
    QVERIFY(!guard->isVisible());
    QCOMPARE(window.childAt(behind->geometry().center()), behind);
}

void TestSheetFrame::childShownBeforeKeepsTheMaskUp()
{
    QWidget window;
    window.setObjectName(QStringLiteral("window"));
    window.resize(500, 400);
    OrvaSheet* sheet = makeSheet(&window);
    window.show();
    sheet->show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QVERIFY(OrvaMask::createMask(sheet, &window, maskColour));
    OrvaMask* mask = maskOf(&window);
    QVERIFY(mask);
    QVERIFY(mask->isVisible());
    QVERIFY(sheet->isVisible());
    QCOMPARE(sheet->parentWidget(), mask);
}

void TestSheetFrame::childIsCentredInTheMask()
{
    QWidget window;
    window.setObjectName(QStringLiteral("window"));
    window.resize(600, 500);
    OrvaSheet* sheet = makeSheet(&window);
    QVERIFY(OrvaMask::createMask(sheet, &window, maskColour));
    window.show();
    sheet->show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    const QPoint centre = sheet->mapTo(&window, sheet->rect().center());
    QVERIFY2(qAbs(centre.x() - window.rect().center().x()) <= 1, qPrintable(QString::number(centre.x())));
    QVERIFY2(qAbs(centre.y() - window.rect().center().y()) <= 1, qPrintable(QString::number(centre.y())));
    QCOMPARE(sheet->width(), TestEnvironment::scaled(300));
    QVERIFY(sheet->height() < window.height());
}

void TestSheetFrame::bandWidthFollowsTheFactor()
{
    const int m = int(22.0 * DPIinfo::getInstance()->getDPI());
    OrvaSheet sheet(nullptr);
    QCOMPARE(sheet.shadowWidth(), m);
    QCOMPARE(sheet.contentsMargins(), QMargins(m, m, m, m));
    QCOMPARE(sheet.contentsRect(), sheet.rect().adjusted(m, m, -m, -m));

    // Polishing and restyling keep the band, also before the sheet was ever sized.
    QWidget window;
    auto* inner = new OrvaSheet(&window);
    inner->ensurePolished();
    QCOMPARE(inner->contentsMargins(), QMargins(m, m, m, m));
    inner->setStyleSheet(QStringLiteral("OrvaSheet { border: 3px solid red; }"));
    inner->ensurePolished();
    QCOMPARE(inner->contentsMargins(), QMargins(m, m, m, m));
    QCOMPARE(inner->windowType(), Qt::Widget);
}

void TestSheetFrame::bandWidthAtPinnedFactor_data()
{
    QTest::addColumn<QByteArray>("fontDpi");
    QTest::addColumn<int>("band");

    QTest::newRow("factor 1.0") << QByteArray("72") << 22;
    QTest::newRow("factor 1.5") << QByteArray("108") << 33;
    QTest::newRow("factor 1.486 truncated") << QByteArray("107") << 32;
    QTest::newRow("factor 4/3") << QByteArray("96") << 29;
}

void TestSheetFrame::bandWidthAtPinnedFactor()
{
    QFETCH(QByteArray, fontDpi);
    QFETCH(int, band);

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_SCALE_FACTOR"));
    environment.remove(QStringLiteral("QT_SCREEN_SCALE_FACTORS"));
    environment.remove(QStringLiteral("QT_AUTO_SCREEN_SCALE_FACTOR"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("QT_FONT_DPI"), QString::fromLatin1(fontDpi));
    environment.insert(QString::fromLatin1(bandProbeVariable), QStringLiteral("1"));
    // The child's exit code is part of the verdict; leaks in the platform
    // plugin at its exit are not this test's business (the parent still checks its own).
    const QString sanitizerOptions = environment.value(QStringLiteral("ASAN_OPTIONS"));
    environment.insert(QStringLiteral("ASAN_OPTIONS"),
                       sanitizerOptions + (sanitizerOptions.isEmpty() ? "" : ":") + QStringLiteral("detect_leaks=0"));

    QProcess child;
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("printBandWidth")});
    QVERIFY2(child.waitForStarted(), qPrintable(child.errorString()));
    if (!child.waitForFinished(60000)) {
        child.kill();
        child.waitForFinished();
        QFAIL("The child did not finish");
    }
    const QByteArray output = child.readAllStandardOutput();
    QCOMPARE(child.exitCode(), 0);
    const int start = output.indexOf("band=");
    QVERIFY2(start >= 0, output.constData());
    const int end = output.indexOf('\n', start);
    const QList<QByteArray> numbers = output.mid(start + 5, end - start - 5).split(' ');
    QCOMPARE(numbers.size(), 5);
    // Every side, and the band the sheet keeps for itself.
    for (const QByteArray& number : numbers)
        QCOMPARE(number.toInt(), band);
}

void TestSheetFrame::printBandWidth()
{
    if (!qEnvironmentVariableIsSet(bandProbeVariable))
        QSKIP("Runs in the child of bandWidthAtPinnedFactor");
    OrvaSheet sheet(nullptr);
    const QMargins margins = sheet.contentsMargins();
    std::printf("band=%d %d %d %d %d\n", margins.left(), margins.top(), margins.right(), margins.bottom(),
                sheet.shadowWidth());
    std::fflush(stdout);
}

void TestSheetFrame::showRestoresTheBand()
{
    const int m = TestEnvironment::scaled(22);
    QWidget window;
    window.setObjectName(QStringLiteral("window"));
    window.resize(500, 400);
    OrvaSheet* sheet = makeSheet(&window);
    sheet->setContentsMargins(0, 0, 0, 0);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(sheet->contentsMargins(), QMargins(m, m, m, m));

    sheet->hide();
    sheet->setContentsMargins(1, 2, 3, 4);
    sheet->show();
    QCOMPARE(sheet->contentsMargins(), QMargins(m, m, m, m));
}

void TestSheetFrame::paintsCardAndShadow()
{
    const int m = TestEnvironment::scaled(22);
    const QColor background(200, 220, 240);
    QWidget window;
    window.setObjectName(QStringLiteral("window"));
    QPalette palette = window.palette();
    palette.setColor(QPalette::Window, background);
    window.setPalette(palette);
    window.setAutoFillBackground(true);
    window.resize(600, 500);

    auto* sheet = new OrvaSheet(&window);
    auto* content = new QWidget;
    content->setFixedSize(TestEnvironment::scaled(200), TestEnvironment::scaled(80));
    sheet->setWidget(content);
    sheet->move(20, 30);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    const int w = sheet->width();
    const int h = sheet->height();
    QVERIFY(w > 2 * m + content->width() - 1);
    QVERIFY(h > 2 * m + content->height() - 1);

    const QImage shot = window.grab(sheet->geometry()).toImage();
    auto at = [&](int x, int y) { return pixelAt(shot, x, y); };

    // The card: white inside the band, up to its edges, also under the
    // transparent content widget.
    for (const QPoint& point : {QPoint(m, m), QPoint(w - m - 1, m), QPoint(m, h - m - 1),
                                QPoint(w - m - 1, h - m - 1), QPoint(w / 2, h / 2)}) {
        QVERIFY2(at(point.x(), point.y()) == QColor(Qt::white),
                 qPrintable(QStringLiteral("(%1,%2) %3").arg(point.x()).arg(point.y()).arg(describe(at(point.x(), point.y())))));
    }

    // The edges: each picture stretched over its side, drawn over what lies
    // behind the sheet.
    struct Edge
    {
        const char* key;
        QSize size;
        QPoint sheetPoint;
        QPoint picturePoint;
    };
    const int innerW = w - 2 * m;
    const int innerH = h - 2 * m;
    const Edge edges[] = {
        {"bg_tutorial_l", QSize(m, innerH), QPoint(m / 2, m + innerH / 2), QPoint(m / 2, innerH / 2)},
        {"bg_tutorial_r", QSize(m, innerH), QPoint(w - m + m / 2, m + innerH / 2), QPoint(m / 2, innerH / 2)},
        {"bg_tutorial_t", QSize(innerW, m), QPoint(m + innerW / 2, m / 2), QPoint(innerW / 2, m / 2)},
        {"bg_tutorial_b", QSize(innerW, m), QPoint(m + innerW / 2, h - m + m / 2), QPoint(innerW / 2, m / 2)},
    };
    for (const Edge& edge : edges) {
        const QPixmap picture = getGlobalImage(edge.key, ImageManager::Normal);
        QVERIFY2(!picture.isNull(), edge.key);
        const QImage stretched =
            picture.scaled(edge.size, Qt::IgnoreAspectRatio, Qt::FastTransformation).toImage();
        const QColor expected = over(stretched.pixelColor(edge.picturePoint), background);
        const QColor actual = at(edge.sheetPoint.x(), edge.sheetPoint.y());
        QVERIFY2(near(actual, expected, 3),
                 qPrintable(QString::fromLatin1(edge.key) + ": " + describe(actual) + " != " + describe(expected)));
        // A shadow, not the card and not the bare background.
        QVERIFY2(actual != QColor(Qt::white), edge.key);
    }

    // The corners: each picture squeezed into m x m.
    struct Corner
    {
        const char* key;
        QPoint origin;
    };
    const Corner corners[] = {
        {"bg_tutorial_lt", QPoint(0, 0)},
        {"bg_tutorial_rt", QPoint(w - m, 0)},
        {"bg_tutorial_lb", QPoint(0, h - m)},
        {"bg_tutorial_rb", QPoint(w - m, h - m)},
    };
    for (const Corner& corner : corners) {
        const QPixmap picture = getGlobalImage(corner.key, ImageManager::Normal);
        QVERIFY2(!picture.isNull(), corner.key);
        const QImage squeezed = picture.scaled(m, m, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).toImage();
        // The inner quarter of the corner, next to the card, where the shadow is darkest.
        const QPoint inner((corner.origin.x() == 0 ? m * 3 / 4 : m / 4), (corner.origin.y() == 0 ? m * 3 / 4 : m / 4));
        const QColor expected = over(squeezed.pixelColor(inner), background);
        const QColor actual = at(corner.origin.x() + inner.x(), corner.origin.y() + inner.y());
        QVERIFY2(near(actual, expected, 12),
                 qPrintable(QString::fromLatin1(corner.key) + ": " + describe(actual) + " != " + describe(expected)));
    }
}

void TestSheetFrame::setWidgetTwiceReplacesTheLayout()
{
    const int m = TestEnvironment::scaled(22);
    QWidget window;
    window.setObjectName(QStringLiteral("window"));
    window.resize(600, 500);
    auto* sheet = new OrvaSheet(&window);

    auto* first = new QLabel(QStringLiteral("First"));
    sheet->setWidget(first);
    QPointer<QLayout> firstLayout(sheet->layout());
    QVERIFY(firstLayout);
    QCOMPARE(firstLayout->indexOf(first), 0);

    auto* second = new QWidget;
    second->setFixedSize(TestEnvironment::scaled(240), TestEnvironment::scaled(120));
    sheet->setWidget(second);
    QVERIFY(!firstLayout);
    QVERIFY(sheet->layout());
    QCOMPARE(sheet->layout()->count(), 1);
    QCOMPARE(sheet->layout()->indexOf(first), -1);
    QCOMPARE(sheet->layout()->indexOf(second), 0);
    QCOMPARE(sheet->layout()->itemAt(0)->alignment(), Qt::AlignCenter);
    // The first content stays with the sheet.
    QCOMPARE(first->parentWidget(), sheet);
    QCOMPARE(second->parentWidget(), sheet);

    // The sheet was fitted to the new content, band included.
    QVERIFY(sheet->width() >= second->width() + 2 * m);
    QVERIFY(sheet->height() >= second->height() + 2 * m);

    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    // The content lies on the card, inside the band.
    QVERIFY(sheet->contentsRect().contains(second->geometry()));
    QCOMPARE(second->geometry().center().x(), sheet->contentsRect().center().x());
}

void TestSheetFrame::tinySheetsPaintWithoutPieces_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("empty") << QSize(0, 0);
    QTest::newRow("one pixel") << QSize(1, 1);
    QTest::newRow("one band") << QSize(22, 22);
    QTest::newRow("exactly two bands") << QSize(44, 44);
    QTest::newRow("narrow") << QSize(10, 200);
    QTest::newRow("flat") << QSize(200, 10);
}

void TestSheetFrame::tinySheetsPaintWithoutPieces()
{
    QFETCH(QSize, size);
    QWidget window;
    window.setObjectName(QStringLiteral("window"));
    window.resize(300, 300);
    auto* sheet = new ProbeSheet(&window);
    sheet->setMinimumSize(0, 0);
    sheet->resize(size);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(sheet->size(), size);

    QtWarningCounter warnings;
    if (!size.isEmpty()) {
        const QPixmap shot = sheet->grab();
        QVERIFY(!shot.isNull());
    }
    sheet->repaint();
    QCOMPARE(warnings.count(), 0);

    // Painting directly, with nothing to stretch, draws nothing but corners.
    QImage canvas(qMax(size.width(), 1), qMax(size.height(), 1), QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    {
        QPainter painter(&canvas);
        sheet->drawShadow(painter);
    }
    QCOMPARE(warnings.count(), 0);
}

void TestSheetFrame::finishedIsASignal()
{
    OrvaSheet sheet(nullptr);
    QSignalSpy spy(&sheet, SIGNAL(finished(int)));
    QVERIFY(spy.isValid());
    QMetaObject::invokeMethod(&sheet, "finished", Q_ARG(int, 1024));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toInt(), 1024);
}

ORVACAT_TEST_MAIN(TestSheetFrame)
#include "tst_sheetframe.moc"
