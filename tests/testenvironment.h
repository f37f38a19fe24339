#ifndef ORVACAT_TESTS_TESTENVIRONMENT_H
#define ORVACAT_TESTS_TESTENVIRONMENT_H

#include <QString>

class QWidget;

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

} // namespace TestEnvironment

#endif // ORVACAT_TESTS_TESTENVIRONMENT_H
