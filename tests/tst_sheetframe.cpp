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


namespace {

// Set by the parent run, to the band width expected, in a child that only checks it.
const char bandProbeVariable[] = "ORVACAT_SHEETFRAME_BAND";

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

/** A 500 x 400 window (with @p background, if valid) holding a sheet under a mask of @p colour. */
struct MaskedWindow
{
    explicit MaskedWindow(const QColor& colour = maskColour, const QColor& background = QColor())
    {
        window.setObjectName(QStringLiteral("window"));
        if (background.isValid()) {
            QPalette palette = window.palette();
            palette.setColor(QPalette::Window, background);
            window.setPalette(palette);
            window.setAutoFillBackground(true);
        }
        window.resize(500, 400);
        sheet = makeSheet(&window);
        OrvaMask::createMask(sheet, &window, colour);
        mask = maskOf(&window);
    }

    /** Shows the window and then the sheet; false if the window never appeared. */
    bool show()
    {
        window.show();
        sheet->show();
        return QTest::qWaitForWindowExposed(&window);
    }

    QWidget window;
    OrvaSheet* sheet = nullptr;
    OrvaMask* mask = nullptr;
};

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
    void createMask();
    void maskIsFilledWithTheColour();
    void maskFollowsTheWindowSize();
    void maskOnInnerWidgetTakesTheWindowSize();
    void maskShowsAndHidesWithTheChild();

