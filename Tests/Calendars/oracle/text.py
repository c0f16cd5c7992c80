"""From bytes to components: decoding, unfolding, content lines (RFC 5545, section 3.1)."""

import re
from dataclasses import dataclass, field


@dataclass
class Line:
    name: str
    parameters: dict
    value: str


@dataclass
class Component:
    name: str
    lines: list = field(default_factory=list)
    parts: list = field(default_factory=list)

    def all(self, name):
        return [line for line in self.lines if line.name == name]

    def line(self, name):
        return next(iter(self.all(name)), None)

    def value(self, name):
        line = self.line(name)
        return line.value if line else None


def decode(data):
    if data.startswith((b"\xff\xfe", b"\xfe\xff")):
        text = data.decode("utf-16")
    else:
        # A line may be folded in the middle of a character, so bytes are unfolded before they are decoded.
        data = re.sub(rb"(?:\r\n|\n|\r)[ \t]", b"", data.removeprefix(b"\xef\xbb\xbf"))
        try:
            text = data.decode("utf-8")
        except UnicodeDecodeError:
            text = data.decode("latin-1")
    return text.replace("\0", "")


def content_lines(text):
    for raw in re.split(r"\r\n|\n|\r", re.sub(r"(?:\r\n|\n|\r)[ \t]", "", text)):
        match = re.match(r'\s*([A-Za-z0-9-]+)((?:;[A-Za-z0-9-]+=(?:"[^"]*"|[^";:,]*)(?:,(?:"[^"]*"|[^";:,]*))*)*):(.*)',
                         raw, re.DOTALL)
        if not match:
            continue
        parameters = {
            key.upper(): value.strip('"')
            for key, value in re.findall(r';([A-Za-z0-9-]+)=("[^"]*"|[^";:]*)', match.group(2))
        }
        yield Line(match.group(1).upper(), parameters, match.group(3))


def components(data):
    """The top-level components. An END that is missing is supplied, one that is too many is ignored."""
    root = Component("")
    open_ones = [root]
    for line in content_lines(decode(data)):
        if line.name == "BEGIN":
            name = line.value.strip().upper()
            if name in ("VEVENT", "VTODO", "VJOURNAL", "VTIMEZONE", "VFREEBUSY"):
                while len(open_ones) > 1 and open_ones[-1].name != "VCALENDAR":
                    open_ones.pop()
            component = Component(name)
            open_ones[-1].parts.append(component)
            open_ones.append(component)
        elif line.name == "END":
            name = line.value.strip().upper()
            if name in [component.name for component in open_ones]:
                while open_ones.pop().name != name:
                    pass
        else:
            open_ones[-1].lines.append(line)
    return root.parts


def unescape(text):
    return re.sub(r"\\(.)", lambda match: "\n" if match.group(1) in "nN" else match.group(1), text, flags=re.DOTALL)
