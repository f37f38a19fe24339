#ifndef ORVACAT_ORVACAT_H
#define ORVACAT_ORVACAT_H

// The whole toolkit in one include. Hosts need nothing else.

#include <orvacat/orvacat_export.h>
#include <orvacat/globals.h>

// Registries
#include <orvacat/uipathmanager.h>
#include <orvacat/dpiinfo.h>
#include <orvacat/imagemanager.h>
#include <orvacat/stylemanager.h>
#include <orvacat/componentstrings.h>

// Single instance

// Controls
#include <orvacat/orvabuttons.h>

// Sheets and messages
#include <orvacat/mousefilters.h>

// Views

// Help

// Focus and platform

#endif // ORVACAT_ORVACAT_H
