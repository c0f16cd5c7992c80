import QtQuick
import QtTest
import Tinkra

TestCase {
    name: "SectionLabel"

    SectionLabel {
        id: label

        text: "Upcoming <b>x</b>"
    }

    function test_is_small_spaced_and_pale() {
        compare(label.font.pixelSize, 11);
        compare(label.font.weight, Font.DemiBold);
        fuzzyCompare(label.font.letterSpacing, 1.2, 1 / 64); // a font counts in 64ths
        compare(String(label.color), String(Theme.textTertiary));
    }

    function test_shows_its_text_as_written() {
        compare(label.textFormat, Text.PlainText);
        compare(label.font.capitalization, Font.MixedCase);
    }
}
