"""The programs as tests in Python start them; KESTRINCTL and KESTRIN_SAMPLE_APP in the environment say where they are."""

import os
import subprocess
import tempfile
import time

LIMIT = 15  # seconds for what has to happen; a loaded machine may take its time


def wait(sentence, fact):
    """Until the fact is there; returns it."""
    deadline = time.monotonic() + LIMIT
    while True:
        try:
            found = fact()
        except (RuntimeError, subprocess.CalledProcessError):  # what was asked has just gone
            found = None
        if found:
            return found
        if time.monotonic() > deadline:
            raise AssertionError(sentence() if callable(sentence) else sentence)
        time.sleep(0.02)


def output(*command):
    """Of a command that ends well."""
    answer = subprocess.run([*map(str, command)], check=True, capture_output=True, text=True, timeout=LIMIT)
    return answer.stdout


def kestrinctl(*arguments):
    return output(os.environ["KESTRINCTL"], *arguments)


class SampleApp:
    """A sample application, and what it says."""

    def __init__(self, *options, **environment):
        self.said = tempfile.TemporaryFile("w+")
        self.process = subprocess.Popen([os.environ["KESTRIN_SAMPLE_APP"], *options], stdin=subprocess.PIPE,
                                        stdout=self.said, env={**os.environ, **environment})
        if "--later" not in options:
            self.wait_for_window()

    def wait_for_window(self):
        wait("The window of the sample application does not open.", lambda: "mapped 1" in self.lines())

    def lines(self):
        return os.pread(self.said.fileno(), 4096, 0).decode().splitlines()

    def end(self):
        self.process.kill()
        self.process.wait()
