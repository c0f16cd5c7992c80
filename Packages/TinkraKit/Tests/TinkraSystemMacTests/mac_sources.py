"""The sources for macOS, as a compiler for arm64 macOS sees them with our own declarations of its frameworks.

macOS's own libraries are not here, so the C and C++ libraries of arm64 Linux stand in. What is compiled this way is
looked at and thrown away.
"""

import csv
import functools
import os
import pathlib
import re
import subprocess

import clang.cindex
from clang.cindex import CursorKind

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[3]
LIBRARY = ROOT / "Packages/TinkraKit/Sources/TinkraSystemMac"
WAKE_HELPER = ROOT / "Services/WakeHelper/Sources"
SOURCES = (LIBRARY, WAKE_HELPER)
DECLARATIONS = HERE / "Declarations"
TABLE = HERE / "ApiTable.csv"
TARGET = "arm64-apple-macosx14.0"
COMPILER = "clang++-16"

clang.cindex.Config.set_library_file("/usr/lib/llvm-16/lib/libclang-16.so.1")


def objective_cxx_files():
    files = [file for folder in SOURCES for file in sorted(folder.rglob("*.mm"))]
    assert {folder for folder in SOURCES for file in files if folder in file.parents} == set(SOURCES)
    return files


def command_line(target=TARGET):
    """The options, without those that say what to do."""
    cross = "/usr/aarch64-linux-gnu/include"
    resources = subprocess.check_output([COMPILER, "-print-resource-dir"], text=True).strip()
    includes = pathlib.Path(os.environ["TINKRA_BUILD"]) / "include"
    options = ["-target", target, "-x", "objective-c++", "-std=c++20", "-fobjc-arc", "-fblocks"]
    # The cross libraries are those of Linux and must be told so.
    options += ["-U__nonnull", "-U__nullable", "-U__APPLE__", "-U__MACH__", "-D__linux__=1", "-D__gnu_linux__=1"]
    options += ["-D__ELF__=1", "-D_GNU_SOURCE=1", "-D__aarch64__=1", "-nostdinc", "-nostdinc++"]
    for folder in [f"{cross}/c++/12", f"{cross}/c++/12/aarch64-linux-gnu", f"{resources}/include", cross]:
        options += ["-isystem", folder]
    options += ["-isystem", str(asio_alone())]
    options += ["-I", str(DECLARATIONS)]
    for library in ["TinkraConcurrency", "TinkraSystem", "TinkraSystemMac"]:
        options += ["-I", str(includes / library)]
    options += ["-I", str(WAKE_HELPER)]
    options += ["-DASIO_STANDALONE", "-DASIO_SEPARATE_COMPILATION", "-DASIO_NO_DEPRECATED"]
    options += ["-DASIO_DISABLE_STD_ALIGNED_ALLOC"]
    options += ["-DASIO_HAS_CO_AWAIT", "-DASIO_HAS_STD_COROUTINE"]
    options += ["-Wall", "-Wextra", "-Wpedantic", "-Wno-unused-parameter", "-Werror"]
    options += ["-Wnullable-to-nonnull-conversion", "-Wundeclared-selector", "-Wstrict-selector-match"]
    options += ["-Warc-repeated-use-of-weak", "-Wunguarded-availability", "-Wobjc-missing-super-calls"]
    return options


@functools.cache
def asio_alone():
    """A folder with asio and nothing else of this machine's own /usr/include."""
    folder = pathlib.Path(os.environ["TINKRA_BUILD"]) / "include/asio-alone"
    folder.mkdir(parents=True, exist_ok=True)
    link = folder / "asio"
    if not link.is_symlink():
        link.symlink_to("/usr/include/asio")
    return folder


def compile_source(source, *what, target=TARGET):
    return subprocess.run([COMPILER, *command_line(target), *what, str(source)], capture_output=True, text=True)


def analyzer_findings(source):
    """What the analyzer says of the source and its headers; what it says of the libraries is their affair."""
    result = compile_source(source, "--analyze", "--analyzer-output", "text", "-Wno-error", "-o", "/dev/null",
                            "-Xclang", "-analyzer-checker=osx,nullability,optin.osx")
    assert result.returncode == 0, result.stderr
    places = re.findall(r"^(\S+?):\d+:\d+: warning: .*$", result.stderr, re.MULTILINE)
    return [place for place in places if not place.startswith(str(asio_alone())) and not place.startswith("/usr/")]


@functools.cache
def parse(source):
    unit = clang.cindex.Index.create().parse(str(source), args=command_line())
    problems = [str(problem) for problem in unit.diagnostics if problem.severity >= clang.cindex.Diagnostic.Error]
    assert not problems, "\n".join(problems)
    return unit


def parse_text(name, text):
    """A source that exists in memory alone, for trying the checks themselves."""
    path = str(LIBRARY / name)
    return clang.cindex.Index.create().parse(path, args=command_line(), unsaved_files=[(path, text)])


@functools.cache
def real_path(name):
    return pathlib.Path(os.path.realpath(name))


