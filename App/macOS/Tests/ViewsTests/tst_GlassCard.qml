import QtQuick
import QtTest
import Tinkra

TestCase {
    id: test

    name: "GlassCard"
    when: windowShown
    width: 200
    height: 200
    visible: true

    Component {
        id: cards

        GlassCard {
            padding: 16
            fill: "#3366cc"

            Rectangle {
                objectName: "content"
                width: 60
                height: 30
            }
        }
    }

    function test_pads_its_content_on_all_sides() {
        const card = createTemporaryObject(cards, test);
        compare(card.width, 92);
        compare(card.height, 62);
        const content = findChild(card, "content");
        compare(content.mapToItem(card, 0, 0), Qt.point(16, 16));
    }

    function test_follows_its_padding_and_its_content() {
        const card = createTemporaryObject(cards, test, { padding: 20 });
        findChild(card, "content").width = 100;
        compare(card.width, 140);
        compare(card.height, 70);
    }

    function test_is_filled_under_a_hairline() {
        const card = createTemporaryObject(cards, test, { x: 50, y: 50 });
        waitForRendering(card);
        const image = grabImage(card);
        compare(image.pixel(46, 8), Qt.color("#3366cc"));
        compare(image.pixel(46, 0), Qt.rgba(Math.round(0.886 * 255) / 255, Math.round(0.871 * 255) / 255,
            Math.round(0.843 * 255) / 255, 1));
    }
}
