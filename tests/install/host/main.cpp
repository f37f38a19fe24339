// Builds against the installed package through the umbrella header (and the
// single-application header as existing hosts spell it),
// runs the start-up order on an empty theme and builds a widget (and, when
// built with CMake, a Designer form of the toolkit's widgets through uic).

#include <orvacat/orvacat.h>
// As a host written for the single-application component spells it.
#include <QtSingleApplication>

#include <QApplication>
#include <QLibraryInfo>
#include <QTemporaryDir>

#ifdef ORVACAT_HOST_FORM
#include "ui_form.h"
#endif

#include <cstdio>

int main(int argc, char** argv)
{
    QtSingleApplication app(QStringLiteral("org.orvacat.installtest"), argc, argv);
    QTemporaryDir dir;
    UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), dir.path());
    UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), dir.path());
    ImageManager::getInstance()->initialize(ImageManager::Lazy);
    StyleManager::getInstance()->initialize({});
    ComponentStrings::getInstance()->installStrings({{QStringLiteral("ok"), QStringLiteral("OK")}});

    OrvaButton button(ComponentStrings::getInstance()->getString(QStringLiteral("ok")), 7);
    std::printf("host ok: %s %g, Qt %s\n", qPrintable(button.text()), DPIinfo::getInstance()->getDPI(), qVersion());
    // Built against one Qt major, the host must run on that one alone: the
    // toolkit of the other major in the same prefix is not to be picked up.
    if (QLibraryInfo::version().majorVersion() != QT_VERSION_MAJOR)
        return 1;
#ifdef ORVACAT_HOST_FORM
    QWidget formHost;
    Ui::HostForm form;
    form.setupUi(&formHost);
    form.pagingBar->setItemCount(45);
    std::printf("form ok: %s, %d pages\n", qPrintable(form.okButton->text()), form.pagingBar->pagingModel()->pageCount());
    if (form.okButton->parentWidget() != &formHost || form.pagingBar->pagingModel()->pageCount() != 3)
        return 1;
#endif
    if (app.isRunning())
        std::printf("another install test is running\n");
    return button.text() == QLatin1String("OK") ? 0 : 1;
}
