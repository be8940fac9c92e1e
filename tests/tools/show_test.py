import os
import pty
import select
import subprocess
import time
import unicodedata

import tool
from tool import NOTHING, STORE, ToolTest, amount, dataset, integer, main, message, record, text, word

PEOPLE = dataset("people", [("City", "STRING"), ("Id", "INT"), ("Name", "STRING")], [
    record([text("서울"), integer(1), text("김철수")]),
    record([text("São Paulo"), integer(20), text("Jose\u0301")]),
    record([text("東京\t1\x1b[31m"), integer(300), text("ｱｲ\U0001F600")]),
])


def width(line):
    """Cells that a line takes, by the tables of another program."""
    return sum(0 if unicodedata.combining(ch) else 2 if unicodedata.east_asian_width(ch) in "WF" else 1 for ch in line)


class Show(ToolTest):
    def lines(self, *arguments, **keywords):
        return self.zn("show", *arguments, **keywords).text.splitlines()

    def test_columns_stand_in_line_whatever_the_script(self):
        lines = self.lines("-", "-d", "people", stdin=message([], [PEOPLE]))[3:]
        self.assertEqual(lines[0], "  #  state   City" + " " * 16 + "Id  Name")
        name = width(lines[0]) - 4
        for line, value in zip(lines[2:], ("김철수", "Jose\u0301", "ｱｲ\U0001F600")):
            self.assertEqual(width(line[:line.index(value)]), name)
        self.assertEqual(lines[1], "  -  ------  " + "-" * 17 + "  ---  ------")
        self.assertIn("東京\\t1\\u001b[31m", lines[4])

    def test_a_width_cuts_texts(self):
        lines = self.lines("-", "-w", "5", "-c", "City", stdin=message([], [PEOPLE]))[-3:]
        self.assertEqual([line.split(None, 2)[2] for line in lines], ["서울", "São …", "東京…"])

    def test_parameters_constants_and_states(self):
        shown = self.zn("show", STORE / "changes-mode1.bin", "--changes", "--originals", "-c", "CustomerId,city,rate").text
        for expected in ("changes-mode1.bin: binary message\n", '  note    STRING   a < b & "c"\n', "  limit   INTEGER  500\n",
                         "customers: 61 rows, 3 inserted, 7 updated, 1 deleted beside them; 10 shown\n",
                         "  source = store (constant STRING)\n",
                         "  updated           10  São Paulo (moved)      1.25\n", "  was                   São Paulo\n",
                         "  inserted       90000  São José dos Campos    1.25\n",
                         "     deleted            9  Copenhagen             1.25\n"):
            self.assertIn(expected, shown)
        self.assertNotIn("normal", shown)
        self.assertNotIn("\x1b", shown)

    def test_an_original_without_a_value_is_seen(self):
        rows = [record([text("x"), integer(1), text("y")], 4, 0) + record([word(0), integer(1), text("y")], 4, 0)]
        lines = self.lines("-", "-o", stdin=message([], [dataset("t", [("A", "STRING"), ("B", "INT"), ("C", "STRING")], rows)]))
        self.assertEqual([line.split() for line in lines[-2:]], [["0", "updated", "x", "1", "y"], ["was", "(empty)"]])

    def test_rows(self):
        for given, expected in (("2", [0, 1]), ("57-", [57, 58]), ("3-4", [3, 4]), ("-2", [57, 58]), ("50-99", range(50, 59)),
                                ("99", range(59)), ("70-80", []), ("9-3", []), ("0", [])):
            lines = self.lines(STORE / "store.bin", "-d", "customers", "-c", "CustomerId", "--rows", given)
            numbers = [line.split()[0] for line in lines[8:]]
            self.assertEqual(numbers, [str(number) for number in expected], given)
        for wrong in ("x", "1-x", "--3", "1-2-3"):
            self.fails(2, "give a count (10), a range", arguments=("show", STORE / "store.bin", "--rows=" + wrong))

    def test_names_that_are_not_there(self):
        self.fails(2, "there is no table 'x' (there is: customers, invoices, lines)", arguments=("show", STORE / "store.bin", "-d", "x"))
        self.fails(2, "there is no column 'x'", arguments=("show", STORE / "store.bin", "-c", "City,x"))

    def test_info(self):
        info = self.zn("info", STORE / "changes-mode1.bin").text.splitlines()
        self.assertEqual(info[1:5], ["encoding    binary", "code page   65001 (utf-8)", "bytes       55515", "parameters  5"])
        figures = [line.split() for line in info[-2:]]
        self.assertEqual([line[:-1] for line in figures], [["customers", "13", "3", "61", "51", "3", "7", "1", "7"],
                                                          ["invoices", "9", "0", "397", "360", "3", "34", "18", "34"]])
        parameters = 55515 - sum(int(line[-1]) for line in figures)
        self.assertEqual(parameters, len(message([("user", text("kim")), ("screen", text("orders")), ("limit", integer(500)),
                                                  ("ratio", word(5) + bytes(8)), ("note", text('a < b & "c"'))])))
        mixed = message([], [dataset("a", [], code_page=949), dataset("b", [], code_page=1252)])
        info = self.zn("info", "-", stdin=mixed).text
        self.assertIn("code page   differs by table", info)
        self.assertEqual([line.split()[-1] for line in info.splitlines()[-2:]], ["949", "1252"])


