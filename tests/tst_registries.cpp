// The registries every widget consults: paths, strings, screen scaling,
// images and style sheets, with the warnings they write.

#include "testmain.h"
#include "warningcollector.h"

#include <orvacat/orvacat.h>

#include <QImage>
#include <QLoggingCategory>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>

#include <cstdio>

namespace {

// A resource folder of the test's own: images.json and images/ with PNGs of
// the given sizes.
class ResourceFolder
{
public:
    ResourceFolder()
    {
        QDir(m_root.path()).mkpath(QStringLiteral("resources/images"));
    }

    QString resourcePath() const { return m_root.path() + QLatin1String("/resources"); }
    QString userDataPath() const { return m_root.path() + QLatin1String("/user"); }

    void writeCatalogue(const QByteArray& json) const
    {
        QFile file(resourcePath() + QLatin1String("/images.json"));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(json);
    }

    void writePng(const QString& baseName, int width, int height, QColor colour = Qt::red) const
    {
        QImage image(width, height, QImage::Format_ARGB32);
        image.fill(colour);
        QVERIFY(image.save(resourcePath() + QLatin1String("/images/") + baseName + QLatin1String(".png")));
    }

    void writeAllStates(const QString& name, int size) const
    {
        writePng(name, size, size, Qt::red);
        writePng(name + QLatin1String("_hover"), size, size, Qt::green);
        writePng(name + QLatin1String("_click"), size, size, Qt::blue);
        writePng(name + QLatin1String("_disable"), size, size, Qt::gray);
    }

    void removeFile(const QString& relative) const { QFile::remove(resourcePath() + QLatin1Char('/') + relative); }

    /** Points the process-wide path registry at this folder. */
    void install() const
    {
        WarningCollector overwrites; // re-setting the paths warns; not what these tests look at
        UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), resourcePath());
        UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), userDataPath());
    }

private:
    QTemporaryDir m_root;
};

// Style files in a folder of their own, with the process-wide image
// registry initialized on an empty resource folder (the style registry asks
// it for the placeholders' folders).
struct StyleFolder
{
    ResourceFolder images;
    QTemporaryDir files;

    StyleFolder()
    {
        images.install();
        ImageManager::getInstance()->initialize(ImageManager::Lazy);
    }

    QString write(const QString& name, const QByteArray& contents) const
    {
        const QString path = files.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return QString();
        file.write(contents);
        return path;
    }

    QString filePath(const QString& name) const { return files.filePath(name); }
    QString path() const { return files.path(); }
};

QColor centreColour(const QPixmap& pixmap)
{
    const QImage image = pixmap.toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

// Modes in which the suite re-runs itself in a child process with a pinned
// screen, so that numbers tied to one DPI factor can be checked whatever the
// runner's setting.
int runChildMode(const QStringList& args)
{
    const QString mode = args.value(1);
    if (mode == QLatin1String("--image-size")) {
        // --image-size <resource folder> <name>: prints WxH@ratio of the scaled
        // pixmap and the size of the style-sheet copy.
        UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), args.value(2));
        UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), args.value(2) + QLatin1String("/user"));
        ImageManager::getInstance()->initialize(ImageManager::Eager);
        const QPixmap pixmap = getGlobalImage(args.value(3), ImageManager::Normal);
        const QImage copy(ImageManager::getInstance()->getTempImageFullPath(args.value(3)));
        std::printf("%dx%d@%g tmp %dx%d\n", pixmap.width(), pixmap.height(), pixmap.devicePixelRatio(),
                    copy.width(), copy.height());
        return 0;
    }
    if (mode == QLatin1String("--folder-before-initialize")) {
        ImageManager images;
        std::printf("%s\n", qPrintable(images.getImageFolder()));
        return 0; // not reached: asking for a folder before initialize ends the process
    }
    return -1;
}

