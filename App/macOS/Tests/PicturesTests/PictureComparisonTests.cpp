#include "Pictures.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>

#include <gtest/gtest.h>

#include <stdexcept>

Q_IMPORT_QML_PLUGIN(TinkraPlugin)

namespace Tinkra {
namespace {

class PictureComparison : public testing::Test {
protected:
    QImage probe(const QVariantMap& changes = {})
    {
        return picture(m_engine, QUrl(QStringLiteral("qrc:/scenes/Probe.qml")), changes);
    }

    bool noticesChange(const char* property, const QVariant& value)
    {
        return compare(probe(), probe({{QString::fromLatin1(property), value}})).isVisible();
    }

private:
    void SetUp() override { m_engine.addImportPath(QStringLiteral("qrc:/qt/qml")); }

    QQmlEngine m_engine;
};

TEST_F(PictureComparison, SeesNoDifferenceBetweenTwoRendersOfTheSame)
{
    const auto difference = compare(probe(), probe());
    EXPECT_FALSE(difference.isVisible());
    EXPECT_EQ(difference.worst, 0);
}

TEST_F(PictureComparison, NoticesAColourThatIsThreeStepsOff)
{
    EXPECT_TRUE(noticesChange("fill", QColor(252, 255, 255)));
    EXPECT_TRUE(noticesChange("ink", QColor(60, 25, 23)));
}

TEST_F(PictureComparison, NoticesARadiusThatIsOneOff)
{
    EXPECT_TRUE(noticesChange("radius_", 17));
    EXPECT_TRUE(noticesChange("radius_", 15));
}

TEST_F(PictureComparison, NoticesAPaddingThatIsOneOff)
{
    EXPECT_TRUE(noticesChange("padding", 17));
}

TEST_F(PictureComparison, NoticesAnotherLetter)
{
    EXPECT_TRUE(noticesChange("text", QStringLiteral("9:30 PM")));
}

TEST_F(PictureComparison, NoticesAShadowThatIsTwiceAsDark)
{
    EXPECT_TRUE(noticesChange("shadowOpacity", 0.08));
}

TEST_F(PictureComparison, NoticesAnotherSizeAndAMissingPicture)
{
    EXPECT_TRUE(compare(probe(), probe({{QStringLiteral("width"), 161}})).isVisible());
    EXPECT_TRUE(compare(QImage(), probe()).isVisible());
}

TEST_F(PictureComparison, ToleratesTwoStepsOfArithmeticAndNotThree)
{
    QImage left(4, 4, QImage::Format_ARGB32_Premultiplied);
    left.fill(QColor(100, 100, 100));
    auto right = left;
    right.setPixelColor(1, 2, QColor(102, 98, 100));
    EXPECT_FALSE(compare(left, right).isVisible());
    right.setPixelColor(1, 2, QColor(100, 103, 100));
    EXPECT_EQ(compare(left, right).pixels, 1);
    EXPECT_EQ(compare(left, right).worst, 3);
}

TEST_F(PictureComparison, ThrowsForASceneThatIsNotThere)
{
    QQmlEngine engine;
    EXPECT_THROW(picture(engine, QUrl(QStringLiteral("qrc:/scenes/None.qml"))), std::runtime_error);
}

}
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
