import QtQuick
import QtTest
import Tinkra

TestCase {
    id: test

    name: "Bindings"

    Component {
        id: clocks

        LiveClock { }
    }

    function test_a_clock_at_rest_wakes_nobody() {
        const clock = createTemporaryObject(clocks, test);
        clock.dates = [Date.now() / 1000 + 600];
        verify(!clock.armed);
        clock.running = true;
        verify(clock.armed);
        clock.running = false;
        verify(!clock.armed);
    }

    function test_a_clock_without_a_countdown_wakes_nobody() {
        const clock = createTemporaryObject(clocks, test, { running: true });
        verify(!clock.armed);
        clock.dates = [Date.now() / 1000 - 600]; // over
        verify(!clock.armed);
        clock.dates = [Date.now() / 1000 + 600];
        verify(clock.armed);
    }

    function test_a_clock_that_begins_to_run_tells_the_time() {
        const clock = createTemporaryObject(clocks, test);
        const before = Date.now() / 1000;
        clock.running = true;
        verify(clock.now >= before - 0.001 && clock.now <= Date.now() / 1000 + 0.001);
    }

    TabularText {
        id: ones

        text: "11:11"
        font { pixelSize: 40 }
    }
    TabularText {
        id: eights

        text: "88:08"
        font { pixelSize: 40 }
    }
    TabularText {
        id: letters

        text: "ll"
        font { pixelSize: 40 }
    }

    function test_digits_are_equally_wide() {
        verify(Math.abs(ones.implicitWidth - eights.implicitWidth) <= 1);
        verify(letters.implicitWidth < ones.implicitWidth / 3);
    }

    ThemedText {
        id: lines

        text: "one\ntwo\nthree"
        size: 13
        line: 20
    }

    function test_lines_add_up() {
        compare(lines.height, 60);
    }
}
