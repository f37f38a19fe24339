// The single-pass style-sheet scanners against the QRegExp formulation they
// replace: worked values first, then the reference on generated text.

#include "testmain.h"

#include "stylesheetoracle.h"
#include "testenvironment.h"

#include <orvacat/orvacat.h>

#include <QRandomGenerator>
#include <QTemporaryDir>

namespace {

QString stripBoth(const QString& text)
{
    return StyleSheetScanner::stripLineComments(StyleSheetScanner::stripBlockComments(text));
}

// Random text from the pieces the scanners react to.
QString generate(QRandomGenerator& random, int tokens)
{
    static const char* const parts[] = {
        "0", "1", "7", "12", "99", "1000", "98765432109876543210", ".", ".5", "px", "PX", "p", "x", "-",
        "/*", "*/", "*", "/", "//", "\n", "\r\n", "\r", "==", "= ", " ", "{", "}", ";", "\t", "é",
        "١", "٢٣", "۴", "१", "９", "²", "𝟏", // other scripts' decimal digits, and numerals that are not
        "IMG_LOC", "TMPIMG_LOC", "TMP", "== component.label ==", "border: 1px solid;", "url(IMG_LOC/x.png)",
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
    void agreesWithRegExpOnGeneratedText();
    void styleFilesAgreeWithRegExpEndToEnd();
    void longInputsStayLinear();
};

void TestStyleSheetScanner::scalesWorkedValues_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("factor");
    QTest::addColumn<QString>("expected");

    QTest::newRow("truncated, not rounded") << "10px 1px 2px 1.5px" << 4.0 / 3.0 << "13px 1px 2px 2px";
    QTest::newRow("other units untouched") << "12pt 3em 4% 12PX" << 2.0 << "12pt 3em 4% 12PX";
    QTest::newRow("sign stays in the text") << "margin: -4px;" << 2.0 << "margin: -8px;";
    QTest::newRow(".5px reads 5 after a dot, no word boundary") << "a.5pxb" << 2.0 << "a.10pxb";
    QTest::newRow("1000px is found again from its 4th character") << "a 1000px b 1px c" << 1.0 << "a 1000px b 0px c1px";
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
        QCOMPARE(StyleSheetScanner::scalePixelLengths(text, factor), Oracle::scalePixelLengths(text, factor));
        // The library's own copy of the scanner, at the screen's factor.
        QCOMPARE(DPIinfo::getInstance()->getScaledStyleSheet(text), Oracle::scalePixelLengths(text, DPIinfo::getInstance()->getDPI()));
        QCOMPARE(stripBoth(text), Oracle::stripComments(text));
        QMap<QString, QString> sections;
        StyleSheetScanner::splitSections(text, sections);
        QCOMPARE(sections, Oracle::splitSections(text));
        const QString& temp = tempFolders.at(i % tempFolders.size());
        const QString& image = imageFolders.at(i % imageFolders.size());
        QCOMPARE(StyleSheetScanner::replacePlaceholders(text, temp, image),
                 QString(text).replace(QLatin1String("TMPIMG_LOC"), temp).replace(QLatin1String("IMG_LOC"), image));
    }
}

void TestStyleSheetScanner::styleFilesAgreeWithRegExpEndToEnd()
{
    // Whole files, read from disk with their carriage returns and NUL bytes,
    // into one registry: each initialize adds its sections, later ones win.
    TestEnvironment::installDefaultTheme(); // the style registry asks the image registry for its folders
    QTemporaryDir dir;
    ImageManager* images = ImageManager::getInstance();
    const double factor = DPIinfo::getInstance()->getDPI();
    StyleManager styles;
    QMap<QString, QString> expected;
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
        styles.initialize(files);
        expected.insert(Oracle::processStyleFiles(files, images->getTempImageFolder(), images->getImageFolder()));
        for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
            QCOMPARE(styles.getStyleSheet(it.key(), true), it.value());
            QCOMPARE(styles.getStyleSheet(it.key(), false), Oracle::scalePixelLengths(it.value(), factor));
        }
    }
}

void TestStyleSheetScanner::longInputsStayLinear()
{
    // One pass each, not a search restarted at every character (the runner's timeout would end that).
    const QString digits(1 << 20, QLatin1Char('1'));
    QCOMPARE(StyleSheetScanner::scalePixelLengths(digits, 2.0), digits);
    const QString openComment = QLatin1String("/*") + QString(1 << 20, QLatin1Char('/'));
    QCOMPARE(stripBoth(openComment), openComment);
}

ORVACAT_TEST_MAIN(TestStyleSheetScanner)
#include "tst_stylesheetscanner.moc"
