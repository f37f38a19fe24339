#include <orvacat/globals.h>

const QLoggingCategory debug_message("debug.message");

QRect g_check_rect;
