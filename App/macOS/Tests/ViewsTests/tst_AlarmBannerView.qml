import QtQuick
import QtTest
import Tinkra

TestCase {
    id: test

    name: "AlarmBannerView"
    when: windowShown
    width: 600
    height: 120
    visible: true

    Component {
        id: banners

        AlarmBannerView {
            title: "Design review with Anouk"
            meetingStart: "9:30 AM"
        }
    }
    Component {
        id: watchedBanners

        AlarmBannerView {
            property string seen

            title: ""
            meetingStart: ""
            onPoppedChanged: seen += popped ? "popped " : "?"
            onBobChanged: seen += bob ? "bob " : "?"
        }
    }
    SignalSpy {
        id: snoozes

        signalName: "snooze"
    }
    SignalSpy {
        id: dismissals

        signalName: "dismiss"
    }

    function make(properties) {
        const banner = createTemporaryObject(banners, test, properties ?? {});
        for (const spy of [snoozes, dismissals]) {
            spy.target = banner;
            spy.clear();
        }
        return banner;
    }

    function frame(banner, name) {
        const item = findChild(banner, name);
        const corner = item.mapToItem(banner, 0, 0);
        return Qt.rect(corner.x, corner.y, item.width, item.height);
    }

    function test_is_as_large_as_its_panel() {
        const banner = make();
        compare(banner.width, 580);
        compare(banner.height, 104);
        compare(banner.card, Qt.rect(10, 10, 560, 84));
    }

    function test_mascot_stands_inside_the_padding() {
        compare(frame(make(), "mascot.place"), Qt.rect(28, 24, 56, 56));
    }

    function test_buttons_end_inside_the_padding() {
        const banner = make();
        const snooze = frame(banner, "snooze");
        const dismiss = frame(banner, "dismiss");
        compare(dismiss.x + dismiss.width, 580 - 28);
        compare(dismiss.x - (snooze.x + snooze.width), 8);
        compare(dismiss.y + dismiss.height / 2, 52);
        compare(snooze.y + snooze.height / 2, 52);
    }

    function test_texts_are_as_told() {
        const banner = make();
        const caption = findChild(banner, "caption");
        compare(caption.text, "Meeting starting");
        compare(caption.font.pixelSize, 11);
        compare(String(caption.color), String(Theme.textSecondary));
        const title = findChild(banner, "title");
        compare(title.text, "Design review with Anouk");
        compare(title.font.pixelSize, 18);
        compare(title.font.family, Theme.serif);
        compare(String(title.color), String(Theme.textPrimary));
        const time = findChild(banner, "meetingStart");
        compare(time.text, "9:30 AM");
        compare(time.font.pixelSize, 12);
        compare(String(time.color), String(Theme.accent));
        for (const text of [caption, title, time]) {
            compare(text.font.weight, Font.DemiBold);
            compare(text.textFormat, Text.PlainText);
        }
    }

    function test_a_long_title_is_cut_to_one_line_and_the_buttons_keep_their_place() {
        const usual = make();
        const snooze = frame(usual, "snooze");
        const dismiss = frame(usual, "dismiss");
        const banner = make({ title: "Quarterly planning: roadmap, staffing and everything that is left over" });
        const title = findChild(banner, "title");
        verify(title.truncated);
        compare(title.lineCount, 1);
        compare(title.height, 24);
        compare(frame(banner, "snooze"), snooze);
        compare(frame(banner, "dismiss"), dismiss);
        const titleFrame = frame(banner, "title");
        verify(snooze.x - (titleFrame.x + titleFrame.width) >= 12);
    }

    function test_a_title_of_several_lines_is_cut_to_one_data() {
        return [{ tag: "line feed", title: "First\nSecond" }, { tag: "separator", title: "First\u2028Second" }];
    }

    function test_a_title_of_several_lines_is_cut_to_one(row) {
        const title = findChild(make({ title: row.title }), "title");
        compare(title.lineCount, 1);
        verify(title.paintedHeight < 40);
    }

    function test_an_empty_title_leaves_an_empty_line() {
        const filled = make();
        const banner = make({ title: "" });
        for (const name of ["caption", "title", "meetingStart", "snooze", "dismiss", "mascot.place"])
            compare(frame(banner, name), frame(filled, name), name);
    }

    function test_a_title_is_never_markup() {
        const title = findChild(make({ title: "<h1>Big</h1> & <img src='http://example.com'>" }), "title");
        compare(title.textFormat, Text.PlainText);
        compare(title.lineCount, 1);
    }

    function test_a_right_to_left_title_begins_where_the_others_do_and_is_cut_at_its_end() {
        const banner = make({ title: "סקירת עיצוב עם הצוות ועם כל מי שעוד רוצה להצטרף לפגישה" });
        const title = findChild(banner, "title");
        verify(title.truncated);
        compare(title.effectiveHorizontalAlignment, Text.AlignLeft);
        compare(frame(banner, "title").x, 96);
    }

    function test_is_mirrored_for_a_right_to_left_user() {
        const banner = make();
        banner.LayoutMirroring.enabled = true;
        compare(frame(banner, "mascot.place").x, 580 - 28 - 56);
        compare(frame(banner, "dismiss").x, 28);
        compare(findChild(banner, "title").effectiveHorizontalAlignment, Text.AlignRight);
    }

    function test_pressing_a_button_runs_its_action_once() {
        const banner = make();
        mouseClick(findChild(banner, "snooze"));
        compare(snoozes.count, 1);
        compare(dismissals.count, 0);
        mouseClick(findChild(make(), "dismiss"));
        compare(snoozes.count, 0);
        compare(dismissals.count, 1);
    }

    function test_a_double_click_runs_the_action_once() {
        mouseDoubleClickSequence(findChild(make(), "snooze"));
        compare(snoozes.count, 1);
    }

    function test_buttons_are_of_their_kinds() {
        const banner = make();
        const snooze = findChild(banner, "snooze");
        verify(snooze instanceof GhostButton);
        compare(snooze.title, "Snooze");
        compare(snooze.systemImage, "zzz");
        const dismiss = findChild(banner, "dismiss");
        verify(dismiss instanceof AccentButton);
        compare(dismiss.title, "Dismiss");
        compare(dismiss.systemImage, "checkmark");
    }

    function test_both_flags_start_false_and_become_true_when_it_appears() {
        const watched = createTemporaryObject(watchedBanners, test);
        compare(watched.seen, "popped bob ");
        verify(watched.popped && watched.bob);
    }

    function test_speaks_to_a_screen_reader() {
        const banner = make();
        compare(banner.Accessible.role, Accessible.AlertMessage);
        compare(banner.Accessible.name, "Meeting starting");
        compare(banner.Accessible.description, "Design review with Anouk, 9:30 AM");
    }
}
