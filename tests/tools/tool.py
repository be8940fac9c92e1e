"""What the tests of the tool share: running it, the sample messages, and a small encoder of binary messages."""

import os
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

STORE = pathlib.Path(__file__).resolve().parents[1] / "data" / "store"
ZN = None


class Outcome:
    def __init__(self, done):
        self.code = done.returncode
        self.out = done.stdout
        self.text = done.stdout.decode("utf-8", "replace")
        self.err = done.stderr.decode("utf-8", "replace")


class ToolTest(unittest.TestCase):
    """Each test has a folder of its own, which is the tool's working folder."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_zn(self, *arguments, stdin=b"", env=None):
        environment = {**os.environ, "LC_ALL": "C.UTF-8", **(env or {})}
        done = subprocess.run([ZN, *map(str, arguments)], input=stdin, capture_output=True, cwd=self.folder,
                              env=environment, timeout=60, check=False)
        return Outcome(done)

    def zn(self, *arguments, **keywords):
        """Runs the tool, which must end well."""
        outcome = self.run_zn(*arguments, **keywords)
        self.assertEqual((outcome.code, outcome.err if outcome.code else ""), (0, ""), arguments)
        return outcome

    def fails(self, code, *fragments, arguments, **keywords):
        """Runs the tool, which must end with this code and say these things, each line after its name."""
        outcome = self.run_zn(*arguments, **keywords)
        self.assertEqual(outcome.code, code, (arguments, outcome.err))
        for fragment in fragments:
            self.assertIn(fragment, outcome.err)
        for line in outcome.err.splitlines():
            self.assertTrue(line.startswith("zn: "), line)
        return outcome

    def write(self, name, content):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode("utf-8"))
        return path

    def read(self, name):
        return (self.folder / name).read_bytes()

    def csv(self, message, table):
        """The present rows of a table as lines of text, the names of the columns first."""
        return self.zn("convert", message, "-", "--to", "csv", "--dataset", table).text.split("\r\n")[:-1]


# ---- Binary messages

def word(value):
    return struct.pack(">H", value & 0xFFFF)


def long(value):
    return struct.pack(">I", value & 0xFFFFFFFF)


def text(value, encoding="utf-8"):
    data = value.encode(encoding)
    return word(8) + word(len(data)) + data


def integer(value):
    return word(3) + long(value)


def amount(ten_thousandths):
    """As a reader takes it: the high word first."""
    return word(6) + struct.pack(">q", ten_thousandths)


def date(value):
    return word(7) + word(len(value)) + value.encode()


NOTHING = word(0)
NULL = word(1)
ARRAY = word(0x2000)
TYPES = {"STRING": 1, "INT": 2, "DECIMAL": 4, "CURRENCY": 5, "DATE": 8, "BLOB": 9}


def variables(items, encoding="utf-8"):
    block = word(0xFF10) + word(2000) + word(len(items))
    for name, value in items:
        block += word(len(name.encode(encoding))) + name.encode(encoding) + value
    return block


def record(values, flags=1, place=-1):
    return word(len(values)) + word(flags) + word(place) + b"".join(values)


def dataset(name, columns, rows=(), deleted=(), constants=(), code_page=65001, encoding="utf-8", count=None):
    """Columns as (name, type), in name order; rows as records, an original right behind its updated row."""
    block = word(0xFF01) + word(3000) + long(code_page)
    block += word(len(name.encode(encoding))) + name.encode(encoding) + variables(constants, encoding)
    block += word(0xFF08) + word(2000) + word(len(columns))
    for column, kind in columns:
        block += word(len(column.encode(encoding))) + column.encode(encoding) + word(TYPES[kind]) + word(0)
    if rows:
        block += long(len(rows) if count is None else count) + b"".join(rows)
    if deleted:
        block += long(len(deleted)) + b"".join(deleted)
    return block + long(0)


def message(parameters=(), tables=(), encoding="utf-8"):
    return word(len(tables) + 1) + variables(parameters, encoding) + b"".join(tables)


# ---- XML messages

def xml_message(body, encoding="utf-8"):
    return f'<?xml version="1.0" encoding="{encoding}"?>\n<root>{body}</root>\n'.encode(encoding)


def xml_table(name, columns, rows):
    """Columns as (name, type), rows as lists of texts."""
    head = "".join(f'<colinfo id="{column}" size="10" type="{kind}"/>' for column, kind in columns)
    body = "".join("<record>" + "".join(f"<{column}>{value}</{column}>" for (column, _), value in zip(columns, row)) +
                   "</record>" for row in rows)
    return f'<dataset id="{name}">{head}{body}</dataset>'


def main():
    global ZN
    ZN = str(pathlib.Path(sys.argv.pop(1)).resolve())
    unittest.main(module="__main__")
