import os
import re
import shlex
import subprocess

import tool
from tool import STORE, ToolTest, main

COMMANDS = ("show", "info", "convert", "edit", "apply", "append", "merge", "reset", "accept", "compress", "decompress", "message", "messages",
            "html", "xml", "config", "send", "receive")
TWO_SIDED = ("send", "receive")  # network_test.py runs them


class Usage(ToolTest):
    def test_every_command_explains_itself(self):
        overview = self.zn("--help").text
        for command in COMMANDS:
            self.assertIn(f"\n  {command} ", overview)
            explained = self.zn(command, "--help").text
            self.assertRegex(explained, rf"Examples?: zn {command} ")
            for line in explained.splitlines():
                self.assertLessEqual(len(line), 125)
        self.assertRegex(self.zn("--version").text, r"^zn \d+\.\d+\.\d+\n$")

    def test_the_examples_work(self):
        for name, sample in (("store.bin", "store.bin"), ("changes.bin", "changes-mode2.bin"), ("edited.bin", "changes-mode1.bin")):
            self.write(name, (STORE / sample).read_bytes())
        self.write("edits.txt", "delete lines 0\n")
        self.write("page.html", "<a href=x>y</a>")
        self.write("message.xml", "<a><column/></a>")
        self.write("client.ini", "[server]\nport=1\n")
        self.write("prices.csv", "Id,Price,Note\n1,2.50,x\n")
        tried = 0
        for command in (command for command in COMMANDS if command not in TWO_SIDED):
            for line in self.zn(command, "--help").text.splitlines():
                if "zn " + command + " " in line and not line.startswith("Usage"):
                    words = line[line.index("zn ") + 3:].split(" | ")[0]
                    self.zn(*shlex.split(words))
                    tried += 1
        self.assertEqual(tried, 23)

    def test_the_page_about_the_tool_shows_what_it_prints(self):
        for file in STORE.iterdir():
            self.write(file.name, file.read_bytes())
        page = (STORE.parents[2] / "docs" / "tool.md").read_text("utf-8")
        path = os.pathsep.join([os.path.dirname(tool.ZN), os.environ["PATH"]])
        blocks = re.findall(r"```console\n(.*?)```", page, re.DOTALL)
        self.assertGreater(len(blocks), 8)
        for block in blocks:
            printed = ""
            for line in block.splitlines():
                if line.startswith("$ "):
                    done = subprocess.run(line[2:], shell=True, cwd=self.folder, env={**os.environ, "PATH": path, "LC_ALL": "C.UTF-8"},
                                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60, check=False)
                    printed += line + "\n" + done.stdout.decode("utf-8").replace("\r\n", "\n")
            self.assertEqual(printed, block)

    def test_a_wrong_command_line(self):
        for arguments, fragment in ((("",), "--help"), ((), "subcommand"), (("shoe",), "subcommand"), (("show",), "FILE is required"),
                                    (("show", "a", "--nonsense"), "--nonsense"), (("convert", "a", "b", "--mode", "3"), "--mode"),
                                    (("convert", "a", "b", "--to", "pdf"), "--to"),
                                    (("edit", "a", "b", "--changes", "--mode", "1"), "--changes")):
            with self.subTest(arguments):
                self.fails(2, fragment, arguments=arguments)


if __name__ == "__main__":
    main()
