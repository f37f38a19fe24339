#include <orvacat/orvabuttonpath.h>

#include <orvacat/imagemanager.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QAction>
#include <QFontMetrics>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalMapper>
#include <QToolButton>

OrvaButtonPath::OrvaButtonPath(QWidget* parent)
    : QTableWidget(parent)
    , m_changeFolderBtn(new QToolButton)
    , m_nameMapper(new QSignalMapper(this))
    , m_menuMapper(new QSignalMapper(this))
{
    insertRow(0);
    horizontalHeader()->hide();
    // Columns are as wide as their buttons, arrows far narrower than the
    // style's default minimum section.
    horizontalHeader()->setMinimumSectionSize(0);
    verticalHeader()->hide();
    setShowGrid(false);
    setSelectionMode(QAbstractItemView::NoSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setFocusPolicy(Qt::NoFocus);
    setFixedHeight(scaled(28));

    // Without a parent: a menu inside the bar would take the bar's and the
    // button's style sheets as well as its own.
    m_changeFolderMenu = new QMenu;
    m_changeFolderMenu->setStyleSheet(getStyleSheet("component.menu", false));
    m_changeFolderBtn->setMenu(m_changeFolderMenu);
    m_changeFolderBtn->setIcon(QIcon(getGlobalImage("folder", ImageManager::Normal)));
    m_changeFolderBtn->setIconSize(QSize(20, 20));
    m_changeFolderBtn->setPopupMode(QToolButton::InstantPopup);
    m_changeFolderBtn->hide();
    m_changeFolderBtn->setParent(this);
    m_changeFolderBtn->setStyleSheet(getStyleSheet("component.button_path_change_folder_btn", false));
    m_changeFolderBtn->setFixedSize(scaled(26), scaled(26));
    m_changeFolderBtn->move(scaled(1), scaled(1));

    connect(m_nameMapper, &QSignalMapper::mappedInt, this, &OrvaButtonPath::slotPathBarClicked);
    connect(m_menuMapper, &QSignalMapper::mappedInt, this, &OrvaButtonPath::slotPathBarClicked);

    setStyleSheet(getStyleSheet("component.button_path", false));
}

OrvaButtonPath::~OrvaButtonPath()
{
    delete m_changeFolderMenu;
}

void OrvaButtonPath::refresh(QString path)
{
    m_visibleWidth = horizontalScrollBar()->pageStep();
    m_changeFolderBtn->hide();
    // A click on a button or a menu entry may well lead here (the host
    // answers sigUpdatePath with a refresh): the sender must outlive its own
    // signal, so the old cells and entries go at the next turn of the loop.
    const QList<QAction*> actions = m_changeFolderMenu->actions();
    for (QAction* action : actions) {
        m_changeFolderMenu->removeAction(action);
        m_menuMapper->removeMappings(action);
        action->deleteLater();
    }
    for (QWidget* widget : qAsConst(m_cellWidgets)) {
        m_nameMapper->removeMappings(widget);
        widget->hide();
        widget->deleteLater();
    }
    m_cellWidgets.clear();
    clear();
    setColumnCount(0);

    const QStringList elements = path.split(QLatin1Char('/'), Qt::SkipEmptyParts, Qt::CaseSensitive);
    const double factor = DPIinfo::getInstance()->getDPI();
    for (int i = 0; i < elements.size(); ++i) {
        const QString& element = elements.at(i);
        const int column = 2 * i;

        if (i > 0) {
            auto* arrow = new QPushButton;
            arrow->setIcon(QIcon(getGlobalImage("bt_next", ImageManager::Normal)));
            arrow->setFlat(true);
            arrow->setStyleSheet(getStyleSheet("component.button_path_arrow", false));
            arrow->setFixedSize(scaled(6), scaled(28));
            m_cellWidgets.append(arrow);
            const int arrowColumn = columnCount();
            insertColumn(arrowColumn);
            setCellWidget(0, arrowColumn, arrow);
        }

        auto* button = new QPushButton;
        // Doubled so that the ampersand is shown instead of making a mnemonic.
        button->setText(QString(element).replace(QLatin1Char('&'), QLatin1String("&&")));
        button->setFlat(true);
        button->setStyleSheet(getStyleSheet("component.button_path_name_button", false));
        button->setFixedHeight(scaled(26));
        // Measured in the font the style sheet gives the button.
        button->ensurePolished();
        const int textWidth = button->fontMetrics().horizontalAdvance(element);
        button->setFixedWidth(int(factor * (textWidth + 16)));
        connect(button, &QPushButton::clicked, m_nameMapper, qOverload<>(&QSignalMapper::map));
        m_nameMapper->setMapping(button, column);
        m_cellWidgets.append(button);
        insertColumn(column);
        setCellWidget(0, column, button);
        setColumnWidth(column, button->width());
    }

    updateColumnSize();
}

QString OrvaButtonPath::getPath(int column)
{
    QString path;
    if (column < 0 || column >= m_cellWidgets.size())
        return path;
    for (int k = 0; k <= column; ++k) {
        if (k % 2 == 1) {
            path += QLatin1Char('/');
        } else if (auto* button = qobject_cast<QPushButton*>(m_cellWidgets.at(k))) {
            path += button->text().replace(QLatin1String("&&"), QLatin1String("&"));
        }
    }
    return path;
}

void OrvaButtonPath::updateColumnSize()
{
    const int count = columnCount();
    if (count == 0) {
        if (m_visibleWidth < 0)
            setChangeFolderBtn(0);
        return;
    }

    int total = 0;
    for (int column = 0; column < count; ++column) {
        if (column % 2 == 1)
            setColumnWidth(column, scaled(6));
        total += columnWidth(column);
    }
    if (total > m_visibleWidth)
        setChangeFolderBtn(total);
}

void OrvaButtonPath::setChangeFolderBtn(int totalWidth)
{
    m_changeFolderBtn->show();
    const int overflow = totalWidth - m_visibleWidth;

    int x = 0;
    for (int column = 0; column < columnCount(); ++column) {
        const int width = columnWidth(column);
        if (column % 2 == 1) {
            x += width;
            continue;
        }
        auto* button = qobject_cast<QPushButton*>(cellWidget(0, column));
        auto* action = new QAction(button ? button->text() : QString(), m_changeFolderMenu);
        m_changeFolderMenu->addAction(action);
        connect(action, &QAction::triggered, m_menuMapper, qOverload<>(&QSignalMapper::map));
        m_menuMapper->setMapping(action, column);
        // The first element whose right edge shows is the last one listed.
        if (overflow < x + width)
            break;
        x += width;
    }

    // Column widths reach the scroll range only at the view's next delayed
    // layout; bring the range up to date before scrolling to its end.
    updateGeometries();
    horizontalScrollBar()->setValue(horizontalScrollBar()->maximum());
}

void OrvaButtonPath::slotUpdatePath(QString path)
{
    refresh(path);
}

void OrvaButtonPath::slotPathBarClicked(int column)
{
    Q_EMIT sigUpdatePath(getPath(column));
}
