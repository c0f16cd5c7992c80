"""What can be said of the sources for macOS without a Mac. See README.md."""

import re
import subprocess

import pytest
from clang.cindex import CursorKind, Diagnostic

import mac_sources
from mac_sources import LIBRARY, SOURCES, objective_cxx_files


def name_of(path):
    return path.stem


each_file = pytest.mark.parametrize("source", objective_cxx_files(), ids=name_of)


@each_file
def test_the_analyzer_has_nothing_to_say(source):
    assert not mac_sources.analyzer_findings(source)


@each_file
def test_uses_of_the_system_only_what_the_table_vouches_for(source):
    used = mac_sources.used(mac_sources.parse(source))
    strangers = {row: place for row, place in used.items() if row not in mac_sources.rows_of_table()}
    assert not strangers


@each_file
def test_each_message_names_a_method_that_somebody_declares(source):
    nameless = [(selector, place) for selector, place, method in mac_sources.messages(mac_sources.parse(source))
                if method is None]
    assert not nameless


@each_file
def test_each_method_of_ours_is_declared_where_its_caller_looks(source):
    assert not list(mac_sources.undeclared_methods(mac_sources.parse(source)))


def test_the_table_vouches_for_each_declaration_and_holds_nothing_else():
    declared = set()
    for source in objective_cxx_files():
        declared |= mac_sources.declared(mac_sources.parse(source))
    assert declared == mac_sources.rows_of_table()


def test_each_row_of_the_table_names_a_known_source_and_stands_once():
    rows = mac_sources.table()
    assert len(rows) == len(mac_sources.rows_of_table())
    for row in rows:
        assert set(row["source"].split()) <= {"G", "K", "M", "A", "unconfirmed"} and row["source"], row


def test_nothing_is_newer_than_the_oldest_system_that_we_support():
    for row in mac_sources.table():
        if row["since"]:
            assert float(row["since"]) <= 14.0, row


# --- The objects, as the linker of a Mac would see them ---


@pytest.fixture(name="made", scope="module", params=objective_cxx_files(), ids=name_of)
def made_object(request, tmp_path_factory):
    target = tmp_path_factory.mktemp("object") / "object.o"
    result = mac_sources.compile_source(request.param, "-c", "-o", str(target))
    assert result.returncode == 0, result.stderr
    return request.param, target


def undefined_symbols(made):
    listing = subprocess.check_output(["llvm-nm-16", "-u", "-j", str(made)], text=True)
    return set(listing.split())


def test_compiles_with_arc_for_the_oldest_system_that_we_support(made):
    described = subprocess.check_output(["llvm-objdump-16", "-p", "--macho", str(made[1])], text=True)
    assert "ARM64" in described


def test_needs_only_classes_of_the_table_and_our_own(made):
    classes = {symbol.removeprefix("_OBJC_CLASS_$_") for symbol in undefined_symbols(made[1])
               if symbol.startswith("_OBJC_CLASS_$_")}
    known = {name for _, _, kind, name in mac_sources.rows_of_table() if kind == "class"}
    assert {name for name in classes if not name.startswith("Tinkra")} <= known


def test_needs_only_functions_and_constants_of_the_table_and_of_the_languages(made):
    known = {name for _, _, kind, name in mac_sources.rows_of_table() if kind in ("function", "constant")}
    # What is mangled is C++'s or ours, and the rest belongs to the runtimes of the languages.
    runtime = re.compile(r"_Z|_?OBJC_|_?objc_|_NSConcrete|_Block_|_?_cxa_|__gxx_|_Unwind_|__dynamic_cast|__CFConst|"
                         r"__stack_chk_|__libc_single_threaded")
    c_library = {"clock_gettime", "memcpy", "memmove", "memset", "memcmp", "setenv", "strlen", "strcmp", "abort", "free",
                 "aligned_alloc", "__assert_fail"}
    symbols = {symbol.removeprefix("_") for symbol in undefined_symbols(made[1])}
    assert {symbol for symbol in symbols - known - c_library if not runtime.match(symbol)} == set()


def test_sends_only_selectors_of_the_table_and_our_own(made):
    source, target = made
    listing = subprocess.check_output(
        ["llvm-objdump-16", "--macho", "--section=__TEXT,__objc_methname", str(target)], text=True)
    selectors = {line.split(maxsplit=1)[1] for line in listing.splitlines() if re.match(r"[0-9a-f]{16} ", line)}
    known = known_selectors() | own_selectors(source)
    assert selectors <= known


def known_selectors():
    known = {".cxx_construct", ".cxx_destruct"}
    for _, _, kind, name in mac_sources.rows_of_table():
        if kind in ("method", "class method"):
            known.add(name)
        elif kind == "property":
            known |= {name, f"is{name[0].upper()}{name[1:]}", f"set{name[0].upper()}{name[1:]}:"}
    return known


def own_selectors(source):
    """With the names of variables, which lie in the same place."""
    unit = mac_sources.parse(source)
    return {cursor.spelling for cursor in mac_sources.walk_below(unit.cursor, *SOURCES)
            if mac_sources.kind_of(cursor) in (CursorKind.OBJC_INSTANCE_METHOD_DECL,
                                               CursorKind.OBJC_CLASS_METHOD_DECL, CursorKind.OBJC_IVAR_DECL)}


# --- The checks themselves: each must be able to fail ---

USER_NOTIFICATIONS = "#import <UserNotifications/UserNotifications.h>\n"

MISSPELLED_DELEGATE = USER_NOTIFICATIONS + """
@interface Delegate : NSObject <UNUserNotificationCenterDelegate>
@end
@implementation Delegate
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotifications:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))completionHandler {}
@end
"""

UNKNOWN_SELECTOR = USER_NOTIFICATIONS + """
void forget(UNUserNotificationCenter* center) { [center removeAllPendingRequests]; }
"""

LEAKING_RELEASE = USER_NOTIFICATIONS + """
void forget(NSObject* object) { [object release]; }
"""


def test_a_misspelled_delegate_method_is_found():
    unit = mac_sources.parse_text("Misspelled.mm", MISSPELLED_DELEGATE)
    assert list(mac_sources.undeclared_methods(unit)) == [
        "Delegate: userNotificationCenter:willPresentNotifications:withCompletionHandler:"]


@pytest.mark.parametrize("text", [UNKNOWN_SELECTOR, LEAKING_RELEASE], ids=["unknown selector", "release"])
def test_a_wrong_message_does_not_compile(text):
    problems = mac_sources.parse_text("Wrong.mm", text).diagnostics
    assert any(problem.severity >= Diagnostic.Error for problem in problems)


LEAK = USER_NOTIFICATIONS + """
typedef const void* CFTypeRef;
extern "C" CFTypeRef CFCreate() __attribute__((cf_returns_retained));
void leak() { CFTypeRef made = CFCreate(); (void)made; }
"""


def test_a_leak_is_found_by_the_analyzer(tmp_path):
    source = tmp_path / "Leak.mm"
    source.write_text(LEAK, encoding="utf-8")
    assert mac_sources.analyzer_findings(source)


def test_a_use_that_the_table_does_not_vouch_for_is_seen():
    unit = mac_sources.parse_text("Use.mm", USER_NOTIFICATIONS + "id f() { return UNNotificationSound.defaultSound; }")
    assert ("UserNotifications", "UNNotificationSound", "property", "defaultSound") in mac_sources.used(unit)


def test_a_call_that_is_newer_than_the_target_is_seen():
    source = LIBRARY / "EventStoreMac.mm"
    assert mac_sources.compile_source(source, "-fsyntax-only", target="arm64-apple-macosx13.0").returncode != 0
