#include <orvacat/globals.h>

QLoggingCategory debug_message("debug.message");

QRect g_check_rect;
