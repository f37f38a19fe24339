// orvacat-bench: the toolkit's hot paths against references measured in the
// same run. Runs on the offscreen platform at 96 dpi (factor 4/3) unless told otherwise.

#include "ratioreporter.h"

#include <QApplication>

// bench_stylesheets.cpp: the child side of the first-call benchmark; -1 when
// this is not such a child.
int runFirstStyleInitialize(int argc, char** argv);

int main(int argc, char** argv)
{
    const int child = runFirstStyleInitialize(argc, argv);
    if (child >= 0)
        return child;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QT_FONT_DPI"))
        qputenv("QT_FONT_DPI", "96");
    QApplication app(argc, argv);

    benchmark::Initialize(&argc, argv);
    RatioReporter reporter({
        {"BM_ScaledStyleSheet/Scanner", "BM_ScaledStyleSheet/RegExp", 0.1},
        {"BM_StyleManagerInitialize/Scanner", "BM_StyleManagerInitialize/RegExp", 0.2},
        // At most three times what reading and decoding the files costs, in
        // the same state of the process (the first call pays its page faults).
        {"BM_StyleManagerInitialize/Repeated/iterations:10/manual_time", "BM_StyleFloor/ReadAndDecode", 3.0},
        {"BM_StyleManagerInitialize/FirstCall/iterations:30/manual_time",
         "BM_StyleFloor/ReadAndDecodeFirst/iterations:30/manual_time", 3.0},
        // The floor is the bare cost of loading and smooth-scaling the same files.
        {"BM_ImageManagerInitialize/Eager", "BM_ImageFloor/LoadAndScale", 1.2},
        // Showing the page may at most double the time its pictures take to arrive.
        {"BM_HelpPage/Shown/iterations:5/manual_time", "BM_HelpPage/DownloadsOnly/iterations:5/manual_time", 2.0},
        // Built and destroyed, with the same content and parent as the Qt dialog.
        {"BM_BuildQuestion/Sheet", "BM_BuildQuestion/QMessageBox", 1.35},
        // The prompt is a rich-text paragraph (for its line height), laid out
        // as a document where the dialog's plain label is not: given the same
        // paragraph, the dialog costs as much as the sheet.
        {"BM_BuildInput/Sheet", "BM_BuildInput/QInputDialog", 1.8},
    });
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return reporter.allTargetsMet() ? 0 : 1;
}
