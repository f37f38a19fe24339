#ifndef ORVACAT_ORVAPAGINGBAR_H
#define ORVACAT_ORVAPAGINGBAR_H

/**
 * @file
 * OrvaPagingModel and OrvaPagingBar, the paging state of a list and the bar
 * under it. The bar's pictures, captions and looks come from the registries,
 * so initialize them before constructing one.
 */

#include <orvacat/orvacat_export.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <vector>

class OrvaButton;
class OrvaIconButton;
class QEvent;
class QHBoxLayout;
class QLabel;
class QSignalMapper;

/**
 * The paging state of a list shown page by page: rows per page, total rows
 * and the current (1-based) page. Setters store without checks and emit
 * nothing. The row limit must not be 0.
 */
class ORVACAT_EXPORT OrvaPagingModel : public QObject
{
    Q_OBJECT

public:
    /** Page 1 of no rows, @p rowLimit rows a page (not 0). */
    explicit OrvaPagingModel(int rowLimit, QObject* parent = nullptr);

    /** Rows per page. */
    int rowLimit() const;
    /** Sets the rows per page; not 0. */
    void setRowLimit(int rowLimit);
    /** Total rows of the list. */
    int itemCount() const;
    /** Sets the total rows; use OrvaPagingBar::setItemCount() to redraw a bar too. */
    void setItemCount(int itemCount);
    /** The current page, 1-based. */
    int nowPage() const;
    /** Sets the current page; use OrvaPagingBar::setPage() to redraw a bar too. */
    void setNowPage(int nowPage);

    /** Pages needed for itemCount rows, at least 1 (0 rows still make one empty page). */
    int pageCount() const;
    /** 0-based index of the first row of the current page; the page is not clamped. */
    int startItem() const;

private:
    int m_rowLimit;
    int m_itemCount = 0;
    int m_nowPage = 1;
};

/** One footer label of the paging bar: its text and its fixed width in unscaled pixels (0 keeps the width). */
struct PagingFooterInfo
{
    QString text;  ///< the label's text
    int width = 0; ///< fixed width in 72-dpi pixels, scaled for the screen; 0 keeps the width
};

/**
 * The bar under a paged list: first, back five, five page buttons with the
 * current page always in the middle one, next five, last, then footer labels
 * and a refresh button on the right.
 *
 * The bar loads nothing. It emits sigPageChanged() after every user-driven
 * page change (and after reset()); the host then reads nowPage() and
 * startItem() from the model and fills its list. setPage() and
 * setItemCount() never emit. The model is the host's and must outlive the
 * bar; the constructor resets it to page 1 and 0 rows.
 *
 * Assistive technology hears the page buttons as "Page 7" (component string
 * "accessible_page", %1 the number), the current one checkable, checked and
 * described as "accessible_current_page"; blank buttons are left out. The
 * arrows are named by their tooltips. A focused page button hands the focus
 * to the current page when the page changes, and an arrow that is disabled
 * by the change hands it there too. Under a right-to-left layout the bar is
 * mirrored and the arrows' pictures turned round.
 */
class ORVACAT_EXPORT OrvaPagingBar : public QWidget
{
    Q_OBJECT

public:
    /**
     * A bar on @p model, reset to page 1 of 0 rows; only the middle page
     * button reads "1" until setPage(), setItemCount() or reset(). A null
     * model warns and the bar keeps a private one.
     */
    explicit OrvaPagingBar(OrvaPagingModel* model, QWidget* parent = nullptr);
    ~OrvaPagingBar() override;

    /** Shows pages page-2 ... page+2 and stores @p page in the model. No range check. */
    void setPage(int page);
    /** Stores the count and redraws the current page; the page is not clamped. */
    void setItemCount(int count);
    /** Back to page 1, then sigPageChanged(). */
    void reset();

    /** One footer label showing @p text, keeping its width; see setFooterInfos(). */
    void setFooterText(const QString& text);
    /** One footer label as @p info says; see setFooterInfos(). */
    void setFooterInfo(const PagingFooterInfo& info);
    /**
     * One label per entry, right to left of the refresh button's left side.
     * Existing labels are relabelled (their style is kept), missing ones
     * created, surplus ones hidden and taken out of the layout.
     */
    void setFooterInfos(const std::vector<PagingFooterInfo>& infos);
    /**
     * Hides or shows the refresh button. Hide it before the first footer call
     * for the first label to take the rightmost look
     * ("component.paging_bar_rightmost_label"); existing labels keep theirs.
     */
    void setRefreshButtonHidden(bool hidden);

public Q_SLOTS:
    /**
     * Goes to the page shown on page button @p index (0..4), then
     * sigPageChanged(); a blank button does nothing, an index out of range
     * warns and does nothing.
     */
    void pageClick(int index);
    /** Forward five pages, at most to the last; then sigPageChanged(). */
    void next_5_page();
    /** Back five pages, at least to page 1; then sigPageChanged(). */
    void prev_5_page();
    /** To page 1; then sigPageChanged(). */
    void first_page();
    /** To the last page; then sigPageChanged(). */
    void last_page();

Q_SIGNALS:
    /**
     * Once after every page button or navigation click and after reset(),
     * even when the page stayed; read the model's nowPage() and startItem().
     */
    void sigPageChanged();
    /** The refresh button was clicked; the host reloads the current page. */
    void sigRefresh();

protected:
    /** Turns the arrows round when the layout direction changes. */
    void changeEvent(QEvent* event) override;

private:
    ORVACAT_NO_EXPORT OrvaPagingModel* model();
    int pageCount();
    ORVACAT_NO_EXPORT QString pageName(qint64 page) const;
    ORVACAT_NO_EXPORT void keepFocus(const bool live[], bool atStart, bool atEnd);
    ORVACAT_NO_EXPORT void showArrows();

    QPointer<OrvaPagingModel> m_model;
    OrvaPagingModel* m_fallbackModel = nullptr;
    OrvaIconButton* m_firstButton = nullptr;
    OrvaIconButton* m_backButton = nullptr;
    OrvaIconButton* m_nextButton = nullptr;
    OrvaIconButton* m_lastButton = nullptr;
    OrvaButton* m_pageButtons[5] = {};
    QSignalMapper* m_mapper = nullptr;
    OrvaIconButton* m_refreshButton = nullptr;
    QHBoxLayout* m_mainLayout = nullptr;
    QHBoxLayout* m_footerLayout = nullptr;
    QList<QLabel*> m_footerLabels;
    QString m_pageName;
    QString m_currentPageDescription;
};

#endif // ORVACAT_ORVAPAGINGBAR_H
