import os
import signal
import socket
import struct
import subprocess

import tool
from tool import STORE, ToolTest, main

CHANGES = (STORE / "changes-mode2.bin").read_bytes()


def frame(payload, flag=0, length=None):
    return struct.pack(">IH", len(payload) if length is None else length, flag) + payload


class Network(ToolTest):
    def start(self, *arguments):
        """Starts a receiver for this machine on a port of its own choice; the process and the port."""
        command = [tool.ZN, "receive", "0", *map(str, arguments), "--local", "--timeout", "10"]
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, cwd=self.folder,
                                   env={**os.environ, "LC_ALL": "C.UTF-8"})
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        line = process.stderr.readline().decode()
        self.assertRegex(line, r"^zn: listening on port \d+\n$")
        return process, int(line.split()[-1])

    def end(self, process, code=0):
        out, err = process.communicate(timeout=60)
        self.assertEqual(process.returncode, code, err)
        return out, err.decode()

    def talk(self, port, data, then_close=True):
        with socket.create_connection(("127.0.0.1", port), timeout=30) as connection:
            connection.sendall(data)
            if then_close:
                connection.shutdown(socket.SHUT_WR)
            answer = b""
            while piece := connection.recv(65536):
                answer += piece
            return answer

    def test_there_and_back(self):
        large = bytes(range(256)) * 10_000  # several frames
        for content in (CHANGES, b"", large):
            process, port = self.start("in.bin", "--reply", self.write("reply", b"thanks"))
            self.zn("send", f"127.0.0.1:{port}", "-", "--answer", "answer", stdin=content)
            self.assertIn(f"zn: 127.0.0.1: {len(content)} bytes to in.bin\n", self.end(process)[1])
            self.assertEqual(self.read("in.bin"), content)
            self.assertEqual(self.read("answer"), b"thanks")
        process, port = self.start()
        self.zn("send", f"localhost:{port}", STORE / "changes-mode2.bin")
        self.assertEqual(self.end(process)[0], CHANGES)

    def test_several_messages(self):
        process, port = self.start("in.bin.lz", "--count", 3)
        self.zn("send", f"127.0.0.1:{port}", "-", stdin=b"one")
        self.talk(port, frame(b"broken", length=7))
        self.zn("send", f"127.0.0.1:{port}", "-", stdin=b"three")
        self.assertIn("127.0.0.1: no message: the connection ended inside a message", self.end(process, 1)[1])
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["in-1.bin.lz", "in-3.bin.lz"])
        self.assertEqual(self.read("in-3.bin.lz"), b"three")

    def test_senders_that_do_not_do_it_right(self):
        for data, close, why in ((b"", True, "the other side closed the connection"), (b"\0\0\0", True, "the other side closed"),
                                 (frame(b"abc", 1), True, "the other side closed"), (frame(b"abcd", 1)[:5], True, "ended inside"),
                                 (frame(b"", length=10_485_761), False, "more than 10485760 bytes")):
            process, port = self.start("in.bin")
            self.assertEqual(self.talk(port, data, close), b"")
            self.assertIn(why, self.end(process, 1)[1])
            self.assertFalse((self.folder / "in.bin").exists())

    def test_nobody_there_and_no_answer(self):
        with socket.socket() as listener:
            listener.bind(("127.0.0.1", 0))
            where = f"127.0.0.1:{listener.getsockname()[1]}"
            self.fails(1, f"{where}: can't be reached: The other side refused", arguments=("send", where, "-", "--retries", 3))
            listener.listen()
            self.fails(1, f"{where}: no message: The connection timed out",
                       arguments=("send", where, "-", "--answer", "a", "--timeout", 1))
            self.fails(1, "address is in use", arguments=("receive", where.split(":")[1], "--local"))
        self.assertFalse((self.folder / "a").exists())

    def test_ctrl_c_ends_cleanly(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            process, port = self.start("in.bin", "--count", 0)
            self.zn("send", f"127.0.0.1:{port}", "-", stdin=b"whole")
            with socket.create_connection(("127.0.0.1", port), timeout=30) as connection:
                connection.sendall(frame(b"half", length=8))
                self.assertIn(b"5 bytes to in-1.bin", process.stderr.readline())
                process.send_signal(number)
                self.end(process, 130)
            self.assertEqual([path.name for path in self.folder.iterdir()], ["in-1.bin"])
            self.assertEqual(self.read("in-1.bin"), b"whole")

    def test_a_wrong_command_line(self):
        for where in ("127.0.0.1", "127.0.0.1:", ":5000", "a:0", "a:65536", "a:x", "a:5000x"):
            self.fails(2, "HOST:PORT", arguments=("send", where, "-"))
        self.fails(2, "PORT", arguments=("receive", "70000"))
        self.fails(2, "--count", arguments=("receive", "0", "--count", "2"))
        self.fails(1, "none: can't be opened", arguments=("send", "127.0.0.1:9", "none"))


if __name__ == "__main__":
    main()
