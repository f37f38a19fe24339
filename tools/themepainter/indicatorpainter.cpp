// Pictures that only style sheets use (listed under "tmp_images"): check box
// and radio indicators, drop-down and menu arrows, the menu check mark and
// the date selector's calendar glyph.

#include "themepainter.h"

#include <QPainterPath>

namespace ThemePainter {

namespace {

enum class Toggle { Unchecked, Checked, Indeterminate };
enum class Look { Normal, Hover, Disable };

QString lookSuffix(Look look)
{
    switch (look) {
    case Look::Normal:
        return QString();
    case Look::Hover:
        return QStringLiteral("_hover");
    case Look::Disable:
        return QStringLiteral("_disable");
    }
    return QString();
}

const Look allLooks[] = {Look::Normal, Look::Hover, Look::Disable};

QColor fillOf(Look look)
{
    switch (look) {
    case Look::Normal:
        return palette().accent;
    case Look::Hover:
        return palette().accentHover;
    case Look::Disable:
        return palette().textDisabled;
    }
    return palette().accent;
}

bool paintCheckBox(const QString& dir, Toggle toggle, Look look)
{
    static const char* const names[] = {"checkbox_unchecked", "checkbox_checked", "checkbox_indeterminate"};
    const QString name = QLatin1String(names[int(toggle)]) + lookSuffix(look);
    return paintPicture(dir, name, 16, 16, [&](QPainter& p) {
        const QRectF box(1.25, 1.25, 13.5, 13.5);
        if (toggle == Toggle::Unchecked) {
            const QColor edge = look == Look::Hover ? palette().accent
                : look == Look::Disable             ? palette().border
                                                    : palette().borderStrong;
            p.setPen(QPen(edge, 1.5));
            p.setBrush(look == Look::Disable ? palette().surfaceDisabled : palette().surface);
            p.drawRoundedRect(box, 3, 3);
            return;
        }
        p.setPen(QPen(fillOf(look), 1.5));
        p.setBrush(fillOf(look));
        p.drawRoundedRect(box, 3, 3);
        p.setPen(roundPen(palette().onAccent, 1.9));
        p.setBrush(Qt::NoBrush);
        if (toggle == Toggle::Checked) {
            QPainterPath mark;
            mark.moveTo(4.4, 8.2);
            mark.lineTo(6.9, 10.7);
            mark.lineTo(11.7, 5.6);
            p.drawPath(mark);
        } else {
            p.drawLine(QPointF(4.8, 8.0), QPointF(11.2, 8.0));
        }
    });
}

bool paintRadio(const QString& dir, bool checked, Look look)
{
    const QString name = QLatin1String(checked ? "radio_checked" : "radio_unchecked") + lookSuffix(look);
    return paintPicture(dir, name, 16, 16, [&](QPainter& p) {
        const QPointF center(8.0, 8.0);
        if (!checked) {
            const QColor edge = look == Look::Hover ? palette().accent
                : look == Look::Disable             ? palette().border
                                                    : palette().borderStrong;
            p.setPen(QPen(edge, 1.5));
            p.setBrush(look == Look::Disable ? palette().surfaceDisabled : palette().surface);
            p.drawEllipse(center, 6.75, 6.75);
            return;
        }
        p.setPen(QPen(fillOf(look), 1.5));
        p.setBrush(palette().surface);
        p.drawEllipse(center, 6.75, 6.75);
        p.setPen(Qt::NoPen);
        p.setBrush(fillOf(look));
        p.drawEllipse(center, 3.5, 3.5);
    });
}

bool paintChevron(const QString& dir, const QString& name, int width, int height, const QColor& color,
                  const QPointF& a, const QPointF& tip, const QPointF& b)
{
    return paintPicture(dir, name, width, height, [&](QPainter& p) {
        p.setPen(roundPen(color, 1.5));
        QPainterPath path;
        path.moveTo(a);
        path.lineTo(tip);
        path.lineTo(b);
        p.drawPath(path);
    });
}

bool paintMenuCheck(const QString& dir)
{
    return paintPicture(dir, QStringLiteral("menu_check"), 16, 16, [](QPainter& p) {
        p.setPen(roundPen(palette().accent, 1.8));
        QPainterPath mark;
        mark.moveTo(3.5, 8.3);
        mark.lineTo(6.5, 11.3);
        mark.lineTo(12.5, 4.9);
        p.drawPath(mark);
    });
}

bool paintCalendar(const QString& dir, const QString& name, const QColor& color)
{
    return paintPicture(dir, name, 16, 16, [&](QPainter& p) {
        p.setPen(QPen(color, 1.4));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(QRectF(2.2, 3.2, 11.6, 10.6), 2, 2);
        p.setPen(Qt::NoPen);
        p.setBrush(color);
        p.drawRect(QRectF(2.2, 3.2, 11.6, 3.0));
        p.setPen(roundPen(color, 1.4));
        p.drawLine(QPointF(5.2, 1.6), QPointF(5.2, 4.2));
        p.drawLine(QPointF(10.8, 1.6), QPointF(10.8, 4.2));
        p.setPen(Qt::NoPen);
        for (int row = 0; row < 2; ++row) {
            for (int column = 0; column < 3; ++column)
                p.drawRect(QRectF(4.4 + column * 2.7, 8.0 + row * 2.5, 1.6, 1.5));
        }
    });
}

} // namespace

bool paintIndicators(const QString& imageDir)
{
    bool ok = true;
    for (Look look : allLooks) {
        ok = paintCheckBox(imageDir, Toggle::Unchecked, look) && ok;
        ok = paintCheckBox(imageDir, Toggle::Checked, look) && ok;
        ok = paintCheckBox(imageDir, Toggle::Indeterminate, look) && ok;
        ok = paintRadio(imageDir, false, look) && ok;
        ok = paintRadio(imageDir, true, look) && ok;
    }
    // Arrows 10 x 6 (down/up) and 6 x 10 (right), drawn inside their box.
    ok = paintChevron(imageDir, QStringLiteral("arrow_down"), 10, 6, palette().textSecondary, {1.5, 1.5}, {5.0, 4.8},
                      {8.5, 1.5})
        && ok;
    ok = paintChevron(imageDir, QStringLiteral("arrow_down_disable"), 10, 6, palette().textDisabled, {1.5, 1.5},
                      {5.0, 4.8}, {8.5, 1.5})
        && ok;
    ok = paintChevron(imageDir, QStringLiteral("arrow_up"), 10, 6, palette().textSecondary, {1.5, 4.5}, {5.0, 1.2},
                      {8.5, 4.5})
        && ok;
    ok = paintChevron(imageDir, QStringLiteral("arrow_right"), 6, 10, palette().textSecondary, {1.5, 1.5},
                      {4.8, 5.0}, {1.5, 8.5})
        && ok;
    ok = paintMenuCheck(imageDir) && ok;
    ok = paintCalendar(imageDir, QStringLiteral("calendar"), palette().textSecondary) && ok;
    ok = paintCalendar(imageDir, QStringLiteral("calendar_disable"), palette().textDisabled) && ok;
    return ok;
}

} // namespace ThemePainter