QString runChild(const QStringList& arguments, const QStringList& environment, QProcess::ExitStatus* status = nullptr,
                 QString* errors = nullptr)
{
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("QT_FONT_DPI"));
    env.remove(QStringLiteral("QT_SCALE_FACTOR"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    for (const QString& pair : environment)
        env.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    child.setProcessEnvironment(env);
    child.start(QCoreApplication::applicationFilePath(), arguments);
    if (!child.waitForFinished(60000))
        child.kill();
    if (status)
        *status = child.exitStatus();
    if (errors)
        *errors = QString::fromLocal8Bit(child.readAllStandardError());
    return QString::fromLocal8Bit(child.readAllStandardOutput()).trimmed();
}

} // namespace

class TestRegistries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Paths
    void pathOverwriteWarnsWithTheNewPath();
    void pathMissWarnsEveryTimeAndStoresNothing();
    void pathKeysAreCaseSensitiveAndEmptyPathsAreStored();
    void disabledCategoryWritesNothing();

    // Component strings
    void stringMissAnswersTheKey();
    void installingStringsReplacesTheTable();

    // Screen scaling
    void scaleFactorComesFromTheScreen();
    void styleSheetsAreScaledByTheFactor();

    // Images
    void imagesAreScaledForTheScreen_data();
    void imagesAreScaledForTheScreen();
    void eagerLoadsAtInitializeLazyOnFirstRequest();
    void missingStateAnswersNormalAndWarns();
    void unknownKeyAnswersNullAndWarns();
    void lazyRetriesAnImageThatLoadsNothing();
    void tmpImagesAreWrittenWithoutSpaces();
    void missingTmpSourceLeavesAnEmptyFile();
    void catalogueNamesKeepTheirSpaces();
    void reinitializeReplacesListedEntriesOnly();
    void brokenCataloguesLeaveTheCacheEmpty_data();
    void brokenCataloguesLeaveTheCacheEmpty();
    void folderBeforeInitializeAborts();

    // Style sheets
    void styleFilesSplitIntoSections();
    void placeholdersBecomeTheImageFolders();
    void sectionsRunOnAcrossFiles();
    void laterSectionsWin();
    void missingStyleFileIsSkipped();
    void unknownStyleKeyAnswersEmpty();
    void rawSheetsAreNotScaled();
    void hostileStyleFilesNeitherCrashNorHang();
};

// ---------------------------------------------------------------- paths

void TestRegistries::pathOverwriteWarnsWithTheNewPath()
{
    UIPathManager paths;
    WarningCollector warnings;
    paths.setPath(QStringLiteral("resource_path"), QStringLiteral("/a"));
    QCOMPARE(warnings.count(), 0);
    paths.setPath(QStringLiteral("resource_path"), QStringLiteral("/b"));
    QVERIFY2(warnings.isOnly(QStringLiteral("Existing path is \"/b\" with key \"resource_path\" but overwrite it now")),
             qPrintable(warnings.messages().join(QLatin1Char('|'))));
    warnings.clear();
    QCOMPARE(paths.getPath(QStringLiteral("resource_path")), QStringLiteral("/b"));
    QCOMPARE(warnings.count(), 0);
}

void TestRegistries::pathMissWarnsEveryTimeAndStoresNothing()
{
    UIPathManager paths;
    WarningCollector warnings;
    const QString first = paths.getPath(QStringLiteral("nowhere"));
    QVERIFY(!first.isNull());
    QCOMPARE(first, QString());
    QVERIFY(warnings.isOnly(QStringLiteral("Cannot find path by key \"nowhere\"")));
    paths.getPath(QStringLiteral("nowhere"));
    QCOMPARE(warnings.count(), 2);
    // The miss stored nothing: setting the key now is a first set, without warning.
    warnings.clear();
    paths.setPath(QStringLiteral("nowhere"), QStringLiteral("/x"));
    QCOMPARE(warnings.count(), 0);
}

