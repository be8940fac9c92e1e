from tool import STORE, ToolTest, dataset, integer, main, message, record, word, xml_message, xml_table


class Damage(ToolTest):
    """Messages that break off or hold what is none: shown as far as they go, but never written on."""

    def test_a_message_that_breaks_off_anywhere(self):
        for name, step in (("changes-mode2.bin", 397), ("changes-mode1.xml", 6007)):
            whole = (STORE / name).read_bytes()
            for length in [*range(0, len(whole) - 4, step), len(whole) - 1]:
                with self.subTest(name=name, length=length):
                    if name.endswith("xml") and not whole[length:].strip():
                        continue
                    outcome = self.fails(1, "standard input: ", arguments=("convert", "-", "out.bin"), stdin=whole[:length])
                    self.assertNotIn("Sanitizer", outcome.err)
                    self.assertFalse((self.folder / "out.bin").exists())

    def test_what_is_there_is_shown(self):
        outcome = self.fails(1, "byte 9413: table 2 (invoices) breaks off", arguments=("show", "-", "-c", "Total"),
                             stdin=(STORE / "store.bin").read_bytes()[:50000])
        self.assertIn("invoices: ", outcome.text)
        self.assertIn("8.91", outcome.text)
        outcome = self.fails(1, "line 344", arguments=("info", "-"), stdin=b"\n".join(
            (STORE / "store.xml").read_bytes().split(b"\n")[:344]))
        self.assertIn("customers", outcome.text)

    def test_faults_and_their_places(self):
        good = dataset("t", [("A", "INT")], [record([integer(1)])])
        cases = [
            ("empty", b"", "byte 0: neither"),
            ("no message", b"GIF89a...", "byte 0: neither"),
            ("zero header", word(0) + message()[2:], "byte 0: the count of tables is zero"),
            ("no table", message([], [good]) + b"\xff\x08" + bytes(20), f"byte {8 + len(good)}: table 2 is none"),
            ("count that lies", message([], [dataset("t", [("A", "INT")], [record([integer(1)])], count=2 ** 31 - 1)]),
             "byte 8: table 1 (t) breaks off"),
            ("parameters that lie", word(1) + word(0xFF10) + word(2000) + word(9), "byte 2: the parameters break off"),
            ("value that lies", message([], [dataset("t", [("A", "STRING")], [record([word(8) + word(0x9000)])])]),
             "byte 8: table 1 is none, or holds a value that can't be read"),
            ("no root", b"<a>1</a>", "no message: there is no <root>"),
            ("not nested", xml_message("<params>\n<a>\n</b></params>"), "line 3: malformed XML after here: <a> of line 3"),
            ("comment", xml_message("<params/>\n<!-- "), "line 2: malformed XML"),
            ("encoding", xml_message("<params/>").replace(b"utf-8", b"klingon"), "line 1: the encoding 'klingon' is unknown"),
            ("utf-16", xml_message("<params/>").replace(b"utf-8", b"utf-16"), "line 1: a message in UTF-16"),
        ]
        for name, content, fragment in cases:
            with self.subTest(name):
                self.fails(1, "standard input: " + fragment, arguments=("show", "-"), stdin=content)

    def test_oddities_are_said_and_pass(self):
        good = dataset("t", [("A", "INT")], [record([integer(1)])])
        outcome = self.zn("info", "-", stdin=word(9) + message([], [good])[2:])
        self.assertIn("byte 0: 8 tables are announced, 1 are there", outcome.err)
        table = xml_table("t", [("A", "INT")], [["1"]])
        self.assertIn("1 table with the name of a later one", self.zn("info", "-", stdin=xml_message(table + table)).err)
        self.assertEqual(self.zn("info", "-", stdin=b"\xef\xbb\xbf" + xml_message(table)).err, "")

    def test_deep_markup(self):
        deep = 200_000
        content = xml_message("<a>" * deep + "</a>" * deep + xml_table("t", [("A", "INT")], [["1"]]))
        self.assertIn("tables      1", self.zn("info", "-", stdin=content).text)


if __name__ == "__main__":
    main()
