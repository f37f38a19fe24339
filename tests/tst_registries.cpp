// The registries every widget consults: paths, strings, screen scaling,
// images and style sheets, with the warnings they write.

#include "testmain.h"
#include "warningcollector.h"

#include <orvacat/orvacat.h>

#include <QBuffer>
#include <QLabel>
#include <QProcess>
#include <QtEndian>
#include <QTemporaryDir>

namespace {

// The screens ctest pins: factor 1.0, factor 4/3, ratio 2 at factor 1.0,
// ratio 1.5 at factor 4/3 (a 150 % screen), and 144 dpi at ratio 1.
enum Screen { At72, At96, AtRatio2, AtRatio15, At144 };

Screen thisScreen()
{
    const QByteArray scale = qgetenv("QT_SCALE_FACTOR");
    if (scale == "2")
        return AtRatio2;
    if (scale == "1.5")
        return AtRatio15;
    const int dpi = qEnvironmentVariableIntValue("QT_FONT_DPI");
    return dpi == 72 ? At72 : dpi == 144 ? At144 : At96;
}

// A resource folder of the test's own (images.json, images/) and a user
// data folder, installed in the process-wide path registry.
struct ResourceFolder
{
    QTemporaryDir root;
    const QString resources = root.path() + QLatin1String("/resources");
    // A name that the temporary folder's placeholder turns into another placeholder.
    const QString userData = root.path() + QLatin1String("/dataIMG_LOC");

    ResourceFolder()
    {
        QDir().mkpath(resources + QLatin1String("/images"));
        WarningCollector overwrites; // re-setting the paths warns; not what these tests look at
        UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), resources);
        UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), userData);
    }
    QString tmpImage(const char* name) const { return userData + "/tmp_images/tmp_" + name + ".png"; }
    QString write(const QString& relative, const QByteArray& contents) const
    {
        QFile file(resources + QLatin1Char('/') + relative);
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            file.write(contents);
        return file.fileName();
    }
    void writePng(const QString& name, QSize size, QColor colour = Qt::red) const
    {
        QImage image(size, QImage::Format_ARGB32);
        image.fill(colour);
        QVERIFY(image.save(resources + "/images/" + name + ".png"));
    }
};

QColor centreColour(const QPixmap& pixmap)
{
    const QImage image = pixmap.toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

} // namespace

class TestRegistries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!qEnvironmentVariableIsSet("QT_FONT_DPI"))
            QSKIP("the expected sizes are per screen: run through ctest, which pins it");
    }
    void lookupsWarnOnMissesOnly_data();
    void lookupsWarnOnMissesOnly();
    void imagesAreScaledForTheScreen();
    void imagesLoadEagerlyOrOnFirstRequest();
    void catalogueNamesAndStyleSheetCopies();
    void oversizedPicturesAreRefused();
    void folderBeforeInitializeAborts();
};

void TestRegistries::lookupsWarnOnMissesOnly_data()
{
    QTest::addColumn<bool>("silenced");
    QTest::newRow("warnings on") << false;
    QTest::newRow("category silenced") << true;
}

