// Gallery page: every kind of message. Each button opens one, as a sheet over
// the gallery window or as a message box, and the page shows the code that
// the run returned. The busy sheet plays a small animation that the page
// draws and writes as a GIF when it is first needed.

#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>
#include <QVBoxLayout>
#include <QtMath>

#include <functional>

namespace {

const QColor maskColour(0, 0, 0, 20);

QString describeResult(int code)
{
    switch (code) {
    case QMessageBox::Ok: return QStringLiteral("%1 (Ok)").arg(code);
    case QMessageBox::Discard: return QStringLiteral("%1 (the sheet's cancel, Discard)").arg(code);
    case QMessageBox::Cancel: return QStringLiteral("%1 (the box's Cancel)").arg(code);
    case 0: return QStringLiteral("0 (ended without a button)");
    default: return QString::number(code);
    }
}

// --- A spinner as an animated GIF -----------------------------------------
// Qt reads GIF but cannot write it. The frames use four colours and are
// written without compression: a clear code before every pixel keeps the
// code width at three bits, which any GIF reader accepts.

void appendLittle16(QByteArray& out, int value)
{
    out.append(char(value & 0xff));
    out.append(char((value >> 8) & 0xff));
}

QByteArray imageData(const QImage& frame)
{
    const int clear = 4;
    const int end = 5;
    QByteArray codes;
    quint32 bits = 0;
    int count = 0;
    auto put = [&](int code) {
        bits |= quint32(code) << count;
        count += 3;
        while (count >= 8) {
            codes.append(char(bits & 0xff));
            bits >>= 8;
            count -= 8;
        }
    };
    for (int y = 0; y < frame.height(); ++y) {
        for (int x = 0; x < frame.width(); ++x) {
            put(clear);
            put(frame.pixelIndex(x, y) & 3);
        }
    }
    put(end);
    if (count > 0)
        codes.append(char(bits & 0xff));

    QByteArray out;
    out.append(char(2)); // minimum code size
    for (int i = 0; i < codes.size(); i += 255) {
        const QByteArray block = codes.mid(i, 255);
        out.append(char(block.size()));
        out.append(block);
    }
    out.append(char(0));
    return out;
}

QByteArray spinnerGif(int size, int frames)
{
    // The sheet's card, then the dots from faint to the head: the look's link colour laid over the card.
    const QColor card = lookColour(QStringLiteral("card"));
    const QColor ink = lookColour(QStringLiteral("link"));
    auto over = [&card, &ink](double share) {
        return qRgb(qRound(card.red() + (ink.red() - card.red()) * share),
                    qRound(card.green() + (ink.green() - card.green()) * share),
                    qRound(card.blue() + (ink.blue() - card.blue()) * share));
    };
    const QVector<QRgb> palette = {card.rgb(), over(0.25), over(0.6), ink.rgb()};
    QByteArray gif("GIF89a");
    appendLittle16(gif, size);
    appendLittle16(gif, size);
    gif.append(char(0x81)); // global colour table of four entries
    gif.append(char(0));
    gif.append(char(0));
    for (QRgb colour : palette) {
        gif.append(char(qRed(colour)));
        gif.append(char(qGreen(colour)));
        gif.append(char(qBlue(colour)));
    }
    gif.append(QByteArray("\x21\xff\x0bNETSCAPE2.0\x03\x01\x00\x00\x00", 19)); // loop forever

    for (int f = 0; f < frames; ++f) {
        QImage canvas(size, size, QImage::Format_RGB32);
        canvas.fill(palette.at(0));
        QPainter painter(&canvas);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(Qt::NoPen);
        const double radius = size * 0.36;
        const double dot = size * 0.11;
        for (int i = 0; i < 8; ++i) {
            const int age = (f - i + 8) % 8;
            const QRgb colour = age == 0 ? palette.at(3) : age < 3 ? palette.at(2) : palette.at(1);
            const double angle = i * M_PI / 4 - M_PI / 2;
            painter.setBrush(QColor(colour));
            painter.drawEllipse(QPointF(size / 2.0 + radius * qCos(angle), size / 2.0 + radius * qSin(angle)), dot, dot);
        }
        painter.end();
        const QImage indexed = canvas.convertToFormat(QImage::Format_Indexed8, palette, Qt::ThresholdDither);

        gif.append(QByteArray("\x21\xf9\x04\x00", 4));
        appendLittle16(gif, 10); // 1/10 s a frame
        gif.append(char(0));
        gif.append(char(0));
        gif.append(char(0x2c));
        appendLittle16(gif, 0);
        appendLittle16(gif, 0);
        appendLittle16(gif, size);
        appendLittle16(gif, size);
        gif.append(char(0));
        gif.append(imageData(indexed));
    }
    gif.append(char(0x3b));
    return gif;
}

/** The spinner file of the current look, written once per run into the temporary folder. */
QString spinnerPath()
{
    static QString paths[2];
    QString& path = paths[darkLook() ? 1 : 0];
    if (path.isEmpty()) {
        const QString candidate = QDir(QDir::tempPath())
                                      .filePath(darkLook() ? QStringLiteral("orvacat-gallery-spinner-dark.gif")
                                                           : QStringLiteral("orvacat-gallery-spinner.gif"));
        QFile file(candidate);
        if (file.open(QIODevice::WriteOnly) && file.write(spinnerGif(64, 8)) > 0)
            path = candidate;
    }
    return path;
}

// --- The page ---------------------------------------------------------------

class MessagesPage : public QWidget
{
public:
    MessagesPage()
        : m_result(new QLabel(QStringLiteral("No message opened yet.")))
    {
        auto* layout = pageLayout(this);
        layout->setSpacing(px(14));

        auto* resultBox = new QGroupBox(QStringLiteral("Last result"));
        auto* resultLayout = new QVBoxLayout(resultBox);
        m_result->setObjectName(QStringLiteral("lastResult"));
        m_result->setStyleSheet(lookSheet(QStringLiteral("color: @link; font-weight: bold;")));
        resultLayout->addWidget(m_result);

        layout->addWidget(sheetSection());
        layout->addWidget(helperSection());
        layout->addWidget(otherSection());
        layout->addWidget(resultBox);
        layout->addStretch(1);
    }

