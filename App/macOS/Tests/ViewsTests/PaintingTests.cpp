#include "MurkelArt.h"
#include "Shadow.h"
#include "SymbolImage.h"
#include "VectorPath.h"

#include <QDir>
#include <QFile>
#include <QFont>
#include <QPainter>
#include <QRegularExpression>
#include <QtQml/qqmlextensionplugin.h>

#include <gtest/gtest.h>

#include <cmath>

Q_IMPORT_QML_PLUGIN(TinkraPlugin)

namespace Tinkra {
namespace {

QStringList symbolNames()
{
    const auto files = QDir(QStringLiteral(":/qt/qml/Tinkra/Symbols")).entryList({QStringLiteral("*.svg")});
    QStringList names;
    for (const auto& file : files)
        names.append(file.chopped(4));
    return names;
}

QByteArray svg(const QString& name)
{
    QFile file(QStringLiteral(":/qt/qml/Tinkra/Symbols/%1.svg").arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(VectorPath, FollowsTheCommandsOfItsText)
{
    const auto path = vectorPath("M 1 2 L 3.5,4 Q 5 6 7 8 C 9 10 11 12 -13 14 Z");
    QPainterPath expected(QPointF(1, 2));
    expected.lineTo(3.5, 4);
    expected.quadTo(5, 6, 7, 8);
    expected.cubicTo(9, 10, 11, 12, -13, 14);
    expected.closeSubpath();
    EXPECT_EQ(path, expected);
}

TEST(ContinuousRoundedRect, FillsItsRectangle)
{
    EXPECT_EQ(continuousRoundedRect(QRectF(10, 20, 300, 84), 22).boundingRect(), QRectF(10, 20, 300, 84));
}

TEST(ContinuousRoundedRect, MeetsTheDiagonalWhereTheCircleDoes)
{
    constexpr qreal radius = 22;
    const qreal onCircle = radius - radius / std::sqrt(2.0);
    const auto path = continuousRoundedRect(QRectF(0, 0, 560, 84), radius);
    EXPECT_TRUE(path.contains(QPointF(onCircle + 0.05, onCircle + 0.05)));
    EXPECT_FALSE(path.contains(QPointF(onCircle - 0.05, onCircle - 0.05)));
}

TEST(ContinuousRoundedRect, LeavesTheEdgeEarlierAndMoreGentlyThanTheCircle)
{
    constexpr qreal radius = 22;
    const auto path = continuousRoundedRect(QRectF(0, 0, 560, 84), radius);
    // The circle is straight up to here; the continuous corner has begun already.
    EXPECT_FALSE(path.contains(QPointF(radius, 0.02)));
    EXPECT_TRUE(path.contains(QPointF(1.53 * radius, 0.02)));
}

TEST(ContinuousRoundedRect, StaysWholeWhenItIsTooLowForItsRadius)
{
    const auto path = continuousRoundedRect(QRectF(0, 0, 100, 20), 16);
    EXPECT_EQ(path.boundingRect(), QRectF(0, 0, 100, 20));
    EXPECT_TRUE(path.contains(QPointF(50, 10)));
    EXPECT_FALSE(path.contains(QPointF(0.5, 0.5)));
}

TEST(Blur, SpreadsAnEdgeWithTheStandardDeviationAskedFor)
{
    // A tall column, so that eight bits suffice to see the profile across its middle.
    for (const double deviation : {4.0, 10.0, 28.0}) {
        const int middle = static_cast<int>(4 * deviation);
        const double width = 2 * deviation;
        QPainterPath column;
        column.addRect(middle + 0.5 - width / 2, -8 * middle, width, 16 * middle);
        const auto coverage = blurredCoverage(column, QRect(0, 0, 2 * middle + 1, 1), deviation);

        double mass = 0;
        double variance = 0;
        for (int x = 0; x < coverage.width(); ++x) {
            const double value = coverage.constScanLine(0)[x];
            mass += value;
            variance += value * (x - middle) * (x - middle);
        }
        variance /= mass;
        EXPECT_NEAR(std::sqrt(variance - width * width / 12), deviation,
            0.05 * deviation); // boxes are an odd number of pixels wide
    }
}

TEST(Blur, KeepsTheAmountOfWhatItBlurs)
{
    QPainterPath shape;
    shape.addRect(40, 40, 40, 20);
    const auto coverage = blurredCoverage(shape, QRect(0, 0, 120, 100), 10);
    double mass = 0;
    for (int y = 0; y < coverage.height(); ++y)
        for (int x = 0; x < coverage.width(); ++x)
            mass += coverage.constScanLine(y)[x];
    EXPECT_NEAR(mass / 255, 40 * 20, 0.02 * 40 * 20);
}

TEST(Blur, IsTheSameOnBothSides)
{
    QPainterPath shape;
    shape.addRect(40, 40, 40, 20);
    const auto coverage = blurredCoverage(shape, QRect(0, 0, 120, 100), 10);
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 60; ++x) {
            EXPECT_NEAR(coverage.constScanLine(y)[x], coverage.constScanLine(y)[119 - x], 1);
            EXPECT_NEAR(coverage.constScanLine(y)[x], coverage.constScanLine(99 - y)[x], 1);
        }
}

TEST(Blur, LeavesAPictureAloneWhenTheRadiusIsNothing)
{
    QPainterPath shape;
    shape.addRect(2, 2, 4, 4);
    const auto coverage = blurredCoverage(shape, QRect(0, 0, 8, 8), 0);
    EXPECT_EQ(coverage.constScanLine(4)[4], 255);
    EXPECT_EQ(coverage.constScanLine(0)[0], 0);
}

TEST(Symbols, ExistForEveryNameThatAViewUses)
{
    for (const auto* name : {"bell", "bell.fill", "calendar", "checkmark", "checkmark.circle.fill", "circle",
             "exclamationmark.triangle.fill", "house", "info.circle", "moon.zzz.fill", "power",
             "rectangle.expand.vertical", "safari", "slider.horizontal.3", "zzz"})
        EXPECT_TRUE(symbolNames().contains(QLatin1String(name))) << name;
}

TEST(Symbols, AreOfOneHand)
{
    const QRegularExpression stroke(QStringLiteral("stroke-width=\"([^\"]*)\""));
    for (const auto& name : symbolNames()) {
        const auto text = QString::fromUtf8(svg(name));
        EXPECT_TRUE(text.contains(QStringLiteral("viewBox=\"0 0 24 24\""))) << name.toStdString();
        EXPECT_TRUE(text.contains(QStringLiteral("currentColor"))) << name.toStdString();
        for (auto matches = stroke.globalMatch(text); matches.hasNext();)
            EXPECT_EQ(matches.next().captured(1), QStringLiteral("1.75")) << name.toStdString();
    }
}

TEST(Symbols, StayInsideTheirBox)
{
    for (const auto& name : symbolNames()) {
        const auto image = symbolImage(name, Qt::black, QFont::DemiBold, 24, 4);
        qint64 ink = 0;
        for (int i = 0; i < image.width(); ++i) {
            EXPECT_EQ(qAlpha(image.pixel(i, 0)), 0) << name.toStdString();
            EXPECT_EQ(qAlpha(image.pixel(i, image.height() - 1)), 0) << name.toStdString();
            EXPECT_EQ(qAlpha(image.pixel(0, i)), 0) << name.toStdString();
            EXPECT_EQ(qAlpha(image.pixel(image.width() - 1, i)), 0) << name.toStdString();
            for (int j = 0; j < image.height(); ++j)
                ink += qAlpha(image.pixel(i, j)) > 128 ? 1 : 0;
        }
        EXPECT_GT(ink, image.width() * image.height() / 40) << name.toStdString();
    }
}

TEST(Symbols, TakeTheColourOfTheTextAlsoWhenItIsTranslucent)
{
    const auto image =
        symbolImage(QStringLiteral("bell.fill"), QColor(10, 20, 30, 128), QFont::Normal, 24, 4);
    EXPECT_EQ(image.pixelColor(48, 40).alpha(), 128); // inside the fill
    int highest = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            highest = std::max(highest, qAlpha(image.pixel(x, y)));
    EXPECT_EQ(highest, 128); // strokes over fills do not add up
}

TEST(Symbols, GrowStrongerBesideStrongerLetters)
{
    const auto ink = [](int weight) {
        const auto image = symbolImage(QStringLiteral("circle"), Qt::black, weight, 24, 4);
        double sum = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                sum += qAlpha(image.pixel(x, y));
        return sum;
    };
    EXPECT_NEAR(ink(QFont::Medium) / ink(QFont::Normal), 2 / 1.75, 0.01);
    EXPECT_NEAR(ink(QFont::DemiBold) / ink(QFont::Normal), 2.25 / 1.75, 0.01);
}

TEST(Murkel, OutlinesHisHatAtTheWidthOfTheDesign)
{
    constexpr int size = 1000; // ten pixels a unit
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintMurkel(painter, size, {.hat = Qt::red, .beard = Qt::green, .line = Qt::blue});
    painter.end();
    // The hat's top is level at x = 58: the line lies half above and half below y = 2.6.
    int line = 0;
    for (int y = 0; y < 100; ++y)
        line += image.pixelColor(580, y) == QColor(Qt::blue) ? 1 : 0;
    EXPECT_NEAR(line, 24, 1);
}

TEST(Murkel, StaysInsideHisSquare)
{
    constexpr int size = 200;
    QImage image(size + 40, size + 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(20, 20);
    paintMurkel(painter, size, {.hat = Qt::red, .beard = Qt::green, .line = Qt::blue});
    paintMurkelGlyph(painter, size, Qt::black);
    painter.end();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (x < 20 || y < 20 || x >= 220 || y >= 220)
                EXPECT_EQ(qAlpha(image.pixel(x, y)), 0) << x << ' ' << y;
}

}
}
