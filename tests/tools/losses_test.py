import base64

from tool import (ARRAY, NOTHING, NULL, ToolTest, amount, dataset, date, integer, main, message, record, text, word,
                  xml_message, xml_table)

ONE = [("A", "STRING")]


def one_cell(kind, value):
    return message([], [dataset("t", [("A", kind)], [record([value])])])


class Losses(ToolTest):
    """Each loss is said in one line; what comes back shows that it is one, and without a line nothing is lost."""

    def check(self, content, target, *fragments):
        source = "in.xml" if content.startswith(b"<") else "in.bin"
        self.write(source, content)
        outcome = self.zn("convert", source, target)
        for fragment in fragments:
            self.assertIn(f"zn: {target}: {fragment}", outcome.err)
        self.assertEqual(len(outcome.err.splitlines()), len(fragments), outcome.err)
        self.zn("convert", target, "back" + source[2:])
        return self.read("back" + source[2:]) == self.read(source)

    def test_binary_to_xml(self):
        empty_text = word(8) + word(0)
        cases = [
            ("amount", one_cell("CURRENCY", amount(190000)), "t: column A: an amount that this form does not hold reads back as another (row 0)"),
            ("empty text", one_cell("STRING", empty_text), "t: column A: an empty text reads back as no value (row 0)"),
            ("type", one_cell("STRING", integer(5)), "t: column A: a value of another type"),
            ("date", one_cell("DATE", date("20240102")), "t: column A: a value of another type"),
            ("decimal", one_cell("DECIMAL", word(5) + b"\x7f\xf0" + bytes(6)), "t: column A: a number that is not finite"),
            ("element name", message([], [dataset("t", [("unit price", "INT")], [record([integer(5)])])]),
             "t: column unit price: the name is none that an element can have"),
            ("digit first", message([], [dataset("t", [("1st", "INT")], [record([integer(5)])])]), "t: column 1st: the name is none"),
            ("marks", message([], [dataset("t", ONE, [record([text("x")], flags=0x1001)])]), "t: selection and filter marks are left out, of 1 row"),
            ("places", message([], [dataset("t", ONE, [record([text("x")])], deleted=[record([text("y")], 8, 0)])]),
             "t: XML keeps no places of deleted rows"),
            ("parameter", message([("p", amount(10000))]), "parameter p: the CURRENCY value reads back as the text '1'"),
            ("no parameter", message([("p", NULL), ("q", integer(1))]), "parameter p: the null value reads back as the text ''"),
            ("array", message([("p", ARRAY), ("q", integer(1))]), "parameter p: the ARRAY value reads back"),
            ("parameters", message([("p", integer(1)), ("P", integer(2))]), "parameter P: given twice"),
            ("tables", message([], [dataset("t", ONE), dataset("T", ONE)]), "T: another table before it has the same name"),
            ("constant", message([], [dataset("t", [("A", "INT")], [record([integer(5)])], constants=[("a", integer(1))])]),
             "t: column A: a constant column has the same name"),
            ("no columns", message([], [dataset("t", [], [record([])])]), "t: rows without columns"),
        ]
        for name, content, fragment in cases:
            with self.subTest(name):
                self.assertFalse(self.check(content, "out.xml", fragment), "nothing was lost")

    def test_xml_to_binary(self):
        cases = [
            ("amount", xml_message(xml_table("t", [("A", "CURRENCY")], [["12.5"]])), "t: column A: an amount that this form does not hold reads back as another (row 0)"),
            ("surrogate", xml_message(xml_table("t", ONE, [["&#xD800;"]])), "t: column A: characters that the code page lacks"),
            ("page", xml_message("<params><param id='p' type='STRING'>&#233;</param></params>", "euc-kr"), "parameter p: characters that"),
            ("summary", xml_message('<dataset id="t"><colinfo id="A" size="4" type="INT" summ="sum"/></dataset>'),
             "t: column A: its summary is left out"),
        ]
        for name, content, fragment in cases:
            with self.subTest(name):
                self.assertFalse(self.check(content, "out.bin", fragment), "nothing was lost")

    def test_nothing_is_said_where_nothing_is_lost(self):
        row = record([text(" a\r\n\t\x01<&>\"'\u00e9\u20ac\U0001F600 "), integer(-2147483648), NOTHING, word(13) + bytes.fromhex("00000002 ff00")])
        columns = [("A_1:x", "STRING"), ("B", "INT"), ("C", "STRING"), ("D", "BLOB")]
        self.assertTrue(self.check(message([("p", text("")), ("q", text(" x "))], [dataset("t", columns, [row])]), "out.xml"))

    def test_cells_are_counted(self):
        rows = [["1"], ["12.5"], [""], ["0.5"]]
        self.check(xml_message(xml_table("t", [("A", "CURRENCY")], rows)), "out.bin", "t: column A: an amount that this form "
                   "does not hold reads back as another (3 times, the first in row 0)")

    def test_originals_count_too(self):
        rows = [record([text("new")], 4, 0) + record([word(8) + word(0)], 4, 0)]
        self.check(message([], [dataset("t", ONE, rows)]), "out.xml", "t: column A: an empty text reads back as no value (original 0)")


class Unreadable(ToolTest):
    """What nobody could read again is not written at all."""

    def test_nothing_is_written(self):
        long_text = "x" * 32768
        cases = [
            ("cell", xml_message(xml_table("t", ONE, [["y"], [long_text]])), "t: row 1, column A: a text of more than 32,767 bytes"),
            ("bytes count", xml_message(xml_table("t", ONE, [["서" * 11000]])), "t: row 0, column A: a text of more than"),
            ("parameter", xml_message(f'<params><param id="p" type="STRING">{long_text}</param></params>'), "parameter p: a text of more"),
        ]
        for name, content, fragment in cases:
            with self.subTest(name):
                self.write("in.xml", content)
                self.fails(1, "out.bin: " + fragment, arguments=("convert", "in.xml", "out.bin"))
                self.assertFalse((self.folder / "out.bin").exists())
        self.write("fits.xml", xml_message(xml_table("t", ONE, [["x" * 32767]])))
        self.zn("convert", "fits.xml", "fits.bin")
        self.assertEqual(len(self.csv("fits.bin", "t")[1]), 32767)

    def test_bytes_go_through_xml(self):
        data = bytes(range(256)) * 200
        self.write("in.xml", xml_message(xml_table("t", [("A", "BLOB")], [[base64.b64encode(data).decode()]])))
        self.assertEqual(self.zn("convert", "in.xml", "out.bin").err, "")
        self.assertEqual(self.csv("out.bin", "t")[1], base64.b64encode(data).decode())


if __name__ == "__main__":
    main()