    /** Puts a sheet of @p type over the gallery window and runs it. */
    void runSheet(OrvaMessageSheet::MessageType type)
    {
        const QString texts[] = {
            QStringLiteral("Orva Ledger 4.2 is running."),
            QStringLiteral("The invoice was saved."),
            QStringLiteral("The printer is out of paper."),
            QStringLiteral("Delete the selected invoice? This cannot be undone."),
            QStringLiteral("Version 4.3 is ready to install. The application restarts afterwards."),
            QStringLiteral("The file has changed on disk. Overwrite it with your copy?"),
            QStringLiteral("Working..."),
        };
        auto* sheet = new OrvaMessageSheet(type, texts[int(type)], window());
        if (type == OrvaMessageSheet::WarningMessage)
            sheet->setInformativeText(QStringLiteral("Load paper into tray 2 and print again."));
        // Sheets without buttons end when the caller ends them.
        if (type == OrvaMessageSheet::AppMessage)
            QTimer::singleShot(2500, sheet, &OrvaMessageSheet::quit);
        exec(sheet);
    }

    void runBusySheet()
    {
        auto* sheet = new OrvaMessageSheet(QStringLiteral("Synchronising invoices..."), spinnerPath(), window());
        QTimer::singleShot(3000, sheet, &OrvaMessageSheet::quit);
        exec(sheet);
    }

    void runInputSheet()
    {
        auto* sheet = new OrvaInputSheet(QStringLiteral("Name of the new folder:"), window());
        sheet->getLineEdit()->setPlaceholderText(QStringLiteral("Folder name"));
        OrvaMask::createMask(sheet, window(), maskColour);
        QPointer<OrvaInputSheet> guard(sheet);
        const int code = sheet->exec();
        if (!guard)
            return;
        showResult(describeResult(code) + QStringLiteral(", text \"%1\"").arg(sheet->getContent()));
        delete sheet;
    }