void TestRegistries::lookupsWarnOnMissesOnly()
{
    QFETCH(bool, silenced);
    ResourceFolder folder;
    UIPathManager paths;
    ComponentStrings strings;
    StyleManager styles;
    ImageManager before;
    ImageManager::getInstance()->initialize(ImageManager::Lazy); // the style registry asks it for its folders
    QMap<QString, QString> host{{"today", "Today"}, {"blank", ""}};

    WarningCollector warnings;
    debug_message.setEnabled(QtWarningMsg, !silenced); // what a host does to silence the toolkit
    paths.setPath("k", "/1");
    paths.setPath("K", "/upper");
    paths.setPath("empty", "");
    paths.setPath("k", "/2");
    const QString missingPath = paths.getPath("nowhere");
    paths.setPath("nowhere", "/x"); // the miss stored nothing: this is a first set
    const QString beforeInstall = strings.getString("ok");
    strings.installStrings(host);
    host.insert("today", "changed by the host");
    const QStringList captions{strings.getString("today"), strings.getString("blank"), strings.getString("Today")};
    strings.installStrings({{"ok", "OK"}}); // replaces the table, does not merge
    styles.initialize({folder.resources + "/absent.qss", folder.write("a.qss", "== a ==\nTMPIMG_LOC")});
    const QStringList misses{beforeInstall, strings.getString("today"), missingPath, styles.getStyleSheet("a", true),
                             styles.getStyleSheet("component.none", false), styles.getStyleSheet("component.none", true)};
    const bool nullImage = before.getImage("pic", ImageManager::Normal).isNull();
    debug_message.setEnabled(QtWarningMsg, true);

    QCOMPARE(QStringList({paths.getPath("k"), paths.getPath("K"), paths.getPath("empty")}), QStringList({"/2", "/upper", ""}));
    QCOMPARE(captions, QStringList({"Today", "", "Today"}));
    // A missing file adds no line feed; "TMPIMG_LOC" is replaced first, then "IMG_LOC" also in what that gave.
    const QString sheet = "\n" + folder.root.path() + "/data" + folder.resources + "/images/tmp_images";
    QCOMPARE(misses, QStringList({"ok", "today", "", sheet, "", ""}));
    QVERIFY(!missingPath.isNull() && nullImage);
    // The overwrite names the new path, not the one it replaces.
    const QString expected = QStringLiteral(
        "Existing path is \"/2\" with key \"k\" but overwrite it now|Cannot find path by key \"nowhere\"|"
        "Cannot find key in ComponentStrings \"ok\"|Cannot find key in ComponentStrings \"Today\"|"
        "file \"%1/absent.qss\" not exist|Cannot find key in ComponentStrings \"today\"|"
        "Cannot find stylesheet \"component.none\"|Cannot find stylesheet \"component.none\"|"
        "Cannot load pixmap \"pic\"");
    QCOMPARE(warnings.messages().join(QLatin1Char('|')), silenced ? QString() : expected.arg(folder.resources));
}

void TestRegistries::imagesAreScaledForTheScreen()
{
    // Device pixels: at ratio 2 they are shown at half that, as at factor 1.0;
    // at ratio 1.5 at two thirds, as at factor 4/3. Each step rounds:
    // 50 -> 12.5 -> 13 -> 17.33 -> 17 -> 25.5 -> 26; 2 -> 0.5 -> 1 -> 1.5 -> 2.
    const struct { QSize source, expected[4]; } rows[] = {
        {{96, 96}, {{24, 24}, {32, 32}, {48, 48}, {48, 48}}},
        {{50, 50}, {{13, 13}, {17, 17}, {26, 26}, {26, 26}}},
        {{2, 2}, {{1, 1}, {1, 1}, {2, 2}, {2, 2}}},
        {{20, 20}, {{5, 5}, {7, 7}, {10, 10}, {11, 11}}}, // 6.67 -> 7 -> 10.5 -> 11, not 5 * 2
        {{96, 48}, {{24, 12}, {32, 16}, {48, 24}, {48, 24}}},
    };
    // 144 dpi is factor 2 at ratio 1 under Qt 5; Qt 6 keeps the logical DPI
    // at 96 and makes it factor 4/3 at ratio 1.5. Either way a length covers
    // twice its 72-dpi pixels on the device, and a picture as many device
    // pixels as at ratio 2 or at ratio 1.5 (which differ by rounding only).
    const bool qt6 = QT_VERSION_MAJOR >= 6;
    const Screen screen = thisScreen();
    const double factor[] = {1.0, 4.0 / 3.0, 1.0, 4.0 / 3.0, qt6 ? 4.0 / 3.0 : 2.0};
    const double ratio[] = {1.0, 1.0, 2.0, 1.5, qt6 ? 1.5 : 1.0};
    const Screen devicePixelsAs[] = {At72, At96, AtRatio2, AtRatio15, qt6 ? AtRatio15 : AtRatio2};
    const Screen styleCopyAs[] = {At72, At96, At72, At96, qt6 ? At96 : AtRatio2};
    QCOMPARE(DPIinfo::getInstance()->getDPI(), factor[screen]);
    QCOMPARE(DPIinfo::getInstance()->getDPR(), ratio[screen]);
    for (const auto& row : rows) {
        ResourceFolder folder;
        folder.write("images.json", R"({"images": ["pic"], "tmp_images": ["pic"]})");
        // One-pixel stripes: any stretching of the picture blends them.
        QImage stripes(row.source, QImage::Format_ARGB32);
        for (int x = 0; x < stripes.width(); ++x)
            for (int y = 0; y < stripes.height(); ++y)
                stripes.setPixelColor(x, y, (x + y / 3) % 2 ? Qt::black : QColor(Qt::yellow));
        QVERIFY(stripes.save(folder.resources + "/images/pic.png"));
        QPixmap pixmap;
        for (ImageManager::InitializeType type : {ImageManager::Eager, ImageManager::Lazy}) {
            ImageManager images;
            images.initialize(type);
            pixmap = images.getImage("pic", ImageManager::Normal);
            QCOMPARE(pixmap.size(), row.expected[devicePixelsAs[screen]]);
            QCOMPARE(pixmap.devicePixelRatio(), ratio[screen]);
            // The style sheets' copy is sized for the factor alone: no ratio.
            QCOMPARE(QImage(folder.tmpImage("pic")).size(), row.expected[styleCopyAs[screen]]);
        }
        // Qt draws the picture on the device pixel for pixel, as a sheet shows its message icon.
        QLabel label;
        label.setContentsMargins(0, 0, 0, 0);
        label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
        label.setPixmap(pixmap);
        label.resize(label.sizeHint());
        const QImage shown = label.grab().toImage().convertToFormat(QImage::Format_ARGB32);
        const QImage picture = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
        const QRect common = shown.rect() & picture.rect();
        QVERIFY(common.width() >= picture.width() - 1 && common.height() >= picture.height() - 1);
        QCOMPARE(shown.copy(common), picture.copy(common));
    }
}

