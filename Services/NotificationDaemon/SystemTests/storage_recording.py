"""What a program asked its disk to do, as a list of operations, and what may be left of it after a power cut.

The recording is made by strace with the data of each write. A disk promises only what was synced: a file's
content after fsync of the file, a name (made, renamed, removed) after fsync of its folder. All else may have
reached the disk in part: not at all, up to some point, torn at a sector or a page, or as zeros where a file
grew.
"""

import os
import re
from dataclasses import dataclass, field

TRACED = "openat,mkdir,pwrite64,write,ftruncate,fsync,fdatasync,rename,renameat,renameat2,unlink,unlinkat"
TRACING = ["-y", "-xx", "-s", "4194304", "-ttt", "-e", f"trace={TRACED}"]
SECTOR, PAGE = 512, 4096

_LINE = re.compile(r"^(?:\d+ +)?(?P<time>\d+\.\d+) (?P<call>\w+)\((?P<arguments>.*)\) += (?P<result>-?\d+)")
_TEXT = re.compile(r'"((?:\\x[0-9a-f]{2})*)"')
_FILE = re.compile(r"<((?:\\x[0-9a-f]{2})+)>")


@dataclass(frozen=True)
class Operation:
    time: float  # real time at which it was begun
    kind: str  # create, write, truncate, sync, rename, remove, folder
    path: str
    offset: int = 0
    data: bytes = b""
    target: str = ""


def read_recording(text, below):
    """The operations on paths below the folder, in order."""
    sizes = {}
    for line in _whole_lines(text):
        match = _LINE.match(line)
        if match is None or int(match["result"]) < 0:
            continue
        operation = _operation(match["call"], match["arguments"], float(match["time"]), sizes)
        if operation is not None and operation.path.startswith(str(below)):
            if operation.kind == "empty":
                raise AssertionError(f"{operation.path} is cut by opening it")
            yield operation


def _whole_lines(text):
    """Joins what strace split because another thread came between."""
    unfinished = {}
    for line in text.splitlines():
        process = line.split(" ", 1)[0]
        if line.endswith("<unfinished ...>"):
            unfinished[process] = line[: -len("<unfinished ...>")]
        elif "resumed>" in line:
            yield unfinished.pop(process) + line.partition("resumed>")[2]
        else:
            yield line


def _operation(call, arguments, time, sizes):
    texts = [_decoded(text) for text in _TEXT.findall(arguments)]
    files = [_decoded(text).decode().removesuffix("(deleted)") for text in _FILE.findall(arguments)]
    path = files[0] if files else ""
    if call == "openat":
        kind = "empty" if "O_TRUNC" in arguments else "create" if "O_CREAT" in arguments else None
        return Operation(time, kind, os.path.join(path, texts[0].decode())) if kind else None
    if call == "mkdir":
        return Operation(time, "folder", texts[0].decode())
    if call == "pwrite64":
        return Operation(time, "write", path, int(arguments.rpartition(", ")[2]), texts[0])
    if call == "write":
        offset = sizes.get(path, 0)
        sizes[path] = offset + len(texts[0])
        return Operation(time, "write", path, offset, texts[0])
    if call == "ftruncate":
        return Operation(time, "truncate", path, int(arguments.rpartition(", ")[2]))
    if call in ("fsync", "fdatasync"):
        return Operation(time, "sync", path)
    if call.startswith("rename"):
        return Operation(
            time,
            "rename",
            os.path.join(path, texts[0].decode()),
            target=os.path.join(files[1] if len(files) > 1 else "", texts[1].decode()),
        )
    return Operation(time, "remove", os.path.join(path, texts[0].decode()))


def _decoded(text) -> bytes:
    return bytes.fromhex(text.replace("\\x", ""))


@dataclass
class _File:
    synced: bytes = b""
    unsynced: list = field(default_factory=list)


class Disk:
    """Plays operations and tells what may be found after a cut."""

    def __init__(self):
        self._files = {}
        self._names = {}  # path -> file, as running programs see it
        self._synced_names = {}
        self._changes = []  # (folder, change) of names since the folder's last sync

    def play(self, operation):
        getattr(self, f"_{operation.kind}")(operation)

    def _folder(self, _operation):
        pass

    def _create(self, operation):
        if operation.path not in self._names:
            self._rename_to(operation.path, _File())

    def _rename_to(self, path, file):
        self._names[path] = file
        self._changes.append((os.path.dirname(path), path, file))

    def _write(self, operation):
        self._file(operation.path).unsynced.append((operation.offset, operation.data))

    def _truncate(self, operation):
        self._file(operation.path).unsynced.append((operation.offset, None))

    def _sync(self, operation):
        if operation.path in self._names:
            file = self._file(operation.path)
            file.synced = _apply(file.synced, file.unsynced)
            file.unsynced = []
            return
        for folder, path, changed in self._changes:
            if folder == operation.path:
                self._set_name(self._synced_names, path, changed)
        self._changes = [change for change in self._changes if change[0] != operation.path]

    def _rename(self, operation):
        file = self._names[operation.path]
        self._remove(operation)
        self._rename_to(operation.target, file)

    def _remove(self, operation):
        if self._names.pop(operation.path, None) is not None:
            self._changes.append((os.path.dirname(operation.path), operation.path, None))

    def _file(self, path):
        return self._names.setdefault(path, _File())

    @staticmethod
    def _set_name(names, path, file):
        if file is None:
            names.pop(path, None)
        else:
            names[path] = file

    def states(self, numbers):
        """Pairs of a description and the files that may be found: by path, their content."""
        for what, names in (("names as seen", self._names), ("names as synced", self._synced_names)):
            seen = set()
            for fate, content in _fates(numbers):
                found = {path: content(file) for path, file in names.items()}
                key = tuple(sorted(found.items()))
                if key not in seen:
                    seen.add(key)
                    yield f"{what}, writes {fate}", found


def _fates(numbers):
    yield "kept", lambda file: _apply(file.synced, file.unsynced)
    yield "dropped", lambda file: file.synced
    yield "cut off", lambda file: _apply(
        file.synced, file.unsynced[: numbers.randrange(len(file.unsynced) + 1)]
    )
    yield "in any order", lambda file: _apply(
        file.synced, [w for w in file.unsynced if numbers.random() < 0.5]
    )
    yield "torn at a sector", lambda file: _apply(file.synced, _torn(file.unsynced, SECTOR, numbers))
    yield "torn at a page", lambda file: _apply(file.synced, _torn(file.unsynced, PAGE, numbers))
    yield "zero-filled", _zero_filled


def _apply(content, writes):
    content = bytearray(content)
    for offset, data in writes:
        if data is None:
            content = content[:offset] + bytes(max(offset - len(content), 0))
        else:
            content += bytes(max(offset + len(data) - len(content), 0))
            content[offset : offset + len(data)] = data
    return bytes(content)


def _torn(writes, unit, numbers):
    """All but the last write whole; of that, the first units only."""
    if not writes or writes[-1][1] is None:
        return writes
    offset, data = writes[-1]
    return [*writes[:-1], (offset, data[: unit * numbers.randrange(len(data) // unit + 1)])]


def _zero_filled(file):
    """The size of each file is on the disk, what it grew by is not."""
    whole = _apply(file.synced, file.unsynced)
    return file.synced[: len(whole)] + bytes(max(len(whole) - len(file.synced), 0))
