// Style-sheet scaling and style-file processing against the QRegExp
// formulation they replace.

#include <orvacat/orvacat.h>

#include "stylesheetoracle.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <cstring>

#include <sys/resource.h>
#include <time.h>

namespace {

// About `bytes` of style sheet written the way the theme writes its sections.
QString realisticSheet(int bytes)
{
    static const char* const rules[] = {
        "QPushButton {\n    border: 1px solid #C8D2DC;\n    border-radius: 4px;\n    padding: 4px 12px;\n"
        "    font-size: 13px;\n    min-height: 28px;\n    min-width: 80px;\n}\n",
        "QPushButton:hover { background: #E8F0FE; }\nQPushButton:pressed { background: #D2E3FC; }\n",
        "/* indicator */\nQCheckBox::indicator { width: 16px; height: 16px; image: url(/opt/theme/tmp_images/tmp_check.png); }\n",
        "QScrollBar:vertical { width: 8px; margin: 2px 0px 2px 0px; }\nQScrollBar::handle:vertical { min-height: 24px; border-radius: 4px; }\n",
        "QLineEdit { padding: 0px 8px; border: 1px solid #C8D2DC; border-radius: 4px; font-size: 13px; line-height: 1.5px; }\n",
        "QHeaderView::section { padding-left: 10px; height: 30px; border: none; border-bottom: 1px solid #E3E8EE; }\n",
    };
    QString text;
    int i = 0;
    while (text.size() < bytes)
        text += QString::fromLatin1(rules[i++ % 6]);
    return text;
}

void BM_ScaledStyleSheet_Scanner(benchmark::State& state)
{
    const QString sheet = realisticSheet(100 * 1024);
    DPIinfo* dpi = DPIinfo::getInstance();
    for (auto _ : state)
        benchmark::DoNotOptimize(dpi->getScaledStyleSheet(sheet));
    state.SetBytesProcessed(state.iterations() * sheet.size());
}
BENCHMARK(BM_ScaledStyleSheet_Scanner)->Name("BM_ScaledStyleSheet/Scanner")->Unit(benchmark::kMicrosecond);

void BM_ScaledStyleSheet_RegExp(benchmark::State& state)
{
    const QString sheet = realisticSheet(100 * 1024);
    const double factor = DPIinfo::getInstance()->getDPI();
    if (Oracle::scalePixelLengths(sheet, factor) != DPIinfo::getInstance()->getScaledStyleSheet(sheet))
        state.SkipWithError("the two formulations disagree");
    for (auto _ : state)
        benchmark::DoNotOptimize(Oracle::scalePixelLengths(sheet, factor));
    state.SetBytesProcessed(state.iterations() * sheet.size());
}
BENCHMARK(BM_ScaledStyleSheet_RegExp)->Name("BM_ScaledStyleSheet/RegExp")->Unit(benchmark::kMicrosecond);

const char* const firstInitializeFlag = "--first-style-initialize";

// What a style registry needs: the image registry's folders.
void installFolders(const QString& folder)
{
    UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), folder);
    UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), folder);
    ImageManager::getInstance()->initialize(ImageManager::Lazy);
}

long minorFaults()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

// One megabyte of style files: sixteen files of sections with comments and placeholders.
struct StyleFiles
{
    QTemporaryDir dir;
    std::vector<QString> paths;

    StyleFiles()
    {
        installFolders(dir.path());
        const QString body = realisticSheet(1024).replace(QLatin1String("/opt/theme/tmp_images"), QLatin1String("TMPIMG_LOC"));
        for (int file = 0; file < 16; ++file) {
            QString text;
            for (int section = 0; text.size() < 64 * 1024; ++section) {
                text += QStringLiteral("== component.section_%1_%2 ==\n").arg(file).arg(section);
                text += QStringLiteral("QLabel { image: url(IMG_LOC/icon_%1.png); } // the icon\n").arg(section);
                text += body;
            }
            const QString path = dir.filePath(QStringLiteral("style%1.qss").arg(file));
            QFile out(path);
            out.open(QIODevice::WriteOnly);
            out.write(text.toUtf8());
            paths.push_back(path);
        }
    }
};

void BM_StyleManagerInitialize_Scanner(benchmark::State& state)
{
    StyleFiles files;
    for (auto _ : state) {
        StyleManager styles;
        styles.initialize(files.paths);
        benchmark::DoNotOptimize(styles);
    }
}
BENCHMARK(BM_StyleManagerInitialize_Scanner)->Name("BM_StyleManagerInitialize/Scanner")->Unit(benchmark::kMillisecond);

void BM_StyleManagerInitialize_RegExp(benchmark::State& state)
{
    StyleFiles files;
    {
        const QMap<QString, QString> sheets = Oracle::processStyleFiles(
            files.paths, ImageManager::getInstance()->getTempImageFolder(), ImageManager::getInstance()->getImageFolder());
        StyleManager styles;
        styles.initialize(files.paths);
        for (auto it = sheets.cbegin(); it != sheets.cend(); ++it) {
            if (styles.getStyleSheet(it.key(), true) != it.value()) {
                state.SkipWithError("the two formulations disagree");
                break;
            }
        }
    }
    ImageManager* images = ImageManager::getInstance();
    for (auto _ : state)
        benchmark::DoNotOptimize(
            Oracle::processStyleFiles(files.paths, images->getTempImageFolder(), images->getImageFolder()));
}
BENCHMARK(BM_StyleManagerInitialize_RegExp)->Name("BM_StyleManagerInitialize/RegExp")->Unit(benchmark::kMillisecond);

