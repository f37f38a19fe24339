// The style-sheet scanners against the QRegExp formulation they replace.

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
        "0", "1", "7", "12", "99", "100", "1000", "123456", "98765432109876543210", ".", ".5", "px", "PX", "p", "x",
        "/*", "*/", "*", "/", "//", "\n", "\r\n", "\r", "==", "= ", " ", "a", "{", "}", ";", ":", "-",
        "IMG_LOC", "TMPIMG_LOC", "== component.label ==", "border: 1px solid;", "url(IMG_LOC/x.png)", "\t", "é",
    };
    const int count = int(sizeof(parts) / sizeof(parts[0]));
    QString text;
    for (int i = 0; i < tokens; ++i)
        text += QString::fromUtf8(parts[random.bounded(count)]);
    return text;
}

} // namespace

class TestStyleSheetScanner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scalesWorkedValues_data();
    void scalesWorkedValues();
    void scalingAgreesWithRegExpOnGeneratedText();
    void hugeLengthsSaturate();
    void stripsComments_data();
    void stripsComments();
    void commentStrippingAgreesWithRegExpOnGeneratedText();
    void splitsSections_data();
    void splitsSections();
    void sectionSplittingAgreesWithTextStreamOnGeneratedText();
    void placeholdersAgreeWithSequentialReplacement();
    void styleFilesAgreeWithRegExpEndToEnd();
    void longLinesAndLargeTextsStayLinear();
};

void TestStyleSheetScanner::scalesWorkedValues_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("factor");
    QTest::addColumn<QString>("expected");

    QTest::newRow("12px at 4/3") << "font-size: 12px;" << 4.0 / 3.0 << "font-size: 16px;";
    QTest::newRow("10px at 4/3") << "10px" << 4.0 / 3.0 << "13px";
    QTest::newRow("1px and 2px stay at 4/3") << "1px 2px" << 4.0 / 3.0 << "1px 2px";
    QTest::newRow("fraction dropped at 1.0") << "1.5px" << 1.0 << "1px";
    QTest::newRow("13px at 1.0") << "13px" << 1.0 << "13px";
    QTest::newRow("0.5px at 2.0") << "0.5px" << 2.0 << "1px";
    QTest::newRow("no px") << "color: red; 12pt 3em 4%" << 2.0 << "color: red; 12pt 3em 4%";
    QTest::newRow("empty") << "" << 2.0 << "";
    QTest::newRow("sign stays in the text") << "margin: -4px;" << 2.0 << "margin: -8px;";
    QTest::newRow(".5px reads 5 after a dot") << ".5px" << 2.0 << ".10px";
    QTest::newRow("upper-case PX untouched") << "12PX 12px" << 2.0 << "12PX 24px";
    QTest::newRow("no word boundary") << "a12pxb" << 2.0 << "a24pxb";
    QTest::newRow("999px") << "999px;" << 1.0 << "999px;";
    // A four-character number is found again from its fourth character.
    QTest::newRow("1000px shifts the text") << "a 1000px b 1px c" << 1.0 << "a 1000px b 0px c1px";
    QTest::newRow("12.5px shifts the text") << "x12.5pxy" << 2.0 << "x25pxy10px";
}

void TestStyleSheetScanner::scalesWorkedValues()
{
    QFETCH(QString, text);
    QFETCH(double, factor);
    QFETCH(QString, expected);
    QCOMPARE(StyleSheetScanner::scalePixelLengths(text, factor), expected);
    QCOMPARE(Oracle::scalePixelLengths(text, factor), expected);
}

void TestStyleSheetScanner::scalingAgreesWithRegExpOnGeneratedText()
{
    QRandomGenerator random(20261121);
    const double factors[] = {1.0, 4.0 / 3.0, 1.5, 2.0, 100.0 / 72.0};
    for (int i = 0; i < 4000; ++i) {
        const QString text = generate(random, 1 + random.bounded(40));
        const double factor = factors[i % 5];
        const QString expected = Oracle::scalePixelLengths(text, factor);
        const QString actual = StyleSheetScanner::scalePixelLengths(text, factor);
        if (actual != expected)
            QFAIL(qPrintable(QStringLiteral("factor %1, input %2:\n got      %3\n expected %4")
                                 .arg(factor).arg(text.toHtmlEscaped(), actual, expected)));
    }
}

