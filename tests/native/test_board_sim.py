"""telvane-board-sim on its pseudo-terminal: replies, arrival timing, the command log and
the hang-up fault, as telvane.exe under Wine sees them through the COM port symlink."""
import os
import select
import subprocess
import tempfile
import time
import tty
import unittest

BIN = os.environ.get("TELVANE_BIN", os.path.join(os.path.dirname(__file__), "../../build/bin"))


class BoardSim:
    def __init__(self, folder, *options):
        self.link = os.path.join(folder, "com5")
        self.log = os.path.join(folder, "board.log")
        self.process = subprocess.Popen(
            [os.path.join(BIN, "telvane-board-sim"), "--link", self.link, "--log", self.log,
             *options], stdout=subprocess.PIPE, text=True)
        self.slave = self.process.stdout.readline().strip()
        self.fd = os.open(self.link, os.O_RDWR | os.O_NOCTTY)
        tty.setraw(self.fd)

    def send(self, *commands):
        for command in commands:
            os.write(self.fd, command.encode() + b"\0")

    def read_for(self, seconds):
        out, end = b"", time.monotonic() + seconds
        while time.monotonic() < end:
            ready, _, _ = select.select([self.fd], [], [], 0.02)
            if ready:
                try:
                    out += os.read(self.fd, 100)
                except OSError:
                    break
        return out

    def close(self):
        os.close(self.fd)
        if self.process.poll() is None:
            self.process.terminate()
        self.process.wait(timeout=5)
        self.process.stdout.close()


class BoardSimTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()

    def tearDown(self):
        self.folder.cleanup()

    def test_links_the_terminal_answers_queries_and_reports_arrival_in_time(self):
        board = BoardSim(self.folder.name)
        try:
            self.assertEqual(os.readlink(board.link), board.slave)
            board.send("T160", "L160", "Q")
            first = board.read_for(0.3)  # the move takes 1 s: only the query's answer
            self.assertTrue(first.startswith(b"q"))
            self.assertNotIn(b"Z", first)
            report, start = b"", time.monotonic()
            while b"Z\r\n" not in report and time.monotonic() - start < 3:
                report += board.read_for(0.05)
            self.assertIn(b"Z\r\n", report)
            board.send("Q")
            self.assertEqual(board.read_for(0.3), b"q160\r\n")
        finally:
            board.close()
        with open(board.log) as log:
            lines = [line.split(" ", 1)[1].rstrip("\n") for line in log]
        self.assertEqual(lines, ["T160", "L160", "Q", "Q"])

    def test_hangs_up_after_the_given_number_of_commands(self):
        board = BoardSim(self.folder.name, "--hang-up-after", "2")
        try:
            board.send("p", "p")
            board.process.wait(timeout=5)
            self.assertFalse(os.path.lexists(board.link))
            with self.assertRaises(OSError):
                for _ in range(100):
                    board.send("p")
                    time.sleep(0.01)
        finally:
            board.close()
        with open(board.log) as log:
            self.assertTrue(log.read().splitlines()[-1].endswith("hung up"))


if __name__ == "__main__":
    unittest.main()