// What no registry can go below: reading the same files and decoding them.
void BM_StyleFloor_ReadAndDecode(benchmark::State& state)
{
    StyleFiles files;
    const long faults = minorFaults();
    for (auto _ : state) {
        for (const QString& path : files.paths) {
            QFile file(path);
            file.open(QIODevice::ReadOnly);
            benchmark::DoNotOptimize(QString::fromUtf8(file.readAll()));
        }
    }
    state.counters["faults"] = benchmark::Counter(double(minorFaults() - faults), benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_StyleFloor_ReadAndDecode)->Name("BM_StyleFloor/ReadAndDecode")->Unit(benchmark::kMillisecond);

// The following benchmarks run in a process of their own: this program
// again, with the hidden flag. Only there is the allocator fresh, as at a
// host's start-up; in this process, what earlier benchmarks allocated and
// freed decides whether a large block costs its page faults again (a fork
// would inherit that heap, and malloc_trim leaves the allocator's thresholds
// where earlier calls pushed them). The child prints the CPU time and page
// faults of one call of what `what` names (see runFirstStyleInitialize).
void runInChild(benchmark::State& state, const char* what)
{
    StyleFiles files;
    QStringList arguments{QLatin1String(firstInitializeFlag), QLatin1String(what), files.dir.path()};
    for (const QString& path : files.paths)
        arguments << path;
    double faults = 0;
    for (auto _ : state) {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), arguments);
        const QList<QByteArray> figures =
            child.waitForFinished(60000) ? child.readAllStandardOutput().split(' ') : QList<QByteArray>();
        if (child.exitCode() != 0 || figures.size() != 2) {
            state.SkipWithError("the child process failed");
            break;
        }
        state.SetIterationTime(figures[0].toDouble() * 1e-9);
        faults += figures[1].toDouble();
    }
    state.counters["faults"] = benchmark::Counter(faults, benchmark::Counter::kAvgIterations);
}

// The first call of a host at start-up, and reading and decoding the same
// files as the first thing in a fresh process, keeping the text as a registry
// must. A fresh process pays a page fault for every page it first writes, so
// the first call is measured against this floor, not the warm one.
void BM_StyleManagerInitialize_FirstCall(benchmark::State& state)
{
    runInChild(state, "first");
}
BENCHMARK(BM_StyleManagerInitialize_FirstCall)
    ->Name("BM_StyleManagerInitialize/FirstCall")
    ->UseManualTime()
    ->Iterations(30)
    ->Unit(benchmark::kMillisecond);

void BM_StyleFloor_ReadAndDecodeFirst(benchmark::State& state)
{
    runInChild(state, "floor");
}
BENCHMARK(BM_StyleFloor_ReadAndDecodeFirst)
    ->Name("BM_StyleFloor/ReadAndDecodeFirst")
    ->UseManualTime()
    ->Iterations(30)
    ->Unit(benchmark::kMillisecond);

// A host that initialises again, e.g. with a further theme, on the filled registry.
void BM_StyleManagerInitialize_Repeated(benchmark::State& state)
{
    runInChild(state, "repeated");
}
BENCHMARK(BM_StyleManagerInitialize_Repeated)
    ->Name("BM_StyleManagerInitialize/Repeated")
    ->UseManualTime()
    ->Iterations(10)
    ->Unit(benchmark::kMillisecond);

} // namespace

// The child side of the benchmarks above: "first" (the process's first
// initialize), "repeated" (one of 50 more on the filled registry) or "floor"
// (reading and decoding the files, keeping the decoded text).
int runFirstStyleInitialize(int argc, char** argv)
{
    if (argc < 4 || std::strcmp(argv[1], firstInitializeFlag) != 0)
        return -1;
    QCoreApplication app(argc, argv);
    const QByteArray what = argv[2];
    installFolders(QString::fromLocal8Bit(argv[3]));
    std::vector<QString> paths;
    for (int i = 4; i < argc; ++i)
        paths.push_back(QString::fromLocal8Bit(argv[i]));
    StyleManager* styles = StyleManager::getInstance();
    const int calls = what == "repeated" ? 50 : 1;
    if (calls > 1)
        styles->initialize(paths);
    std::vector<QString> decoded;
    decoded.reserve(paths.size());
    timespec start{}, end{};
    long faults = minorFaults();
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &start);
    for (int i = 0; i < calls; ++i) {
        if (what == "floor") {
            for (const QString& path : paths) {
                QFile file(path);
                file.open(QIODevice::ReadOnly);
                decoded.push_back(QString::fromUtf8(file.readAll()));
            }
        } else {
            styles->initialize(paths);
        }
    }
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
    faults = minorFaults() - faults;
    const long long nanoseconds = (end.tv_sec - start.tv_sec) * 1000000000LL + (end.tv_nsec - start.tv_nsec);
    std::printf("%lld %ld", nanoseconds / calls, faults / calls);
    return 0;
}
