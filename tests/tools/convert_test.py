import os
import stat
import unittest

from tool import STORE, ToolTest, dataset, integer, main, message, record, text, xml_message, xml_table


class Convert(ToolTest):
    def test_the_sample_messages_keep_every_byte(self):
        for source, target in (("store.bin", "store.bin"), ("store.xml", "store.xml"), ("store.bin", "store.xml"),
                               ("store.xml", "store.bin"), ("changes-mode1.bin", "changes-mode1.bin"),
                               ("changes-mode2.bin", "changes-mode2.bin"), ("changes-mode1.bin", "changes-mode1.xml"),
                               ("changes-mode2.bin", "changes-mode2.xml")):
            with self.subTest(source=source, target=target):
                self.zn("convert", STORE / source, target)
                self.assertEqual(self.read(target), (STORE / target).read_bytes())

    def test_an_xml_message_differs_at_most_in_originals_without_a_value(self):
        for name in ("changes-mode1.xml", "changes-mode2.xml"):
            self.zn("convert", STORE / name, name)
            before = (STORE / name).read_text("utf-8").split("\n")
            after = self.read(name).decode("utf-8").split("\n")
            self.assertEqual(len(before), len(after))
            for old, new in zip(before, after):
                tag = old.strip().strip("</>")
                self.assertIn(new.strip(), (old.strip(), f"<{tag}></{tag}>"))

    def test_modes(self):
        outcome = self.zn("convert", STORE / "changes-mode1.bin", "out.xml", "--mode", 2)
        self.assertEqual(self.read("out.xml"), (STORE / "changes-mode2.xml").read_bytes())
        self.assertIn("mode 2 leaves out 411 rows without a change", outcome.err)
        outcome = self.zn("convert", STORE / "changes-mode1.bin", "now.xml", "--mode", 0)
        self.assertIn("mode 0 leaves out which rows were inserted (3) and updated (34)", outcome.err)
        self.assertNotIn(b"org_record", self.read("now.xml"))
        self.assertNotIn(b'type="', self.read("now.xml").split(b"<record", 1)[1].split(b"</dataset>")[0])
        self.zn("convert", STORE / "store.bin", "all.bin", "--mode", 0)
        self.assertEqual(self.read("all.bin"), (STORE / "store.bin").read_bytes())

    def test_standard_input_and_output(self):
        outcome = self.zn("convert", "-", "-", "--to", "XML", stdin=(STORE / "store.bin").read_bytes())
        self.assertEqual(outcome.out, (STORE / "store.xml").read_bytes())
        self.assertEqual(outcome.err, "")

    def test_tables_keep_the_order_of_the_message(self):
        tables = [dataset(name, [("A", "INT")], [record([integer(1)])]) for name in ("zebra", "ant", "Bee")]
        self.write("in.bin", message([], tables))
        self.zn("convert", "in.bin", "out.xml")
        self.zn("convert", "out.xml", "out.bin")
        self.assertEqual(self.read("out.bin"), self.read("in.bin"))

    def test_code_pages(self):
        for page, encoding, words in ((949, "euc-kr", "서울 시장"), (932, "shift_jis", "東京タワー"),
                                      (1252, "windows-1252", "São Paulo"), (65001, "utf-8", "서울 ☃")):
            with self.subTest(page=page):
                table = dataset("시" if page == 949 else "t", [("A", "STRING")], [record([text(words, encoding)])],
                                code_page=page, encoding=encoding)
                self.write("in.bin", message([("p", text(words, encoding))], [table], encoding))
                self.zn("convert", "in.bin", "out.xml")
                self.assertIn(f'encoding="{encoding}"'.encode(), self.read("out.xml"))
                self.assertEqual(self.read("out.xml").count(words.encode(encoding)), 2)
                outcome = self.zn("convert", "out.xml", "again.bin")
                self.assertEqual(outcome.err, "")
                self.assertEqual(self.read("again.bin"), self.read("in.bin"))
                self.zn("convert", "in.bin", "utf8.xml", "--code-page", 65001)
                self.assertIn(words, self.read("utf8.xml").decode("utf-8"))
                self.zn("convert", "utf8.xml", "back.bin", "--code-page", page)
                self.assertEqual(self.read("back.bin"), self.read("in.bin"))

    def test_what_a_page_lacks_is_a_reference_in_xml(self):
        self.write("in.xml", xml_message(xml_table("t", [("A", "STRING")], [["é☃"]])))
        self.assertEqual(self.zn("convert", "in.xml", "out.xml", "--code-page", 949).err, "")
        self.zn("convert", "out.xml", "back.xml", "--code-page", 65001)
        self.assertIn("<A>é☃</A>", self.read("back.xml").decode("utf-8"))

    def test_the_name_of_the_encoding_stays_as_it_is_written(self):
        self.write("in.xml", xml_message("<params/>").replace(b"utf-8", b"UTF8"))
        self.zn("convert", "in.xml", "out.xml")
        self.assertIn(b'encoding="UTF8"', self.read("out.xml"))

    def test_one_table_alone(self):
        self.zn("convert", STORE / "store.bin", "out.bin", "--dataset", "INVOICES")
        self.assertIn("invoices", self.zn("info", "out.bin").text)
        self.assertEqual(self.zn("info", "out.bin").text.count("\n"), 10)
        self.assertEqual(self.csv("out.bin", "invoices"), self.csv(STORE / "store.bin", "invoices"))


class Files(ToolTest):
    def test_a_failure_leaves_the_old_file_and_nothing_else(self):
        self.write("out.bin", b"precious")
        self.write("bad.xml", "<root><a></b></root>")
        self.fails(1, "bad.xml: line 1: malformed XML", arguments=("convert", "bad.xml", "out.bin"))
        self.assertEqual(self.read("out.bin"), b"precious")
        self.assertEqual(sorted(os.listdir(self.folder)), ["bad.xml", "out.bin"])

    def test_a_file_can_be_written_over_itself_and_keeps_its_rights(self):
        path = self.write("a.bin", (STORE / "store.bin").read_bytes())
        path.chmod(0o640)
        os.symlink("a.bin", self.folder / "link.bin")
        self.zn("convert", "link.bin", "link.bin", "--to", "xml")
        self.assertEqual(self.read("a.bin"), (STORE / "store.xml").read_bytes())
        self.assertTrue((self.folder / "link.bin").is_symlink())
        self.assertEqual(stat.S_IMODE(path.stat().st_mode), 0o640)

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs a device that is full")
    def test_a_full_device(self):
        self.fails(1, "/dev/full: can't be written", arguments=("convert", STORE / "store.bin", "/dev/full", "--to", "bin"))

    def test_places_that_can_not_be(self):
        self.fails(1, "nowhere/x.bin: can't be written",
                   arguments=("convert", STORE / "store.bin", "nowhere/x.bin"))
        self.fails(1, "nothing.bin: can't be opened", arguments=("convert", "nothing.bin", "x.bin"))
        self.fails(1, ": can't be read", arguments=("show", self.folder))
        self.fails(2, "say --to", arguments=("convert", STORE / "store.bin", "store.dat"))
        self.fails(2, "--code-page 4711: unknown", arguments=("convert", STORE / "store.bin", "x.bin", "--code-page", 4711))
        self.assertEqual(os.listdir(self.folder), [])


if __name__ == "__main__":
    main()
