import QtQuick
import QtTest
import Tinkra

TestCase {
    id: test

    name: "ColorDot"
    when: windowShown
    width: 40
    height: 40
    visible: true

    Component {
        id: dots

        ColorDot {
            size: 10
        }
    }

    function dot(properties) {
        return createTemporaryObject(dots, test, properties);
    }

    function test_shows_the_colour_of_its_text_data() {
        return [
            { tag: "#C95B4B" }, { tag: "c95b4b" }, { tag: " #C95B4B " }, { tag: "  c95b4b\n" },
        ];
    }

    function test_shows_the_colour_of_its_text(row) {
        compare(dot({ hex: row.tag }).color, Qt.rgba(0xC9 / 255, 0x5B / 255, 0x4B / 255, 1));
    }

    function test_shows_the_accent_for_no_colour_data() {
        return [{ tag: "#FFF" }, { tag: "#GGGGGG" }, { tag: "" }, { tag: "##3366" }];
    }

    function test_shows_the_accent_for_no_colour(row) {
        compare(dot({ hex: row.tag }).color, Theme.accent);
    }

    function test_shows_the_accent_when_it_is_told_nothing() {
        compare(dot({}).color, Theme.accent);
    }

    function test_is_as_large_as_it_is_told() {
        const item = dot({ size: 12 });
        compare(item.width, 12);
        compare(item.height, 12);
    }

    function test_paints_a_circle() {
        const item = dot({ hex: "#3366CC", size: 20 });
        waitForRendering(item);
        const image = grabImage(item);
        compare(image.pixel(10, 10), Qt.rgba(0x33 / 255, 0x66 / 255, 0xCC / 255, 1));
        verify(image.alpha(0, 0) === 0 || image.pixel(0, 0) === image.pixel(19, 19));
        verify(image.pixel(1, 1) !== image.pixel(10, 10));
    }
}
