import QtQml.Models
import QtQuick
import QtTest
import Tinkra

TestCase {
    id: test

    name: "MenuBarPanel"
    when: windowShown
    width: 340
    height: 500
    visible: true

    Component {
        id: panels

        MenuBarPanel {
            id: panel

            property ListModel alarms: ListModel { }

            upcoming: alarms
            masterEnabled: true
            anyCalendarSelected: true
            accessMissing: false
            now: 1000000000
            focus: true
        }
    }
    SignalSpy { id: toggles; signalName: "masterToggled" }
    SignalSpy { id: others }

    function make(count, properties) {
        const panel = createTemporaryObject(panels, test, properties ?? {});
        for (let i = 0; i < count; ++i)
            panel.alarms.append({ title: "Meeting " + i, weekdayTime: "Fri 9:3" + i, fireDate: 1000000000 + 728 + 60 * i, colorHex: "#3366CC" });
        toggles.target = panel;
        toggles.clear();
        waitForRendering(panel);
        return panel;
    }

    function rows(panel) {
        return Array.of(0, 1, 2, 3, 4, 5).map(i => findChild(panel, "row." + i)).filter(row => row !== null).map(row => row.title);
    }

    function test_says_that_no_calendars_are_selected_and_lists_nothing() {
        const panel = make(0, { anyCalendarSelected: false });
        const empty = findChild(panel, "empty");
        verify(empty.visible);
        compare(empty.message, "No calendars selected yet");
        verify(!findChild(panel, "later").visible);
        compare(findChild(panel, "next"), null);
    }

    function test_says_that_nothing_is_upcoming_in_the_selected_calendars() {
        const panel = make(0);
        compare(findChild(panel, "empty").message, "No upcoming meetings");
        verify(!findChild(panel, "later").visible);
    }

    function test_shows_one_alarm_in_the_card_alone() {
        const panel = make(1);
        verify(!findChild(panel, "empty").visible);
        compare(findChild(panel, "next").title, "Meeting 0");
        verify(!findChild(panel, "later").visible);
        compare(rows(panel), []);
    }

    function test_shows_the_second_of_two_alarms_below() {
        const panel = make(2);
        compare(findChild(panel, "next").title, "Meeting 0");
        verify(findChild(panel, "later").visible);
        compare(rows(panel), ["Meeting 1"]);
    }

    function test_shows_places_two_to_four_of_six_alarms_below() {
        compare(rows(make(6)), ["Meeting 1", "Meeting 2", "Meeting 3"]);
    }

    function test_turning_the_switch_off_asks_once_and_shows_the_stored_value() {
        const panel = make(0);
        const master = findChild(panel, "master");
        mouseClick(master);
        compare(toggles.count, 1);
        compare(toggles.signalArguments[0][0], false);
        verify(master.on); // until it is stored
        panel.masterEnabled = false;
        verify(!master.on);
    }

    function test_warns_only_while_access_is_missing() {
        const panel = make(0);
        verify(!findChild(panel, "notice").visible);
        panel.accessMissing = true;
        verify(findChild(panel, "notice").visible);
    }

    function test_buttons_say_what_they_do_data() {
        return [
            { tag: "open", button: "open", says: "openRequested" },
            { tag: "test", button: "test", says: "testRequested" },
            { tag: "quit", button: "quit", says: "quitRequested" },
        ];
    }

    function test_buttons_say_what_they_do(row) {
        const panel = make(0);
        others.target = panel;
        others.signalName = row.says;
        others.clear();
        mouseClick(findChild(panel, row.button));
        compare(others.count, 1);
    }

    function test_escape_closes_it() {
        const panel = make(0);
        others.target = panel;
        others.signalName = "closeRequested";
        others.clear();
        panel.forceActiveFocus();
        keyClick(Qt.Key_Escape);
        compare(others.count, 1);
    }

    function test_tab_goes_through_switch_open_test_and_quit() {
        const panel = make(0);
        findChild(panel, "master").forceActiveFocus(Qt.TabFocusReason);
        for (const next of ["open", "test", "quit", "master"]) {
            keyClick(Qt.Key_Tab);
            verify(findChild(panel, next).visualFocus, next);
        }
    }

    function test_is_as_high_as_its_parts() {
        compare(make(0).implicitWidth, 320);
        compare(make(0).implicitHeight, 179);
        compare(make(0, { accessMissing: true }).implicitHeight, 207);
        compare(make(4).implicitHeight, 435);
    }

    function test_counts_down_with_the_time_it_is_told() {
        const panel = make(2);
        const next = findChild(findChild(panel, "next"), "relative");
        compare(next.text, "12 min, 8 sec");
        panel.now += 1;
        compare(next.text, "12 min, 7 sec");
        compare(findChild(findChild(panel, "row.1"), "relative").text, "13 min, 7 sec");
    }

    function test_a_calendar_without_a_colour_shows_the_accent() {
        const panel = make(2);
        panel.alarms.setProperty(1, "colorHex", "");
        compare(findChild(findChild(panel, "row.1"), "dot").color, Theme.accent);
    }

    function test_is_mirrored_for_a_right_to_left_user() {
        const panel = make(2);
        panel.LayoutMirroring.enabled = true;
        verify(findChild(panel, "master").mapToItem(panel, 0, 0).x < 20);
        verify(findChild(panel, "open").mapToItem(panel, 0, 0).x > 160);
    }

    function test_every_control_has_a_name_and_a_role() {
        const panel = make(2);
        for (const [name, role, says] of [["master", Accessible.CheckBox, "Alarms enabled"], ["open", Accessible.Button, "Open"],
            ["test", Accessible.Button, "Test"], ["quit", Accessible.Button, "Quit Calendar Murkel"]]) {
            const control = findChild(panel, name);
            compare(control.Accessible.role, role, name);
            compare(control.Accessible.name, says);
        }
        compare(findChild(panel, "row.1").Accessible.name, "Meeting 1, Fri 9:31, 13 min, 8 sec");
    }
}
