#ifndef ORVACAT_ORVACAT_H
#define ORVACAT_ORVACAT_H

/**
 * @file
 * The whole toolkit in one include; hosts need nothing else. Before
 * constructing any widget, a host creates its application object and then,
 * in this order, sets the paths, initializes the image registry, then the
 * style sheet registry, and installs the component strings (see the main
 * page).
 */

#include <orvacat/orvacat_export.h>
#include <orvacat/orvacat_version.h>
#include <orvacat/globals.h>

// Registries
#include <orvacat/uipathmanager.h>
#include <orvacat/dpiinfo.h>
#include <orvacat/imagemanager.h>
#include <orvacat/stylemanager.h>
#include <orvacat/componentstrings.h>
#include <orvacat/orvalocale.h>
#include <orvacat/filetypemap.h>

// Single instance
#include <orvacat/qtlockedfile.h>
#include <orvacat/qtlocalpeer.h>
#include <orvacat/qtsingleapplication.h>

// Controls
#include <orvacat/orvabuttons.h>
#include <orvacat/orvamask.h>
#include <orvacat/orvafootbar.h>
#include <orvacat/orvalabels.h>
#include <orvacat/orvalineedit.h>
#include <orvacat/orvamenu.h>

// Sheets and messages
#include <orvacat/mousefilters.h>
#include <orvacat/orvasheet.h>
#include <orvacat/orvamessagesheet.h>
#include <orvacat/messagehelpers.h>
#include <orvacat/orvainputsheet.h>
#include <orvacat/orvacountdownmessagebox.h>

// Views
#include <orvacat/orvapagingbar.h>
#include <orvacat/orvacalanderview.h>
#include <orvacat/orvadateselector.h>
#include <orvacat/orvafilterbar.h>
#include <orvacat/orvacombobox.h>
#include <orvacat/orvatablewidget.h>
#include <orvacat/orvatreewidget.h>
#include <orvacat/orvabuttonpath.h>

// Help
#include <orvacat/htmltextbrowser.h>
#include <orvacat/browserwindow.h>
#include <orvacat/helpwindow.h>

// Focus and platform
#include <orvacat/accessiblelist.h>
#include <orvacat/closebutton.h>

#endif // ORVACAT_ORVACAT_H
