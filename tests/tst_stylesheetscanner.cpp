// The single-pass style-sheet scanners against the QRegExp formulation they
// replace: worked values first, then the reference on generated text.

#include "testmain.h"

#include "stylesheetoracle.h"
#include "warningcollector.h"

#include <orvacat/orvacat.h>

#include <QRandomGenerator>
#include <QTemporaryDir>

namespace {

QString stripBoth(const QString& text)
{
    return StyleSheetScanner::stripLineComments(StyleSheetScanner::stripBlockComments(text));
}

QMap<QString, QString> sectionsOf(const QString& text)
{
    QMap<QString, QString> sections;
    StyleSheetScanner::splitSections(text, sections);
    return sections;
}

// Random text from the pieces the scanners react to.
QString generate(QRandomGenerator& random, int tokens)
{
    static const char* const parts[] = {
        "0", "1", "7", "12", "99", "1000", "98765432109876543210", ".", ".5", "px", "PX", "p", "x",
        "/*", "*/", "*", "/", "//", "\n", "\r\n", "\r", "==", "= ", " ", "{", "}", ";", "-", "\t", "é",
        "١", "٢٣", "۴", "१", "９", "²", "𝟏", "IMG_LOC", "TMPIMG_LOC", "TMP", "== component.label ==", "border: 1px solid;", "url(IMG_LOC/x.png)",
    };
    QString text;
    for (int i = 0; i < tokens; ++i)
        text += QString::fromUtf8(parts[random.bounded(int(sizeof(parts) / sizeof(parts[0])))]);
    return text;
}

} // namespace

class TestStyleSheetScanner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scalesWorkedValues_data();
    void scalesWorkedValues();
    void processesWorkedTexts_data();
    void processesWorkedTexts();
    void agreesWithRegExpOnGeneratedText();
    void styleFilesAgreeWithRegExpEndToEnd();
    void longInputsStayLinear();
};

void TestStyleSheetScanner::scalesWorkedValues_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("factor");
    QTest::addColumn<QString>("expected");

    QTest::newRow("12px at 4/3") << "font-size: 12px;" << 4.0 / 3.0 << "font-size: 16px;";
    QTest::newRow("truncated, not rounded") << "10px 1px 2px" << 4.0 / 3.0 << "13px 1px 2px";
    QTest::newRow("fraction dropped at 1.0") << "1.5px 13px" << 1.0 << "1px 13px";
    QTest::newRow("0.5px at 2.0") << "0.5px" << 2.0 << "1px";
    QTest::newRow("other units untouched") << "12pt 3em 4% 12PX" << 2.0 << "12pt 3em 4% 12PX";
    QTest::newRow("sign stays in the text") << "margin: -4px;" << 2.0 << "margin: -8px;";
    QTest::newRow(".5px reads 5 after a dot") << ".5px" << 2.0 << ".10px";
    QTest::newRow("no word boundary") << "a12pxb" << 2.0 << "a24pxb";
    // A number of four or more characters is found again from its fourth.
    QTest::newRow("1000px shifts the text") << "a 1000px b 1px c" << 1.0 << "a 1000px b 0px c1px";
    QTest::newRow("12.5px shifts the text") << "x12.5pxy" << 2.0 << "x25pxy10px";
    // QRegExp's \d is any decimal digit, but such a number does not parse: 0.
    QTest::newRow("other scripts' digits read as 0") << "a ١٢px 1٢px ９px b" << 2.0 << "a 0px 0px 0px b";
    QTest::newRow("other numerals are not digits") << "²px 𝟏px Ⅻpx" << 2.0 << "²px 𝟏px Ⅻpx";
    QTest::newRow("huge lengths saturate") << "99999999999999999999px" << 2.0 << "2147483647px2147483647px";
}

void TestStyleSheetScanner::scalesWorkedValues()
{
    QFETCH(QString, text);
    QFETCH(double, factor);
    QFETCH(QString, expected);
    QCOMPARE(StyleSheetScanner::scalePixelLengths(text, factor), expected);
    QCOMPARE(Oracle::scalePixelLengths(text, factor), expected);
}

void TestStyleSheetScanner::processesWorkedTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("keysAndBodies");

    QTest::newRow("two sections") << "== component.label ==\nR1\n== component.menu ==\nR2\n\n"
                                  << QStringList{"component.label", "\nR1", "component.menu", "\nR2\n"};
    QTest::newRow("a comment leaves the empty line that opens the first body")
        << "/* c\n d */\n== K ==\nR /*1*/\n" << QStringList{"K", "\n\nR "};
    QTest::newRow("comments do not nest, an open one stays, /*/ does not close")
        << "== A ==\na/* /* */ b */c/*/d*/e /* f\n" << QStringList{"A", "\na b */ce /* f"};
    QTest::newRow("a line comment swallows its line feed and the header after it")
        << "== A ==\nx; // c\n== B ==\ny\n" << QStringList{"A", "\nx; == B ==\ny"};
    QTest::newRow("a line comment in a url, block comments first")
        << "== A ==\nurl(http://x)\nb // /* \n */ c\n" << QStringList{"A", "\nurl(http:b "};
    QTest::newRow("a header of '=' and spaces stores nothing and runs on")
        << "lead\n== A ==\n1\n== ==\n2\n== B ==\n3\n" << QStringList{"A", "\nlead\n1", "B", "\n2\n3"};
    QTest::newRow("later section wins") << "== A ==\n1\n== A ==\n2\n" << QStringList{"A", "\n2"};
    QTest::newRow("space after == is no header, tabs stay in the key")
        << "==\tA ==\n== B == \n" << QStringList{"\tA", "\n== B == "};
    QTest::newRow("carriage return before line feed is dropped") << "== A ==\r\nx\r\n" << QStringList{"A", "\nx"};
    QTest::newRow("header alone") << "== A ==" << QStringList{"A", ""};
}

