#ifndef ORVACAT_ORVALABELS_H
#define ORVACAT_ORVALABELS_H

/**
 * @file
 * OrvaLabel, LinkLabel and getHtmlEscapedStringForToolTip(). OrvaLabel's look
 * comes from the style sheet registry, so initialize that before constructing one.
 */

#include <orvacat/globals.h>
#include <orvacat/orvacat_export.h>

#include <QLabel>

/**
 * A label styled by "component.label". With word wrap on and the vertical
 * size policy QSizePolicy::Minimum it keeps its minimum height at what the
 * wrapped text needs at its current width, so a layout never squeezes the
 * text; with any other policy it behaves like a QLabel.
 */
class ORVACAT_EXPORT OrvaLabel : public QLabel
{
    Q_OBJECT

public:
    /** An empty label, as QLabel's constructor, then its style sheet. */
    explicit OrvaLabel(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    /** A label showing @p text, as QLabel's constructor, then its style sheet. */
    explicit OrvaLabel(const QString& text, QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());

protected:
    /** With word wrap and a Minimum vertical policy, sets the minimum height to the wrapped text's height at the new width. */
    void resizeEvent(QResizeEvent* event) override;
};

/**
 * A label that behaves like a hyperlink: while the pointer is over it the
 * pointing-hand cursor is pushed as the application's override cursor and
 * the text is underlined. A press emits clicked(); the label never opens
 * the link itself, the receiver does (getHyperLink() holds the target).
 *
 * It takes the keyboard focus (Qt::StrongFocus), and Return, Enter or Space
 * emit clicked() as a press does. Screen readers see a link named by its
 * text, with the target as its value and a press action that emits clicked().
 *
 * The label takes back exactly the cursor and underline it set when the
 * pointer leaves, and also when it is disabled, hidden or deleted while the
 * pointer is over it; an override cursor a host pushed meanwhile stays.
 */
class ORVACAT_EXPORT LinkLabel : public QLabel
{
    Q_OBJECT

public:
    /** A QLabel showing @p text, without a link target; note that the parent is typed as a label. */
    explicit LinkLabel(const QString& text = QString(), QLabel* parent = nullptr);
    ~LinkLabel() override;

    /** Stores the target that the receiver of clicked() opens; the label never opens it. */
    void setHyperLink(const QString& link);
    /** The stored target, or an empty string when none was set. */
    QString getHyperLink();

Q_SIGNALS:
    /** Every mouse press, before the label handles it. */
    void clicked();

protected:
    /** Pushes the pointing hand and underlines the text when enabled. */
    void enterEvent(OrvaEnterEvent* event) override;
    /** Takes the hand and the underline back when enabled. */
    void leaveEvent(QEvent* event) override;
    /** Emits clicked() first; the base handler runs only if the label survived it. */
    void mousePressEvent(QMouseEvent* event) override;
    /** Return, Enter and Space emit clicked(), as a press of the mouse does. */
    void keyPressEvent(QKeyEvent* event) override;
    /** Takes the hover look back when the label is disabled. */
    void changeEvent(QEvent* event) override;
    /** Takes the hover look back. */
    void hideEvent(QHideEvent* event) override;
    /** The label, and a ring in its text colour while it has the focus. */
    void paintEvent(QPaintEvent* event) override;

private:
    ORVACAT_NO_EXPORT void setHoverLook(bool on);

    QString m_hyperLink;
    bool m_hoverLook = false;
};

/**
 * @p text made fit for a rich-text tooltip: HTML-escaped, each "\n" turned
 * into "<br>", all inside <p style='white-space:pre'> so that runs of spaces
 * and line breaks are kept as typed.
 */
ORVACAT_EXPORT QString getHtmlEscapedStringForToolTip(const QString& text);

#endif // ORVACAT_ORVALABELS_H
