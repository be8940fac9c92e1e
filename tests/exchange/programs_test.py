"""The two programs of the exchange as two processes: programs_test.py SERVER CLIENT STORE"""

import pathlib
import subprocess
import sys
import tempfile

server_program, client_program, store = sys.argv[1:]
with tempfile.TemporaryDirectory() as folder:
    server_file, client_file = pathlib.Path(folder, "server.bin"), pathlib.Path(folder, "client.bin")
    with subprocess.Popen([server_program, store, "0", "2", server_file], stdout=subprocess.PIPE) as server:
        try:
            port = server.stdout.readline().split()[1]
            client = subprocess.run([client_program, "127.0.0.1", port, client_file], stdout=subprocess.PIPE, timeout=60, check=False)
            said = client.stdout.decode("utf-8")
            assert client.returncode == 0, said
            printed = server.communicate(timeout=60)[0].decode("utf-8")
            assert server.returncode == 0, printed
        finally:
            server.kill()
    for line in ("updated  14: City Edmonton -> Calgary", "Another user has changed the row. (customers, 14)"):
        assert line in said and line in printed, said + printed
    assert "till 7, change 1, again" in printed, printed
    assert server_file.read_bytes() == client_file.read_bytes()
    assert server_file.read_bytes() != pathlib.Path(store).read_bytes()
    # A client that finds nobody says so and fails.
    alone = subprocess.run([client_program, "127.0.0.1", port, client_file], stdout=subprocess.PIPE, timeout=60, check=False)
    assert alone.returncode == 1 and b"no answer: The other side refused the connection." in alone.stdout, alone.stdout
