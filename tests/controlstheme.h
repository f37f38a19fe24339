#ifndef ORVACAT_TESTS_CONTROLSTHEME_H
#define ORVACAT_TESTS_CONTROLSTHEME_H

#include <QColor>
#include <QString>

/**
 * A small theme of the controls suites' own, written into a temporary folder
 * and installed in the registries: distinct solid pictures per state and
 * style sheets whose effects the suites can see. It keeps the suites
 * independent of how the shipped theme looks.
 */
namespace ControlsTheme {

/** Image with all four state files. */
extern const char* const fourStateImage;
/** Image with only the normal file; the other states fall back to it. */
extern const char* const normalOnlyImage;

/** The line edit's background without and with the error property. */
QColor lineEditBackground(bool error);

/** Writes the theme (once per process) and runs the host start-up on it; false if a file could not be written. */
bool install();

} // namespace ControlsTheme

#endif // ORVACAT_TESTS_CONTROLSTHEME_H
