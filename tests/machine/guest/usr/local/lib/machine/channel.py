#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Runs what a test outside of the machine asks for, and answers with its output and status.

A line of JSON each way, over a port that the machine has for it. Any number of commands run at the same time.
"""
import json
import os
import pwd
import signal
import subprocess
import threading
import time

PORT = "/dev/virtio-ports/machine.channel"
EYES_LOG = "/run/machine-eyes.{user}.log"
ENOUGH = 1 << 20  # bytes of output that an answer has at most
REPEAT = 0.3  # seconds until a condition that did not hold is looked at again


class Channel:
    def __init__(self):
        self.port = os.open(PORT, os.O_RDWR)
        self.write_lock = threading.Lock()
        self.eyes = {}  # by user

    def answer(self, **answer):
        line = json.dumps(answer).encode() + b"\n"
        with self.write_lock:
            while line:
                line = line[os.write(self.port, line):]

    def lines(self):
        rest = b""
        while True:
            data = os.read(self.port, 65536)
            if not data:  # nobody listens on the other side
                time.sleep(REPEAT)
                continue
            *lines, rest = (rest + data).split(b"\n")
            yield from lines

    def serve(self):
        self.answer(ready=True)
        for line in self.lines():
            if line.strip():
                request = json.loads(line)
                threading.Thread(target=self.handle, args=(request,), daemon=True).start()

    def handle(self, request):
        try:
            result = ask_eyes(self, request) if "look" in request else run(request)
        except Exception as error:  # the test is told, whatever it is
            result = {"status": -1, "output": f"{type(error).__name__}: {error}"}
        self.answer(id=request["id"], **result)


def in_session(user, command):
    """The command as the user, started by the user's own service manager, as a desktop starts programs."""
    entry = pwd.getpwnam(user)
    runtime = f"/run/user/{entry.pw_uid}"
    return ["runuser", "-u", user, "--", "env", "-i", "PATH=/usr/local/bin:/usr/bin:/bin", f"HOME={entry.pw_dir}",
            f"XDG_RUNTIME_DIR={runtime}", f"DBUS_SESSION_BUS_ADDRESS=unix:path={runtime}/bus",
            "systemd-run", "--user", "--quiet", "--wait", "--pipe", "--collect", "--", *command]


def run(request):
    command = ["bash", "-c", request["run"]]
    if request["user"] != "root":
        command = in_session(request["user"], command)
    deadline = time.monotonic() + request["limit"]
    while True:
        left = max(deadline - time.monotonic(), 1)
        process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                   start_new_session=True, cwd="/")
        try:
            output, _ = process.communicate(request["input"].encode(), timeout=left)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            output, _ = process.communicate()
            output += b"\n(it was killed: it took too long)"
        status = process.returncode
        if status == 0 or not request["until"] or time.monotonic() >= deadline:
            return {"status": status, "output": output[-ENOUGH:].decode(errors="replace")}
        time.sleep(REPEAT)


def ask_eyes(channel, request):
    """What the windows of the user's session show: asked of a program in that session, which stays."""
    user = request["user"]
    log_file = EYES_LOG.format(user=user)
    with EYES_LOCK:
        eyes = channel.eyes.get(user)
        if eyes is None or eyes.poll() is not None:
            command = in_session(user, ["python3", "/usr/local/lib/machine/eyes.py"])
            with open(log_file, "w") as log:
                eyes = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=log, text=True)
            channel.eyes[user] = eyes
        eyes.stdin.write(json.dumps(request["look"]) + "\n")
        eyes.stdin.flush()
        answer = eyes.stdout.readline()
    if not answer:
        with open(log_file) as log:
            return {"status": -1, "output": "the program that looks at the windows has ended:\n" + log.read()}
    return json.loads(answer)


EYES_LOCK = threading.Lock()

if __name__ == "__main__":
    Channel().serve()