def is_below(cursor, *folders):
    file = cursor.location.file
    return file is not None and any(folder in real_path(file.name).parents for folder in folders)


def kind_of(cursor):
    """Nothing for the newer kinds that the Python library has no name for."""
    try:
        return cursor.kind
    except ValueError:
        return None


def walk_below(cursor, *folders):
    """Every cursor in the files of the folders, without looking into the libraries."""
    for child in cursor.get_children():
        if is_below(child, *folders):
            if kind_of(child) is not None:
                yield child
            yield from walk_below(child, *folders)


# What has a row in the table, and its name for it.
KINDS = {
    CursorKind.OBJC_INTERFACE_DECL: "class",
    CursorKind.OBJC_PROTOCOL_DECL: "protocol",
    CursorKind.OBJC_INSTANCE_METHOD_DECL: "method",
    CursorKind.OBJC_CLASS_METHOD_DECL: "class method",
    CursorKind.OBJC_PROPERTY_DECL: "property",
    CursorKind.FUNCTION_DECL: "function",
    CursorKind.VAR_DECL: "constant",
    CursorKind.ENUM_CONSTANT_DECL: "constant",
}


def row_of(cursor):
    """(framework, owner, kind, name) of a declaration."""
    framework = real_path(cursor.location.file.name).relative_to(DECLARATIONS).parts[0]
    owner = cursor.semantic_parent
    has_owner = owner is not None and owner.kind in (
        CursorKind.OBJC_INTERFACE_DECL, CursorKind.OBJC_PROTOCOL_DECL)
    return (framework, owner.spelling if has_owner else "", KINDS[cursor.kind], cursor.spelling)


def declared(unit):
    """Rows of everything that our declarations declare, as one source sees them."""
    rows = set()
    for cursor in walk_below(unit.cursor, DECLARATIONS):
        if cursor.kind not in KINDS or cursor.semantic_parent.kind == CursorKind.FUNCTION_DECL:
            continue
        if is_getter_or_setter(cursor):
            continue
        rows.add(row_of(cursor))
    return rows


def is_getter_or_setter(cursor):
    """Whether a method is there because of a property, at whose place it is reported."""
    if cursor.kind not in (CursorKind.OBJC_INSTANCE_METHOD_DECL, CursorKind.OBJC_CLASS_METHOD_DECL):
        return False
    return any(kind_of(sibling) == CursorKind.OBJC_PROPERTY_DECL and sibling.location == cursor.location
               for sibling in cursor.semantic_parent.get_children())


def used(unit):
    """Rows of all declarations of a framework that our source refers to, with one place for each."""
    rows = {}
    for cursor in walk_below(unit.cursor, *SOURCES):
        target = cursor.referenced
        if target is None or kind_of(target) not in KINDS or not is_below(target, DECLARATIONS):
            continue
        if is_getter_or_setter(target):
            target = next(sibling for sibling in target.semantic_parent.get_children()
                          if kind_of(sibling) == CursorKind.OBJC_PROPERTY_DECL and sibling.location == target.location)
        rows.setdefault(row_of(target), f"{cursor.location.file.name}:{cursor.location.line}")
    return rows


def messages(unit):
    """(selector, place, the method that it names or nothing) of each message that our source sends."""
    for cursor in walk_below(unit.cursor, *SOURCES):
        if cursor.kind == CursorKind.OBJC_MESSAGE_EXPR:
            yield cursor.spelling, f"{cursor.location.file.name}:{cursor.location.line}", cursor.referenced


def undeclared_methods(unit):
    """Methods of ours that nobody declares, whom therefore nobody will ever call."""
    for implementation in walk_below(unit.cursor, *SOURCES):
        if implementation.kind != CursorKind.OBJC_IMPLEMENTATION_DECL:
            continue
        known = selectors_of(interface_of(unit, implementation.spelling))
        for method in implementation.get_children():
            if method.kind in (CursorKind.OBJC_INSTANCE_METHOD_DECL, CursorKind.OBJC_CLASS_METHOD_DECL) \
                    and method.spelling not in known:
                yield f"{implementation.spelling}: {method.spelling}"


def interface_of(unit, name):
    return next(cursor for cursor in walk_below(unit.cursor, *SOURCES, DECLARATIONS)
                if cursor.kind == CursorKind.OBJC_INTERFACE_DECL and cursor.spelling == name)


def selectors_of(container):
    """What a class or protocol declares, inherits and adopts."""
    selectors = set()
    for child in container.get_children():
        if child.kind in (CursorKind.OBJC_INSTANCE_METHOD_DECL, CursorKind.OBJC_CLASS_METHOD_DECL):
            selectors.add(child.spelling)
        elif child.kind == CursorKind.OBJC_PROPERTY_DECL:
            selectors.add(child.spelling)
        elif child.kind in (CursorKind.OBJC_SUPER_CLASS_REF, CursorKind.OBJC_PROTOCOL_REF):
            selectors |= selectors_of(child.referenced)
    return selectors


def table():
    with TABLE.open(encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file))


def rows_of_table():
    return {(row["framework"], row["owner"], row["kind"], row["name"]) for row in table()}
