#ifndef ORVACAT_ORVAFORMWIDGETS_H
#define ORVACAT_ORVAFORMWIDGETS_H

#include <orvacat/orvacat_export.h>

#include <orvacat/orvabuttons.h>
#include <orvacat/orvadateselector.h>
#include <orvacat/orvalabels.h>
#include <orvacat/orvapagingbar.h>
#include <orvacat/orvatablewidget.h>

#include <QPixmap>
#include <QString>
#include <QWidget>

/**
 * @file
 * The toolkit's widgets whose constructors want more than a parent, in the
 * shape a Qt Designer form needs: uic builds every widget of a form as
 * `new Class(parent)`. Each class here is the library widget built with the
 * defaults named on it; nothing else changes. They report their own class
 * name, as Designer requires, and qobject_cast and style-sheet type
 * selectors still find the library class.
 *
 * The constructors are inline and the library carries the meta objects, so
 * a host using forms links nothing more than the library. The Designer
 * plugin offers these classes, and under their own names the widgets that
 * already take just a parent (OrvaLineEdit, OrvaLabel, OrvaFootbar,
 * OrvaCalanderView, OrvaTreeWidget, OrvaButtonPath, OrvaFilterBar,
 * OrvaComboBox).
 */

/** An OrvaButton in role 4, the default dialog button; the form sets its text. */
class ORVACAT_EXPORT OrvaFormButton : public OrvaButton
{
    Q_OBJECT

public:
    /** Builds the widget as uic does, a child of @p parent. */
    explicit OrvaFormButton(QWidget* parent = nullptr)
        : OrvaButton(QString(), 4)
    {
        setParent(parent);
    }
};

/**
 * An OrvaIconButton without pictures. The host gives it its pictures after
 * setupUi(), usually with setAllIcon(imageKey).
 */
class ORVACAT_EXPORT OrvaFormIconButton : public OrvaIconButton
{
    Q_OBJECT

public:
    /** Builds the widget as uic does, a child of @p parent. */
    explicit OrvaFormIconButton(QWidget* parent = nullptr)
        : OrvaIconButton(QPixmap())
    {
        setParent(parent);
    }
};

/** An OrvaCheckBox; the form sets its text. */
class ORVACAT_EXPORT OrvaFormCheckBox : public OrvaCheckBox
{
    Q_OBJECT

public:
    /** Builds the widget as uic does, a child of @p parent. */
    explicit OrvaFormCheckBox(QWidget* parent = nullptr)
        : OrvaCheckBox(QString(), parent)
    {
    }
};

/** An OrvaRadioButton; the form sets its text. */
class ORVACAT_EXPORT OrvaFormRadioButton : public OrvaRadioButton
{
    Q_OBJECT

public:
    /** Builds the widget as uic does, a child of @p parent. */
    explicit OrvaFormRadioButton(QWidget* parent = nullptr)
        : OrvaRadioButton(QString(), parent)
    {
    }
};

/** A LinkLabel whose parent may be any widget; the form sets its text, the host its link. */
class ORVACAT_EXPORT OrvaFormLinkLabel : public LinkLabel
{
    Q_OBJECT

public:
    /** Builds the widget as uic does, a child of @p parent. */
    explicit OrvaFormLinkLabel(QWidget* parent = nullptr)
        : LinkLabel(QString(), nullptr)
    {
        setParent(parent);
    }
};

/**
 * An OrvaDateSelector whose placeholder is empty: the field stays blank
 * until a date is chosen, in any language.
 */
class ORVACAT_EXPORT OrvaFormDateSelector : public OrvaDateSelector
{
    Q_OBJECT

public:
    /** Builds the widget as uic does, a child of @p parent. */
    explicit OrvaFormDateSelector(QWidget* parent = nullptr)
        : OrvaDateSelector(QString(), parent)
    {
    }
};

/**
 * An OrvaTableWidget with one resizable column that takes the whole width
 * (header label empty; set it with getHeader()->model()->setHeaderData(),
 * or build an OrvaTableWidget in code for several columns, which are fixed
 * at construction).
 */
class ORVACAT_EXPORT OrvaFormTableWidget : public OrvaTableWidget
{
    Q_OBJECT

public:
    /** Builds the widget as uic does, a child of @p parent. */
    explicit OrvaFormTableWidget(QWidget* parent = nullptr)
        : OrvaTableWidget(singleColumn(), parent)
    {
    }

private:
    static OrvaTableColumnsInfo singleColumn()
    {
        OrvaTableColumnsInfo columns;
        columns.addColumn(QString(), 100, true, 1.0);
        return columns;
    }
};

/**
 * An OrvaPagingBar with a paging model of its own: 20 rows a page, no rows
 * yet. Set the row limit on pagingModel() and the row count with
 * setItemCount(), then connect sigPageChanged() as for any paging bar.
 */
class ORVACAT_EXPORT OrvaFormPagingBar : public OrvaPagingBar
{
    Q_OBJECT

public:
    /** Builds the widget as uic does, a child of @p parent. */
    explicit OrvaFormPagingBar(QWidget* parent = nullptr)
        : OrvaFormPagingBar(new OrvaPagingModel(20), parent)
    {
    }

    /** The bar's model; it lives as long as the bar. */
    OrvaPagingModel* pagingModel()
    {
        return m_formModel;
    }

private:
    // The model becomes the bar's child: deleted with the bar, after the
    // bar's own destructor has run.
    OrvaFormPagingBar(OrvaPagingModel* model, QWidget* parent)
        : OrvaPagingBar(model, parent)
        , m_formModel(model)
    {
        model->setParent(this);
    }

    OrvaPagingModel* m_formModel;
};

#endif // ORVACAT_ORVAFORMWIDGETS_H
