// The registries every widget consults: paths, strings, screen scaling,
// images and style sheets, with the warnings they write.

#include "warningcollector.h"

#include <orvacat/orvacat.h>

#include <QApplication>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>

namespace {

// The value for the screen ctest pinned: factor 1.0, factor 4/3, or ratio 2 at factor 1.0.
template <typename T>
T atThisScreen(T at72, T at96, T atRatio2)
{
    if (qgetenv("QT_SCALE_FACTOR") == "2")
        return atRatio2;
    return qEnvironmentVariableIntValue("QT_FONT_DPI") == 96 ? at96 : at72;
}

// A resource folder of the test's own (images.json, images/) and a user
// data folder, installed in the process-wide path registry.
struct ResourceFolder
{
    QTemporaryDir root;
    const QString resources = root.path() + QLatin1String("/resources");
    const QString userData = root.path() + QLatin1String("/user");

    ResourceFolder()
    {
        QDir().mkpath(resources + QLatin1String("/images"));
        WarningCollector overwrites; // re-setting the paths warns; not what these tests look at
        UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), resources);
        UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), userData);
    }
    QString tmpImage(const char* name) const
    {
        return userData + QLatin1String("/tmp_images/tmp_") + QLatin1String(name) + QLatin1String(".png");
    }
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
        QVERIFY(image.save(resources + QLatin1String("/images/") + name + QLatin1String(".png")));
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
    void initTestCase();
    void lookupsWarnOnMissesOnly_data();
    void lookupsWarnOnMissesOnly();
    void screenIsMeasuredAndSheetsScaled();
    void imagesAreScaledForTheScreen_data();
    void imagesAreScaledForTheScreen();
    void imagesLoadEagerlyOrOnFirstRequest();
    void catalogueNamesAndStyleSheetCopies();
    void brokenCataloguesLeaveTheCacheEmpty_data();
    void brokenCataloguesLeaveTheCacheEmpty();
    void folderBeforeInitializeAborts();
    void styleFilesSplitIntoSections();
};

void TestRegistries::initTestCase()
{
    if (!qEnvironmentVariableIsSet("QT_FONT_DPI"))
        QSKIP("the expected sizes are per screen: run through ctest, which pins it");
}

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
    folder.write(QStringLiteral("images.json"), R"({"images": ["pic"]})");
    folder.writePng(QStringLiteral("pic"), QSize(8, 8));
    UIPathManager paths;
    ComponentStrings strings;
    StyleManager styles;
    ImageManager before;
    ImageManager images;
    images.initialize(ImageManager::Eager);
    QMap<QString, QString> host{{QStringLiteral("today"), QStringLiteral("Today")}, {QStringLiteral("blank"), QString()}};

    WarningCollector warnings;
    debug_message.setEnabled(QtWarningMsg, !silenced); // what a host does to silence the toolkit
    paths.setPath(QStringLiteral("k"), QStringLiteral("/1"));
    paths.setPath(QStringLiteral("K"), QStringLiteral("/upper"));
    paths.setPath(QStringLiteral("empty"), QString());
    paths.setPath(QStringLiteral("k"), QStringLiteral("/2"));
    const QString missingPath = paths.getPath(QStringLiteral("nowhere"));
    paths.setPath(QStringLiteral("nowhere"), QStringLiteral("/x")); // the miss stored nothing: a first set
    const QString noCaption = strings.getString(QStringLiteral("ok"));
    strings.installStrings(host);
    host.insert(QStringLiteral("today"), QStringLiteral("changed by the host"));
    const QStringList captions{strings.getString(QStringLiteral("today")), strings.getString(QStringLiteral("blank")),
                               strings.getString(QStringLiteral("Today"))};
    strings.installStrings({{QStringLiteral("ok"), QStringLiteral("OK")}}); // replaces, does not merge
    const QString replaced = strings.getString(QStringLiteral("today"));
    const QString sheet = styles.getStyleSheet(QStringLiteral("component.none"), false);
    const QString rawSheet = styles.getStyleSheet(QStringLiteral("component.none"), true);
    const QPixmap beforeInitialize = before.getImage(QStringLiteral("pic"), ImageManager::Normal);
    const QPixmap otherCase = images.getImage(QStringLiteral("Pic"), ImageManager::Normal);
    debug_message.setEnabled(QtWarningMsg, true);

    QCOMPARE(QStringList({paths.getPath(QStringLiteral("k")), paths.getPath(QStringLiteral("K")),
                          paths.getPath(QStringLiteral("empty"))}),
             QStringList({QStringLiteral("/2"), QStringLiteral("/upper"), QString()}));
    QVERIFY(!missingPath.isNull() && missingPath.isEmpty());
    QCOMPARE(noCaption, QStringLiteral("ok"));
    QCOMPARE(captions, QStringList({QStringLiteral("Today"), QString(), QStringLiteral("Today")}));
    QCOMPARE(replaced, QStringLiteral("today"));
    QVERIFY(sheet.isEmpty() && rawSheet.isEmpty());
    QVERIFY(beforeInitialize.isNull() && otherCase.isNull());
    // The overwrite names the new path, not the one it replaces.
    const QStringList expected{
        QStringLiteral("Existing path is \"/2\" with key \"k\" but overwrite it now"),
        QStringLiteral("Cannot find path by key \"nowhere\""),
        QStringLiteral("Cannot find key in ComponentStrings \"ok\""),
        QStringLiteral("Cannot find key in ComponentStrings \"Today\""),
        QStringLiteral("Cannot find key in ComponentStrings \"today\""),
        QStringLiteral("Cannot find stylesheet \"component.none\""),
        QStringLiteral("Cannot find stylesheet \"component.none\""),
        QStringLiteral("Cannot load pixmap \"pic\""),
        QStringLiteral("Cannot load pixmap \"Pic\""),
    };
    QCOMPARE(warnings.messages(), silenced ? QStringList() : expected);
}