class Terminal(ToolTest):
    """What only a terminal gets."""

    def on_terminal(self, arguments, stream, env=None, stdin=None):
        """What the tool writes to a stream that is a terminal."""
        ours, theirs = pty.openpty()
        streams = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, stream: theirs}
        process = subprocess.Popen([tool.ZN, *map(str, arguments)], stdin=subprocess.PIPE, env={**os.environ, **(env or {})}, **streams)
        os.close(theirs)
        if stdin:
            stdin(process.stdin)
        process.stdin.close()
        seen = b""
        while select.select([ours], [], [], 20)[0]:
            try:
                seen += os.read(ours, 65536)
            except OSError:  # the other side is gone
                break
        os.close(ours)
        self.assertEqual(process.wait(20), 0)
        return seen.decode("utf-8")

    def test_colour(self):
        arguments = ("show", STORE / "changes-mode2.bin", "-d", "customers", "-c", "Company")
        os.environ.pop("NO_COLOR", None)
        shown = self.on_terminal(arguments, "stdout")
        self.assertIn("\x1b[32minserted\x1b[0m", shown)
        self.assertIn("Embraer - Empresa Brasileira de…", shown)
        self.assertNotIn("\x1b", self.on_terminal(arguments, "stdout", {"NO_COLOR": "1"}))

    def test_progress(self):
        def slowly(stream):
            time.sleep(1.4)
            stream.write((STORE / "store.bin").read_bytes())

        shown = self.on_terminal(("info", "-"), "stderr", stdin=slowly)
        self.assertIn("reading standard input [", shown)
        self.assertTrue(shown.endswith("\r\x1b[K"))
        self.assertEqual(self.on_terminal(("info", STORE / "store.bin"), "stderr"), "")


SALES = dataset("sales", [("City", "STRING"), ("Land", "STRING"), ("Price", "CURRENCY"), ("Sold", "INT"), ("Weight", "DECIMAL")], [
    record([text(city), text(land), amount(price), integer(sold), NOTHING])
    for city, land, price, sold in (("Oslo", "N", 10500, 4), ("Lima", "P", -5, 1), ("Oslo", "N", 500, 2147483647), ("Bergen", "N", 0, 3))
] + [record([NOTHING, text("P"), NOTHING, integer(2147483647), NOTHING])])


class Views(ToolTest):
    def lines(self, *arguments):
        shown = self.zn("show", "-", "-d", "sales", *arguments, stdin=message([], [SALES])).text
        return [" ".join(line.split()) for line in shown.splitlines()[2:]]

    def test_sorted_rows_keep_their_numbers(self):
        self.assertEqual([line[0] for line in self.lines("--sort", "Land:d,Price", "-c", "City")[3:]], list("41320"))
        self.assertEqual([line[0] for line in self.lines("--sort", "city:d", "-c", "City", "--rows", "2-3")[3:]], list("13"))

    def test_filters_all_hold(self):
        lines = self.lines("--filter", "Land=N", "-f", "City=Oslo", "-c", "City")
        self.assertEqual(lines[0], "sales: 5 rows; 2 shown")
        self.assertEqual([line[0] for line in lines[3:]], list("02"))
        self.assertEqual([line[0] for line in self.lines("-f", "City=", "-c", "City")[3:]], list("4"))
        self.assertEqual(self.lines("-f", "City=oslo", "-c", "City"), ["sales: 5 rows; 0 shown"])

    def test_groups_end_with_their_sums(self):
        self.assertEqual(self.lines("--group", "Land,City", "--sum", "Price,Sold", "--count", "-c", "Land,City,Price,Sold")[3:], [
            "3 normal N Bergen 0 3", "1 row N Bergen", "sum N Bergen 0 3",
            "0 normal N Oslo 1.05 4", "2 normal N Oslo 0.05 2147483647", "2 rows N Oslo", "sum N Oslo 1.1 2147483651",
            "3 rows N", "sum N 1.1 2147483654",
            "4 normal P 2147483647", "1 row P", "sum P 0 2147483647",
            "1 normal P Lima -0.0005 1", "1 row P Lima", "sum P Lima -0.0005 1",
            "2 rows P", "sum P -0.0005 2147483648",
            "5 rows in all", "sum in all 1.0995 4294967302"])

    def test_figures_of_all_rows(self):
        self.assertEqual(self.lines("--min", "Price,City,Weight", "--max", "Price", "--avg", "Price", "-c", "City,Price,Weight")[-3:],
                         ["average 0.274875", "smallest Bergen -0.0005", "largest 1.05"])
        self.assertEqual(self.lines("--group", "Land", "--sort", "Sold", "-c", "Land")[4:8], ["1 row P", "3 normal N", "0 normal N", "2 normal N"])
        self.assertEqual(self.lines("-f", "City=none", "--sum", "Sold", "--min", "Sold", "-c", "Sold")[3:], ["sum 0", "smallest"])

    def test_wrong_wishes(self):
        for arguments, fragment in ((("--sum", "City"), "'City' has no numbers"), (("--sort", "Nope"), "no column 'Nope'"),
                                    (("--filter", "City"), "COLUMN=VALUE"), (("--group", "Land,Nope"), "no column 'Nope'")):
            self.fails(2, fragment, arguments=("show", "-", *arguments), stdin=message([], [SALES]))

    def test_changed_and_deleted_rows(self):
        lines = self.zn("show", STORE / "changes-mode1.bin", "-d", "customers", "-c", "CustomerId,City", "--sort", "CustomerId:d",
                        "--changes", "--originals", "--filter", "City=São Paulo (moved)").text.splitlines()
        self.assertEqual([line.split()[:3] for line in lines[-2:]], [["8", "updated", "10"], ["was", "São", "Paulo"]])
        deleted = self.zn("show", STORE / "changes-mode1.bin", "-d", "customers", "-c", "City", "--filter", "City=Copenhagen").text
        self.assertIn("deleted  Copenhagen", deleted)


if __name__ == "__main__":
    main()
