import csv
import io

from tool import STORE, ToolTest, main, xml_message


class Csv(ToolTest):
    def columns(self, message):
        """Name, type and size of each column, in the order of definition."""
        self.zn("convert", message, "columns.xml")
        found = []
        for line in self.read("columns.xml").decode("utf-8").split("\r\n"):
            if "<colinfo" in line:
                parts = line.split('"')
                found.append((parts[1], parts[5], int(parts[3]) if parts[3] != "size" else 0))
        return found

    def test_the_table_reads_as_any_reader_of_csv_reads_it(self):
        outcome = self.zn("convert", STORE / "store.bin", "-", "--to", "csv", "--dataset", "customers")
        rows = list(csv.reader(io.StringIO(outcome.text, newline="")))
        self.assertEqual(len(rows), 60)
        self.assertEqual(rows[0][:4], ["CustomerId", "FirstName", "LastName", "Company"])
        self.assertEqual(rows[1][3:5], ["Embraer - Empresa Brasileira de Aeronáutica S.A.", "Av. Brigadeiro Faria Lima, 2170"])
        self.assertIn("CSV has no place for 5 parameters, 2 other tables, 3 constant columns", outcome.err)

    def test_every_field_comes_back(self):
        content = ('Id,Text,"a ""quoted"" name",Code\r\n'
                   '1,"comma, quote "" and\r\nline",,007\r\n'
                   '-2,"",é서☃,12\r\n'
                   ',  blanks kept  ,"x",\r\n')
        self.write("in.csv", "\ufeff" + content)
        self.zn("convert", "in.csv", "t.bin")
        self.assertEqual(self.zn("convert", "t.bin", "-", "--to", "csv").text, content.replace('"x"', "x"))
        self.zn("convert", "t.bin", "semicolon.csv", "--delimiter", ";")
        self.zn("convert", "semicolon.csv", "again.bin", "--delimiter", ";", "--dataset", "in")
        self.assertEqual(self.read("again.bin"), self.read("t.bin"))

    def test_line_ends(self):
        for end in ("\r\n", "\n", "\r"):
            for last in (end, "", end + end):
                self.write("in.csv", end.join(["A,B", "1,2", "3,4"]) + last)
                self.zn("convert", "in.csv", "t.bin")
                self.assertEqual(self.csv("t.bin", "in"), ["A,B", "1,2", "3,4"])
        self.write("one.csv", "A\n1\n\n3\n")
        self.zn("convert", "one.csv", "t.bin")
        self.assertEqual(self.csv("t.bin", "one"), ["A", "1", "", "3"])

    def test_types_are_inferred(self):
        cases = [
            ("INT", 4, ["1", "-2", "", "2147483647"]),
            ("INT", 4, ["20240230", "1"]),
            ("DECIMAL", 8, ["1", "2.5"]),
            ("DECIMAL", 8, ["2147483648"]),
            ("DECIMAL", 8, ["123456789012345"]),
            ("STRING", 16, ["1234567890123456"]),
            ("DATE", 8, ["20240229", "19991231", ""]),
            ("STRING", 3, ["007"]),
            ("STRING", 3, ["1e5"]),
            ("STRING", 2, ["+1"]),
            ("STRING", 3, ["1", "abc"]),
            ("STRING", 0, ["", ""]),
            ("STRING", 1, ["1", '""']),
        ]
        for kind, size, values in cases:
            with self.subTest(values):
                self.write("in.csv", "A,B\n" + "".join(f"{value},x\n" for value in values))
                self.zn("convert", "in.csv", "t.bin")
                self.assertEqual(self.columns("t.bin")[0], ("A", kind, size))
                self.assertEqual(self.csv("t.bin", "in")[1:], [value + ",x" for value in values])

    def test_types_are_given(self):
        self.write("in.csv", "Id,Price,Day,Data,Note\n1,-19.0905,20240102030405,AAEC,x\n2,0.05,,,\n")
        self.zn("convert", "in.csv", "t.xml", "--types", "id:STRING:5,Price:currency", "--types", "Data:BLOB,Day:DATE")
        self.assertEqual(self.columns("t.xml"), [("Id", "STRING", 5), ("Price", "CURRENCY", 8), ("Day", "DATE", 8),
                                                 ("Data", "BLOB", 4), ("Note", "STRING", 1)])
        self.zn("convert", "in.csv", "out.csv", "--types", "Price:CURRENCY,Data:BLOB,Day:DATE")
        self.assertEqual(self.read("out.csv"), self.read("in.csv").replace(b"\n", b"\r\n"))

    def test_mistakes_name_their_line(self):
        cases = [
            (1, "line 1: there is no record", "", ()),
            (1, "line 3: the record has 1 fields, the first one names 2", "A,B\n1,2\n3\n", ()),
            (1, "line 2: a quote is opened and never closed", 'A,B\n1,"x\n\n', ()),
            (1, "line 2: a quoted field is followed by something else", 'A,B\n"x"y,1\n', ()),
            (1, "line 1: column a stands there twice", "A,a\n", ()),
            (1, "line 1: field 2: a column without a name", "A,\n", ()),
            (1, "line 4: column A: 'x' is no INT", 'B,A\n"\n",1\n2,x\n', ("--types", "A:INT")),
            (1, "line 2: column A: '2147483648' is no INT", "A\n2147483648\n", ("--types", "A:INT")),
            (1, "line 2: column A: '20240230' is no DATE", "A\n20240230\n", ("--types", "A:DATE")),
            (1, "line 2: column A: '1.23456' is no CURRENCY", "A\n1.23456\n", ("--types", "A:CURRENCY")),
            (1, "line 2: column A: 'A' is no BLOB", "A\nA\n", ("--types", "A:BLOB")),
            (2, "--types: in.csv has no column 'X'", "A\n1\n", ("--types", "X:INT")),
            (2, "--types A:FLOAT: give NAME:TYPE", "A\n1\n", ("--types", "A:FLOAT")),
            (2, "--delimiter ab: give one", "A\n1\n", ("--delimiter", "ab")),
        ]
        for code, fragment, content, options in cases:
            with self.subTest(fragment):
                self.write("in.csv", content)
                self.fails(code, fragment, arguments=("convert", "in.csv", "out.bin", *options))
        self.write("in.csv", b"A\n\xff\n")
        self.fails(1, "in.csv: line 2: a field is no UTF-8", arguments=("convert", "in.csv", "out.bin"))
        self.fails(2, "--dataset NAME is needed", arguments=("convert", STORE / "store.bin", "x.csv"))
        self.fails(2, "--types goes with CSV", arguments=("convert", STORE / "store.bin", "x.xml", "--types", "A:INT"))
        self.fails(2, "--dataset NAME is needed", arguments=("convert", "-", "x.bin", "--from", "csv"))
        self.write("none.xml", xml_message("<params/>"))
        self.fails(2, "there is: none", arguments=("convert", "none.xml", "x.csv"))

    def test_standard_input(self):
        outcome = self.zn("convert", "-", "-", "--from", "csv", "--to", "csv", "--dataset", "t", stdin=b"A\r\n1\r\n")
        self.assertEqual((outcome.out, outcome.err), (b"A\r\n1\r\n", ""))


if __name__ == "__main__":
    main()
