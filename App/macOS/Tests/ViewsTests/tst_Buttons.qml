import QtQuick
import QtTest
import Tinkra

TestCase {
    id: test

    name: "Buttons"
    when: windowShown
    width: 400
    height: 100
    visible: true

    Component {
        id: accentButtons

        AccentButton {
            title: "Dismiss"
        }
    }
    Component {
        id: ghostButtons

        GhostButton {
            title: "Snooze"
        }
    }
    SignalSpy {
        id: actions

        signalName: "action"
    }

    function make(row, properties) {
        const button = createTemporaryObject(row.kind, test, properties ?? {});
        actions.target = button;
        actions.clear();
        return button;
    }

    function kinds() {
        return [
            { tag: "accent", kind: accentButtons, sides: 16, height: 34 },
            { tag: "ghost", kind: ghostButtons, sides: 14, height: 32 },
        ];
    }

    function titleOf(button) {
        return findChild(button, "title");
    }

    function test_shows_the_title_alone_without_a_symbol_data() { return kinds(); }
    function test_shows_the_title_alone_without_a_symbol(row) {
        const button = make(row);
        const title = titleOf(button);
        compare(title.mapToItem(button, 0, 0).x, row.sides);
        compare(button.width, Math.ceil(title.width + 2 * row.sides));
        compare(button.height, row.height);
    }

    function test_shows_the_symbol_six_before_the_title_data() { return kinds(); }
    function test_shows_the_symbol_six_before_the_title(row) {
        const button = make(row, { systemImage: "checkmark" });
        const title = titleOf(button);
        compare(title.mapToItem(button, 0, 0).x, row.sides + 16 + 6);
        compare(button.width, Math.ceil(title.width + 16 + 6 + 2 * row.sides));
        compare(button.height, row.height);
    }

    function test_a_click_runs_the_action_once_data() { return kinds(); }
    function test_a_click_runs_the_action_once(row) {
        mouseClick(make(row));
        compare(actions.count, 1);
    }

    function test_a_press_that_leaves_the_button_runs_nothing_data() { return kinds(); }
    function test_a_press_that_leaves_the_button_runs_nothing(row) {
        const button = make(row);
        mousePress(button);
        verify(button.pressed);
        mouseMove(button, button.width + 30, 60);
        mouseRelease(button, button.width + 30, 60);
        compare(actions.count, 0);
    }

    function test_only_the_left_button_of_the_mouse_counts_data() { return kinds(); }
    function test_only_the_left_button_of_the_mouse_counts(row) {
        mouseClick(make(row), 10, 10, Qt.RightButton);
        compare(actions.count, 0);
    }

    function test_a_disabled_button_is_pale_and_runs_nothing_data() { return kinds(); }
    function test_a_disabled_button_is_pale_and_runs_nothing(row) {
        const button = make(row, { enabled: false });
        mouseClick(button);
        compare(actions.count, 0);
        compare(button.opacity, 0.45);
    }

    function test_the_keyboard_presses_it_data() { return kinds(); }
    function test_the_keyboard_presses_it(row) {
        const button = make(row);
        button.forceActiveFocus(Qt.TabFocusReason);
        verify(button.visualFocus);
        keyClick(Qt.Key_Space);
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Enter);
        compare(actions.count, 3);
    }

    function test_letters_are_as_told() {
        const accent = titleOf(make(kinds()[0]));
        compare(accent.font.pixelSize, 13);
        compare(accent.font.weight, Font.DemiBold);
        compare(accent.color, Qt.color("white"));
        const ghost = titleOf(make(kinds()[1]));
        compare(ghost.font.pixelSize, 13);
        compare(ghost.font.weight, Font.Medium);
        compare(String(ghost.color), String(Theme.textPrimary));
    }

    function test_accent_runs_from_one_corner_to_the_other() {
        const background = make(kinds()[0]).background;
        compare(background.fill, Theme.accent);
        compare(background.fillEnd, Theme.accent2);
    }

    function test_ghost_is_a_white_capsule_with_a_hairline() {
        const background = make(kinds()[1]).background;
        compare(background.fill, Theme.surface);
        compare(background.stroke, Theme.stroke);
        compare(background.strokeWidth, 1);
        compare(background.strokeInset, 0.5);
    }

    function test_ghost_is_translucent_on_dark() {
        const button = make(kinds()[1], { onDark: true });
        compare(String(titleOf(button).color), String(Qt.rgba(1, 1, 1, 0.92)));
        compare(button.background.fill, Qt.rgba(1, 1, 1, 0.14));
        compare(button.background.stroke, Qt.rgba(1, 1, 1, 0.22));
    }

    function test_says_where_the_pointer_is_and_that_it_presses() {
        const button = make(kinds()[1], { x: 100, y: 30 });
        mouseMove(test, 5, 5);
        compare(button.background.fill, Theme.surface);
        mouseMove(button);
        verify(button.hovered);
        compare(button.background.fill, Qt.rgba(0.965, 0.957, 0.949, 1));
        mousePress(button);
        compare(button.background.fill, Theme.surfaceStrong);
        mouseRelease(button);
        mouseMove(test, 5, 5);
        compare(button.background.fill, Theme.surface);
    }

    function test_focus_shows_only_when_the_keyboard_brought_it_data() { return kinds(); }
    function test_focus_shows_only_when_the_keyboard_brought_it(row) {
        const button = make(row);
        const ring = findChild(button, "ring");
        verify(!ring.visible);
        mouseClick(button);
        verify(!ring.visible);
        button.forceActiveFocus(Qt.TabFocusReason);
        verify(ring.visible);
    }

    function test_is_a_button_to_a_screen_reader_data() { return kinds(); }
    function test_is_a_button_to_a_screen_reader(row) {
        const button = make(row, { title: "Anything" });
        compare(button.Accessible.role, Accessible.Button);
        compare(button.Accessible.name, "Anything");
    }
}
