#ifndef ORVACAT_TESTS_TESTENVIRONMENT_H
#define ORVACAT_TESTS_TESTENVIRONMENT_H

#include <QColor>
#include <QImage>
#include <QList>
#include <QPoint>
#include <QStringList>
#include <QString>
#include <QWidget>

#include <algorithm>

/**
 * Set-up shared by the widget suites.
 */
namespace TestEnvironment {

/**
 * Runs the host start-up order on the default theme of the build tree, with
 * the user data in a temporary folder of the process, and the "enu" strings.
 * Safe to call more than once.
 */
void installDefaultTheme(const QString& language = QStringLiteral("enu"));

/** The default theme of the build tree. */
QString themeDir();

/** The DPI factor as the suites expect it: trunc(n * factor). */
int scaled(double n);

/** The names of the top-level widgets still visible; empty after a clean test. */
QStringList visibleTopLevels();

/**
 * The colour shown at @p logical (in the widget's own pixels) of a grabbed
 * picture, whatever its device-pixel ratio: the centre of that pixel's
 * device block.
 */
QColor pixelAt(const QImage& shot, QPoint logical);

/** The colour at the centre of what @p widget shows. */
QColor centreColour(QWidget* widget);

/** The children of @p parent of type T that are shown, left to right. */
template <typename T>
QList<T*> leftToRight(const QWidget* parent)
{
    QList<T*> shown;
    const QList<T*> all = parent->findChildren<T*>();
    for (T* child : all) {
        if (child->isVisibleTo(parent))
            shown << child;
    }
    std::stable_sort(shown.begin(), shown.end(), [parent](const T* a, const T* b) {
        return a->mapTo(parent, QPoint(0, 0)).x() < b->mapTo(parent, QPoint(0, 0)).x();
    });
    return shown;
}

} // namespace TestEnvironment

#endif // ORVACAT_TESTS_TESTENVIRONMENT_H
