from tool import STORE, ToolTest, main, xml_message

A = ('<dataset id="t"><colinfo id="Id" size="4" type="INT"/><colinfo id="Name" size="9" type="STRING"/>'
     '<record><Id>1</Id><Name>one</Name></record></dataset>')
B = ('<dataset id="T"><colinfo id="Name" size="9" type="STRING"/><colinfo id="Note" size="9" type="STRING"/>'
     '<record type="update"><Name>two</Name><Note>n</Note><org_record><Name>old</Name></org_record></record></dataset>'
     '<dataset id="u"><colinfo id="Extra" size="4" type="INT"/><record><Extra>5</Extra></record></dataset>')


class Combine(ToolTest):
    def setUp(self):
        super().setUp()
        self.write("a.xml", xml_message('<params><param id="p" type="STRING">kept</param></params>' + A))
        self.write("b.xml", xml_message('<params><param id="p" type="STRING">no</param>'
                                        '<param id="q" type="STRING">added</param></params>' + B))

    def rows(self, table):
        shown = self.zn("show", "out.xml", "-d", table).text
        return [" ".join(line.split()) for line in shown.split("---\n")[1].splitlines()]

    def test_rows_come_as_unchanged_or_as_inserted_ones(self):
        for command, state in (("append", "normal"), ("merge", "inserted")):
            outcome = self.zn(command, "a.xml", "b.xml", "out.xml")
            self.assertIn("b.xml: T: column Note: the other table has no such column", outcome.err)
            self.assertEqual(self.rows("t"), ["0 normal 1 one", f"1 {state} two"])
            self.assertEqual(self.rows("u"), [f"0 {state} 5"])
            shown = self.zn("show", "out.xml").text
            self.assertRegex(shown, "(?s)p .*kept.*q .*added")

    def test_only_the_tables_that_are_named(self):
        self.zn("merge", "a.xml", "b.xml", "out.xml", "-d", "u")
        self.assertEqual(self.rows("t"), ["0 normal 1 one"])
        self.fails(2, "b.xml", arguments=("append", "a.xml", "b.xml", "out.xml", "-d", "none"))

    def test_a_message_is_added_to_itself(self):
        self.zn("append", STORE / "store.bin", STORE / "store.bin", "out.xml")
        self.assertIn("118 rows", self.zn("show", "out.xml", "-d", "customers").text)


if __name__ == "__main__":
    main()
