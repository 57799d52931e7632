# SPDX-License-Identifier: MIT
"""A virtual computer: QEMU by software alone, driven over QMP from outside and over a channel from inside."""
import json
import os
import pathlib
import queue
import socket
import subprocess
import threading
import time

MEMORY = "2048"  # MiB
BOOT_LIMIT = 240  # seconds, on a machine that is busy with other things
CONSOLE_END = 4000  # characters that tell why it has not
ANSWER_LIMIT = 120
SCREEN = (1280, 800)  # points
POINTER_RANGE = 0x7FFF  # of the tablet that points, in each direction
KEYS = {" ": "spc", "-": "minus"}
SLOTS = ["slot1", "slot2", "slot3"]  # for what is plugged into the bus for extension cards


class MachineError(Exception):
    """Something in the machine is not as the test wants it."""


class LineSocket:
    """Lines of JSON over a socket of QEMU's. A thread of its own hands each line to take()."""

    def __init__(self, path, take):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect(str(path))
        self.take = take
        self.lock = threading.Lock()
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        try:
            with self.socket.makefile("rb") as lines:
                for line in lines:
                    self.take(json.loads(line))
        except OSError:  # QEMU was ended
            pass
        self.take(None)

    def send(self, message):
        with self.lock:
            self.socket.sendall(json.dumps(message).encode() + b"\n")


class Monitor:
    """QEMU's own monitor: plugs, pulls, types, takes pictures."""

    def __init__(self, path):
        self.answers = queue.Queue()
        self.events = []
        self.changed = threading.Condition()
        self.ended = False
        self.lines = LineSocket(path, self._take)
        self.ask("qmp_capabilities")

    def _take(self, message):
        if message is None or "return" in message or "error" in message:
            self.answers.put(message)
        if message is None or "event" in message:
            with self.changed:
                self.ended = message is None
                self.events.append(message or {"event": "END"})
                self.changed.notify_all()

    def ask(self, command, arguments=None):
        self.lines.send({"execute": command, "arguments": arguments or {}})
        answer = self.answers.get(timeout=ANSWER_LIMIT)
        if answer is None or "error" in answer:
            raise MachineError(f"QEMU refuses {command} {arguments}: {answer and answer['error']['desc']}")
        return answer["return"]

    def mark(self):
        """The place in the list of events after which wait_event() looks."""
        with self.changed:
            return len(self.events)

    def wait_event(self, name, since, matches=lambda data: True, limit=ANSWER_LIMIT):
        def found():
            return any(event["event"] == name and matches(event.get("data", {})) for event in self.events[since:])

        with self.changed:
            if not self.changed.wait_for(lambda: found() or self.ended, limit) or not found():
                raise MachineError(f"QEMU did not tell of {name}")


class Channel:
    """Runs commands inside."""

    def __init__(self, path):
        self.number = 0
        self.waiting = {}
        self.ready = threading.Event()
        self.lock = threading.Lock()
        self.lines = LineSocket(path, self._take)

    def _take(self, message):
        if message is None:
            with self.lock:
                for answer in self.waiting.values():
                    answer.put({"status": -1, "output": "the machine has ended"})
        elif message.get("ready"):
            self.ready.set()
        else:
            with self.lock:
                answer = self.waiting.pop(message["id"], None)
            if answer is not None:
                answer.put(message)

    def begin(self, **request):
        with self.lock:
            self.number += 1
            answer = self.waiting[self.number] = queue.Queue()
            request["id"] = self.number
        self.lines.send(request)
        return answer


class Running:
    """A command that runs inside."""

    def __init__(self, command, answer, limit, note):
        self.command = command
        self.answer = answer
        self.limit = limit
        self.note = note

    def result(self):
        """Its status and output, once it has ended."""
        try:
            answer = self.answer.get(timeout=self.limit + ANSWER_LIMIT)
        except queue.Empty:
            raise MachineError(f"no answer to: {self.command}") from None
        self.note(f"{answer['status']} {self.command}")
        return answer["status"], answer["output"]