    void runCountdown()
    {
        OrvaCountdownMessageBox box(5, window());
        box.setIcon(QMessageBox::Information);
        box.setWindowTitle(QStringLiteral("Restart"));
        box.setText(QStringLiteral("The application restarts to finish the update."));
        showResult(describeResult(box.exec()));
    }

    void showResult(const QString& text) { m_result->setText(QStringLiteral("Returned %1").arg(text)); }

private:
    void exec(OrvaMessageSheet* sheet)
    {
        OrvaMask::createMask(sheet, window(), maskColour);
        QPointer<OrvaMessageSheet> guard(sheet);
        const int code = sheet->exec();
        delete guard.data();
        showResult(describeResult(code));
    }

    QPushButton* button(const QString& text, std::function<void()> action)
    {
        auto* button = new OrvaButton(text, 4);
        button->setMinimumWidth(px(150));
        QObject::connect(button, &QPushButton::clicked, this, std::move(action));
        return button;
    }

    QGroupBox* sheetSection()
    {
        auto* box = new QGroupBox(QStringLiteral("Message sheets, inside this window"));
        auto* grid = new QGridLayout(box);
        grid->setSpacing(px(8));
        const QList<QPair<OrvaMessageSheet::MessageType, QString>> types = {
            {OrvaMessageSheet::AppMessage, QStringLiteral("0 Application")},
            {OrvaMessageSheet::InformationMessage, QStringLiteral("1 Information")},
            {OrvaMessageSheet::WarningMessage, QStringLiteral("2 Warning")},
            {OrvaMessageSheet::QuestionMessage, QStringLiteral("3 Question")},
            {OrvaMessageSheet::UpgradeMessage, QStringLiteral("4 Upgrade")},
            {OrvaMessageSheet::WarningQuestionMessage, QStringLiteral("5 Warning question")},
        };
        int index = 0;
        for (const auto& type : types) {
            const OrvaMessageSheet::MessageType value = type.first;
            grid->addWidget(button(type.second, [this, value]() { runSheet(value); }), index / 4, index % 4);
            ++index;
        }
        grid->addWidget(button(QStringLiteral("6 Busy (animation)"), [this]() { runBusySheet(); }), index / 4,
                        index % 4);
        grid->setColumnStretch(4, 1);
        return box;
    }

    QGroupBox* helperSection()
    {
        auto* box = new QGroupBox(QStringLiteral("Message helpers: sheet with a parent, message box without"));
        auto* grid = new QGridLayout(box);
        grid->setSpacing(px(8));
        grid->addWidget(new QLabel(QStringLiteral("With parent")), 0, 0);
        grid->addWidget(new QLabel(QStringLiteral("Without parent")), 1, 0);

        const QString title = QStringLiteral("Orva Ledger");
        struct Helper
        {
            QString name;
            std::function<int(QWidget*)> call;
        };
        const QList<Helper> helpers = {
            {QStringLiteral("showInfoMsg"),
             [title](QWidget* parent) {
                 showInfoMsg(title, QStringLiteral("All invoices are up to date."), parent);
                 return -1;
             }},
            {QStringLiteral("showWarningMsg"),
             [title](QWidget* parent) {
                 showWarningMsg(title, QStringLiteral("The connection was lost."), parent);
                 return -1;
             }},
            {QStringLiteral("showWarningMsg + details"),
             [title](QWidget* parent) {
                 showWarningMsg(title, QStringLiteral("The backup failed."),
                                QStringLiteral("The backup folder is read-only."), parent);
                 return -1;
             }},
            {QStringLiteral("showConfirmMsg"),
             [title](QWidget* parent) {
                 return showConfirmMsg(title, QStringLiteral("Send the reminder to 3 customers?"), parent);
             }},
            {QStringLiteral("showConfirmMsgCustomBtn"),
             [title](QWidget* parent) {
                 return showConfirmMsgCustomBtn(title, QStringLiteral("Archive the paid invoices?"),
                                                MsgBoxCustomBtnText{QStringLiteral("Archive"), QString()}, parent);
             }},
            {QStringLiteral("showUpgradingMsg"),
             [title](QWidget* parent) {
                 showUpgradingMsg(title, QStringLiteral("A new version is available."), parent);
                 return -1;
             }},
        };
        // Two bands of three helpers, each band a row with and a row without parent.
        for (int i = 0; i < helpers.size(); ++i) {
            const Helper helper = helpers.at(i);
            const int band = i / 3;
            for (int row = 0; row < 2; ++row) {
                const bool withParent = row == 0;
                grid->addWidget(button(helper.name, [this, helper, withParent]() {
                                    const int code = helper.call(withParent ? this : nullptr);
                                    showResult(code < 0 ? QStringLiteral("nothing (%1 has no result)").arg(helper.name)
                                                        : describeResult(code));
                                }),
                                band * 2 + row, 1 + i % 3);
            }
        }
        grid->addWidget(new QLabel(QStringLiteral("With parent")), 2, 0);
        grid->addWidget(new QLabel(QStringLiteral("Without parent")), 3, 0);
        grid->setColumnStretch(4, 1);
        return box;
    }

