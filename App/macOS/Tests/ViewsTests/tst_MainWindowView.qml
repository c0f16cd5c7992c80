import QtQuick
import QtTest
import Tinkra

TestCase {
    id: test

    name: "MainWindowView"
    when: windowShown
    width: 880
    height: 640
    visible: true

    Component {
        id: windows

        MainWindowView {
            width: 880
            height: 640
            now: 1000000000
            model: SampleViewModel { }
        }
    }

    property SampleViewModel model

    function make(properties) {
        const view = createTemporaryObject(windows, test, properties ?? {});
        model = view.model;
        view.forceActiveFocus();
        waitForRendering(view);
        return view;
    }

    function control(view, row) {
        return findChild(findChild(view, row), "control") ?? findChild(findChild(view, row), "switch");
    }

    function test_greets_the_user_by_the_first_name() {
        const view = make();
        compare(findChild(view, "greeting").title, "Welcome back, Kraira");
        model.firstName = "there";
        compare(findChild(view, "greeting").title, "Welcome back, there");
    }

    function test_shows_three_figures() {
        const view = make();
        const figures = findChild(view, "figures");
        compare(findChild(figures, "armed").value, "0");
        compare(findChild(figures, "next").value, "—");
        compare(findChild(figures, "watched").value, "2");
        model.addAlarms(25);
        model.nextAlarmText = "09:05";
        compare(findChild(figures, "armed").value, "25");
        compare(findChild(figures, "next").value, "09:05");
    }

    function test_figures_share_their_baselines() {
        const figures = findChild(make(), "figures");
        const at = (name, part) => findChild(findChild(figures, name), part).mapToItem(figures, 0, 0).y;
        for (const part of ["value", "label"]) {
            compare(at("next", part), at("armed", part));
            compare(at("watched", part), at("armed", part));
        }
    }

    function test_asks_for_calendars_while_none_is_selected() {
        const view = make();
        model.calendarsWatched = 0;
        const empty = findChild(view, "empty");
        verify(empty.visible);
        compare(empty.message, "Pick calendars to start arming alarms.");
        model.calendarsWatched = 1;
        compare(empty.message, "No upcoming meetings in your monitored calendars.");
        model.addAlarms(1);
        verify(!empty.visible);
    }

    function test_lists_every_upcoming_alarm() {
        const view = make();
        model.addAlarms(6);
        compare(findChild(view, "row.5").title, "Meeting 5");
        compare(findChild(findChild(view, "row.0"), "relative").text, "12 min, 8 sec");
        compare(findChild(view, "row.0").Accessible.name, "9:30, Meeting 0, 12 min, 8 sec");
    }

    function test_the_promise_is_never_cut() {
        const promise = findChild(make(), "promise");
        verify(!promise.truncated);
        compare(promise.elide, Text.ElideNone);
        compare(promise.lineCount, 3);
    }

    function test_the_onboarding_card_stands_above_every_page_while_calendar_access_is_missing() {
        const view = make();
        const card = findChild(view, "onboarding");
        verify(!card.visible);
        model.calendarPermission = ViewModel.Unknown;
        for (const section of [0, 1, 2]) {
            view.section = section;
            waitForRendering(view);
            verify(card.visible);
            verify(card.y < findChild(view, "page").y);
        }
        model.notificationPermission = ViewModel.Denied;
        model.calendarPermission = ViewModel.Granted;
        verify(!card.visible);
    }

    function test_the_onboarding_card_shows_the_refusal_without_being_reopened() {
        const view = make();
        model.calendarPermission = ViewModel.Unknown;
        waitForRendering(view);
        const card = findChild(view, "onboarding");
        compare(findChild(card, "message").text,
            "Calendar Murkel needs read access to your calendars and permission to send alarm notifications.");
        const button = findChild(card, "button");
        compare(button.title, "Grant access");
        mouseClick(button);
        model.calendarPermission = ViewModel.Denied;
        compare(findChild(card, "message").text,
            "Access was denied. Enable Calendars + Notifications for Calendar Murkel in System Settings → Privacy.");
        compare(button.title, "Open Settings");
        mouseClick(button);
        compare(model.asked, ["permissions", "privacy"]);
    }

    function test_the_sidebar_chooses_pages_and_runs_its_quick_controls() {
        const view = make();
        for (const section of [1, 2, 0]) {
            mouseClick(findChild(view, "section." + section));
            compare(view.section, section);
            verify(findChild(view, "section." + section).selected);
        }
        mouseClick(findChild(view, "website"));
        mouseClick(findChild(view, "test"));
        mouseClick(findChild(view, "master"));
        compare(model.asked, ["website", "test", "master false"]);
    }

    function test_keys_choose_pages_close_and_quit() {
        const view = make();
        for (const [key, section] of [[Qt.Key_2, 1], [Qt.Key_3, 2], [Qt.Key_1, 0]]) {
            keyClick(key, Qt.ControlModifier);
            compare(view.section, section);
        }
        keyClick(Qt.Key_W, Qt.ControlModifier);
        keyClick(Qt.Key_Q, Qt.ControlModifier);
        compare(model.asked, ["close", "quit"]);
    }

    function test_arrows_and_return_choose_pages() {
        const view = make();
        findChild(view, "section.0").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Down);
        verify(findChild(view, "section.1").visualFocus);
        keyClick(Qt.Key_Return);
        compare(view.section, 1);
        keyClick(Qt.Key_Up);
        keyClick(Qt.Key_Space);
        compare(view.section, 0);
    }

    function test_pressing_a_selected_calendar_asks_once_and_then_shows_a_circle() {
        const view = make({ section: 1 });
        const row = findChild(view, "calendar.home");
        compare(findChild(row, "mark").name, "checkmark.circle.fill");
        mouseClick(row);
        compare(model.asked, ["calendar home"]);
        model.accountList.get(0).calendars.setProperty(0, "selected", false);
        compare(findChild(row, "mark").name, "circle");
    }

    function test_a_calendar_without_a_colour_shows_the_accent() {
        compare(findChild(findChild(make({ section: 1 }), "calendar.home"), "dot").color, Theme.accent);
    }

    function test_an_account_header_chooses_all_its_calendars_or_none() {
        const view = make({ section: 1 });
        compare(findChild(findChild(view, "account.Cloud"), "count").text, "1 of 2");
        mouseClick(findChild(findChild(view, "account.Cloud"), "header"));
        mouseClick(findChild(findChild(view, "account.Office"), "header"));
        compare(model.asked, ["account Cloud true", "account Office false"]);
    }

    function test_says_why_there_are_no_calendars() {
        const view = make({ section: 1 });
        verify(!findChild(view, "empty").visible);
        model.accountList.clear();
        const empty = findChild(view, "empty");
        verify(empty.visible);
        compare(empty.message, "No calendars found on this Mac.");
        model.calendarPermission = ViewModel.Denied;
        compare(empty.message, "Grant calendar access to see your calendars.");
    }

    function test_choosing_a_lead_time_stores_exactly_its_seconds_data() {
        return Array.of(0, 60, 120, 300, 600, 900).map((seconds, index) => ({ tag: String(seconds), seconds: seconds, index: index }));
    }

    function test_choosing_a_lead_time_stores_exactly_its_seconds(row) {
        const view = make({ section: 2 });
        model.leadTime = 7;
        const ringTime = control(view, "ringTime");
        compare(ringTime.current, -1);
        mouseClick(findChild(ringTime, "segment." + row.index));
        compare(model.asked, ["lead " + row.seconds]);
        model.leadTime = row.seconds;
        compare(ringTime.current, row.index);
    }

    function test_names_the_lead_times() {
        compare(control(make({ section: 2 }), "ringTime").segments.join("|"), "At start|1 min|2 min|5 min|10 min|15 min");
    }

    function test_arrows_change_the_lead_time_and_stop_at_the_ends() {
        const view = make({ section: 2 });
        const ringTime = control(view, "ringTime");
        ringTime.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Left);
        keyClick(Qt.Key_Right);
        keyClick(Qt.Key_End);
        compare(model.asked, ["lead 60", "lead 900"]);
    }

    function test_choosing_a_style_stores_it() {
        const view = make({ section: 2 });
        const style = control(view, "alarmStyle");
        compare(style.current, 1);
        mouseClick(findChild(style, "segment.0"));
        mouseClick(findChild(style, "segment.1")); // what is shown already
        compare(model.asked, ["style notificationOnly"]);
    }

    function test_shows_the_default_sound_as_glass_without_storing_it() {
        const view = make({ section: 2 });
        const sound = control(view, "alarmSound");
        compare(sound.displayText, "Glass");
        compare(sound.choices.join("|"), "Glass|Funk|Sosumi|Ping|Hero|Submarine");
        compare(model.asked, []);
    }

    function test_choosing_a_sound_by_keyboard_stores_its_name() {
        const view = make({ section: 2 });
        const sound = control(view, "alarmSound");
        sound.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        verify(sound.popup.visible);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        compare(model.asked, ["sound Funk"]);
        verify(!sound.popup.visible);
    }

    function test_switches_store_what_they_are_turned_to_data() {
        return Array.of("ignoreAllDay", "raiseVolume", "keepAwake", "launchAtLogin").map(name => ({ tag: name }));
    }

    function test_switches_store_what_they_are_turned_to(row) {
        const view = make({ section: 2 });
        const item = control(view, row.tag);
        const before = model[row.tag];
        compare(item.on, before);
        item.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space);
        compare(model.asked, [row.tag + " " + !before]);
        compare(item.on, before); // a refusal leaves it where it was
        verify(item.Accessible.name !== "");
        compare(item.Accessible.role, Accessible.CheckBox);
    }

    function test_fits_without_scrolling_as_it_opens() {
        for (const section of [0, 1, 2])
            verify(findChild(make({ section: section }), "detail").contentHeight <= 640);
    }

    function test_scrolls_to_what_the_keyboard_reaches() {
        const view = make({ section: 2, height: 400 });
        const detail = findChild(view, "detail");
        compare(detail.contentY, 0);
        const last = control(view, "launchAtLogin");
        last.forceActiveFocus(Qt.TabFocusReason);
        const bottom = last.mapToItem(detail, 0, last.height).y;
        verify(detail.contentY > 0 && bottom <= detail.height);
        view.show(0);
        compare(detail.contentY, 0);
    }

    function test_the_page_is_at_most_960_wide_and_leading() {
        const view = make({ width: 1600 });
        const page = findChild(view, "page");
        compare(page.width, 960);
        compare(page.mapToItem(view, 0, 0).x, 148);
    }

    function test_is_mirrored_for_a_right_to_left_user() {
        const view = make();
        view.LayoutMirroring.enabled = true;
        waitForRendering(view);
        verify(findChild(view, "section.0").mapToItem(view, 0, 0).x > 760);
        compare(findChild(findChild(view, "greeting"), "title").effectiveHorizontalAlignment, Text.AlignRight);
    }

    function test_shows_a_notice_of_the_desktop_only_when_there_is_one() {
        const view = make();
        verify(!findChild(view, "notice").visible);
        model.notice = "This desktop shows no status items.";
        verify(findChild(view, "notice").visible);
    }
}
