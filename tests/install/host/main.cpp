// Builds against the installed package with nothing but the umbrella header,
// runs the start-up order on an empty theme and builds a widget.

#include <orvacat/orvacat.h>

#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QTemporaryDir dir;
    UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), dir.path());
    UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), dir.path());
    ImageManager::getInstance()->initialize(ImageManager::Lazy);
    StyleManager::getInstance()->initialize({});
    ComponentStrings::getInstance()->installStrings({{QStringLiteral("ok"), QStringLiteral("OK")}});

    OrvaButton button(ComponentStrings::getInstance()->getString(QStringLiteral("ok")), 7);
    std::printf("host ok: %s %g\n", qPrintable(button.text()), DPIinfo::getInstance()->getDPI());
    return button.text() == QLatin1String("OK") ? 0 : 1;
}
