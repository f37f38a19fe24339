// Style-sheet scaling and style-file processing against the QRegExp
// formulation they replace.

#include <orvacat/orvacat.h>

#include "stylesheetoracle.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

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

// One megabyte of style files: sixteen files of sections with comments and placeholders.
struct StyleFiles
{
    QTemporaryDir dir;
    std::vector<QString> paths;

    StyleFiles()
    {
        UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), dir.path());
        UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), dir.path());
        ImageManager::getInstance()->initialize(ImageManager::Lazy);
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

} // namespace
