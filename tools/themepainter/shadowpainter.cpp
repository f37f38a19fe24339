// The sheet's drop shadow: eight pieces that the sheet stretches into a
// 22-pixel band around its card (corners at band x band, edges along
// the card's sides). Each piece is computed from one shadow model so that
// neighbouring pieces meet without a seam.

#include "themepainter.h"

#include <cmath>

namespace ThemePainter {

namespace {

constexpr int kBand = 22; // shown pixels
constexpr int kEdgeLength = 2; // shown pixels along a stretched edge

// A card's shadow is the sum of a wide, soft ambient layer and a tight key
// layer. Opacity falls with the distance from the card; distances above the
// card count more and below it less, which reads as light from above. Using
// the distance (rather than a blurred rectangle) keeps a corner's inner rows
// and columns equal to the stretched edges they meet.
struct ShadowLayer
{
    double sigma; // falloff, shown pixels
    double alpha; // opacity at the card's edge
};

const ShadowLayer layers[] = {
    {7.0, 0.16},
    {1.5, 0.08},
};

// The last pixels before the band's outer border fade to nothing, so the
// band never ends in a visible step.
constexpr double kRim = 4.0;

constexpr double kAboveWeight = 1.5;
constexpr double kBelowWeight = 0.8;

// Shadow opacity at a point, for a card whose top-left corner sits at
// (kBand, kBand) and which extends far to the right and down. The pieces
// mirror this model for the other sides.
double shadowAt(double x, double y, bool bottomSide)
{
    const double dx = qMax(0.0, kBand - x);
    const double dy = qMax(0.0, kBand - y) * (bottomSide ? kBelowWeight : kAboveWeight);
    const double distanceSquared = dx * dx + dy * dy;
    double total = 0.0;
    for (const ShadowLayer& layer : layers)
        total += layer.alpha * std::exp(-distanceSquared / (2.0 * layer.sigma * layer.sigma));
    const double reach = std::hypot(qMax(0.0, kBand - x), qMax(0.0, kBand - y));
    total *= qBound(0.0, (kBand - reach) / kRim, 1.0);
    return qBound(0.0, total, 1.0);
}

// Renders a piece of @p width x @p height shown pixels. @p mapX / @p mapY turn
// a coordinate inside the piece into the model's coordinates; an axis along
// which the piece is stretched maps to a point deep inside the card.
bool paintPiece(const QString& dir, const QString& name, int width, int height,
                const std::function<double(double)>& mapX, const std::function<double(double)>& mapY,
                bool bottomSide)
{
    QImage image(width * kFileScale, height * kFileScale, QImage::Format_ARGB32);
    for (int row = 0; row < image.height(); ++row) {
        QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(row));
        const double y = mapY((row + 0.5) / kFileScale);
        for (int column = 0; column < image.width(); ++column) {
            const double x = mapX((column + 0.5) / kFileScale);
            const int alpha = qRound(255.0 * qMin(1.0, palette().shadowStrength * shadowAt(x, y, bottomSide)));
            line[column] = qRgba(palette().shadow.red(), palette().shadow.green(), palette().shadow.blue(), alpha);
        }
    }
    return saveImage(image, dir, name);
}

double inside(double)
{
    return 10.0 * kBand;
}

double along(double coordinate)
{
    return coordinate;
}

double mirrored(double coordinate)
{
    return kBand - coordinate;
}

} // namespace

bool paintShadows(const QString& imageDir)
{
    bool ok = true;
    // Corners: the model's corner is the card's top-left; the others are mirrors.
    ok = paintPiece(imageDir, QStringLiteral("bg_tutorial_lt"), kBand, kBand, along, along, false) && ok;
    ok = paintPiece(imageDir, QStringLiteral("bg_tutorial_rt"), kBand, kBand, mirrored, along, false) && ok;
    ok = paintPiece(imageDir, QStringLiteral("bg_tutorial_lb"), kBand, kBand, along, mirrored, true) && ok;
    ok = paintPiece(imageDir, QStringLiteral("bg_tutorial_rb"), kBand, kBand, mirrored, mirrored, true) && ok;
    // Edges: uniform along the card's side.
    ok = paintPiece(imageDir, QStringLiteral("bg_tutorial_l"), kBand, kEdgeLength, along, inside, false) && ok;
    ok = paintPiece(imageDir, QStringLiteral("bg_tutorial_r"), kBand, kEdgeLength, mirrored, inside, false) && ok;
    ok = paintPiece(imageDir, QStringLiteral("bg_tutorial_t"), kEdgeLength, kBand, inside, along, false) && ok;
    ok = paintPiece(imageDir, QStringLiteral("bg_tutorial_b"), kEdgeLength, kBand, inside, mirrored, true) && ok;
    return ok;
}

} // namespace ThemePainter