void TestStyleSheetScanner::hugeLengthsSaturate()
{
    const QString result = StyleSheetScanner::scalePixelLengths(QStringLiteral("99999999999999999999px"), 2.0);
    QVERIFY(result.startsWith(QString::number(std::numeric_limits<int>::max()) + QLatin1String("px")));
    QCOMPARE(result, Oracle::scalePixelLengths(QStringLiteral("99999999999999999999px"), 2.0));
}

void TestStyleSheetScanner::stripsComments_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("block") << "a/* x */b" << "ab";
    QTest::newRow("block spans lines") << "a/* x\ny */b" << "ab";
    QTest::newRow("shortest block") << "a/*1*/b/*2*/c" << "abc";
    QTest::newRow("blocks do not nest") << "a/* /* */ b */c" << "a b */c";
    QTest::newRow("unterminated block stays") << "a/* b" << "a/* b";
    QTest::newRow("/*/ does not close") << "a/*/b*/c" << "ac";
    QTest::newRow("line comment swallows its line feed") << "a; // c\nb" << "a; b";
    QTest::newRow("line comment in a url") << "url(http://x)\nb" << "url(http:b";
    QTest::newRow("line comment without line feed stays") << "a // c" << "a // c";
    QTest::newRow("block first, then line") << "a // x /* \n b */ c\n" << "a ";
}

void TestStyleSheetScanner::stripsComments()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(stripBoth(text), expected);
    QCOMPARE(Oracle::stripComments(text), expected);
}

void TestStyleSheetScanner::commentStrippingAgreesWithRegExpOnGeneratedText()
{
    QRandomGenerator random(7);
    for (int i = 0; i < 4000; ++i) {
        const QString text = generate(random, 1 + random.bounded(40));
        const QString expected = Oracle::stripComments(text);
        const QString actual = stripBoth(text);
        if (actual != expected)
            QFAIL(qPrintable(QStringLiteral("input %1:\n got      %2\n expected %3").arg(text, actual, expected)));
    }
}

void TestStyleSheetScanner::splitsSections_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("keysAndBodies");

    QTest::newRow("two sections")
        << "== component.label ==\nR1\n== component.menu ==\nR2\n\n"
        << QStringList{"component.label", "\nR1", "component.menu", "\nR2\n"};
    QTest::newRow("text before the first header opens the first body")
        << "lead\n== K ==\nR\n" << QStringList{"K", "\nlead\nR"};
    QTest::newRow("a header of '=' and spaces stores nothing and runs on")
        << "== A ==\n1\n== ==\n2\n== B ==\n3\n" << QStringList{"A", "\n1", "B", "\n2\n3"};
    QTest::newRow("later section wins") << "== A ==\n1\n== A ==\n2\n" << QStringList{"A", "\n2"};
    QTest::newRow("space after closing == is no header")
        << "== A ==\n== B == \n" << QStringList{"A", "\n== B == "};
    QTest::newRow("tabs stay in the key") << "==\tA ==\nx\n" << QStringList{"\tA", "\nx"};
    QTest::newRow("== alone is a header with an empty key") << "==\nx\n== A ==\ny\n" << QStringList{"A", "\nx\ny"};
    QTest::newRow("header alone") << "== A ==" << QStringList{"A", ""};
    QTest::newRow("carriage return before line feed is dropped")
        << "== A ==\r\nx\r\n" << QStringList{"A", "\nx"};
}

