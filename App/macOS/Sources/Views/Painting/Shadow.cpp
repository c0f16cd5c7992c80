#include "Shadow.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace Tinkra {

namespace {

constexpr int passes = 3;

/// Odd widths of boxes whose variances add up to that of the Gaussian as nearly as odd widths can.
std::array<int, passes> boxWidths(qreal standardDeviation)
{
    const qreal variance = standardDeviation * standardDeviation;
    int narrow = static_cast<int>(std::floor(std::sqrt(12 * variance / passes + 1)));
    narrow -= 1 - narrow % 2;
    const qreal narrowCount =
        (12 * variance - passes * (narrow * narrow + 4 * narrow + 3)) / (-4.0 * narrow - 4);
    std::array<int, passes> widths{};
    for (int i = 0; i < passes; ++i)
        widths[static_cast<std::size_t>(i)] = i < std::lround(narrowCount) ? narrow : narrow + 2;
    return widths;
}

/// One line of numbers, averaged over a window of `width` around each.
void boxFilter(std::vector<float>& line, std::vector<float>& scratch, int width)
{
    const auto count = static_cast<int>(line.size());
    const int reach = width / 2;
    const float share = 1.0F / static_cast<float>(width);
    const auto at = [&](int i) { return i >= 0 && i < count ? line[static_cast<std::size_t>(i)] : 0.0F; };
    double sum = 0;
    for (int i = -reach; i < reach; ++i)
        sum += static_cast<double>(at(i));
    for (int i = 0; i < count; ++i) {
        sum += static_cast<double>(at(i + reach));
        scratch[static_cast<std::size_t>(i)] = static_cast<float>(sum) * share;
        sum -= static_cast<double>(at(i - reach));
    }
    line.swap(scratch);
}

/// Numbers on a grid.
struct Field {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<float> values;

    float at(std::size_t x, std::size_t y) const { return values[y * width + x]; }
};

void blur(Field& field, qreal standardDeviation)
{
    const auto widths = boxWidths(standardDeviation);
    std::vector<float> line;
    std::vector<float> scratch;
    const auto filterLine = [&](std::size_t start, std::size_t stride, std::size_t count) {
        line.resize(count);
        scratch.resize(count);
        for (std::size_t i = 0; i < count; ++i)
            line[i] = field.values[start + i * stride];
        for (const int box : widths)
            boxFilter(line, scratch, box);
        for (std::size_t i = 0; i < count; ++i)
            field.values[start + i * stride] = line[i];
    };
    for (std::size_t y = 0; y < field.height; ++y)
        filterLine(y * field.width, 1, field.width);
    for (std::size_t x = 0; x < field.width; ++x)
        filterLine(x, field.width, field.height);
}

/// The coverage of a shape, one number for `step` points each way, with its top left corner at `corner`.
Field coverageOf(const QPainterPath& shape, QPoint corner, QSize size, int step)
{
    QImage image(size, QImage::Format_Alpha8);
    image.fill(0);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(1.0 / step, 1.0 / step);
    painter.translate(-corner);
    painter.fillPath(shape, Qt::black);
    painter.end();

    Field field{
        .width = static_cast<std::size_t>(size.width()), .height = static_cast<std::size_t>(size.height())};
    field.values.reserve(field.width * field.height);
    for (int y = 0; y < size.height(); ++y)
        field.values.insert(
            field.values.end(), image.constScanLine(y), image.constScanLine(y) + size.width());
    return field;
}

/// Where a pixel lies between two numbers of a field.
struct Position {
    std::size_t before;
    float share; ///< of the one after

    Position(int points, int step)
    {
        const float exact = (static_cast<float>(points) + 0.5F) / static_cast<float>(step) - 0.5F;
        before = static_cast<std::size_t>(std::max(exact, 0.0F));
        share = std::max(exact, 0.0F) - static_cast<float>(before);
    }
};

}

QImage blurredCoverage(const QPainterPath& shape, const QRect& area, qreal radius)
{
    // What is blurred has no detail left, so a number every few points is enough. A blur looks beyond the
    // area's edge.
    const int step = std::max(1, static_cast<int>(radius / 5));
    const int reach = static_cast<int>(std::ceil(3 * radius));
    const QSize size((area.width() + 2 * reach) / step + 2, (area.height() + 2 * reach) / step + 2);
    auto field = coverageOf(shape, area.topLeft() - QPoint(reach, reach), size, step);
    if (radius > 0)
        blur(field, radius / step);

    QImage coverage(area.size(), QImage::Format_Alpha8);
    for (int y = 0; y < area.height(); ++y) {
        const Position row(y + reach, step);
        auto* pixels = coverage.scanLine(y);
        for (int x = 0; x < area.width(); ++x) {
            const Position column(x + reach, step);
            const auto across = [&](std::size_t line) {
                return std::lerp(
                    field.at(column.before, line), field.at(column.before + 1, line), column.share);
            };
            pixels[x] = static_cast<uchar>(
                std::lround(std::lerp(across(row.before), across(row.before + 1), row.share)));
        }
    }
    return coverage;
}

}