void TestRegistries::pathKeysAreCaseSensitiveAndEmptyPathsAreStored()
{
    UIPathManager paths;
    WarningCollector warnings;
    paths.setPath(QStringLiteral("Key"), QStringLiteral("/upper"));
    paths.setPath(QStringLiteral("key"), QStringLiteral("/lower"));
    paths.setPath(QStringLiteral("empty"), QString());
    QCOMPARE(warnings.count(), 0);
    QCOMPARE(paths.getPath(QStringLiteral("Key")), QStringLiteral("/upper"));
    QCOMPARE(paths.getPath(QStringLiteral("key")), QStringLiteral("/lower"));
    QCOMPARE(paths.getPath(QStringLiteral("empty")), QString());
    QCOMPARE(warnings.count(), 0);
}

void TestRegistries::disabledCategoryWritesNothing()
{
    UIPathManager paths;
    ComponentStrings strings;
    WarningCollector warnings;
    QLoggingCategory::setFilterRules(QStringLiteral("debug.message.warning=false"));
    paths.setPath(QStringLiteral("k"), QStringLiteral("/1"));
    paths.setPath(QStringLiteral("k"), QStringLiteral("/2"));
    const QString missing = paths.getPath(QStringLiteral("missing"));
    const QString caption = strings.getString(QStringLiteral("ok"));
    QLoggingCategory::setFilterRules(QString());
    QCOMPARE(warnings.count(), 0);
    // Behaviour is otherwise the same.
    QCOMPARE(paths.getPath(QStringLiteral("k")), QStringLiteral("/2"));
    QCOMPARE(missing, QString());
    QCOMPARE(caption, QStringLiteral("ok"));
}

// ---------------------------------------------------------------- strings

void TestRegistries::stringMissAnswersTheKey()
{
    ComponentStrings strings;
    WarningCollector warnings;
    QCOMPARE(strings.getString(QStringLiteral("ok")), QStringLiteral("ok"));
    QVERIFY(warnings.isOnly(QStringLiteral("Cannot find key in ComponentStrings \"ok\"")));
    warnings.clear();
    strings.installStrings({{QStringLiteral("ok"), QStringLiteral("OK")}, {QStringLiteral("blank"), QString()}});
    QCOMPARE(strings.getString(QStringLiteral("blank")), QString());
    QCOMPARE(strings.getString(QStringLiteral("ok")), QStringLiteral("OK"));
    QCOMPARE(warnings.count(), 0);
    QCOMPARE(strings.getString(QStringLiteral("OK")), QStringLiteral("OK")); // keys are case-sensitive
    QCOMPARE(warnings.count(), 1);
}

void TestRegistries::installingStringsReplacesTheTable()
{
    ComponentStrings strings;
    QMap<QString, QString> host{{QStringLiteral("today"), QStringLiteral("Today")}};
    strings.installStrings(host);
    host.insert(QStringLiteral("today"), QStringLiteral("changed by the host"));
    QCOMPARE(strings.getString(QStringLiteral("today")), QStringLiteral("Today"));

    strings.installStrings({{QStringLiteral("ok"), QStringLiteral("OK")}});
    WarningCollector warnings;
    QCOMPARE(strings.getString(QStringLiteral("today")), QStringLiteral("today"));
    QCOMPARE(warnings.count(), 1);
}

// ---------------------------------------------------------------- scaling

void TestRegistries::scaleFactorComesFromTheScreen()
{
    DPIinfo* dpi = DPIinfo::getInstance();
    const QScreen* screen = QGuiApplication::primaryScreen();
    QVERIFY(screen);
    QCOMPARE(dpi->getDPI(), qRound(screen->logicalDotsPerInchX()) / 72.0);
    QCOMPARE(dpi->getDPR(), double(int(screen->devicePixelRatio())));
    // The runner pins the screen: make sure the pin arrived.
    if (qEnvironmentVariableIsSet("QT_FONT_DPI") && !qEnvironmentVariableIsSet("QT_SCALE_FACTOR"))
        QCOMPARE(dpi->getDPI(), qEnvironmentVariableIntValue("QT_FONT_DPI") / 72.0);
    if (qEnvironmentVariableIsSet("QT_SCALE_FACTOR"))
        QCOMPARE(dpi->getDPR(), qgetenv("QT_SCALE_FACTOR").toDouble());
}

