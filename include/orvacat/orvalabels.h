#ifndef ORVACAT_ORVALABELS_H
#define ORVACAT_ORVALABELS_H

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
    explicit OrvaLabel(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    explicit OrvaLabel(const QString& text, QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());

protected:
    void resizeEvent(QResizeEvent* event) override;
};

/**
 * A label that behaves like a hyperlink: while the pointer is over it the
 * pointing-hand cursor is pushed as the application's override cursor and
 * the text is underlined. A press emits clicked(); the label never opens
 * the link itself, the receiver does (getHyperLink() holds the target).
 *
 * The label takes back exactly the cursor and underline it set when the
 * pointer leaves, and also when it is disabled, hidden or deleted while the
 * pointer is over it; an override cursor a host pushed meanwhile stays.
 */
class ORVACAT_EXPORT LinkLabel : public QLabel
{
    Q_OBJECT

public:
    explicit LinkLabel(const QString& text = QString(), QLabel* parent = nullptr);
    ~LinkLabel() override;

    void setHyperLink(const QString& link);
    QString getHyperLink();

Q_SIGNALS:
    /** Every mouse press, before the label handles it. */
    void clicked();

protected:
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void setHoverLook(bool on);

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