    // OrvaSheet
    void bandWidthFollowsTheFactor();
    void bandWidthAtPinnedFactor_data();
    void bandWidthAtPinnedFactor();
    void bandInChild();
    void paintsCardAndShadow();
    void setWidgetTwiceReplacesTheLayout();
    void tinySheetsPaintWithoutPieces_data();
    void tinySheetsPaintWithoutPieces();
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

void TestSheetFrame::createMask()
{
    // Missing widgets: nothing made, nothing moved.
    QWidget window;
    QCOMPARE(OrvaMask::createMask(nullptr, &window, maskColour), nullptr);
    QCOMPARE(maskOf(&window), nullptr);
    OrvaSheet loose(nullptr);
    QCOMPARE(OrvaMask::createMask(&loose, nullptr, maskColour), nullptr);
    QCOMPARE(loose.parentWidget(), nullptr);
    QVERIFY(loose.findChildren<OrvaMask*>().isEmpty());
    QCOMPARE(OrvaMask::createMask(nullptr, nullptr, maskColour), nullptr);

    // Without a parent given, the child's parent is used; nothing shows before the sheet does.
    window.resize(500, 400);
    OrvaSheet* sheet = makeSheet(&window);
    QCOMPARE(OrvaMask::createMask(sheet, nullptr, maskColour), sheet);
    OrvaMask* mask = maskOf(&window);
    QVERIFY(mask);
    QCOMPARE(sheet->parentWidget(), mask);
    QCOMPARE(mask->size(), QSize(500, 400));
    QVERIFY(mask->isHidden());

    // A child already shown brings its mask up at once.
    QWidget other;
    other.setObjectName(QStringLiteral("other"));
    other.resize(500, 400);
    OrvaSheet* shownSheet = makeSheet(&other);
    other.show();
    shownSheet->show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    QVERIFY(OrvaMask::createMask(shownSheet, &other, maskColour));
    QVERIFY(maskOf(&other) && maskOf(&other)->isVisible());
    QVERIFY(shownSheet->isVisible());
}

void TestSheetFrame::maskIsFilledWithTheColour()
{
    const QColor colour(40, 80, 120, 100);
    const QColor background(200, 220, 240);
    MaskedWindow masked(colour, background);
    QVERIFY(masked.mask);
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        QCOMPARE(masked.mask->palette().brush(group, QPalette::Window).color(), colour);
    QVERIFY(masked.show());

    // A corner of the window, far from the sheet: the window dimmed by the mask.
    const QColor expected = over(colour, background);
    const QColor actual = pixelAt(masked.window.grab().toImage(), 5, 5);
    QVERIFY2(near(actual, expected, 2), qPrintable(describe(actual) + " != " + describe(expected)));

    // The sheet sits in the middle of the mask.
    const QPoint centre = masked.sheet->mapTo(&masked.window, masked.sheet->rect().center());
    QVERIFY2((centre - masked.window.rect().center()).manhattanLength() <= 2,
             qPrintable(QStringLiteral("%1,%2").arg(centre.x()).arg(centre.y())));
    QCOMPARE(masked.sheet->width(), TestEnvironment::scaled(300));
}

void TestSheetFrame::maskFollowsTheWindowSize()
{
    MaskedWindow masked;
    QVERIFY(masked.mask);
    QVERIFY(masked.show());
    QCOMPARE(masked.mask->geometry(), QRect(QPoint(0, 0), masked.window.size()));
    for (const QSize& size : {QSize(640, 480), QSize(420, 380)}) {
        masked.window.resize(size);
        QTRY_COMPARE(masked.window.size(), size);
        QCOMPARE(masked.mask->geometry(), QRect(QPoint(0, 0), size));
    }
    // The size is fixed, so nothing but a window resize changes it.
    QCOMPARE(masked.mask->minimumSize(), masked.mask->maximumSize());
}

void TestSheetFrame::maskOnInnerWidgetTakesTheWindowSize()
{
    QWidget window;
    window.setObjectName(QStringLiteral("window"));
    auto* layout = new QVBoxLayout(&window);
    auto* inner = new QWidget;
    layout->addWidget(new QLabel(QStringLiteral("Tool bar")));
    layout->addWidget(inner, 1);
    window.resize(500, 400);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(inner->width() < window.width() && inner->height() < window.height());

    OrvaSheet* sheet = makeSheet(inner);
    QCOMPARE(OrvaMask::createMask(sheet, nullptr, maskColour), sheet);
    OrvaMask* mask = maskOf(inner);
    QVERIFY(mask);
    QCOMPARE(mask->size(), window.size());
    sheet->show();
    QVERIFY(mask->isVisible());

    // The window's resize reaches the inner widget through the layout, and with it the mask.
    window.resize(700, 520);
    QTRY_COMPARE(mask->size(), QSize(700, 520));
    QCOMPARE(mask->pos(), QPoint(0, 0));
}

void TestSheetFrame::maskShowsAndHidesWithTheChild()
{
    MaskedWindow masked;
    QWidget& window = masked.window;
    auto* behind = new QPushButton(QStringLiteral("Behind"), &window);
    QVERIFY(masked.mask);

    // Showing the window alone does not bring up the mask.
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(!masked.mask->isVisible());
    QVERIFY(behind->isVisible());

    masked.sheet->show();
    QVERIFY(masked.mask->isVisible());
    QCOMPARE(window.childAt(QPoint(5, 5)), masked.mask);
    masked.sheet->hide();
    QVERIFY(!masked.mask->isVisible());
    QCOMPARE(window.childAt(behind->geometry().center()), behind);

    // A widget the host adds later does not end up above the mask.
    auto* later = new QPushButton(QStringLiteral("Later"), &window);
    later->move(window.width() - later->sizeHint().width() - 2, window.height() - later->sizeHint().height() - 2);
    later->show();
    QCOMPARE(window.childAt(later->geometry().center()), later);
    masked.sheet->show();
    QCOMPARE(window.childAt(later->geometry().center()), masked.mask);

    // The mask outlives its child, hidden, until the window goes.
    QPointer<OrvaMask> guard(masked.mask);
    delete masked.sheet;
    QVERIFY(guard);
    QVERIFY(!guard->isVisible());
    QCOMPARE(window.childAt(behind->geometry().center()), behind);
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

    // Showing puts back a band that was taken away.
    inner->setContentsMargins(0, 0, 0, 0);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(inner->contentsMargins(), QMargins(m, m, m, m));
    inner->hide();
    inner->setContentsMargins(1, 2, 3, 4);
    inner->show();
    QCOMPARE(inner->contentsMargins(), QMargins(m, m, m, m));
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
    environment.insert(QString::fromLatin1(bandProbeVariable), QString::number(band));
    // The child is judged by its report; leaks in the platform plugin at its
    // exit are not this test's business (the parent still checks its own).
    const QString sanitizerOptions = environment.value(QStringLiteral("ASAN_OPTIONS"));
    environment.insert(QStringLiteral("ASAN_OPTIONS"),
                       sanitizerOptions + (sanitizerOptions.isEmpty() ? "" : ":") + QStringLiteral("detect_leaks=0"));

    QProcess child;
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("bandInChild")});
    QVERIFY2(child.waitForStarted(), qPrintable(child.errorString()));
    if (!child.waitForFinished(60000)) {
        child.kill();
        child.waitForFinished();
        QFAIL("The child did not finish");
    }
    const QByteArray output = child.readAll();
    QVERIFY2(output.contains("PASS   : TestSheetFrame::bandInChild()"), output.constData());
}