void TestStyleSheetScanner::splitsSections()
{
    QFETCH(QString, text);
    QFETCH(QStringList, keysAndBodies);
    QMap<QString, QString> expected;
    for (int i = 0; i + 1 < keysAndBodies.size(); i += 2)
        expected.insert(keysAndBodies.at(i), keysAndBodies.at(i + 1));
    QCOMPARE(sectionsOf(text), expected);
    QCOMPARE(Oracle::splitSections(text), expected);
}

void TestStyleSheetScanner::sectionSplittingAgreesWithTextStreamOnGeneratedText()
{
    QRandomGenerator random(42);
    for (int i = 0; i < 3000; ++i) {
        const QString text = generate(random, 1 + random.bounded(60));
        if (sectionsOf(text) != Oracle::splitSections(text))
            QFAIL(qPrintable(QStringLiteral("input %1").arg(text)));
    }
}

void TestStyleSheetScanner::placeholdersAgreeWithSequentialReplacement()
{
    // Folders that could take part in a match after their replacement are
    // the hard cases; ordinary ones take the one-pass path.
    const QStringList tempFolders{"/home/u/.local/share/app/tmp_images", "LOC/x", "/x/IMG_", "/IMG_LOC/x", "C", "I", ""};
    const QStringList imageFolders{"/usr/share/app/images", "TMPIMG_LOC", ""};
    QRandomGenerator random(99);
    for (int i = 0; i < 3000; ++i) {
        const QString text = generate(random, 1 + random.bounded(30)) + QLatin1String("TMPTMPIMG_LOCIMG_LOC");
        const QString& tempFolder = tempFolders.at(i % tempFolders.size());
        const QString& imageFolder = imageFolders.at(i % imageFolders.size());
        QString expected = text;
        expected.replace(QLatin1String("TMPIMG_LOC"), tempFolder);
        expected.replace(QLatin1String("IMG_LOC"), imageFolder);
        const QString actual = StyleSheetScanner::replacePlaceholders(text, tempFolder, imageFolder);
        if (actual != expected)
            QFAIL(qPrintable(QStringLiteral("folders %1 %2, input %3:\n got      %4\n expected %5")
                                 .arg(tempFolder, imageFolder, text, actual, expected)));
    }
}

void TestStyleSheetScanner::styleFilesAgreeWithRegExpEndToEnd()
{
    // Whole files, read from disk with their carriage returns and NUL bytes,
    // through StyleManager::initialize and through the QRegExp formulation.
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
        const int count = 1 + random.bounded(3);
        for (int i = 0; i < count; ++i) {
            QByteArray bytes = generate(random, random.bounded(80)).toUtf8();
            if (random.bounded(10) == 0)
                bytes.insert(random.bounded(bytes.size() + 1), '\0');
            const QString path = dir.filePath(QStringLiteral("r%1-%2.qss").arg(round).arg(i));
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(bytes);
            files.push_back(path);
        }
        StyleManager styles;
        styles.initialize(files);
        const QMap<QString, QString> expected =
            Oracle::processStyleFiles(files, images->getTempImageFolder(), images->getImageFolder());
        for (auto it = expected.cbegin(); it != expected.cend(); ++it)
            QCOMPARE(styles.getStyleSheet(it.key(), true), it.value());
    }
}

void TestStyleSheetScanner::longLinesAndLargeTextsStayLinear()
{
    // A megabyte-long line, a comment that never closes and a long run of
    // digits: each is one linear pass, not a quadratic search.
    const QString longLine = QString(1 << 20, QLatin1Char('7')) + QLatin1String("px");
    QCOMPARE(StyleSheetScanner::scalePixelLengths(longLine, 1.0).size() > 0, true);
    const QString openComment = QLatin1String("/*") + QString(1 << 20, QLatin1Char('/'));
    QCOMPARE(stripBoth(openComment), openComment);
    QString digits(1 << 20, QLatin1Char('1'));
    QCOMPARE(StyleSheetScanner::scalePixelLengths(digits, 2.0), digits);
}

ORVACAT_TEST_MAIN(TestStyleSheetScanner)
#include "tst_stylesheetscanner.moc"
