"""The bundle's descriptions, held against each other and against the sources."""

import os
import pathlib
import plistlib
import re
import subprocess
import xml.etree.ElementTree

import pytest

FOLDER = pathlib.Path(__file__).resolve().parents[1]
ROOT = FOLDER.parents[1]
INFO = pathlib.Path(os.environ["TINKRA_BUILD"]) / "Packaging/macOS/Info.plist"


def property_list(path):
    with path.open("rb") as file:
        return plistlib.load(file)


def source(path):
    """A source in which the parts of a long text are one."""
    return re.sub(r'"\s*\n\s*"', "", (ROOT / path).read_text(encoding="utf-8"))


def test_the_application_is_an_agent_for_macos_14():
    info = property_list(INFO)
    assert info["LSUIElement"] is True
    assert info["LSMinimumSystemVersion"] == "14.0"
    assert info["CFBundlePackageType"] == "APPL"
    assert info["LSMultipleInstancesProhibited"] is True


def test_the_oldest_system_is_the_one_that_is_built_for():
    oldest = property_list(INFO)["LSMinimumSystemVersion"]
    assert f"CMAKE_OSX_DEPLOYMENT_TARGET {oldest} " in source("CMakeLists.txt")


def test_the_user_is_told_why_his_calendars_are_read():
    assert "calendars" in property_list(INFO)["NSCalendarsFullAccessUsageDescription"]


def test_the_version_is_that_of_the_project():
    version = re.search(r"project\(Tinkra VERSION (\S+)", source("CMakeLists.txt")).group(1)
    info = property_list(INFO)
    assert info["CFBundleShortVersionString"] == version
    assert info["CFBundleVersion"] == version


def test_the_hardened_runtime_lets_us_read_calendars():
    assert property_list(FOLDER / "CalendarMurkel.entitlements") == {
        "com.apple.security.personal-information.calendars": True}


def test_time_sensitive_notifications_are_claimed_in_a_file_of_their_own():
    assert property_list(FOLDER / "TimeSensitive.entitlements") == {
        "com.apple.developer.usernotifications.time-sensitive": True,
        "com.apple.security.personal-information.calendars": True}


def test_the_wake_helper_has_the_name_by_which_the_application_registers_it():
    path = FOLDER / "co.calendarmurkel.wakehelper.plist"
    assert f'"{path.name}"' in source("Packages/TinkraKit/Sources/TinkraSystem/HelperService.h")
    assert property_list(path)["Label"] == path.stem


def test_the_wake_helper_belongs_to_the_application():
    helper = property_list(FOLDER / "co.calendarmurkel.wakehelper.plist")
    assert helper["AssociatedBundleIdentifiers"] == property_list(INFO)["CFBundleIdentifier"]


def test_the_wake_helper_is_a_program_that_is_built_and_put_into_the_bundle():
    program = pathlib.PurePath(property_list(FOLDER / "co.calendarmurkel.wakehelper.plist")["BundleProgram"])
    assert program.parent == pathlib.PurePath("Contents/MacOS")
    assert f"tinkra_add_program({program.name}" in source("Services/WakeHelper/CMakeLists.txt")
    assert f" {program.name};" in source("Packaging/macOS/make-bundle")


def test_the_wake_helper_starts_when_the_application_writes_the_file_that_it_reads():
    [file] = property_list(FOLDER / "co.calendarmurkel.wakehelper.plist")["WatchPaths"]
    assert f'"{file}"' in source("Services/WakeHelper/Sources/mainMac.cpp")
    assert f'"{pathlib.PurePath(file).parent}"' in source("Packages/TinkraKit/Sources/TinkraSystemMac/SharedFolderMac.h")
    assert f'"{pathlib.PurePath(file).name}"' in source("Packages/TinkraKit/Sources/TinkraSystem/WakeFile.h")


def test_the_icon_is_the_mascot():
    painted = source("App/macOS/Sources/Views/Painting/MurkelArt.cpp")
    shapes = re.findall(r'const QPainterPath \w+ = vectorPath\(\s*"([^"]+)"\)', painted)
    drawn = [path.get("d") for path in xml.etree.ElementTree.parse(FOLDER / "icon.svg").iter()
             if path.tag.endswith("}path")]
    assert len(shapes) == 7
    assert sorted(drawn) == sorted(shapes)


@pytest.mark.parametrize("script", ["make-bundle", "make-icon"])
def test_the_scripts_are_bash(script):
    assert os.access(FOLDER / script, os.X_OK)
    subprocess.run(["bash", "-n", FOLDER / script], check=True)


def test_making_a_bundle_without_a_build_says_how_it_is_called():
    result = subprocess.run([FOLDER / "make-bundle"], capture_output=True, text=True)
    assert result.returncode == 2
    assert "usage" in result.stderr