void TestRegistries::styleSheetsAreScaledByTheFactor()
{
    DPIinfo* dpi = DPIinfo::getInstance();
    const QString expected = QStringLiteral("QLabel { font-size: %1px; margin: 0px %2px; }")
                                 .arg(int(12 * dpi->getDPI()))
                                 .arg(int(1.5 * dpi->getDPI()));
    QCOMPARE(dpi->getScaledStyleSheet(QStringLiteral("QLabel { font-size: 12px; margin: 0px 1.5px; }")), expected);
}

// ---------------------------------------------------------------- images

void TestRegistries::imagesAreScaledForTheScreen_data()
{
    QTest::addColumn<int>("fontDpi");
    QTest::addColumn<int>("scaleFactor");
    QTest::addColumn<int>("sourceSize");
    QTest::addColumn<QString>("expected");

    // factor 1, ratio 2: 96 -> 24 -> 24 -> 48 device pixels shown at 24; the copy has no ratio.
    QTest::newRow("f=1 r=2, 96px") << 72 << 2 << 96 << "48x48@2 tmp 24x24";
    QTest::newRow("f=4/3 r=1, 96px") << 96 << 1 << 96 << "32x32@1 tmp 32x32";
    // qRound(0.5) is 1.
    QTest::newRow("f=1 r=1, 2px") << 72 << 1 << 2 << "1x1@1 tmp 1x1";
    // Three roundings: 50 -> 13 (12.5 up) -> 17 (17.33) at 4/3.
    QTest::newRow("f=4/3 r=1, 50px") << 96 << 1 << 50 << "17x17@1 tmp 17x17";
    QTest::newRow("f=1.5 r=1, 10px") << 108 << 1 << 10 << "5x5@1 tmp 5x5";
}

void TestRegistries::imagesAreScaledForTheScreen()
{
    QFETCH(int, fontDpi);
    QFETCH(int, scaleFactor);
    QFETCH(int, sourceSize);
    QFETCH(QString, expected);

    ResourceFolder folder;
    folder.writeCatalogue(R"({"images": ["pic"], "tmp_images": ["pic"]})");
    folder.writeAllStates(QStringLiteral("pic"), sourceSize);
    QStringList env{QStringLiteral("QT_FONT_DPI=%1").arg(fontDpi)};
    if (scaleFactor != 1)
        env << QStringLiteral("QT_SCALE_FACTOR=%1").arg(scaleFactor);
    QCOMPARE(runChild({QStringLiteral("--image-size"), folder.resourcePath(), QStringLiteral("pic")}, env), expected);
}

void TestRegistries::eagerLoadsAtInitializeLazyOnFirstRequest()
{
    ResourceFolder folder;
    folder.writeCatalogue(R"({"images": ["pic"]})");
    folder.writeAllStates(QStringLiteral("pic"), 16);
    folder.install();

    ImageManager eager;
    eager.initialize(ImageManager::Eager);
    ImageManager lazy;
    lazy.initialize(ImageManager::Lazy);
    // The files go away after initialize: only what was loaded then remains.
    for (const char* name : {"pic", "pic_hover", "pic_click", "pic_disable"})
        folder.removeFile(QStringLiteral("images/%1.png").arg(QLatin1String(name)));

    WarningCollector warnings;
    QCOMPARE(centreColour(eager.getImage(QStringLiteral("pic"), ImageManager::Normal)), QColor(Qt::red));
    QCOMPARE(centreColour(eager.getImage(QStringLiteral("pic"), ImageManager::Hover)), QColor(Qt::green));
    QCOMPARE(centreColour(eager.getImage(QStringLiteral("pic"), ImageManager::Click)), QColor(Qt::blue));
    QCOMPARE(centreColour(eager.getImage(QStringLiteral("pic"), ImageManager::Disable)), QColor(Qt::gray));
    QCOMPARE(warnings.count(), 0);
    QVERIFY(lazy.getImage(QStringLiteral("pic"), ImageManager::Normal).isNull());
    QCOMPARE(warnings.count(), 1);

    // A lazy entry that did load is not loaded again.
    ImageManager lazyLoaded;
    folder.writeAllStates(QStringLiteral("pic"), 16);
    lazyLoaded.initialize(ImageManager::Lazy);
    const qint64 first = lazyLoaded.getImage(QStringLiteral("pic"), ImageManager::Normal).cacheKey();
    folder.writePng(QStringLiteral("pic"), 20, 20, Qt::yellow);
    QCOMPARE(lazyLoaded.getImage(QStringLiteral("pic"), ImageManager::Normal).cacheKey(), first);
}

