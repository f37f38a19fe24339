#ifndef ORVACAT_ORVAMESSAGESHEET_P_H
#define ORVACAT_ORVAMESSAGESHEET_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the public API.
//

#include <orvacat/orvamessagesheet.h>

#include "sheetmodalrun_p.h"

#include <QLabel>
#include <QLayout>
#include <QList>
#include <QProxyStyle>

class QDialogButtonBox;
class QMovie;

/** A word-wrapped label that is always exactly as tall as its text needs at its width. */
class MessageLabel : public QLabel
{
    Q_OBJECT

public:
    explicit MessageLabel(QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;
};

/** Orders dialog buttons the Windows way, Ok before cancel, on every platform. */
class DialogButtonBoxStyle : public QProxyStyle
{
    Q_OBJECT

public:
    DialogButtonBoxStyle();

    int styleHint(StyleHint hint, const QStyleOption* option = nullptr, const QWidget* widget = nullptr,
                  QStyleHintReturn* returnData = nullptr) const override;
};

/**
 * Gives @p sheet the height its content needs at its fixed width, unless a
 * layout of its parent (a mask's) sizes it. The labels learn their height
 * only once they have their width, after the sheet was sized.
 */
inline void followContentHeightOf(QWidget* sheet)
{
    QWidget* parent = sheet->parentWidget();
    if (parent && parent->layout() && parent->layout()->indexOf(sheet) >= 0)
        return;
    const int height = sheet->hasHeightForWidth() ? sheet->heightForWidth(sheet->width()) : sheet->sizeHint().height();
    if (height > 0 && height != sheet->height())
        sheet->resize(sheet->width(), height);
}

class OrvaMessageSheetPrivate : public QObject
{
    Q_OBJECT

public:
    explicit OrvaMessageSheetPrivate(OrvaMessageSheet* sheet);
    static const OrvaMessageSheetPrivate* get(const OrvaMessageSheet* sheet) { return sheet->d; }

    /** Styles, icon and buttons for the type; the caller lays the sheet out. */
    void initialize(const MsgBoxCustomBtnText& captions);
    void initialize();
    /** The texts' labels, without a new layout. */
    void setText(const QString& text);
    void setInformativeText(const QString& text);
    void startHidden();
    void followContentHeight();
    void setupLayout();
    int getPreferredWidth();
    void setIcon(QMessageBox::Icon icon);
    void setIconPixmap(const QPixmap& pixmap);
    void setStandardButtons(QMessageBox::StandardButtons buttons);
    QPushButton* button(QMessageBox::StandardButton which) const;

    OrvaMessageSheet* q;
    MessageLabel* label;
    MessageLabel* informativeLabel;
    QLabel* iconLabel;
    OrvaMessageSheet::MessageType type;
    QDialogButtonBox* buttonBox;
    SheetModalRun modalRun;
    QList<QWidget*> focusList;
    QWidget* firstFocusWidget;
    QWidget* lastFocusWidget;
    // The busy sheet's animation; the icon label shows it but does not own it.
    QMovie* movie;
    // One button-order style for the sheet's lifetime; re-initialising must
    // not pile up styles.
    DialogButtonBoxStyle* buttonStyle;
};

#endif // ORVACAT_ORVAMESSAGESHEET_P_H
