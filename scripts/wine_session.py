"""Runs Telvane's Windows programs under Wine on a virtual X display, the way an
operator meets them, for the end-to-end tests and for `make run` without a display.

Each session gets a fresh Wine prefix (a copy of one prepared prefix), a desktop folder
of its own (so the data folder Orvalin_Data lands in the session's folder), no COM
ports, and its own Xvfb. It finds windows and reads controls through telvane-inspect.exe
run in the same prefix, clicks with xdotool, and takes screenshots with ImageMagick.
Everything it started is ended on exit: the prefix's Wine processes (wineserver -k) and
the Xvfb it started. Standard library only."""
import glob
import json
import os
import shutil
import subprocess
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BIN = os.environ.get("TELVANE_BIN", os.path.join(ROOT, "build", "bin"))
ARTIFACTS = os.path.join(ROOT, "build", "e2e-artifacts")
BASE_PREFIX = os.path.join(ROOT, "build", "wine", "e2e-base")
SCREEN = "1600x1200x24"
MESSAGE_BOX_CLASS = "#32770"
IDOK = 1


def wait_until(condition, timeout, message, poll=0.3):
    """Polls condition until it holds; AssertionError with message after timeout seconds."""
    deadline = time.monotonic() + timeout
    while not condition():
        if time.monotonic() > deadline:
            raise AssertionError(message() if callable(message) else message)
        time.sleep(poll)


