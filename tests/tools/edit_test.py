from tool import STORE, ToolTest, main, xml_message

TABLE = ('<dataset id="t"><column id="rate" type="DECIMAL">1.5</column>'
         '<colinfo id="Id" size="4" type="INT"/><colinfo id="Name" size="9" type="STRING"/>'
         '<colinfo id="Price" size="8" type="CURRENCY"/><colinfo id="Unit price" size="8" type="DECIMAL"/>' +
         "".join(f"<record><Id>{i}</Id><Name>n{i}</Name><Price/></record>" for i in range(5)) + "</dataset>")


class Edit(ToolTest):
    def setUp(self):
        super().setUp()
        self.write("t.xml", xml_message('<params><param id="limit" type="INTEGER">5</param></params>' + TABLE))

    def edited(self, *commands):
        """The rows after some commands, with the states that show prints, the name of the state first."""
        self.zn("edit", "t.xml", "out.xml", *commands)
        shown = self.zn("show", "out.xml", "-d", "t", "-c", "Id,Name,Price").text
        return [" ".join(line.split()) for line in shown.split("---\n")[1].splitlines()]

    def test_rows_change_and_remember_it(self):
        self.assertEqual(self.edited("set t 1 Name=x Id=10", "set t Id=3 Name=", "delete t 2", "insert t Id=6 Price=12.5"),
                         ["0 normal 0 n0", "1 updated 10 x", "2 updated 3", "3 normal 4 n4", "4 inserted 6 12.5",
                          "deleted 2 n2"])

    def test_row_numbers_stay_what_show_prints(self):
        self.assertEqual(self.edited("delete t 0", "delete t 2", "set t 1 Name=one", "insert t Id=9", "set t 5 Name=new",
                                     "set t 4 Name=four"),
                         ["0 updated 1 one", "1 normal 3 n3", "2 updated 4 four", "3 inserted 9 new", "deleted 2 n2",
                          "deleted 0 n0"])

    def test_rows_are_found_by_what_earlier_commands_made_of_them(self):
        self.assertEqual(self.edited("set t Id=1 Id=7", "set t Id=7 Name=seven", "insert t Id=1", "set t Id=1 Name=new",
                                     "delete t Id=2", "insert t Id=2 Name=again", "delete t Id=2"),
                         ["0 normal 0 n0", "1 updated 7 seven", "2 normal 3 n3", "3 normal 4 n4", "4 inserted 1 new",
                          "deleted 2 n2"])

    def test_a_value_set_back_is_no_change(self):
        self.assertEqual(self.edited("set t 0 Name=x Price=1", "set t 0 Name=n0 Price=", "set t 1 Name=n1")[:2],
                         ["0 normal 0 n0", "1 normal 1 n1"])

    def test_words_and_quotes(self):
        self.write("edits.txt", '\ufeff# a comment\r\n\r\n  set t 0 Name="São \\"Paulo\\" \\\\ \\u00e9\\ud83d\\ude00\\n\\t"\n'
                   'set "t" 1 "Unit price"=2.5 Name=a"b\\c\n\tinsert t Name="" "Id"="12"')
        self.zn("edit", "t.xml", "out.bin", "--script", "edits.txt", "set t 2 Name=first")
        self.assertEqual(self.zn("convert", "out.bin", "-", "--to", "csv", "-d", "t").text,
                         'Id,Name,Price,Unit price\r\n0,"São ""Paulo"" \\ é😀\n\t",,\r\n1,"a""b\\c",,2.5\r\n2,first,,\r\n'
                         '3,n3,,\r\n4,n4,,\r\n12,"",,\r\n')
        self.assertEqual(self.edited("insert", "t", "Name=a b = \"c\"")[5], '5 inserted a b = "c"')

    def test_parameters_and_constant_columns(self):
        self.zn("edit", "t.xml", "out.xml", 'param limit=7 New=2.5 Text="3" Word=abc', "constant t RATE=2")
        shown = self.zn("show", "out.xml").text
        for line in ("limit  INTEGER  7", "New    DECIMAL  2.5", "Text   STRING   3", "Word   STRING   abc",
                     "rate = 2 (constant DECIMAL)"):
            self.assertIn(line, shown)

    def test_changes_alone(self):
        outcome = self.zn("edit", STORE / "store.bin", "out.xml", "--changes", "set invoices InvoiceId=4 Total=9.99",
                          "delete invoices InvoiceId=7")
        self.assertEqual(self.read("out.xml").count(b"<record"), 2)
        self.assertNotIn("mode 2", outcome.err)

    def test_reset_and_accept(self):
        self.zn("edit", STORE / "store.bin", "edited.bin", "set customers 3 City=x", "delete customers 7", "insert lines Quantity=1")
        self.zn("reset", "edited.bin", "reset.bin")
        self.assertEqual(self.read("reset.bin"), (STORE / "store.bin").read_bytes())
        self.zn("accept", "edited.bin", "accepted.bin", "--dataset", "customers")
        self.assertEqual(self.csv("accepted.bin", "customers"), self.csv("edited.bin", "customers"))
        info = self.zn("info", "accepted.bin").text.splitlines()
        self.assertEqual([line.split()[3:9] for line in info[-3:]], [["58", "58", "0", "0", "0", "0"],
                                                                    ["412", "412", "0", "0", "0", "0"],
                                                                    ["2241", "2240", "1", "0", "0", "0"]])
        outcome = self.zn("reset", STORE / "changes-mode1.xml", "x.xml")
        self.assertIn("invoices: 18 deleted rows can't return", outcome.err)

    def test_mistakes(self):
        cases = [
            ("rename t", "'rename' is no command"),
            ("", "there is nothing in it"),
            ("set t", "set needs a row"),
            ("set", "set needs the name of a table"),
            ("set t 1", "set needs a NAME=VALUE"),
            ("set t 1 Name", "'Name' is no NAME=VALUE"),
            ("delete t 1 2", "'2' is one word too many"),
            ('set t 1 Name="x', "a quote is opened and never closed"),
            ('set t 1 Name="x"y', "a blank is missing"),
            ('set t 1 Name="\\x"', "after \\ in quotes"),
            ('set t 1 Name="\\u12"', "after \\ in quotes"),
            ("set u 1 Name=x", "t.xml has no table 'u' (there is: t)"),
            ("set t 5 Name=x", "table t has no row 5: it has 5, counted from 0"),
            ("set t -1 Name=x", "'-1' is no row"),
            ("set t Id=9 Name=x", "table t has no row with Id=9"),
            ("set t Id=x Name=x", "Id: 'x' is no INT"),
            ("set t 1 Nome=x", "table t has no column 'Nome'"),
            ("set t 1 Id=1.5", "Id: '1.5' is no INT"),
            ("set t 1 Price=1.00001", "Price: '1.00001' is no CURRENCY"),
            ("set t 1 rate=2", "column rate is constant"),
            ("constant t Name=2", "table t has no constant column 'Name'"),
            ("constant t rate=x", "rate: 'x' is no DECIMAL"),
            ("param =x", "a parameter needs a name"),
        ]
        for command, fragment in cases:
            with self.subTest(command):
                self.fails(2, f"command '{command}': {fragment}", arguments=("edit", "t.xml", "out.bin", command))
                self.write("edits.txt", "set t 0 Name=y\n" + (command or "nothing"))
                self.fails(1, "edits.txt: line 2: " + (fragment if command else "'nothing' is no command"),
                           arguments=("edit", "t.xml", "out.bin", "-f", "edits.txt"))
                self.assertFalse((self.folder / "out.bin").exists())
        self.fails(2, "row 1 of table t was deleted", arguments=("edit", "t.xml", "out.bin", "delete t 1", "set t 1 Id=1"))
        self.fails(2, "2 rows with Name=x; one is needed",
                   arguments=("edit", "t.xml", "out.bin", "set t 1 Name=x", "set t 2 Name=x", "delete t Name=x"))
        self.fails(2, "there is nothing to do", arguments=("edit", "t.xml", "out.bin"))
        self.fails(2, "is written by zn convert alone", arguments=("edit", "t.xml", "out.csv", "delete t 1"))


if __name__ == "__main__":
    main()
