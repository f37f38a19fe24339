#include "orvadesignerplugin.h"

#include "orvadesignericons.h"

#include <orvacat/orvabuttonpath.h>
#include <orvacat/orvacalanderview.h>
#include <orvacat/orvacombobox.h>
#include <orvacat/orvafilterbar.h>
#include <orvacat/orvafootbar.h>
#include <orvacat/orvaformwidgets.h>
#include <orvacat/orvalabels.h>
#include <orvacat/orvalineedit.h>
#include <orvacat/orvalocale.h>
#include <orvacat/orvatreewidget.h>

#include <themefiles.h>

#include <QFileInfo>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <functional>

namespace {

const char* const controlsGroup = "Orvacat Controls";
const char* const viewsGroup = "Orvacat Views";

struct WidgetEntry
{
    const char* className;
    const char* extends;
    const char* header;
    const char* group;
    OrvaDesignerGlyph glyph;
    const char* toolTip;
    // Geometry a new widget gets when dropped outside a layout, in pixels.
    int width;
    int height;
    // The text property set in the new widget, if any.
    const char* text;
    std::function<QWidget*(QWidget*)> create;
};

template<typename Widget>
QWidget* build(QWidget* parent)
{
    return new Widget(parent);
}

// Designer shows the widget as built; the icon button has no pictures until
// the host gives it some, so the form shows the widget box's glyph instead.
QWidget* buildIconButton(QWidget* parent)
{
    auto* button = new OrvaFormIconButton(parent);
    button->setDefaultIcon(orvaDesignerIcon(OrvaDesignerGlyph::IconButton).pixmap(24, 24));
    return button;
}

std::vector<WidgetEntry> entries()
{
    using G = OrvaDesignerGlyph;
    return {
        {"OrvaFormButton", "QPushButton", "orvacat/orvaformwidgets.h", controlsGroup, G::PushButton,
         "Flat push button in the default dialog look", 88, 28, "Button", build<OrvaFormButton>},
        {"OrvaFormIconButton", "QToolButton", "orvacat/orvaformwidgets.h", controlsGroup, G::IconButton,
         "Icon-only button with hover, press and disabled pictures from the image registry", 32, 32, nullptr,
         buildIconButton},
        {"OrvaFormCheckBox", "QCheckBox", "orvacat/orvaformwidgets.h", controlsGroup, G::CheckBox,
         "Themed check box", 120, 24, "Check box", build<OrvaFormCheckBox>},
        {"OrvaFormRadioButton", "QRadioButton", "orvacat/orvaformwidgets.h", controlsGroup, G::RadioButton,
         "Themed radio button", 120, 24, "Radio button", build<OrvaFormRadioButton>},
        {"OrvaLineEdit", "QWidget", "orvacat/orvalineedit.h", controlsGroup, G::LineEdit,
         "Text field with optional labels before and after it", 200, 32, nullptr, build<OrvaLineEdit>},
        {"OrvaLabel", "QLabel", "orvacat/orvalabels.h", controlsGroup, G::Label,
         "Themed label that keeps the height its wrapped text needs", 120, 24, "Label", build<OrvaLabel>},
        {"OrvaFormLinkLabel", "QLabel", "orvacat/orvaformwidgets.h", controlsGroup, G::LinkLabel,
         "Label that behaves like a hyperlink and emits clicked()", 120, 24, "Link", build<OrvaFormLinkLabel>},
        {"OrvaFootbar", "QWidget", "orvacat/orvafootbar.h", controlsGroup, G::Footbar,
         "Bar for the bottom of a window, widgets packed left and right", 400, 48, nullptr, build<OrvaFootbar>},
        {"OrvaFormPagingBar", "QWidget", "orvacat/orvaformwidgets.h", viewsGroup, G::PagingBar,
         "Page buttons under a list shown page by page, with a model of its own", 520, 40, nullptr,
         build<OrvaFormPagingBar>},
        {"OrvaCalanderView", "QAbstractItemView", "orvacat/orvacalanderview.h", viewsGroup, G::Calendar,
         "Month calendar with a month menu and a today button", 280, 260, nullptr, build<OrvaCalanderView>},
        {"OrvaFormDateSelector", "QComboBox", "orvacat/orvaformwidgets.h", viewsGroup, G::DateSelector,
         "Date field that drops down a calendar", 160, 32, nullptr, build<OrvaFormDateSelector>},
        {"OrvaFormTableWidget", "QWidget", "orvacat/orvaformwidgets.h", viewsGroup, G::Table,
         "Table with a fixed header over scrolling rows, one column across the width", 400, 240, nullptr,
         build<OrvaFormTableWidget>},
        {"OrvaTreeWidget", "QTreeWidget", "orvacat/orvatreewidget.h", viewsGroup, G::Tree,
         "Folder tree with in-place renaming", 240, 300, nullptr, build<OrvaTreeWidget>},
        {"OrvaButtonPath", "QTableWidget", "orvacat/orvabuttonpath.h", viewsGroup, G::ButtonPath,
         "Breadcrumb of folder buttons", 400, 32, nullptr, build<OrvaButtonPath>},
        {"OrvaFilterBar", "QLineEdit", "orvacat/orvafilterbar.h", viewsGroup, G::FilterBar,
         "Search field with a drop-down of filter choices", 200, 32, nullptr, build<OrvaFilterBar>},
        {"OrvaComboBox", "QComboBox", "orvacat/orvacombobox.h", viewsGroup, G::ComboBox,
         "Themed combo box", 160, 32, nullptr, build<OrvaComboBox>},
    };
}

// "OrvaFormButton" -> "orvaButton": the object name Designer numbers for each new widget.
QString objectNameFor(const QString& className)
{
    QString name = className;
    if (name.startsWith(QLatin1String("OrvaForm")))
        name.replace(0, 8, QStringLiteral("Orva"));
    name[0] = name.at(0).toLower();
    return name;
}

QString domXmlFor(const WidgetEntry& entry)
{
    QString properties = QStringLiteral(
                             "  <property name=\"geometry\">\n"
                             "   <rect><x>0</x><y>0</y><width>%1</width><height>%2</height></rect>\n"
                             "  </property>\n")
                             .arg(entry.width)
                             .arg(entry.height);
    if (entry.text)
        properties += QStringLiteral("  <property name=\"text\">\n   <string>%1</string>\n  </property>\n")
                          .arg(QLatin1String(entry.text));
    return QStringLiteral("<ui language=\"c++\">\n"
                          " <widget class=\"%1\" name=\"%2\">\n%3 </widget>\n"
                          " <customwidgets>\n"
                          "  <customwidget>\n"
                          "   <class>%1</class>\n"
                          "   <extends>%4</extends>\n"
                          "   <header>%5</header>\n"
                          "  </customwidget>\n"
                          " </customwidgets>\n"
                          "</ui>\n")
        .arg(QLatin1String(entry.className), objectNameFor(QLatin1String(entry.className)), properties,
             QLatin1String(entry.extends), QLatin1String(entry.header));
}

} // namespace

