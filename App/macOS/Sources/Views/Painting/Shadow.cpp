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

}

void blur(QImage& coverage, qreal standardDeviation)
{
    if (coverage.isNull() || standardDeviation <= 0)
        return;
    const auto widths = boxWidths(standardDeviation);
    const auto width = static_cast<std::size_t>(coverage.width());
    const auto height = static_cast<std::size_t>(coverage.height());
    std::vector<float> values(width * height);
    for (std::size_t y = 0; y < height; ++y)
        std::ranges::copy_n(coverage.constScanLine(static_cast<int>(y)), static_cast<std::ptrdiff_t>(width),
            values.begin() + static_cast<std::ptrdiff_t>(y * width));

    std::vector<float> line;
    std::vector<float> scratch;
    const auto filterLine = [&](std::size_t start, std::size_t stride, std::size_t count) {
        line.resize(count);
        scratch.resize(count);
        for (std::size_t i = 0; i < count; ++i)
            line[i] = values[start + i * stride];
        for (const int box : widths)
            boxFilter(line, scratch, box);
        for (std::size_t i = 0; i < count; ++i)
            values[start + i * stride] = line[i];
    };
    for (std::size_t y = 0; y < height; ++y)
        filterLine(y * width, 1, width);
    for (std::size_t x = 0; x < width; ++x)
        filterLine(x, width, height);

    for (std::size_t y = 0; y < height; ++y) {
        auto* row = coverage.scanLine(static_cast<int>(y));
        for (std::size_t x = 0; x < width; ++x)
            row[x] = static_cast<uchar>(std::clamp(std::lround(values[y * width + x]), 0L, 255L));
    }
}

QImage blurredCoverage(const QPainterPath& shape, const QRect& area, qreal radius)
{
    QImage coverage(area.size(), QImage::Format_Alpha8);
    coverage.fill(0);
    QPainter painter(&coverage);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-area.topLeft());
    painter.fillPath(shape, Qt::black);
    painter.end();
    blur(coverage, radius);
    return coverage;
}

}