void TestRegistries::screenIsMeasuredAndSheetsScaled()
{
    QCOMPARE(DPIinfo::getInstance()->getDPI(), atThisScreen(1.0, 4.0 / 3.0, 1.0));
    QCOMPARE(DPIinfo::getInstance()->getDPR(), atThisScreen(1.0, 1.0, 2.0));

    ResourceFolder folder;
    ImageManager::getInstance()->initialize(ImageManager::Lazy);
    const QString raw = QStringLiteral("\nQLabel { font-size: 12px; margin: 10px 1px 2px 13px; }\n");
    StyleManager::getInstance()->initialize({folder.write(QStringLiteral("a.qss"), "== k ==" + raw.toUtf8())});
    QCOMPARE(getStyleSheet("k", true), raw);
    QCOMPARE(getStyleSheet(QStringLiteral("k"), false),
             atThisScreen(raw, QStringLiteral("\nQLabel { font-size: 16px; margin: 13px 1px 2px 17px; }\n"), raw));
}

void TestRegistries::imagesAreScaledForTheScreen_data()
{
    QTest::addColumn<QSize>("source");
    QTest::addColumn<QSize>("at72");
    QTest::addColumn<QSize>("at96");
    QTest::addColumn<QSize>("atRatio2");

    // Device pixels; at ratio 2 they are shown at half that, as at factor 1.0.
    QTest::newRow("96 px") << QSize(96, 96) << QSize(24, 24) << QSize(32, 32) << QSize(48, 48);
    // Each step rounds: 50 -> 12.5 -> 13 -> 17.33 -> 17.
    QTest::newRow("50 px rounds each step") << QSize(50, 50) << QSize(13, 13) << QSize(17, 17) << QSize(26, 26);
    QTest::newRow("2 px rounds a half up") << QSize(2, 2) << QSize(1, 1) << QSize(1, 1) << QSize(2, 2);
    QTest::newRow("96 x 48 keeps its shape") << QSize(96, 48) << QSize(24, 12) << QSize(32, 16) << QSize(48, 24);
}

void TestRegistries::imagesAreScaledForTheScreen()
{
    QFETCH(QSize, source);
    QFETCH(QSize, at72);
    QFETCH(QSize, at96);
    QFETCH(QSize, atRatio2);
    ResourceFolder folder;
    folder.write(QStringLiteral("images.json"), R"({"images": ["pic"], "tmp_images": ["pic"]})");
    folder.writePng(QStringLiteral("pic"), source);
    for (ImageManager::InitializeType type : {ImageManager::Eager, ImageManager::Lazy}) {
        ImageManager images;
        images.initialize(type);
        const QPixmap pixmap = images.getImage(QStringLiteral("pic"), ImageManager::Normal);
        QCOMPARE(pixmap.size(), atThisScreen(at72, at96, atRatio2));
        QCOMPARE(pixmap.devicePixelRatio(), atThisScreen(1.0, 1.0, 2.0));
        // The style sheets' copy is sized for the factor alone: no ratio.
        QCOMPARE(QImage(folder.tmpImage("pic")).size(), atThisScreen(at72, at96, at72));
    }
}