class Machine:
    """A computer that runs. A context manager: it is switched off at the end."""

    def __init__(self, kept, folder, disk, state=None):
        """Kept is the folder with kernel and initial system, folder one for what this computer writes, disk an image
        that it must not write, state what save() has kept: then, it goes on from there."""
        self.folder = pathlib.Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self.began = time.monotonic()
        self.media = {}
        overlay = self.folder / "disk.qcow2"
        self.overlay = overlay
        format_of_disk = "raw" if str(disk).endswith(".img") else "qcow2"
        subprocess.run(["qemu-img", "create", "-q", "-f", "qcow2", "-F", format_of_disk, "-b", str(disk), str(overlay)],
                       check=True)
        sata = self.folder / "sata.img"
        with open(sata, "wb") as file:
            file.truncate(4 << 30)
        monitor, channel = self.folder / "monitor", self.folder / "channel"
        # One processor: with two, now and then one of them meets the kernel's patches of its own code half done, and panics.
        command = [
            "qemu-system-x86_64", "-name", "machine", "-machine", "q35", "-accel", "tcg", "-cpu", "max",
            "-m", MEMORY, "-smp", "1", "-nodefaults", "-display", "none", "-vga", "virtio", "-no-user-config",
            "-rtc", "base=utc", "-kernel", str(kept / "vmlinuz"), "-initrd", str(kept / "initrd.img"),
            "-append", "root=/dev/vda rw console=ttyS0 quiet mitigations=off systemd.show_status=no",
            "-qmp", f"unix:{monitor},server=on,wait=off", "-serial", f"file:{self.folder / 'console'}",
            "-chardev", f"socket,id=channel,path={channel},server=on,wait=off", "-device", "virtio-serial-pci",
            "-device", "virtserialport,chardev=channel,name=machine.channel", "-device", "virtio-rng-pci",
            "-drive", f"file={overlay},if=none,id=system,format=qcow2,cache=unsafe",
            "-device", "virtio-blk-pci,drive=system",
            "-drive", f"file={sata},if=none,id=sata,format=raw,cache=unsafe",
            "-device", "ide-hd,drive=sata,bus=ide.0,serial=SATA1,model=ZV-SATA", "-device", "ide-cd,id=optical,bus=ide.1",
            "-device", "qemu-xhci,id=usb,p2=8,p3=8", "-device", "usb-tablet,bus=usb.0"]
        for chassis, slot in enumerate(SLOTS, 1):
            command += ["-device", f"pcie-root-port,id={slot},chassis={chassis}"]
        if state:
            command += ["-incoming", "defer"]
        self.log = open(self.folder / "qemu.log", "wb")
        self.process = subprocess.Popen(command, stdout=self.log, stderr=self.log, stdin=subprocess.DEVNULL)
        try:
            self._wait_for_socket(monitor)
            self.monitor = Monitor(monitor)
            self.channel = Channel(channel)
            self.monitor.ask("migrate-set-capabilities", {"capabilities": [{"capability": "events", "state": True}]})
            if state:
                self._migrate("migrate-incoming", f"exec:cat {state}")
                self.monitor.ask("cont")
            else:
                self.wait_for_boot()
        except BaseException:
            self.end()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end()

    def end(self):
        """Switches the computer off."""
        self.process.kill()
        self.process.wait()
        self.log.close()

    def _wait_for_socket(self, path):
        deadline = time.monotonic() + ANSWER_LIMIT
        while not path.exists():
            if self.process.poll() is not None or time.monotonic() > deadline:
                raise MachineError("QEMU does not start:\n" + (self.folder / "qemu.log").read_text())
            time.sleep(0.05)

    def wait_for_boot(self):
        if not self.channel.ready.wait(BOOT_LIMIT):
            console = (self.folder / "console").read_text(errors="replace")
            raise MachineError(f"the machine does not start:\n{console[-CONSOLE_END:]}")

    def _migrate(self, command, uri):
        since = self.monitor.mark()
        self.monitor.ask(command, {"uri": uri})
        self.monitor.wait_event("MIGRATION", since, lambda data: data["status"] in ("completed", "failed"))
        if any(event["data"]["status"] == "failed" for event in self.monitor.events[since:] if event["event"] == "MIGRATION"):
            raise MachineError(f"{command} fails:\n" + (self.folder / "qemu.log").read_text())

    def save(self, state):
        """Stops, and keeps all that the machine is in the file, beside its disk."""
        self.monitor.ask("stop")
        self.monitor.ask("migrate-set-parameters", {"max-bandwidth": 1 << 40})
        self._migrate("migrate", f"exec:cat > {state}")
        self.monitor.ask("quit")
        self.process.wait()

    def note(self, step):
        """Writes a step of the test to the file "steps", with the seconds since the machine runs."""
        with open(self.folder / "steps", "a") as file:
            file.write(f"{time.monotonic() - self.began:7.1f} {step}\n")

    def processor_time(self):
        """Seconds that the computer has kept a processor busy so far."""
        fields = pathlib.Path(f"/proc/{self.process.pid}/stat").read_text().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    # Inside

    def begin(self, command, user="root", stdin="", until=False, limit=ANSWER_LIMIT):
        answer = self.channel.begin(run=command, user=user, input=stdin, until=until, limit=limit)
        return Running(command, answer, limit, self.note)

    def status(self, command, user="root", stdin="", limit=ANSWER_LIMIT):
        """Runs a command; returns its status and output."""
        return self.begin(command, user, stdin, limit=limit).result()

    def run(self, command, user="root", stdin="", limit=ANSWER_LIMIT):
        """Runs a command that succeeds; returns its output."""
        status, output = self.status(command, user, stdin, limit)
        if status != 0:
            raise MachineError(f"{command}\nended with {status}:\n{output}")
        return output

    def until(self, command, user="root", limit=ANSWER_LIMIT):
        """Waits until the command succeeds; returns its output."""
        status, output = self.begin(command, user, until=True, limit=limit).result()
        if status != 0:
            raise MachineError(f"{command}\ndid not come true:\n{output}")
        return output

    def look(self, user, **query):
        query.setdefault("limit", ANSWER_LIMIT)
        answer = self.channel.begin(look=query, user=user)
        return Running(str(query), answer, query["limit"], self.note).result()

    # Outside

    def add_medium(self, name, size=None, source=None, read_only=False, slow=None):
        """A medium that devices can hold: an empty one of the size in bytes, or a copy of an image. Slow: bytes a second."""
        file = self.folder / f"{name}.medium"
        if source is not None:
            subprocess.run(["cp", "--sparse=always", str(source), str(file)], check=True)
        else:
            with open(file, "wb") as empty:
                empty.truncate(size)
        node = {"driver": "raw", "node-name": f"{name}-file", "read-only": read_only,
                "file": {"driver": "file", "filename": str(file)}}
        if slow:
            limits = {"bps-total": slow, "bps-total-max": slow}
            self.monitor.ask("object-add", {"qom-type": "throttle-group", "id": f"{name}-limit", "limits": limits})
            node = {"driver": "throttle", "node-name": name, "throttle-group": f"{name}-limit", "read-only": read_only,
                    "file": node}
        else:
            node["node-name"] = name
        self.monitor.ask("blockdev-add", node)
        self.media[name] = file
        return file

    def plug(self, device, driver, **properties):
        self.monitor.ask("device_add", {"id": device, "driver": driver, **properties})

    def plug_stick(self, name, **properties):
        """A USB stick that holds the medium of this name."""
        self.plug(f"{name}-device", "usb-storage", bus="usb.0", drive=name, removable=True, serial=name.upper(),
                  **properties)

    def plug_card_reader(self, *names):
        """One USB device with a slot for each of these media."""
        self.plug("reader", "usb-bot", bus="usb.0")
        for slot, name in enumerate(names):
            self.plug(f"{name}-device", "scsi-hd", bus="reader.0", lun=slot, drive=name, removable=True, serial=name)
        self.monitor.ask("qom-set", {"path": "/machine/peripheral/reader", "property": "attached", "value": True})

    def pull(self, name):
        """Out with the device that holds the medium, without a word to the machine before."""
        since = self.monitor.mark()
        self.monitor.ask("device_del", {"id": f"{name}-device"})
        self.monitor.wait_event("DEVICE_DELETED", since, lambda data: data.get("device") == f"{name}-device")

    def insert(self, drive, disc):
        """Puts a disc into an optical drive, and closes the tray."""
        self.monitor.ask("blockdev-change-medium", {"id": drive, "filename": str(disc), "format": "raw"})

    def is_tray_open(self, drive):
        return any(block.get("tray_open", False) for block in self.monitor.ask("query-block")
                   if drive in block.get("qdev", ""))

    def set_speed(self, name, bytes_a_second):
        """How fast a medium that was added as a slow one is from now on; 0 for no limit."""
        self.monitor.ask("qom-set", {"path": f"/objects/{name}-limit", "property": "limits",
                              "value": {"bps-total": bytes_a_second, "bps-total-max": bytes_a_second}})

    def click(self, x, y):
        """With the pointer, at a place of the screen."""
        place = [{"type": "abs", "data": {"axis": axis, "value": value * POINTER_RANGE // size}}
                 for axis, value, size in (("x", x, SCREEN[0]), ("y", y, SCREEN[1]))]
        self.monitor.ask("input-send-event", {"events": place})
        for down in (True, False):
            self.monitor.ask("input-send-event", {"events": [{"type": "btn", "data": {"down": down, "button": "left"}}]})

    def press_keys(self, *names):
        """Presses these keys together, by QEMU's names for them."""
        self.monitor.ask("send-key", {"keys": [{"type": "qcode", "data": name} for name in names]})

    def type_line(self, text):
        """On the keyboard: small letters, digits, blanks and hyphens."""
        for letter in text:
            self.press_keys(KEYS.get(letter, letter))
        self.press_keys("ret")

    def picture(self, file):
        self.monitor.ask("screendump", {"filename": str(file), "format": "png"})

    def reset(self):
        """As if the power had gone and come back."""
        self.channel.ready.clear()
        self.monitor.ask("system_reset", {})
        self.wait_for_boot()