void TestRegistries::missingStateAnswersNormalAndWarns()
{
    ResourceFolder folder;
    folder.writeCatalogue(R"({"images": ["plain"]})");
    folder.writePng(QStringLiteral("plain"), 16, 16);
    folder.install();
    for (ImageManager::InitializeType type : {ImageManager::Eager, ImageManager::Lazy}) {
        ImageManager images;
        images.initialize(type);
        WarningCollector warnings;
        const QPixmap normal = images.getImage(QStringLiteral("plain"), ImageManager::Normal);
        QVERIFY(!normal.isNull());
        QCOMPARE(warnings.count(), 0);
        for (int round = 1; round <= 2; ++round) {
            QCOMPARE(images.getImage(QStringLiteral("plain"), ImageManager::Hover).cacheKey(), normal.cacheKey());
            QCOMPARE(warnings.count(), round);
            QCOMPARE(warnings.messages().last(), QStringLiteral("Cannot load pixmap \"plain\" with type 1 [use default icon]"));
        }
        images.getImage(QStringLiteral("plain"), ImageManager::Disable);
        QCOMPARE(warnings.messages().last(), QStringLiteral("Cannot load pixmap \"plain\" with type 3 [use default icon]"));
    }
}

void TestRegistries::unknownKeyAnswersNullAndWarns()
{
    ImageManager before;
    WarningCollector warnings;
    QVERIFY(before.getImage(QStringLiteral("anything"), ImageManager::Normal).isNull());
    QVERIFY(warnings.isOnly(QStringLiteral("Cannot load pixmap \"anything\"")));

    ResourceFolder folder;
    folder.writeCatalogue(R"({"images": ["pic"]})");
    folder.writePng(QStringLiteral("pic"), 8, 8);
    folder.install();
    ImageManager images;
    images.initialize(ImageManager::Eager);
    warnings.clear();
    QVERIFY(images.getImage(QStringLiteral("Pic"), ImageManager::Normal).isNull());
    QVERIFY(warnings.isOnly(QStringLiteral("Cannot load pixmap \"Pic\"")));
}

void TestRegistries::lazyRetriesAnImageThatLoadsNothing()
{
    ResourceFolder folder;
    folder.writeCatalogue(R"({"images": ["ghost"]})");
    folder.install();
    ImageManager images;
    images.initialize(ImageManager::Lazy);
    WarningCollector warnings;
    for (int round = 1; round <= 3; ++round) {
        QVERIFY(images.getImage(QStringLiteral("ghost"), ImageManager::Normal).isNull());
        QCOMPARE(warnings.count(), round);
        QCOMPARE(warnings.messages().last(), QStringLiteral("Cannot load pixmap \"ghost\" with type 0 [use default icon]"));
    }
}

void TestRegistries::tmpImagesAreWrittenWithoutSpaces()
{
    ResourceFolder folder;
    folder.writeCatalogue(R"({"tmp_images": [" check mark "]})");
    folder.writePng(QStringLiteral("checkmark"), 40, 40);
    folder.install();
    ImageManager images;
    images.initialize(ImageManager::Eager);
    const QImage copy(folder.userDataPath() + QLatin1String("/tmp_images/tmp_checkmark.png"));
    QVERIFY(!copy.isNull());
    const int expected = qRound(qRound(40 * 0.25) * DPIinfo::getInstance()->getDPI());
    QCOMPARE(copy.size(), QSize(expected, expected));
    QCOMPARE(images.getTempImageFullPath(QStringLiteral("checkmark")),
             folder.userDataPath() + QLatin1String("/tmp_images") + QDir::separator() + QLatin1String("tmp_checkmark.png"));
}

