import QtQuick
import QtTest
import Tinkra

TestCase {
    id: test

    name: "Murkel"
    when: windowShown
    width: 220
    height: 220
    visible: true

    Component {
        id: views

        MurkelView {
            size: 200
        }
    }
    Component {
        id: glyphs

        MurkelGlyph {
            size: 18
        }
    }
    Component {
        id: bobbing

        BobbingMurkel {
            popped: false
            bob: false
        }
    }

    function hex(color) {
        return String(color);
    }

    function test_is_as_large_as_told() {
        const view = createTemporaryObject(views, test, { size: 56 });
        compare(view.width, 56);
        compare(view.height, 56);
        const glyph = createTemporaryObject(glyphs, test);
        compare(glyph.width, 18);
        compare(glyph.height, 18);
    }

    // Points of the design space, twice as large.
    function test_wears_his_colours() {
        const view = createTemporaryObject(views, test, { hat: "#0000ff", beard: "#00ff00", line: "#ff00ff" });
        waitForRendering(view);
        const image = grabImage(view);
        compare(hex(image.pixel(2 * 55, 2 * 20)), "#0000ff");
        compare(hex(image.pixel(2 * 30, 2 * 82)), "#00ff00");
        compare(hex(image.pixel(2 * 50, Math.round(2 * 48))), "#ff00ff");
        compare(hex(image.pixel(2 * 50, 2 * 66)), hex(Qt.rgba(0.937, 0.808, 0.667, 1)));
    }

    function test_blushes_only_when_told() {
        const with_ = grabImage(createTemporaryObject(views, test, { showCheeks: true }));
        const without = grabImage(createTemporaryObject(views, test, { showCheeks: false }));
        const share = 0.85;
        const cheek = Qt.rgba(share * 0.93 + 0.15 * 0.937, share * 0.66 + 0.15 * 0.808, share * 0.62 + 0.15 * 0.667, 1);
        for (const x of [36.5, 63.5]) {
            fuzzyCompare(with_.red(2 * x, 2 * 67) / 255, cheek.r, 0.01);
            fuzzyCompare(with_.green(2 * x, 2 * 67) / 255, cheek.g, 0.01);
            fuzzyCompare(with_.blue(2 * x, 2 * 67) / 255, cheek.b, 0.01);
            compare(hex(without.pixel(2 * x, 2 * 67)), hex(Qt.rgba(0.937, 0.808, 0.667, 1)));
        }
    }

    function test_glyph_has_one_colour() {
        const glyph = createTemporaryObject(glyphs, test, { size: 100, color: "#3366cc" });
        waitForRendering(glyph);
        const image = grabImage(glyph);
        compare(hex(image.pixel(55, 20)), "#3366cc");
        compare(image.pixel(50, 68), image.pixel(2, 2)); // the face is open
    }

    /// Where a point of the mascot's square goes: scaled about its top centre, then moved, then turned about its
    /// bottom centre.
    function expected(x, y, scale, offset, degrees) {
        const scaledX = 28 + (x - 28) * scale;
        const movedY = y * scale + offset;
        const angle = degrees * Math.PI / 180;
        const dx = scaledX - 28;
        const dy = movedY - 56;
        return Qt.point(28 + dx * Math.cos(angle) - dy * Math.sin(angle), 56 + dx * Math.sin(angle) + dy * Math.cos(angle));
    }

    function comparePose(item, scale, offset, degrees) {
        for (const [x, y] of [[0, 0], [56, 0], [28, 56], [10, 40]]) {
            const is = item.mapToItem(test, x, y);
            const should = expected(x, y, scale, offset, degrees);
            fuzzyCompare(is.x, should.x, 0.001);
            fuzzyCompare(is.y, should.y, 0.001);
        }
    }

    function test_begins_at_a_fifth_of_his_size_hanging_from_his_top() {
        const mascot = createTemporaryObject(bobbing, test);
        comparePose(mascot, 0.2, 1, 3);
    }

    function test_is_scaled_then_moved_then_turned_data() {
        return [
            { tag: "low end", sway: 0, offset: 1, degrees: 3 },
            { tag: "middle", sway: 0.5, offset: -1, degrees: 0 },
            { tag: "high end", sway: 1, offset: -3, degrees: -3 },
        ];
    }

    function test_is_scaled_then_moved_then_turned(row) {
        const mascot = createTemporaryObject(bobbing, test, { popped: true });
        mascot.sway = row.sway;
        comparePose(mascot, 1, row.offset, row.degrees);
    }

    function test_pops_with_the_spring_that_was_asked_for() {
        const mascot = createTemporaryObject(bobbing, test);
        compare(mascot.pop.response, 0.45);
        compare(mascot.pop.dampingFraction, 0.55);
        mascot.popped = true;
        mascot.pop.pause();
        const damping = 0.55 * 2 * Math.PI / 0.45;
        const ringing = 2 * Math.PI / 0.45 * Math.sqrt(1 - 0.55 * 0.55);
        for (const milliseconds of [0, 50, 100, 225, 400, 600]) {
            mascot.pop.currentTime = milliseconds;
            const t = milliseconds / 1000;
            const left = Math.exp(-damping * t) * (Math.cos(ringing * t) + damping / ringing * Math.sin(ringing * t));
            fuzzyCompare(mascot.pop.value, 1 - 0.8 * left, 0.0001);
        }
        mascot.pop.currentTime = mascot.pop.duration;
        compare(mascot.pop.value, 1);
    }

    function test_keeps_its_speed_when_the_spring_is_sent_back() {
        const mascot = createTemporaryObject(bobbing, test);
        mascot.popped = true;
        mascot.pop.pause();
        mascot.pop.currentTime = 99;
        const before = mascot.pop.value;
        mascot.pop.currentTime = 100;
        const turned = mascot.pop.value;
        mascot.popped = false;
        mascot.pop.pause();
        mascot.pop.currentTime = 0;
        fuzzyCompare(mascot.pop.value, turned, 0.000001);
        mascot.pop.currentTime = 1;
        fuzzyCompare(mascot.pop.value - turned, turned - before, 0.0005);
    }

    function test_sways_for_nine_tenths_of_a_second_each_way_for_ever() {
        const mascot = createTemporaryObject(bobbing, test);
        const swaying = mascot.swaying;
        verify(swaying.loops < 0); // without end
        compare(swaying.animations.length, 2);
        for (let i = 0; i < 2; ++i) {
            const way = swaying.animations[i];
            compare(way.duration, 900);
            compare(way.easing.type, Easing.BezierSpline);
            compare(way.easing.bezierCurve, [0.42, 0, 0.58, 1, 1, 1]);
        }
        compare(swaying.animations[0].to, 1);
        compare(swaying.animations[1].to, 0);
    }

    function test_rests_until_he_bobs_and_while_nobody_sees_him() {
        const mascot = createTemporaryObject(bobbing, test);
        verify(!mascot.swaying.running);
        mascot.bob = true;
        verify(mascot.swaying.running);
        mascot.visible = false;
        verify(!mascot.swaying.running);
    }
}