void TestRegistries::imagesLoadEagerlyOrOnFirstRequest()
{
    ResourceFolder folder;
    folder.write("images.json", R"({"images": ["pic", "plain", "ghost"]})");
    const QColor colours[] = {Qt::red, Qt::green, Qt::blue, Qt::gray};
    const QStringList files{"pic", "pic_hover", "pic_click", "pic_disable"};
    for (int state = 0; state < 4; ++state)
        folder.writePng(files[state], QSize(16, 16), colours[state]);
    folder.writePng("plain", QSize(16, 16));
    ImageManager eager, lazy;
    eager.initialize(ImageManager::Eager);
    lazy.initialize(ImageManager::Lazy);
    const qint64 first = lazy.getImage("plain", ImageManager::Normal).cacheKey();
    for (const QString& file : files + QStringList("plain")) // only what was loaded before this remains
        folder.writePng(file, QSize(20, 20), Qt::yellow);

    WarningCollector warnings;
    for (int state = 0; state < 4; ++state)
        QCOMPARE(centreColour(eager.getImage("pic", ImageManager::ImageType(state))), colours[state]);
    QCOMPARE(lazy.getImage("plain", ImageManager::Normal).cacheKey(), first);
    QCOMPARE(centreColour(lazy.getImage("pic", ImageManager::Hover)), QColor(Qt::yellow));
    QCOMPARE(warnings.count(), 0);
    // A missing state answers the normal picture and warns on every request.
    for (ImageManager* images : {&eager, &lazy}) {
        const qint64 normal = images->getImage("plain", ImageManager::Normal).cacheKey();
        for (ImageManager::ImageType state : {ImageManager::Hover, ImageManager::Hover, ImageManager::Disable}) {
            QCOMPARE(images->getImage("plain", state).cacheKey(), normal);
            QCOMPARE(warnings.messages().takeLast(),
                     QStringLiteral("Cannot load pixmap \"plain\" with type %1 [use default icon]").arg(int(state)));
        }
    }
    // An image none of whose files loads is tried again, and warned about, every time.
    QVERIFY(lazy.getImage("ghost", ImageManager::Normal).isNull() && lazy.getImage("ghost", ImageManager::Normal).isNull());
    QCOMPARE(warnings.count(), 8);
    QCOMPARE(warnings.messages().last(), QStringLiteral("Cannot load pixmap \"ghost\" with type 0 [use default icon]"));

    // A later initialize renews the listed entries and keeps the others.
    folder.write("images.json", R"({"images": ["plain"]})");
    folder.writePng("plain", QSize(12, 12), Qt::blue); // another size: QPixmap's cache knows the file by it
    eager.initialize(ImageManager::Lazy);
    QCOMPARE(centreColour(eager.getImage("plain", ImageManager::Normal)), QColor(Qt::blue));
    QCOMPARE(centreColour(eager.getImage("pic", ImageManager::Normal)), QColor(Qt::red));
}