void TestStyleSheetScanner::processesWorkedTexts()
{
    QFETCH(QString, text);
    QFETCH(QStringList, keysAndBodies);
    QMap<QString, QString> expected;
    for (int i = 0; i + 1 < keysAndBodies.size(); i += 2)
        expected.insert(keysAndBodies.at(i), keysAndBodies.at(i + 1));
    QCOMPARE(sectionsOf(stripBoth(text)), expected);
    QCOMPARE(Oracle::splitSections(Oracle::stripComments(text)), expected);
}

void TestStyleSheetScanner::agreesWithRegExpOnGeneratedText()
{
    // Folders that could take part in a placeholder match after their
    // replacement are the hard cases; ordinary ones take the one-pass path.
    const QStringList tempFolders{"/home/u/.local/share/app/tmp_images", "LOC/x", "/x/IMG_", "/IMG_LOC/x", "C", ""};
    const QStringList imageFolders{"/usr/share/app/images", "TMPIMG_LOC", ""};
    const double factors[] = {1.0, 4.0 / 3.0, 1.5, 2.0, 100.0 / 72.0};
    QRandomGenerator random(20261121);
    for (int i = 0; i < 5000; ++i) {
        const QString text = generate(random, 1 + random.bounded(50));
        const double factor = factors[i % 5];
        const QString scaled = StyleSheetScanner::scalePixelLengths(text, factor);
        if (scaled != Oracle::scalePixelLengths(text, factor))
            QFAIL(qPrintable(QStringLiteral("scaling at %1: %2 gave %3").arg(factor).arg(text, scaled)));
        QCOMPARE(stripBoth(text), Oracle::stripComments(text));
        QCOMPARE(sectionsOf(text), Oracle::splitSections(text));
        const QString& temp = tempFolders.at(i % tempFolders.size());
        const QString& image = imageFolders.at(i % imageFolders.size());
        QCOMPARE(StyleSheetScanner::replacePlaceholders(text, temp, image),
                 QString(text).replace(QLatin1String("TMPIMG_LOC"), temp).replace(QLatin1String("IMG_LOC"), image));
    }
    // The screen's own factor, through the registry's entry point.
    const QString sheet = generate(random, 400);
    QCOMPARE(DPIinfo::getInstance()->getScaledStyleSheet(sheet),
             Oracle::scalePixelLengths(sheet, DPIinfo::getInstance()->getDPI()));
}

void TestStyleSheetScanner::styleFilesAgreeWithRegExpEndToEnd()
{
    // Whole files, read from disk with their carriage returns and NUL bytes.
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    {
        WarningCollector overwrites;
        UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), dir.path());
        UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), dir.path());
        ImageManager::getInstance()->initialize(ImageManager::Lazy);
    }
    ImageManager* images = ImageManager::getInstance();
    QRandomGenerator random(2026);
    for (int round = 0; round < 200; ++round) {
        std::vector<QString> files;
        for (int i = random.bounded(3); i >= 0; --i) {
            QByteArray bytes = generate(random, random.bounded(80)).toUtf8();
            if (random.bounded(10) == 0)
                bytes.insert(random.bounded(bytes.size() + 1), '\0');
            QFile file(dir.filePath(QStringLiteral("r%1-%2.qss").arg(round).arg(i)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(bytes);
            files.push_back(file.fileName());
        }
        StyleManager styles;
        styles.initialize(files);
        const QMap<QString, QString> expected =
            Oracle::processStyleFiles(files, images->getTempImageFolder(), images->getImageFolder());
        for (auto it = expected.cbegin(); it != expected.cend(); ++it)
            QCOMPARE(styles.getStyleSheet(it.key(), true), it.value());
    }
}

void TestStyleSheetScanner::longInputsStayLinear()
{
    // A megabyte of digits, of an unclosed comment and of '=' lines: one
    // pass each, not a search restarted at every character (which would
    // run into the runner's timeout).
    const QString digits(1 << 20, QLatin1Char('1'));
    QCOMPARE(StyleSheetScanner::scalePixelLengths(digits, 2.0), digits);
    const QString openComment = QLatin1String("/*") + QString(1 << 20, QLatin1Char('/'));
    QCOMPARE(stripBoth(openComment), openComment);
    QString equals;
    for (int i = 0; i < (1 << 16); ++i)
        equals += QLatin1String("x==\n");
    QVERIFY(sectionsOf(equals).isEmpty());
}

ORVACAT_TEST_MAIN(TestStyleSheetScanner)
#include "tst_stylesheetscanner.moc"