class WineSession:
    """One program under Wine on its own display; use it as a context manager."""

    def __init__(self, name, keep_home_desktop=False, prefix=None):
        self.name = name
        self.folder = tempfile.mkdtemp(prefix="telvane-e2e-%s-" % name)
        self.desktop = os.path.join(self.folder, "Desktop")
        self.prefix = prefix or os.path.join(self.folder, "prefix")
        self.keep_home_desktop = keep_home_desktop
        self.xvfb = None
        self.program = None
        self.program_log = os.path.join(self.folder, "program.log")
        self.env = dict(os.environ)

    def __enter__(self):
        try:
            self._prepare_prefix()
            self._start_display()
            self._boot_prefix()
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *exc):
        self.close()
        return False

    # --- set-up -------------------------------------------------------------------
    def _prepare_prefix(self):
        os.makedirs(self.desktop, exist_ok=True)
        if not os.path.exists(os.path.join(self.prefix, ".telvane-ready")):
            subprocess.run([os.path.join(ROOT, "scripts", "wine-prefix"), BASE_PREFIX],
                           check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            subprocess.run(["cp", "-a", BASE_PREFIX, self.prefix], check=True)
        if not self.keep_home_desktop:
            for link in glob.glob(os.path.join(self.prefix, "drive_c", "users", "*", "Desktop")):
                if os.path.islink(link):
                    os.remove(link)
                    os.symlink(self.desktop, link)
        self.env.update(WINEPREFIX=self.prefix, WINEDEBUG="-all",
                        WINEDLLOVERRIDES="mscoree,mshtml=")

    def _start_display(self):
        if self.env.get("DISPLAY") and self.keep_home_desktop:
            return  # run on the operator's own display
        read_end, write_end = os.pipe()
        self.xvfb = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", SCREEN, "-nolisten", "tcp"],
            pass_fds=(write_end,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start")
        self.env["DISPLAY"] = ":" + number

    def _boot_prefix(self):
        # The first Wine process starts the prefix's helpers, which keep its output open:
        # it gets no pipe, so that later processes can be read to the end.
        subprocess.run(["wine", "cmd", "/c", "exit"], env=self.env, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=60)
        # No COM ports: the program meets no controller, as on a bare PC. Wine links a COM
        # name to every serial device the machine has while the prefix boots, so the links
        # go after the boot; nothing makes them again while the prefix's helpers run.
        for port in glob.glob(os.path.join(self.prefix, "dosdevices", "com*")):
            os.remove(port)
        # The first window of a prefix starts its desktop (explorer.exe). The inspector's
        # first look does it here, so the program never races the inspector to start it.
        if self.inspect("windows") is None:
            raise RuntimeError("the prefix's desktop did not start")

    # --- the program ----------------------------------------------------------------
    def start(self, program):
        log = open(self.program_log, "wb")
        self.program = subprocess.Popen(["wine", os.path.join(BIN, program)], env=self.env,
                                        stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                        cwd=self.folder)
        log.close()

    def wait_exit(self, timeout=20):
        return self.program.wait(timeout=timeout)

    def output(self):
        with open(self.program_log, "rb") as log:
            return log.read().decode("utf-8", "replace")

    # --- looking and acting -----------------------------------------------------------
    def inspect(self, *args, tries=3):
        """The inspector's answer, or None when it gave none. Wine can take long to start a
        process on a loaded machine, so a run that answered nothing within its time is
        tried again (an action is never repeated once the inspector has answered it)."""
        command = ["wine", os.path.join(BIN, "telvane-inspect.exe")] + list(map(str, args))
        for _ in range(tries):
            try:
                out = subprocess.run(command, env=self.env, stdin=subprocess.DEVNULL,
                                     capture_output=True, timeout=60).stdout
            except subprocess.TimeoutExpired as late:
                out = late.stdout or b""
            text = out.decode("utf-8", "replace").strip()
            try:
                return json.loads(text)
            except ValueError:  # nothing, or cut off by the time-out
                continue
        return None

    def windows(self):
        return self.inspect("windows") or []

    def wait_window(self, title, timeout=20):
        """True once a top-level window titled `title` is up, False after timeout seconds."""
        deadline = time.monotonic() + timeout
        while not any(w["title"] == title for w in self.windows()):
            if time.monotonic() > deadline:
                return False
            time.sleep(0.2)
        return True

    def dismiss_message_boxes_until(self, title, timeout=120):
        """Presses OK on every message box until the window `title` is up and no message
        box is left; returns the boxes seen as (title, text), in order."""
        seen = []
        answered = set()
        unanswered = 0
        deadline = time.monotonic() + timeout
        while time.monotonic() < deadline:
            windows = self.inspect("windows")
            if windows is None:
                unanswered += 1
                windows = []
            boxes = [w for w in windows if w["class"] == MESSAGE_BOX_CLASS]
            for box in boxes:
                if box["handle"] not in answered:
                    answered.add(box["handle"])
                    seen.append((box["title"], box["text"]))
                    self.inspect("answer", box["title"], IDOK)
            if not boxes and any(w["title"] == title for w in windows):
                return seen
            time.sleep(0.2)
        raise TimeoutError("no window %r after message boxes %r; %s" %
                           (title, seen, self.state(unanswered)))

    def state(self, unanswered):
        """What a failed wait for a window needs to be explained: whether the program is
        still running, how often the inspector gave no answer, what the program printed."""
        running = self.program is None or self.program.poll() is None
        display = self.xvfb is None or self.xvfb.poll() is None
        return ("the program %s, the display %s, the inspector silent %d times, "
                "the program's output ends %r" % (
                    "runs" if running else "exited with %r" % self.program.returncode,
                    "is up" if display else "has gone", unanswered,
                    self.output()[-800:] if self.program is not None else ""))

    def controls(self, title):
        return self.inspect("list", title)

    def screen_point(self, title, x, y, timeout=30):
        """The screen point of client point (x, y) of the window. The inspector answers
        nothing while the program is too busy to answer its messages, so it asks again."""
        deadline = time.monotonic() + timeout
        listing = self.controls(title)
        while not listing or "origin" not in listing:
            if time.monotonic() > deadline:
                raise TimeoutError("window %r gave no origin" % title)
            time.sleep(0.2)
            listing = self.controls(title)
        left, top = listing["origin"]
        return left + x, top + y

    def click_client(self, title, x, y, button=1):
        """A real pointer click at client point (x, y) of the window."""
        screen_x, screen_y = self.screen_point(title, x, y)
        subprocess.run(["xdotool", "mousemove", str(screen_x), str(screen_y), "click",
                        str(button)], env=self.env, check=True)

    def click_control(self, title, control_id):
        """A real pointer click on the middle of the window's control control_id."""
        for child in self.controls(title)["children"]:
            if child["id"] == control_id:
                x, y, w, h = child["rect"]
                return self.click_client(title, x + w // 2, y + h // 2)
        raise AssertionError("%r has no control %d" % (title, control_id))

    def type_into(self, title, control_id, text):
        """Clicks into the window's edit box control_id, clears it and types text, as a
        user does (Wine's edit boxes take no Ctrl+A)."""
        self.click_control(title, control_id)
        subprocess.run(["xdotool", "key", "End", "shift+Home", "BackSpace"], env=self.env,
                       check=True)
        subprocess.run(["xdotool", "type", "--delay", "30", "--", text], env=self.env,
                       check=True)

    def press_keys(self, title, *keys):
        """Real key presses on the window, after giving it the keyboard focus."""
        subprocess.run(["xdotool", "search", "--name", "^%s$" % title, "windowfocus", "--sync",
                        "key", "--delay", "200", *keys], env=self.env, check=True)

    def answer_file_dialog(self, unix_path):
        """Types the path into the real "Open" dialog (drive Z: is the Linux root)."""
        if not self.wait_window("Open"):
            raise AssertionError("no file dialog")
        subprocess.run(["xdotool", "search", "--name", "^Open$", "windowfocus", "--sync", "type",
                        "--delay", "30", "Z:" + unix_path.replace("/", "\\")],
                       env=self.env, check=True)
        subprocess.run(["xdotool", "key", "Return"], env=self.env, check=True)

    def wait_caption(self, title, text, timeout, rect):
        """Waits until the control at client rectangle rect reads text (or, for a box of
        several lines, holds it), asking for that control alone."""
        x, y, w, h = rect
        def shown():
            return text in (self.inspect("text", title, x + w // 2, y + h // 2) or "")
        wait_until(shown, timeout, "%r never showed %r" % (title, text), poll=1)

    def box_text(self, title, rect):
        """The text of the child window at client rectangle rect (x, y, width, height)."""
        for child in self.controls(title)["children"]:
            if child["rect"] == list(rect):
                return child["caption"]
        raise AssertionError("no control at %r" % (rect,))

    def screenshot(self, name, folder=ARTIFACTS):
        os.makedirs(folder, exist_ok=True)
        path = os.path.join(folder, name + ".png")
        subprocess.run(["import", "-window", "root", path], env=self.env, check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return path

    # --- clean-up -------------------------------------------------------------------
    def close(self):
        if os.path.isdir(self.prefix):
            subprocess.run(["wineserver", "-k"], env=self.env, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
        if self.program is not None:
            try:
                self.program.wait(timeout=10)
            except subprocess.TimeoutExpired:
                self.program.kill()
        if self.xvfb is not None:
            self.xvfb.terminate()
            self.xvfb.wait(timeout=10)
            self.xvfb = None
        shutil.rmtree(self.folder, ignore_errors=True)