void TestRegistries::catalogueNamesAndStyleSheetCopies()
{
    // Other elements than strings are empty names, and a NUL byte ends the text.
    ResourceFolder folder;
    folder.write("images.json", R"({"images": ["two words", 1, "two words"], "tmp_images": [" check mark ", null,)"
                                R"( "two words", "absent"]})" + QByteArray("\0garbage", 8));
    for (const char* name : {"two words", "twowords", "checkmark"})
        folder.writePng(name, QSize(8, 8));
    ImageManager images;
    images.initialize(ImageManager::Eager);
    // The widgets' names keep their spaces; the style sheets' lose them.
    WarningCollector warnings;
    QVERIFY(!images.getImage("two words", ImageManager::Normal).isNull());
    QVERIFY(images.getImage("twowords", ImageManager::Normal).isNull() && warnings.count() == 1);
    QCOMPARE(images.getTempImageFullPath("checkmark"),
             folder.userData + QLatin1String("/tmp_images") + QDir::separator() + QLatin1String("tmp_checkmark.png"));
    QVERIFY(!QImage(folder.tmpImage("checkmark")).isNull() && !QImage(folder.tmpImage("twowords")).isNull());
    // A missing source still leaves its (empty) copy.
    QVERIFY(QFileInfo::exists(folder.tmpImage("absent")) && QFileInfo(folder.tmpImage("absent")).size() == 0);
}

void TestRegistries::oversizedPicturesAreRefused()
{
    // Tiny PNGs whose headers claim a huge size (CRC mended, so that the
    // decoder believes them), a real picture one pixel wider than the cap,
    // one at the cap, and an ordinary one beside them.
    const auto declaring = [](quint32 width, quint32 height) {
        QByteArray png;
        QBuffer buffer(&png);
        QImage(1, 1, QImage::Format_ARGB32).save(&buffer, "PNG");
        qToBigEndian(width, png.data() + 16);
        qToBigEndian(height, png.data() + 20);
        quint32 crc = 0xffffffff; // bit by bit over the chunk's type and data
        for (int bit = 0; bit < 17 * 8; ++bit)
            crc = (crc >> 1) ^ (0xedb88320 & (0u - ((crc ^ (quint8(png[12 + bit / 8]) >> (bit % 8))) & 1)));
        qToBigEndian(~crc, png.data() + 29);
        return png;
    };
    ResourceFolder folder;
    folder.write("images.json", R"({"images": ["huge", "area", "wide", "edge", "pic"], "tmp_images": ["huge"]})");
    folder.write("images/huge.png", declaring(30000, 30000));
    folder.write("images/area.png", declaring(8000, 4200)); // each side allowed, 33.6 megapixels not
    folder.writePng("wide", QSize(8193, 4));
    folder.writePng("edge", QSize(8192, 4));
    folder.writePng("pic", QSize(16, 16));

    WarningCollector warnings;
    ImageManager images;
    images.initialize(ImageManager::Eager);
    QCOMPARE(warnings.messages().filter("Refusing picture").size(), 3 + 1); // the style sheets' copy too
    for (const char* refused : {"huge", "area", "wide"})
        QVERIFY2(images.getImage(refused, ImageManager::Normal).isNull(), refused);
    QVERIFY(!images.getImage("edge", ImageManager::Normal).isNull() && !images.getImage("pic", ImageManager::Normal).isNull());
    QCOMPARE(QFileInfo(folder.tmpImage("huge")).size(), 0); // as for a missing source
}

void TestRegistries::folderBeforeInitializeAborts()
{
    if (qEnvironmentVariableIsSet("ORVACAT_ASK_FOLDER")) {
        ImageManager().getImageFolder(); // in the child: ends the process
        return;
    }
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("ORVACAT_ASK_FOLDER", "1");
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("folderBeforeInitializeAborts")});
    QVERIFY(child.waitForFinished(60000));
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    const QString output = QString::fromLocal8Bit(child.readAll());
    QVERIFY2(output.contains("ImageManager is not initialized") && !output.contains("Totals"), qPrintable(output));
}

ORVACAT_TEST_MAIN(TestRegistries)
#include "tst_registries.moc"