void TestRegistries::missingTmpSourceLeavesAnEmptyFile()
{
    ResourceFolder folder;
    folder.writeCatalogue(R"({"tmp_images": ["absent"]})");
    folder.install();
    ImageManager images;
    images.initialize(ImageManager::Eager);
    const QFileInfo copy(folder.userDataPath() + QLatin1String("/tmp_images/tmp_absent.png"));
    QVERIFY(copy.exists());
    QCOMPARE(copy.size(), qint64(0));
}

void TestRegistries::catalogueNamesKeepTheirSpaces()
{
    ResourceFolder folder;
    folder.writeCatalogue(R"({"images": ["two words", "two words"], "tmp_images": ["two words"]})");
    folder.writePng(QStringLiteral("two words"), 8, 8);
    folder.writePng(QStringLiteral("twowords"), 8, 8);
    folder.install();
    ImageManager images;
    images.initialize(ImageManager::Eager);
    WarningCollector warnings;
    QVERIFY(!images.getImage(QStringLiteral("two words"), ImageManager::Normal).isNull());
    QVERIFY(images.getImage(QStringLiteral("twowords"), ImageManager::Normal).isNull());
    QCOMPARE(warnings.count(), 1);
    QVERIFY(QFileInfo::exists(folder.userDataPath() + QLatin1String("/tmp_images/tmp_twowords.png")));
}

void TestRegistries::reinitializeReplacesListedEntriesOnly()
{
    ResourceFolder folder;
    folder.writeCatalogue(R"({"images": ["kept", "renewed"]})");
    folder.writePng(QStringLiteral("kept"), 8, 8, Qt::red);
    folder.writePng(QStringLiteral("renewed"), 8, 8, Qt::red);
    folder.install();
    ImageManager images;
    images.initialize(ImageManager::Eager);

    // Other sizes: QPixmap's own cache knows a file by its path, size and
    // modification second, and these files are rewritten within the second.
    folder.writeCatalogue(R"({"images": ["renewed"]})");
    folder.writePng(QStringLiteral("kept"), 12, 12, Qt::blue);
    folder.writePng(QStringLiteral("renewed"), 12, 12, Qt::blue);
    // Lazily this time: an entry that is kept keeps its loaded pixmaps, a
    // listed one starts afresh (Eager would load every entry again).
    images.initialize(ImageManager::Lazy);
    QCOMPARE(centreColour(images.getImage(QStringLiteral("renewed"), ImageManager::Normal)), QColor(Qt::blue));
    QCOMPARE(centreColour(images.getImage(QStringLiteral("kept"), ImageManager::Normal)), QColor(Qt::red));
}

void TestRegistries::brokenCataloguesLeaveTheCacheEmpty_data()
{
    QTest::addColumn<QByteArray>("catalogue");
    QTest::addColumn<bool>("writeFile");
    QTest::addColumn<QString>("loadable");

    QTest::newRow("missing file") << QByteArray() << false << QString();
    QTest::newRow("empty file") << QByteArray() << true << QString();
    QTest::newRow("invalid json") << QByteArray(R"({"images": ["pic")") << true << QString();
    QTest::newRow("top level array") << QByteArray(R"(["pic"])") << true << QString();
    QTest::newRow("images not an array") << QByteArray(R"({"images": "pic"})") << true << QString();
    QTest::newRow("non-string elements count as empty names")
        << QByteArray(R"({"images": [1, null, {"a": 2}, "pic"], "tmp_images": [true]})") << true << "pic";
    QTest::newRow("NUL byte ends the text")
        << QByteArray("{\"images\": [\"pic\"]}\0garbage", 28) << true << "pic";
    QTest::newRow("NUL byte inside the document") << QByteArray("{\"images\": [\"pi\0c\"]}", 20) << true << QString();
}