void TestRegistries::imagesLoadEagerlyOrOnFirstRequest()
{
    ResourceFolder folder;
    folder.write(QStringLiteral("images.json"), R"({"images": ["pic", "plain", "ghost"]})");
    const QColor colours[] = {Qt::red, Qt::green, Qt::blue, Qt::gray};
    const char* const suffixes[] = {"", "_hover", "_click", "_disable"};
    for (int state = 0; state < 4; ++state)
        folder.writePng(QLatin1String("pic") + QLatin1String(suffixes[state]), QSize(16, 16), colours[state]);
    folder.writePng(QStringLiteral("plain"), QSize(16, 16));
    ImageManager eager, lazy, lazyLoaded;
    eager.initialize(ImageManager::Eager);
    lazy.initialize(ImageManager::Lazy);
    lazyLoaded.initialize(ImageManager::Lazy);
    const qint64 first = lazyLoaded.getImage(QStringLiteral("pic"), ImageManager::Normal).cacheKey();
    // The files change now: only what was loaded before remains.
    for (int state = 0; state < 4; ++state)
        folder.writePng(QLatin1String("pic") + QLatin1String(suffixes[state]), QSize(20, 20), Qt::yellow);

    WarningCollector warnings;
    for (int state = 0; state < 4; ++state)
        QCOMPARE(centreColour(eager.getImage(QStringLiteral("pic"), ImageManager::ImageType(state))), colours[state]);
    QCOMPARE(lazyLoaded.getImage(QStringLiteral("pic"), ImageManager::Normal).cacheKey(), first);
    QCOMPARE(centreColour(lazy.getImage(QStringLiteral("pic"), ImageManager::Hover)), QColor(Qt::yellow));
    QCOMPARE(warnings.count(), 0);

    // A missing state answers the normal picture and warns on every request.
    for (ImageManager* images : {&eager, &lazy}) {
        const qint64 normal = images->getImage(QStringLiteral("plain"), ImageManager::Normal).cacheKey();
        for (ImageManager::ImageType state : {ImageManager::Hover, ImageManager::Hover, ImageManager::Disable}) {
            QCOMPARE(images->getImage(QStringLiteral("plain"), state).cacheKey(), normal);
            QCOMPARE(warnings.messages().takeLast(),
                     QStringLiteral("Cannot load pixmap \"plain\" with type %1 [use default icon]").arg(int(state)));
        }
    }
    QCOMPARE(warnings.count(), 6);
    // An image none of whose files loads is tried again, and warned about, every time.
    warnings.clear();
    for (int round = 1; round <= 2; ++round) {
        QVERIFY(lazy.getImage(QStringLiteral("ghost"), ImageManager::Normal).isNull());
        QCOMPARE(warnings.count(), round);
    }
    QCOMPARE(warnings.messages().last(), QStringLiteral("Cannot load pixmap \"ghost\" with type 0 [use default icon]"));

    // A later initialize renews the listed entries and keeps the others.
    folder.write(QStringLiteral("images.json"), R"({"images": ["plain"]})");
    folder.writePng(QStringLiteral("plain"), QSize(12, 12), Qt::blue); // another size: QPixmap's cache knows the file
    eager.initialize(ImageManager::Lazy);
    QCOMPARE(centreColour(eager.getImage(QStringLiteral("plain"), ImageManager::Normal)), QColor(Qt::blue));
    QCOMPARE(centreColour(eager.getImage(QStringLiteral("pic"), ImageManager::Normal)), QColor(Qt::red));
}

void TestRegistries::catalogueNamesAndStyleSheetCopies()
{
    ResourceFolder folder;
    folder.write(QStringLiteral("images.json"),
                 R"({"images": ["two words", "two words"], "tmp_images": [" check mark ", "two words", "absent"]})");
    folder.writePng(QStringLiteral("two words"), QSize(8, 8));
    folder.writePng(QStringLiteral("twowords"), QSize(8, 8));
    folder.writePng(QStringLiteral("checkmark"), QSize(40, 40));
    ImageManager images;
    images.initialize(ImageManager::Eager);
    // The widgets' names keep their spaces; the style sheets' lose them.
    WarningCollector warnings;
    QVERIFY(!images.getImage(QStringLiteral("two words"), ImageManager::Normal).isNull());
    QVERIFY(images.getImage(QStringLiteral("twowords"), ImageManager::Normal).isNull());
    QCOMPARE(warnings.count(), 1);
    QCOMPARE(images.getTempImageFullPath(QStringLiteral("checkmark")),
             folder.userData + QLatin1String("/tmp_images") + QDir::separator() + QLatin1String("tmp_checkmark.png"));
    QCOMPARE(QImage(folder.tmpImage("checkmark")).size(), atThisScreen(QSize(10, 10), QSize(13, 13), QSize(10, 10)));
    QVERIFY(!QImage(folder.tmpImage("twowords")).isNull());
    // A missing source still leaves its (empty) copy.
    QVERIFY(QFileInfo::exists(folder.tmpImage("absent")));
    QCOMPARE(QFileInfo(folder.tmpImage("absent")).size(), qint64(0));
}

