// Building a sheet against building the Qt dialog with the same parts, both
// with the default theme installed and the same parent window.
//
// Both sides end sized, as for showing: a sheet polishes and lays out its
// children in its constructor (a child widget must know its size before the
// mask places it), a Qt dialog only when it is shown, hence its adjustSize().
// Both carry the theme's style sheets, which make up most of the cost of
// polishing: the reference is styled the way the toolkit styles its own
// QMessageBox, before anything is polished.

#include <orvacat/orvacat.h>

#include <themefiles.h>

#include <benchmark/benchmark.h>

#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QWidget>

namespace {

const QString text = QStringLiteral("Do you want to save the changes to \"Quarterly report.xlsx\" before closing?");
const QString details = QStringLiteral("Your changes will be lost if you don't save them.");
const QString prompt = QStringLiteral("Name of the new folder:");

// The host's window as the sheets find it: themed, shown, at its usual size.
// The theme is installed on the first use, as the benchmarks before these
// point the registries at folders of their own. The window is left to the
// end of the program: a static owner would delete it after the application.
QWidget* hostWindow()
{
    static QTemporaryDir userData;
    static QWidget* window = nullptr;
    if (!window) {
        ThemeFiles::install(ThemeFiles::buildTreeThemeDir(), userData.path(), QStringLiteral("enu"));
        window = new QWidget;
        const double factor = DPIinfo::getInstance()->getDPI();
        window->resize(int(900 * factor), int(600 * factor));
        window->show();
    }
    return window;
}

QString caption(const char* key)
{
    return ComponentStrings::getInstance()->getString(QLatin1String(key));
}

void BM_BuildQuestion_Sheet(benchmark::State& state)
{
    QWidget* window = hostWindow();
    for (auto _ : state) {
        OrvaMessageSheet sheet(OrvaMessageSheet::QuestionMessage, text, details, window);
        benchmark::DoNotOptimize(sheet.height());
    }
}
BENCHMARK(BM_BuildQuestion_Sheet)->Name("BM_BuildQuestion/Sheet")->Unit(benchmark::kMicrosecond);

void BM_BuildQuestion_MessageBox(benchmark::State& state)
{
    QWidget* window = hostWindow();
    for (auto _ : state) {
        QMessageBox box(QMessageBox::Question, QString(), text, QMessageBox::Ok | QMessageBox::Cancel, window);
        box.setInformativeText(details);
        box.setStyleSheet(getStyleSheet("component.confirm_message_box", false));
        QAbstractButton* ok = box.button(QMessageBox::Ok);
        ok->setText(caption("ok"));
        ok->setStyleSheet(getStyleSheet("component.apply_button", false));
        QAbstractButton* cancel = box.button(QMessageBox::Cancel);
        cancel->setText(caption("cancel"));
        cancel->setStyleSheet(getStyleSheet("component.cancel_button", false));
        box.adjustSize();
        benchmark::DoNotOptimize(box.height());
    }
}
BENCHMARK(BM_BuildQuestion_MessageBox)->Name("BM_BuildQuestion/QMessageBox")->Unit(benchmark::kMicrosecond);

void BM_BuildInput_Sheet(benchmark::State& state)
{
    QWidget* window = hostWindow();
    for (auto _ : state) {
        OrvaInputSheet sheet(prompt, window);
        benchmark::DoNotOptimize(sheet.height());
    }
}
BENCHMARK(BM_BuildInput_Sheet)->Name("BM_BuildInput/Sheet")->Unit(benchmark::kMicrosecond);

// A prompt, a line edit, Ok and cancel: the input sheet's parts exactly, where
// a message box would bring an icon and lack the line edit.
void BM_BuildInput_InputDialog(benchmark::State& state)
{
    QWidget* window = hostWindow();
    for (auto _ : state) {
        QInputDialog dialog(window);
        dialog.setInputMode(QInputDialog::TextInput);
        dialog.setLabelText(prompt);
        // Also what makes the dialog create its buttons.
        dialog.setOkButtonText(caption("ok"));
        dialog.setCancelButtonText(caption("cancel"));
        dialog.setStyleSheet(getStyleSheet("component.message_sheet_other", false));
        dialog.findChild<QLineEdit*>()->setStyleSheet(getStyleSheet("component.lineedit", false));
        const QList<QPushButton*> buttons = dialog.findChildren<QPushButton*>();
        for (QPushButton* button : buttons) {
            const bool ok = button->text() == caption("ok");
            button->setStyleSheet(getStyleSheet(ok ? "component.apply_button" : "component.cancel_button", false));
        }
        dialog.adjustSize();
        benchmark::DoNotOptimize(dialog.height());
    }
}
BENCHMARK(BM_BuildInput_InputDialog)->Name("BM_BuildInput/QInputDialog")->Unit(benchmark::kMicrosecond);

} // namespace