void TestRegistries::brokenCataloguesLeaveTheCacheEmpty()
{
    QFETCH(QByteArray, catalogue);
    QFETCH(bool, writeFile);
    QFETCH(QString, loadable);

    ResourceFolder folder;
    if (writeFile)
        folder.writeCatalogue(catalogue);
    folder.writePng(QStringLiteral("pic"), 8, 8);
    folder.install();
    ImageManager images;
    WarningCollector warnings;
    images.initialize(ImageManager::Eager);
    QCOMPARE(warnings.count(), 0);
    QCOMPARE(images.getImage(QStringLiteral("pic"), ImageManager::Normal).isNull(), loadable.isEmpty());
}

void TestRegistries::folderBeforeInitializeAborts()
{
    QProcess::ExitStatus status = QProcess::NormalExit;
    QString errors;
    const QString output = runChild({QStringLiteral("--folder-before-initialize")}, {}, &status, &errors);
    QCOMPARE(status, QProcess::CrashExit);
    QVERIFY2(errors.contains(QLatin1String("ImageManager is not initialized")), qPrintable(errors));
    QCOMPARE(output, QString());
}

// ---------------------------------------------------------------- style sheets

void TestRegistries::styleFilesSplitIntoSections()
{
    StyleFolder dir;
    const QString path = dir.write(QStringLiteral("a.qss"),
                                       "/* leading comment */\n"
                                       "== component.label ==\n"
                                       "QLabel { color: red; } // trailing comment\n"
                                       "QLabel:disabled { color: grey; }\n"
                                       "== component.menu ==\r\n"
                                       "QMenu { border: none; }\n");
    StyleManager styles;
    styles.initialize({path});
    WarningCollector warnings;
    // The comment leaves an empty line that opens the first body; the line
    // comment swallows its line feed; the "\n" after the file ends the last body.
    QCOMPARE(styles.getStyleSheet(QStringLiteral("component.label"), true),
             QStringLiteral("\n\nQLabel { color: red; } QLabel:disabled { color: grey; }"));
    QCOMPARE(styles.getStyleSheet(QStringLiteral("component.menu"), true), QStringLiteral("\nQMenu { border: none; }\n"));
    QCOMPARE(warnings.count(), 0);
    QCOMPARE(getStyleSheet("component.menu", true), QString()); // the process-wide registry is another one
}

void TestRegistries::placeholdersBecomeTheImageFolders()
{
    StyleFolder dir;
    const QString path = dir.write(QStringLiteral("a.qss"),
                                       "== k ==\nurl(IMG_LOC/a.png) url(TMPIMG_LOC/tmp_b.png) img_loc\n");
    StyleManager styles;
    styles.initialize({path});
    QCOMPARE(styles.getStyleSheet(QStringLiteral("k"), true),
             QStringLiteral("\nurl(%1/images/a.png) url(%2/tmp_images/tmp_b.png) img_loc\n")
                 .arg(dir.images.resourcePath(), dir.images.userDataPath()));
}

void TestRegistries::sectionsRunOnAcrossFiles()
{
    StyleFolder dir;
    const QString first = dir.write(QStringLiteral("1.qss"), "lead\n== A ==\nx");
    const QString second = dir.write(QStringLiteral("2.qss"), "y\n== B ==");
    StyleManager styles;
    styles.initialize({first, second});
    QCOMPARE(styles.getStyleSheet(QStringLiteral("A"), true), QStringLiteral("\nlead\nx\ny"));
    QCOMPARE(styles.getStyleSheet(QStringLiteral("B"), true), QString());
}

void TestRegistries::laterSectionsWin()
{
    StyleFolder dir;
    const QString first = dir.write(QStringLiteral("1.qss"), "== component.label ==\nfirst\n== only.first ==\n1\n");
    const QString second = dir.write(QStringLiteral("2.qss"), "== component.label ==\nsecond\n");
    const QString third = dir.write(QStringLiteral("3.qss"), "== component.label ==\nthird\n");
    StyleManager styles;
    styles.initialize({first, second});
    QCOMPARE(styles.getStyleSheet(QStringLiteral("component.label"), true), QStringLiteral("\nsecond\n"));
    styles.initialize({third});
    QCOMPARE(styles.getStyleSheet(QStringLiteral("component.label"), true), QStringLiteral("\nthird\n"));
    QCOMPARE(styles.getStyleSheet(QStringLiteral("only.first"), true), QStringLiteral("\n1\n"));
}