void TestSheetFrame::bandInChild()
{
    if (!qEnvironmentVariableIsSet(bandProbeVariable))
        QSKIP("Runs in the child of bandWidthAtPinnedFactor");
    const int band = qEnvironmentVariableIntValue(bandProbeVariable);
    OrvaSheet sheet(nullptr);
    // Every side, and the band the sheet keeps for itself.
    QCOMPARE(sheet.contentsMargins(), QMargins(band, band, band, band));
    QCOMPARE(sheet.shadowWidth(), band);
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

    // The shadow: each edge picture stretched over its side (fast), each
    // corner picture squeezed into m x m (smooth), drawn over what lies
    // behind the sheet. Probed half-way across an edge, and in the inner
    // quarter of a corner, next to the card, where the shadow is darkest.
    struct Piece
    {
        const char* key;
        QRect area;
        QPoint probe;
    };
    const int innerW = w - 2 * m;
    const int innerH = h - 2 * m;
    const int in = m * 3 / 4;
    const int out = m / 4;
    const Piece pieces[] = {
        {"bg_tutorial_l", QRect(0, m, m, innerH), QPoint(m / 2, innerH / 2)},
        {"bg_tutorial_r", QRect(w - m, m, m, innerH), QPoint(m / 2, innerH / 2)},
        {"bg_tutorial_t", QRect(m, 0, innerW, m), QPoint(innerW / 2, m / 2)},
        {"bg_tutorial_b", QRect(m, h - m, innerW, m), QPoint(innerW / 2, m / 2)},
        {"bg_tutorial_lt", QRect(0, 0, m, m), QPoint(in, in)},
        {"bg_tutorial_rt", QRect(w - m, 0, m, m), QPoint(out, in)},
        {"bg_tutorial_lb", QRect(0, h - m, m, m), QPoint(in, out)},
        {"bg_tutorial_rb", QRect(w - m, h - m, m, m), QPoint(out, out)},
    };
    for (const Piece& piece : pieces) {
        const bool corner = piece.area.size() == QSize(m, m);
        const QPixmap picture = getGlobalImage(piece.key, ImageManager::Normal);
        QVERIFY2(!picture.isNull(), piece.key);
        const QImage drawn = picture
                                 .scaled(piece.area.size(), Qt::IgnoreAspectRatio,
                                         corner ? Qt::SmoothTransformation : Qt::FastTransformation)
                                 .toImage();
        const QColor expected = over(drawn.pixelColor(piece.probe), background);
        const QPoint point = piece.area.topLeft() + piece.probe;
        const QColor actual = at(point.x(), point.y());
        QVERIFY2(near(actual, expected, corner ? 12 : 3),
                 qPrintable(QString::fromLatin1(piece.key) + ": " + describe(actual) + " != " + describe(expected)));
        // A shadow, not the card.
        QVERIFY2(actual != QColor(Qt::white), piece.key);
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

    auto* second = new QWidget;
    second->setFixedSize(TestEnvironment::scaled(240), TestEnvironment::scaled(120));
    sheet->setWidget(second);
    QCOMPARE(sheet->layout()->count(), 1);
    QCOMPARE(sheet->layout()->indexOf(second), 0);
    // The first content stays with the sheet.
    QCOMPARE(first->parentWidget(), sheet);

    // The sheet was fitted to the new content, band included.
    QVERIFY(sheet->width() >= second->width() + 2 * m);
    QVERIFY(sheet->height() >= second->height() + 2 * m);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    // The content lies centred on the card, inside the band.
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

ORVACAT_TEST_MAIN(TestSheetFrame)
#include "tst_sheetframe.moc"
