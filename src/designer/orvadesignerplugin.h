#ifndef ORVACAT_DESIGNER_ORVADESIGNERPLUGIN_H
#define ORVACAT_DESIGNER_ORVADESIGNERPLUGIN_H

#include <QObject>
#include <QScopedPointer>
#include <QTemporaryDir>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <memory>
#include <vector>

class OrvaDesignerWidget;

/**
 * The toolkit's widgets for Qt Designer forms. Each is offered under the
 * class a form builds with `new Class(parent)`: the library class where its
 * constructor takes just a parent, the matching OrvaForm... class of
 * <orvacat/orvaformwidgets.h> otherwise.
 *
 * The widgets read the registries when they are built. With the environment
 * variable ORVACAT_DESIGNER_THEME naming a theme folder, the plugin runs the
 * host start-up order on it when it is loaded (language from the system
 * locale, English when the theme has no table for it; scaled images in a
 * temporary folder of its own), so forms show the themed look. Without it
 * the registries stay empty: widgets draw with Qt's look and the registries
 * warn about the misses as they would in a host.
 */
class OrvaDesignerPlugin : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    explicit OrvaDesignerPlugin(QObject* parent = nullptr);
    ~OrvaDesignerPlugin() override;

    QList<QDesignerCustomWidgetInterface*> customWidgets() const override;

private:
    void installTheme(const QString& themeDir);

    std::vector<std::unique_ptr<OrvaDesignerWidget>> m_widgets;
    QScopedPointer<QTemporaryDir> m_userData;
};

#endif // ORVACAT_DESIGNER_ORVADESIGNERPLUGIN_H
