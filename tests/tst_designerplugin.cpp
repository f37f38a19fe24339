// The Designer plugin loaded as Designer loads it. ctest runs the suite twice:
// with ORVACAT_DESIGNER_THEME naming the build tree's theme and without it.

#include "testmain.h"

#include <QPluginLoader>
#include <QRegularExpression>
#include <QToolButton>
#include <QXmlStreamReader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

static QStringList otherWarnings; // warnings from outside the registries' category

static void keepOtherWarnings(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (type >= QtWarningMsg && qstrcmp(context.category, "debug.message") != 0)
        otherWarnings << text;
}

class TestDesignerPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFormWidgetIsOfferedAndBuilds();
};

// The <widget> and <customwidget> facts of a widget's default form snippet.
static QMap<QString, QString> domFacts(const QString& xml)
{
    QMap<QString, QString> facts;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString element = reader.name().toString();
        if (element == "widget" && !facts.contains(element)) {
            facts.insert(element, reader.attributes().value("class").toString());
            facts.insert("object", reader.attributes().value("name").toString());
        } else if (element == "class" || element == "extends" || element == "header")
            facts.insert(element, reader.readElementText());
    }
    if (reader.hasError())
        facts.insert("error", reader.errorString());
    return facts;
}

void TestDesignerPlugin::everyFormWidgetIsOfferedAndBuilds()
{
    QtMessageHandler previous = qInstallMessageHandler(keepOtherWarnings);
    QPluginLoader loader(QStringLiteral(ORVACAT_DESIGNER_PLUGIN));
    auto* collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(loader.instance());
    QVERIFY2(collection, qPrintable(loader.errorString()));

    QWidget form;
    QMap<QString, QWidget*> byName;
    for (QDesignerCustomWidgetInterface* widget : collection->customWidgets()) {
        const QString name = widget->name();
        widget->initialize(nullptr);
        QVERIFY2(widget->group().startsWith("Orvacat ") && !widget->toolTip().isEmpty(), qPrintable(name));
        QVERIFY2(!widget->icon().pixmap(22, 22).isNull(), qPrintable(name));
        const QMap<QString, QString> dom = domFacts(widget->domXml());
        QCOMPARE(dom.value("error"), QString());
        QCOMPARE(dom.value("widget"), name);
        // uic makes the object name a member of the form: named like the class, it would hide the type.
        QVERIFY2(QRegularExpression("^[a-z]\\w*$").match(dom.value("object")).hasMatch(), qPrintable(name));
        QCOMPARE(dom.value("class"), name);
        QCOMPARE(dom.value("header"), widget->includeFile());
        QVERIFY2(QFile::exists(QStringLiteral(ORVACAT_INCLUDE_DIR "/") + widget->includeFile()), qPrintable(name));

        QWidget* instance = widget->createWidget(&form);
        QVERIFY2(instance && instance->parentWidget() == &form && !instance->isWindow(), qPrintable(name));
        // Designer refuses a widget that reports another class than the one it asked for.
        QCOMPARE(QString::fromLatin1(instance->metaObject()->className()), name);
        QVERIFY2(instance->inherits(qPrintable(dom.value("extends"))), qPrintable(name));
        byName.insert(name, instance);
    }
    for (const char* library : {"OrvaButton", "OrvaIconButton", "OrvaCheckBox", "OrvaRadioButton", "OrvaLineEdit",
                                "OrvaLabel", "LinkLabel", "OrvaFootbar", "OrvaPagingBar", "OrvaCalanderView",
                                "OrvaDateSelector", "OrvaTableWidget", "OrvaTreeWidget", "OrvaButtonPath",
                                "OrvaFilterBar", "OrvaComboBox"}) {
        const QList<QWidget*> built = byName.values();
        QVERIFY2(std::any_of(built.begin(), built.end(), [=](QWidget* w) { return w->inherits(library); }), library);
    }

    // Until the host gives it pictures, Designer shows the icon button with one of its own.
    form.show();
    QVERIFY(!qobject_cast<QToolButton*>(byName.value("OrvaFormIconButton"))->icon().isNull());

    // Themed: the style sheets arrived with their scaled pictures. Not themed:
    // Qt's look, and nothing to say beyond the registries' own misses.
    const QString sheet = byName.value("OrvaFormCheckBox")->styleSheet();
    if (qEnvironmentVariableIsEmpty("ORVACAT_DESIGNER_THEME")) {
        QCOMPARE(sheet, QString());
    } else {
        const QRegularExpressionMatch image = QRegularExpression("url\\(([^)]+)\\)").match(sheet);
        QVERIFY2(image.hasMatch() && QFile::exists(image.captured(1)), qPrintable(sheet));
    }
    qInstallMessageHandler(previous);
    QCOMPARE(otherWarnings, QStringList());
}

ORVACAT_TEST_MAIN(TestDesignerPlugin)
#include "tst_designerplugin.moc"
