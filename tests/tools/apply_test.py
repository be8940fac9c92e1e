import random

from tool import STORE, ToolTest, main, xml_message

KEYS = ("--key", "customers:CustomerId", "--key", "InvoiceId")


def table(rows, name="t", columns=(("Id", "INT"), ("Name", "STRING"), ("Kind", "STRING"))):
    """Rows as (type, values, originals or None)."""
    def cells(values):
        return "".join(f"<{column}>{value}</{column}>" for (column, _), value in zip(columns, values))
    body = "".join(f'<record type="{state}">{cells(values)}' +
                   (f"<org_record>{cells(originals)}</org_record>" if originals else "") + "</record>"
                   for state, values, originals in rows)
    head = "".join(f'<colinfo id="{column}" size="9" type="{kind}"/>' for column, kind in columns)
    return xml_message(f'<dataset id="{name}">{head}{body}</dataset>')


BASE = [("normal", (i, f"n{i}", "k"), None) for i in range(1, 6)]


class Apply(ToolTest):
    def test_the_outcome_equals_the_table_of_the_sender(self):
        self.zn("accept", STORE / "changes-mode1.bin", "sender.bin")
        for name in ("changes-mode1.bin", "changes-mode1.xml", "changes-mode2.bin", "changes-mode2.xml"):
            for keys in (KEYS, ("-k", "CustomerId"), ()):
                with self.subTest(name=name, keys=keys):
                    self.zn("apply", STORE / "store.bin", STORE / name, "out.bin", *keys)
                    for table_name in ("customers", "invoices"):
                        mine, theirs = self.csv("out.bin", table_name), self.csv("sender.bin", table_name)
                        if "mode2" in name:  # which does not say where an inserted row stands
                            mine, theirs = sorted(mine), sorted(theirs)
                        self.assertEqual(mine, theirs)
                    self.assertEqual(self.csv("out.bin", "lines"), self.csv(STORE / "store.bin", "lines"))
                    self.assertNotIn("updated", self.zn("show", "out.bin").text)

    def test_random_edits_arrive(self):
        def empty(lines):  # a cell that gets an empty text where it had no value is none that changed
            return [line.replace('""', "") for line in lines]

        for seed in range(4):
            rng = random.Random(seed)
            commands = []
            alive = [str(i) for i in range(1, 60)]
            for step in range(120):
                kind = rng.choice("uuuuidk")
                key = rng.choice(alive)
                if kind == "i":
                    alive.append(str(1000 + step))
                    commands.append(f'insert customers CustomerId={1000 + step} FirstName="김 {step}" Fax={rng.choice(["", "1"])}')
                elif kind == "d":
                    alive.remove(key)
                    commands.append(f"delete customers CustomerId={key}")
                elif kind == "k":
                    alive[alive.index(key)] = str(2000 + step)
                    commands.append(f"set customers CustomerId={key} CustomerId={2000 + step}")
                else:
                    value = rng.choice(["", '""', '"São <Paulo>"', "x"])
                    commands.append(f"set customers CustomerId={key} {rng.choice(['City', 'Fax', 'Company'])}={value}")
            self.write("edits.txt", "\n".join(commands))
            self.zn("edit", STORE / "store.bin", "edited.bin", "-f", "edits.txt")
            for form in ("changes.bin", "changes.xml"):
                self.zn("edit", STORE / "store.bin", form, "-f", "edits.txt", "--changes")
                self.zn("apply", STORE / "store.bin", form, "out.bin", *KEYS)
                self.zn("apply", STORE / "store.bin", "edited.bin", "ordered.bin", *KEYS)
                sender = empty(self.csv("edited.bin", "customers"))
                self.assertEqual(sorted(empty(self.csv("out.bin", "customers"))), sorted(sender), seed)
                self.assertEqual(empty(self.csv("ordered.bin", "customers")), sender, seed)

    def test_keys_may_change_places(self):
        self.write("base.xml", table(BASE))
        self.write("changes.xml", table([("update", (2, "n1", "k"), (1, "n1", "k")), ("update", (1, "n2", "k"), (2, "n2", "k")),
                                         ("delete", (3, "n3", "k"), None), ("insert", (3, "new", "k"), None)]))
        self.zn("apply", "base.xml", "changes.xml", "out.xml", "--key", "t:Id")
        self.assertEqual(self.csv("out.xml", "t")[1:], ["2,n1,k", "1,n2,k", "4,n4,k", "5,n5,k", "3,new,k"])

    def test_keys_of_several_columns(self):
        columns = (("A", "INT"), ("B", "INT"), ("V", "STRING"))
        self.write("base.xml", table([("normal", (a, b, "v"), None) for a in (1, 12) for b in (1, 21)], columns=columns))
        self.write("changes.xml", table([("update", (12, 1, "w"), (12, 1, "v"))], columns=columns))
        self.zn("apply", "base.xml", "changes.xml", "out.xml", "--key", "t:A+B")
        self.assertEqual(self.csv("out.xml", "t")[1:], ["1,1,v", "1,21,v", "12,1,w", "12,21,v"])
        self.fails(2, "t: no key finds its rows; say --key t:COLUMN", arguments=("apply", "base.xml", "changes.xml", "out2.xml"))
        self.fails(1, "t A=12: updated, but the base has several such rows",
                   arguments=("apply", "base.xml", "changes.xml", "out2.xml", "-k", "t:A"))

    def test_only_what_changed_is_stored(self):
        self.write("base.xml", table([("normal", (1, "n1", "their kind"), None)]))
        self.write("changes.xml", table([("update", (1, "mine", "k"), (1, "n1", "k"))]))
        self.zn("apply", "base.xml", "changes.xml", "out.xml")
        self.assertEqual(self.csv("out.xml", "t")[1:], ["1,mine,their kind"])

    def test_conflicts(self):
        cases = [
            ("missing", ("update", (9, "x", "k"), (9, "n9", "k")), "t Id=9: updated, but the base has no such row", []),
            ("deleted", ("delete", (9, "n9", "k"), None), "t Id=9: deleted, but the base has no such row", []),
            ("twice", ("insert", (5, "x", "k"), None), "t Id=5: inserted, but there is such a row already", ["5,x,k"]),
            ("stale", ("update", (5, "x", "k"), (5, "old", "k")), "t Id=5: Name was 'old' for the other side, but is 'n5'", ["5,x,k"]),
            ("stale delete", ("delete", (5, "old", "k"), None), "t Id=5: Name was 'old' for the other side, but is 'n5'", [None]),
            ("key twice", ("update", (5, "n4", "k"), (4, "n4", "k")), "t Id=5: the new key of an updated row", ["5,n4,k", "5,n5,k"]),
        ]
        self.write("base.xml", table(BASE))
        rows = [f"{i},n{i},k" for i in range(1, 6)]
        for name, change, fragment, outcome in cases:
            with self.subTest(name):
                self.write("changes.xml", table([change, ("update", (1, "good", "k"), (1, "n1", "k"))]))
                self.fails(1, "changes.xml: " + fragment, "nothing is written", arguments=("apply", "base.xml", "changes.xml", "out.xml"))
                self.assertFalse((self.folder / "out.xml").exists())
                self.assertIn(fragment, self.zn("apply", "base.xml", "changes.xml", "out.xml", "--force").err)
                expected = ["1,good,k"] + rows[1:]
                if outcome:
                    expected[-len(outcome):] = [row for row in outcome if row]
                self.assertEqual(self.csv("out.xml", "t")[1:], expected)
                (self.folder / "out.xml").unlink()

    def test_what_does_not_fit_the_base(self):
        self.write("base.xml", table(BASE))
        self.write("u.xml", table([("insert", (9, "x", "k"), None)], name="u"))
        self.fails(1, "u: the base has no such table", arguments=("apply", "base.xml", "u.xml", "out.xml"))
        self.write("c.xml", table([("insert", (9, "x"), None)], columns=(("Id", "INT"), ("New", "STRING"))))
        self.fails(1, "t: the base has no column New", arguments=("apply", "base.xml", "c.xml", "out.xml"))
        self.fails(2, "--key t:Nome: there is no such table with such a column",
                   arguments=("apply", "base.xml", "c.xml", "out.xml", "-k", "t:Nome"))
        self.fails(2, "--key t:: give COLUMN", arguments=("apply", "base.xml", "c.xml", "out.xml", "-k", "t:"))
        self.fails(1, "changes of its own; accept or reset the base first",
                   arguments=("apply", STORE / "changes-mode1.bin", STORE / "changes-mode2.bin", "out.bin"))
        outcome = self.zn("apply", "base.xml", "base.xml", "out.xml")
        self.assertIn("no row in it is inserted, updated or deleted", outcome.err)
        self.assertEqual(self.csv("out.xml", "t"), self.csv("base.xml", "t"))

    def test_tracked_changes_can_be_undone(self):
        self.zn("apply", STORE / "store.bin", STORE / "changes-mode2.bin", "tracked.bin", "--track", *KEYS)
        info = self.zn("info", "tracked.bin").text.splitlines()[-3:]
        self.assertEqual([line.split()[3:9] for line in info[:2]],
                         [["61", "51", "3", "7", "1", "7"], ["397", "360", "3", "34", "18", "34"]])
        self.zn("reset", "tracked.bin", "reset.bin")
        for name in ("customers", "invoices"):
            self.assertEqual(sorted(self.csv("reset.bin", name)), sorted(self.csv(STORE / "store.bin", name)))


if __name__ == "__main__":
    main()
