from tool import ToolTest, main

INI = "# of the client\n[server]\nhost = example.org\nport=5000\n\n[값]\nname=서울\n"


class Config(ToolTest):
    def setUp(self):
        super().setUp()
        self.write("c.ini", INI)

    def test_get_and_list(self):
        self.assertEqual(self.zn("config", "c.ini", "get", "SERVER", "Port").text, "5000\n")
        self.assertEqual(self.zn("config", "c.ini", "get", "값", "name").text, "서울\n")
        self.assertEqual(self.zn("config", "c.ini", "list").text,
                         "[server]\nhost=example.org\nport=5000\n\n[값]\nname=서울\n")
        self.assertEqual(self.zn("config", "c.ini", "list", "Server").text, "[server]\nhost=example.org\nport=5000\n")

    def test_set(self):
        outcome = self.zn("config", "c.ini", "set", "server", "PORT=5001", "path=/a=b", "empty=")
        self.assertEqual(outcome.err, "zn: c.ini: 1 line that is no setting (comments, ...) not kept\n")
        self.assertEqual(self.read("c.ini").decode(),
                         "[server]\nhost=example.org\nport=5001\npath=/a=b\nempty=\n\n[값]\nname=서울\n\n")
        self.assertEqual(self.zn("config", "c.ini", "set", "new", "x=y").err, "")
        self.assertEqual(self.zn("config", "c.ini", "get", "new", "x").text, "y\n")
        self.zn("config", "made.ini", "set", "s", "n=1")
        self.assertEqual(self.read("made.ini"), b"[s]\nn=1\n\n")

    def test_in_the_code_page_of_the_locale(self):
        self.write("k.ini", "[값]\nname=서울\n".encode("cp949"))
        korean = {"LC_ALL": "ko_KR.eucKR"}
        self.assertEqual(self.zn("config", "k.ini", "get", "값", "name", env=korean).text, "서울\n")
        self.zn("config", "k.ini", "set", "값", "name=부산", env=korean)
        self.assertEqual(self.read("k.ini"), "[값]\nname=부산\n\n".encode("cp949"))

    def test_what_can_not_be_done(self):
        self.fails(1, "none.ini: can't be read: The file was not found.", arguments=("config", "none.ini", "list"))
        self.fails(1, "none/c.ini: can't be read: The path was not found.",
                   arguments=("config", "none/c.ini", "set", "s", "n=1"))
        self.fails(2, "c.ini: has no section client", arguments=("config", "c.ini", "get", "client", "port"))
        self.fails(2, "c.ini: has no entry user in section server", arguments=("config", "c.ini", "get", "server", "user"))
        self.fails(2, "give NAME=VALUE", arguments=("config", "c.ini", "set", "server", "port"))
        self.fails(2, "standard input", arguments=("config", "-", "list"))
        self.fails(2, arguments=("config", "c.ini"))
        for assignment in ("a=b ", "a=b\nc", "#a=b"):
            self.fails(1, "c.ini: [server] ", "reads back; nothing is written",
                       arguments=("config", "c.ini", "set", "server", assignment))
        self.assertEqual(self.read("c.ini").decode(), INI)


if __name__ == "__main__":
    main()