void TestRegistries::missingStyleFileIsSkipped()
{
    StyleFolder dir;
    const QString present = dir.write(QStringLiteral("present.qss"), "== k ==\nv\n");
    const QString absent = dir.filePath(QStringLiteral("absent.qss"));
    StyleManager styles;
    WarningCollector warnings;
    // A folder exists but cannot be read as a file: it adds only its line
    // feed, the empty line that opens the next body.
    styles.initialize({absent, dir.path(), present});
    QVERIFY(warnings.isOnly(QStringLiteral("file \"%1\" not exist").arg(absent)));
    QCOMPARE(styles.getStyleSheet(QStringLiteral("k"), true), QStringLiteral("\n\nv\n"));
}

void TestRegistries::unknownStyleKeyAnswersEmpty()
{
    StyleManager styles;
    WarningCollector warnings;
    QCOMPARE(styles.getStyleSheet(QStringLiteral("component.none"), false), QString());
    QCOMPARE(styles.getStyleSheet(QStringLiteral("component.none"), true), QString());
    const QString expected = QStringLiteral("Cannot find stylesheet \"component.none\"");
    QCOMPARE(warnings.messages(), QStringList({expected, expected}));
}

void TestRegistries::rawSheetsAreNotScaled()
{
    StyleFolder dir;
    const QString path = dir.write(QStringLiteral("a.qss"), "== k ==\nQPushButton { min-height: 28px; }\n");
    StyleManager* styles = StyleManager::getInstance();
    styles->initialize({path});
    QCOMPARE(getStyleSheet("k", true), QStringLiteral("\nQPushButton { min-height: 28px; }\n"));
    QCOMPARE(getStyleSheet(QStringLiteral("k"), false),
             QStringLiteral("\nQPushButton { min-height: %1px; }\n").arg(int(28 * DPIinfo::getInstance()->getDPI())));
}

void TestRegistries::hostileStyleFilesNeitherCrashNorHang()
{
    StyleFolder dir;

    QByteArray big;
    big.reserve(50 << 20);
    const QByteArray block("== component.label ==\nQLabel { margin: 1px 2px; /* c */ padding: 3px; } // x\n\n");
    while (big.size() < (50 << 20))
        big += block;
    QByteArray megaLine("== long ==\n");
    megaLine += QByteArray(1 << 20, 'a') + "1px\n";
    const QStringList paths{
        dir.write(QStringLiteral("big.qss"), big),
        dir.write(QStringLiteral("megaline.qss"), megaLine),
        dir.write(QStringLiteral("nul.qss"), QByteArray("== nul ==\nbefore\0== after ==\nx\n", 31)),
        dir.write(QStringLiteral("binary.qss"), QByteArray("== bin ==\n\xff\xfe\x80\xc3\x28 1000px 12.5px\n")),
        dir.write(QStringLiteral("header.qss"), "== header.alone =="),
        dir.write(QStringLiteral("empty.qss"), QByteArray()),
    };
    StyleManager styles;
    styles.initialize(std::vector<QString>(paths.cbegin(), paths.cend()));
    QCOMPARE(styles.getStyleSheet(QStringLiteral("component.label"), true),
             QStringLiteral("\nQLabel { margin: 1px 2px;  padding: 3px; } \n"));
    QCOMPARE(styles.getStyleSheet(QStringLiteral("long"), false).size(), (1 << 20) + 5);
    QCOMPARE(styles.getStyleSheet(QStringLiteral("nul"), true), QStringLiteral("\nbefore"));
    QCOMPARE(styles.getStyleSheet(QStringLiteral("header.alone"), true), QStringLiteral("\n"));
    // Lengths of four or more characters shift the text but come back whole.
    QVERIFY(!styles.getStyleSheet(QStringLiteral("bin"), false).isEmpty());
}

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const int childResult = runChildMode(app.arguments());
    if (childResult >= 0)
        return childResult;
    TestRegistries test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_registries.moc"
