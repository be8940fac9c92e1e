from tool import STORE, ToolTest, main

PLAIN = (STORE / "changes-mode2.bin").read_bytes()
STORED = (STORE / "changes-mode2.bin.lz").read_bytes()


class Compress(ToolTest):
    def test_there_and_back(self):
        self.zn("compress", STORE / "changes-mode2.bin", "a.lz")
        self.assertEqual(self.read("a.lz"), STORED)
        self.assertEqual(self.zn("compress", "--fast", "-", "-", stdin=PLAIN).out[:2], STORED[:2])
        for container in (STORED, self.zn("compress", "--fast", "-", "-", stdin=PLAIN).out):
            self.assertEqual(self.zn("decompress", "-", "-", stdin=container).out, PLAIN)

    def test_what_is_copied_is_said(self):
        outcome = self.zn("compress", "-", "-", stdin=b"seventeen bytes..")
        self.assertEqual(outcome.out, b"seventeen bytes..")
        self.assertIn("too short", outcome.err)
        outcome = self.zn("compress", STORE / "changes-mode2.bin.lz", "-")
        self.assertEqual(outcome.out, STORED)
        self.assertIn("compressed already", outcome.err)

    def test_what_can_not_be_restored(self):
        self.write("plain", PLAIN)
        self.write("damaged", STORED[:-1])
        for name, why in (("plain", "plain: is not compressed"), ("damaged", "damaged: is damaged")):
            self.fails(1, why, arguments=("decompress", name, "out"))
        self.fails(1, "damaged: is damaged", arguments=("show", "damaged"))
        self.assertFalse((self.folder / "out").exists())


class CompressedMessages(ToolTest):
    def test_every_command_reads_them(self):
        plain, shown = (self.zn("show", STORE / f"changes-mode2.bin{end}").text for end in ("", ".lz"))
        self.assertEqual(shown.split("\n")[1:], plain.split("\n")[1:])
        self.assertIn("compressed  to 4860 bytes\n", self.zn("info", STORE / "changes-mode2.bin.lz").text)
        self.zn("convert", STORE / "changes-mode2.bin.lz", "a.xml", "--mode", 2)
        self.assertEqual(self.read("a.xml"), (STORE / "changes-mode2.xml").read_bytes())
        self.write("t.csv", "Id,Name\n1,of eighteen bytes\n")
        self.zn("compress", "t.csv", "t.csv.lz")
        self.zn("convert", "t.csv", "a.bin")
        self.zn("convert", "t.csv.lz", "b.bin")
        self.assertEqual(self.read("a.bin"), self.read("b.bin"))

    def test_convert_writes_them(self):
        self.zn("convert", STORE / "changes-mode2.bin", "a", "--to", "bin", "--mode", 2, "--compress")
        self.assertEqual(self.read("a"), STORED)
        self.zn("convert", "a", "b.bin.lz", "--mode", 2)
        self.assertEqual(self.read("b.bin.lz"), STORED)
        self.zn("convert", "b.bin.lz", "c.bin", "--mode", 2)
        self.assertEqual(self.read("c.bin"), PLAIN)
        self.fails(2, "CSV is not compressed", arguments=("convert", "a", "c.csv.lz", "--dataset", "invoices"))

    def test_what_was_compressed_stays_so(self):
        self.write("a.bin", STORED)
        self.zn("reset", "a.bin", "a.bin")
        self.assertEqual(self.read("a.bin")[:2], STORED[:2])
        self.zn("reset", STORE / "changes-mode2.bin", "b.bin")
        self.assertEqual(self.read("b.bin"), self.zn("decompress", "a.bin", "-").out)


if __name__ == "__main__":
    main()