void TestRegistries::brokenCataloguesLeaveTheCacheEmpty_data()
{
    QTest::addColumn<QByteArray>("catalogue");
    QTest::addColumn<bool>("loadable");

    QTest::newRow("missing file") << QByteArray() << false;
    QTest::newRow("invalid json") << QByteArray(R"({"images": ["pic")") << false;
    QTest::newRow("top level array") << QByteArray(R"(["pic"])") << false;
    QTest::newRow("images not an array") << QByteArray(R"({"images": "pic"})") << false;
    QTest::newRow("non-string elements count as empty names")
        << QByteArray(R"({"images": [1, null, "pic"], "tmp_images": [true]})") << true;
    QTest::newRow("NUL byte ends the text") << QByteArray("{\"images\": [\"pic\"]}\0garbage", 28) << true;
}

void TestRegistries::brokenCataloguesLeaveTheCacheEmpty()
{
    QFETCH(QByteArray, catalogue);
    QFETCH(bool, loadable);
    ResourceFolder folder;
    if (!catalogue.isEmpty())
        folder.write(QStringLiteral("images.json"), catalogue);
    folder.writePng(QStringLiteral("pic"), QSize(8, 8));
    ImageManager images;
    WarningCollector warnings;
    images.initialize(ImageManager::Eager);
    QCOMPARE(warnings.count(), 0);
    QCOMPARE(images.getImage(QStringLiteral("pic"), ImageManager::Normal).isNull(), !loadable);
}

void TestRegistries::folderBeforeInitializeAborts()
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--folder-before-initialize")});
    QVERIFY(child.waitForFinished(60000));
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    const QString errors = QString::fromLocal8Bit(child.readAllStandardError());
    QVERIFY2(errors.contains(QLatin1String("ImageManager is not initialized")), qPrintable(errors));
    QCOMPARE(child.readAllStandardOutput(), QByteArray());
}

void TestRegistries::styleFilesSplitIntoSections()
{
    ResourceFolder folder;
    ImageManager::getInstance()->initialize(ImageManager::Lazy);
    const QString first = folder.write(QStringLiteral("1.qss"),
                                       "/* leading comment */\n"
                                       "== component.label ==\n"
                                       "QLabel { image: url(IMG_LOC/a.png); } // trailing comment\n"
                                       "QLabel:checked { image: url(TMPIMG_LOC/b.png); }\n"
                                       "== component.menu ==\r\n"
                                       "x");
    const QString second = folder.write(QStringLiteral("2.qss"), "y\n== B ==\nb\n== only.here ==\n1");
    const QString third = folder.write(QStringLiteral("3.qss"), "== B ==\nthird");
    const QString absent = folder.root.filePath(QStringLiteral("absent.qss"));
    StyleManager styles;
    WarningCollector warnings;
    // A folder exists but is no file: it adds only its line feed.
    styles.initialize({first, absent, folder.root.path(), second});
    QVERIFY(warnings.isOnly(QStringLiteral("file \"%1\" not exist").arg(absent)));
    // The comment leaves an empty line that opens the first body; the line
    // comment swallows its line feed; sections run on into the next file.
    QCOMPARE(styles.getStyleSheet(QStringLiteral("component.label"), true),
             QStringLiteral("\n\nQLabel { image: url(%1/images/a.png); } QLabel:checked { image: url(%2/tmp_images/b.png); }")
                 .arg(folder.resources, folder.userData));
    QCOMPARE(styles.getStyleSheet(QStringLiteral("component.menu"), true), QStringLiteral("\nx\n\ny"));
    QCOMPARE(styles.getStyleSheet(QStringLiteral("B"), true), QStringLiteral("\nb"));
    // Later sections win, across files and across calls.
    styles.initialize({third});
    QCOMPARE(styles.getStyleSheet(QStringLiteral("B"), true), QStringLiteral("\nthird"));
    QCOMPARE(styles.getStyleSheet(QStringLiteral("only.here"), true), QStringLiteral("\n1"));
}

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (app.arguments().value(1) == QLatin1String("--folder-before-initialize")) {
        // Asking for a folder before initialize ends the process.
        std::printf("%s\n", qPrintable(ImageManager().getImageFolder()));
        return 0;
    }
    TestRegistries test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_registries.moc"
