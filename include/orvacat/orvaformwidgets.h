#ifndef ORVACAT_ORVAFORMWIDGETS_H
#define ORVACAT_ORVAFORMWIDGETS_H

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
 * defaults named on it; nothing else changes (the widgets report the library
 * class's name, so style sheets and qobject_cast see the library class).
 *
 * Header only, so that a host using forms links nothing more than the
 * library. The Designer plugin offers these classes and the widgets that
 * already take just a parent (OrvaLineEdit, OrvaLabel, OrvaFootbar,
 * OrvaCalanderView, OrvaTreeWidget, OrvaButtonPath, OrvaFilterBar,
 * OrvaComboBox) under their own names.
 */

/** An OrvaButton in role 4, the default dialog button; the form sets its text. */
class OrvaFormButton : public OrvaButton
{
public:
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
class OrvaFormIconButton : public OrvaIconButton
{
public:
    explicit OrvaFormIconButton(QWidget* parent = nullptr)
        : OrvaIconButton(QPixmap())
    {
        setParent(parent);
    }
};

/** An OrvaCheckBox; the form sets its text. */
class OrvaFormCheckBox : public OrvaCheckBox
{
public:
    explicit OrvaFormCheckBox(QWidget* parent = nullptr)
        : OrvaCheckBox(QString(), parent)
    {
    }
};

/** An OrvaRadioButton; the form sets its text. */
class OrvaFormRadioButton : public OrvaRadioButton
{
public:
    explicit OrvaFormRadioButton(QWidget* parent = nullptr)
        : OrvaRadioButton(QString(), parent)
    {
    }
};

/** A LinkLabel whose parent may be any widget; the form sets its text, the host its link. */
class OrvaFormLinkLabel : public LinkLabel
{
public:
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
class OrvaFormDateSelector : public OrvaDateSelector
{
public:
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
class OrvaFormTableWidget : public OrvaTableWidget
{
public:
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

namespace OrvaFormDetail {
// A base listed before the bar, so that the model is built before the bar
// and deleted after it.
struct PagingModelHolder
{
    OrvaPagingModel formModel{20};
};
} // namespace OrvaFormDetail

/**
 * An OrvaPagingBar with a paging model of its own: 20 rows a page, no rows
 * yet. Set the row limit on pagingModel() and the row count with
 * setItemCount(), then connect sigPageChanged() as for any paging bar.
 */
class OrvaFormPagingBar : private OrvaFormDetail::PagingModelHolder, public OrvaPagingBar
{
public:
    explicit OrvaFormPagingBar(QWidget* parent = nullptr)
        : OrvaPagingBar(&formModel, parent)
    {
    }

    /** The bar's model; it lives as long as the bar. */
    OrvaPagingModel* pagingModel()
    {
        return &formModel;
    }
};

#endif // ORVACAT_ORVAFORMWIDGETS_H