    QGroupBox* otherSection()
    {
        auto* box = new QGroupBox(QStringLiteral("Input sheet and countdown box"));
        auto* row = new QHBoxLayout(box);
        row->setSpacing(px(8));
        row->addWidget(button(QStringLiteral("Input sheet"), [this]() { runInputSheet(); }));
        row->addWidget(button(QStringLiteral("Countdown box (5 s)"), [this]() { runCountdown(); }));
        row->addStretch(1);
        return box;
    }

    QLabel* m_result;
};

QWidget* createPage()
{
    return new MessagesPage;
}

/** Shows @p sheet over @p window without a run, saves the window's picture and takes the sheet away. */
void shootSheet(QWidget* window, OrvaSheet* sheet, const std::function<void()>& show, const QString& path)
{
    OrvaMask::createMask(sheet, window, maskColour);
    show();
    for (int i = 0; i < 5; ++i)
        QApplication::processEvents();
    if (!window->grab().save(path))
        qWarning("Cannot write %s", qPrintable(path));
}

void extraScreenshots(QWidget* window, QWidget* page, const QString& dir)
{
    Q_UNUSED(page)
    {
        auto* sheet = new OrvaMessageSheet(OrvaMessageSheet::QuestionMessage,
                                           QStringLiteral("Delete the selected invoice? This cannot be undone."),
                                           window);
        shootSheet(window, sheet, [sheet]() { sheet->showSheet(); },
                   QDir(dir).filePath(QStringLiteral("messages-question-sheet.png")));
        sheet->done(0);
        delete sheet;
    }
    {
        auto* sheet = new OrvaMessageSheet(OrvaMessageSheet::WarningMessage,
                                           QStringLiteral("The printer is out of paper."),
                                           QStringLiteral("Load paper into tray 2 and print again."), window);
        shootSheet(window, sheet, [sheet]() { sheet->showSheetWithBlock(); },
                   QDir(dir).filePath(QStringLiteral("messages-warning-sheet.png")));
        sheet->done(0);
        delete sheet;
    }
    {
        // The busy sheet animates only during its run: picture it from inside one.
        auto* sheet = new OrvaMessageSheet(QStringLiteral("Synchronising invoices..."), spinnerPath(), window);
        OrvaMask::createMask(sheet, window, maskColour);
        const QString path = QDir(dir).filePath(QStringLiteral("messages-busy-sheet.png"));
        QTimer::singleShot(400, sheet, [window, sheet, path]() {
            if (!window->grab().save(path))
                qWarning("Cannot write %s", qPrintable(path));
            sheet->quit();
        });
        sheet->exec();
        delete sheet;
    }
    {
        auto* sheet = new OrvaInputSheet(QStringLiteral("Name of the new folder:"), window);
        sheet->getLineEdit()->setText(QStringLiteral("Invoices 2026"));
        shootSheet(window, sheet, [sheet]() { sheet->showSheet(); },
                   QDir(dir).filePath(QStringLiteral("messages-input-sheet.png")));
        sheet->done(0);
        delete sheet;
    }
}

GalleryPageRegistration registration("messages", "Messages", 50, &createPage, &extraScreenshots);

} // namespace
