#include "testenvironment.h"

#include <orvacat/orvacat.h>
#include <themefiles.h>

#include <QApplication>
#include <QTemporaryDir>
#include <QWidget>

namespace TestEnvironment {

void installDefaultTheme(const QString& language)
{
    static QTemporaryDir userData;
    static bool installed = false;
    if (!installed) {
        ThemeFiles::install(themeDir(), userData.path(), language);
        installed = true;
    } else {
        ComponentStrings::getInstance()->installStrings(
            ThemeFiles::readStringTable(ThemeFiles::stringTablePath(themeDir(), language)));
    }
}

QString themeDir()
{
    return ThemeFiles::buildTreeThemeDir();
}

int scaled(double n)
{
    return int(n * DPIinfo::getInstance()->getDPI());
}

QStringList visibleTopLevels()
{
    QStringList names;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        if (widget->isVisible())
            names << QString::fromLatin1(widget->metaObject()->className()) + QLatin1Char(':') + widget->objectName();
    }
    return names;
}

QColor pixelAt(const QImage& shot, QPoint logical)
{
    const qreal ratio = shot.devicePixelRatio();
    return shot.pixelColor(int(logical.x() * ratio + ratio / 2), int(logical.y() * ratio + ratio / 2));
}

QColor centreColour(QWidget* widget)
{
    return pixelAt(widget->grab().toImage(), QPoint(widget->width() / 2, widget->height() / 2));
}

} // namespace TestEnvironment