/** One widget of the collection, described by its entry. */
class OrvaDesignerWidget : public QDesignerCustomWidgetInterface
{
public:
    explicit OrvaDesignerWidget(WidgetEntry entry)
        : m_entry(std::move(entry))
    {
    }

    QString name() const override { return QLatin1String(m_entry.className); }
    QString group() const override { return QLatin1String(m_entry.group); }
    QString toolTip() const override { return QLatin1String(m_entry.toolTip); }
    QString whatsThis() const override { return toolTip(); }
    QString includeFile() const override { return QLatin1String(m_entry.header); }
    bool isContainer() const override { return false; }
    QString domXml() const override { return domXmlFor(m_entry); }
    QWidget* createWidget(QWidget* parent) override { return m_entry.create(parent); }

    QIcon icon() const override
    {
        // Drawn on first use: Designer asks only once a QGuiApplication exists.
        if (m_icon.isNull())
            m_icon = orvaDesignerIcon(m_entry.glyph);
        return m_icon;
    }

    bool isInitialized() const override { return m_initialized; }
    void initialize(QDesignerFormEditorInterface*) override { m_initialized = true; }

private:
    WidgetEntry m_entry;
    mutable QIcon m_icon;
    bool m_initialized = false;
};

OrvaDesignerPlugin::OrvaDesignerPlugin(QObject* parent)
    : QObject(parent)
{
    for (WidgetEntry& entry : entries())
        m_widgets.push_back(std::make_unique<OrvaDesignerWidget>(std::move(entry)));

    // Read by the plugin only: the library itself never looks at the environment.
    const QString themeDir = qEnvironmentVariable("ORVACAT_DESIGNER_THEME");
    if (!themeDir.isEmpty())
        installTheme(themeDir);
}

OrvaDesignerPlugin::~OrvaDesignerPlugin() = default;

QList<QDesignerCustomWidgetInterface*> OrvaDesignerPlugin::customWidgets() const
{
    QList<QDesignerCustomWidgetInterface*> widgets;
    for (const auto& widget : m_widgets)
        widgets.append(widget.get());
    return widgets;
}

void OrvaDesignerPlugin::installTheme(const QString& themeDir)
{
    if (!QFileInfo::exists(themeDir + QLatin1String("/images.json"))) {
        qWarning("ORVACAT_DESIGNER_THEME: %s holds no images.json; the widgets keep Qt's look",
                 qPrintable(themeDir));
        return;
    }
    m_userData.reset(new QTemporaryDir);
    if (!m_userData->isValid()) {
        qWarning("ORVACAT_DESIGNER_THEME: no temporary folder for the scaled images; the widgets keep Qt's look");
        return;
    }
    QString language = OrvaLocale::getInstance()->getDefaultLanguage();
    if (!ThemeFiles::languages(themeDir).contains(language))
        language = QStringLiteral("enu");
    ThemeFiles::install(themeDir, m_userData->path(), language, ImageManager::Lazy);
}
