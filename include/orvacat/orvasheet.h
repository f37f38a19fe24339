#ifndef ORVACAT_ORVASHEET_H
#define ORVACAT_ORVASHEET_H

/**
 * @file
 * OrvaSheet, the frame that message and input sheets are drawn in.
 */

#include <orvacat/orvacat_export.h>

#include <QColor>
#include <QFrame>

class QPainter;

/**
 * The frame of the toolkit's sheet dialogs: a band of trunc(22 * DPI factor)
 * pixels on every side with a drop shadow painted from the "bg_tutorial_*"
 * images, a card inside it in cardColor, and one content widget centred on the card.
 * Subclasses position the sheet, run its modal loop and emit finished().
 * The image registry must be initialized before the sheet is painted.
 */
class ORVACAT_EXPORT OrvaSheet : public QFrame
{
    Q_OBJECT
    /**
     * The card's colour. Themes set it from their style sheets
     * ("qproperty-cardColor: #FFFFFF;"); while it is invalid, which it is at
     * first, the card takes the palette's base colour.
     */
    Q_PROPERTY(QColor cardColor READ cardColor WRITE setCardColor)

public:
    /** An empty sheet whose contents margins are the shadow band. */
    explicit OrvaSheet(QWidget* parent = nullptr);
    ~OrvaSheet() override;

    /**
     * Lays @p widget out centred on the card. A second call replaces the
     * layout; the earlier widget stays a child of the sheet but is no
     * longer laid out.
     */
    void setWidget(QWidget* widget);

    /** The width of the shadow band in pixels, fixed at construction. */
    int shadowWidth() const;

    /** The card's colour as set; invalid until a theme or the host sets one. */
    QColor cardColor() const;
    /** Paints the card in @p color from now on; an invalid colour means the palette's base. */
    void setCardColor(const QColor& color);

Q_SIGNALS:
    /** Emitted by the sheet dialogs when they close, with their result. */
    void finished(int result);

protected:
    /** Paints the shadow band and the card instead of the frame. */
    void paintEvent(QPaintEvent* event) override;
    /** Puts the shadow band back as the contents margins first. */
    void showEvent(QShowEvent* event) override;
    /** Puts the shadow band back as the contents margins after polishing, restyling or reparenting. */
    bool event(QEvent* event) override;

    /**
     * Paints the eight shadow pictures into the band: corners at band size,
     * edges stretched along the sides. Pieces of zero or negative extent
     * are left out.
     */
    void drawShadow(QPainter& painter);

private:
    int m_shadowWidth;
    QColor m_cardColor;
};

#endif // ORVACAT_ORVASHEET_H
