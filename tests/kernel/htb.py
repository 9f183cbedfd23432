"""A tree of queues as the kernel's HTB on a pair of veth devices, and frames sent through it.

Only for a process that has a network namespace to itself. HTB has eight levels and classes of the kernel's own shape:

- A class that may send at a rate without its parent's leave escapes the parent's. Every class below the root gets a token
  rate, and its own rate as its ceiling: what it sends, it borrows from its parent.
- The size of a frame in the kernel is without its check sequence: the size table adds it.
"""
import re
import socket
import subprocess
import time

DEVICE, PEER = "kel0", "kel1"
ROOT = 1
TOKEN_RATE = "8bit"
LINE_RATE = 10_000_000  # kbit/s: what is not shaped
CHECK_SEQUENCE = 4  # octets
QUANTUM = 3036  # octets
CLASS = re.compile(r"^class htb 1:(\w+) .*\n Sent (\d+) bytes \d+ pkt \(dropped (\d+),", re.MULTILINE)


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=10).stdout


def make_devices():
    run("ip", "link", "add", DEVICE, "type", "veth", "peer", "name", PEER)
    for device in (DEVICE, PEER):
        # The kernel's own frames would be counted.
        run("ip", "link", "set", device, "addrgenmode", "none")
        run("ip", "link", "set", device, "txqueuelen", "1000", "up")


def build(case):
    """Lays the case's tree onto the device; returns the class of each queue."""
    numbers = {name: ROOT + i for i, name in enumerate([*case.schedulers, *case.queues])}
    subprocess.run(["tc", "qdisc", "delete", "dev", DEVICE, "root"], capture_output=True, timeout=10)
    run("tc", "qdisc", "add", "dev", DEVICE, "root", "handle", "1:", "stab", "overhead", str(CHECK_SEQUENCE),
        "linklayer", "ethernet", "htb")
    for name, one in {**case.schedulers, **case.queues}.items():
        rate, burst = (one.rate or LINE_RATE, one.burst) if one.rate else (LINE_RATE, 1_000_000)
        own_rate = f"{rate}kbit" if one.below is None else TOKEN_RATE
        run("tc", "class", "add", "dev", DEVICE, "parent", f"1:{numbers[one.below]:x}" if one.below else "1:",
            "classid", f"1:{numbers[name]:x}", "htb", "rate", own_rate, "ceil", f"{rate}kbit", "burst", str(burst),
            "cburst", str(burst), "quantum", str(QUANTUM))
    for name, queue in case.queues.items():
        run("tc", "qdisc", "add", "dev", DEVICE, "parent", f"1:{numbers[name]:x}", "bfifo", "limit",
            str(queue.threshold))
    return {name: numbers[name] for name in case.queues}


def counted(classes):
    """Octets sent and frames dropped so far, by queue."""
    shown = run("tc", "-s", "class", "show", "dev", DEVICE)
    found = {int(number, 16): (int(octets), int(dropped)) for number, octets, dropped in CLASS.findall(shown)}
    return {name: found[number] for name, number in classes.items()}


class Flow:
    """Frames of one length for one class, at a constant rate."""

    def __init__(self, number, flow):
        self.socket = socket.socket(socket.AF_PACKET, socket.SOCK_RAW)
        self.socket.bind((DEVICE, 0))
        self.socket.setblocking(False)
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_PRIORITY, 1 << 16 | number)
        # Frames that wait are counted against the socket: it must hold more than the queue.
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_SNDBUF, 4 << 20)
        self.frame = (b"\x02\0\0\0\0\x01\x02\0\0\0\0\x02\x88\xb5").ljust(flow.octets - CHECK_SEQUENCE, b"\0")
        self.per_second = flow.rate * 1000 / 8 / flow.octets
        self.sent = 0

    def send_due(self, elapsed):
        due = int(elapsed * self.per_second)
        while self.sent < due:
            try:
                self.socket.send(self.frame)
            except BlockingIOError as error:
                raise RuntimeError("the socket is full before the queue is: net.core.wmem_max is too small") from error
            except OSError as error:  # the queue is full: the frame is dropped and counted there
                if error.errno != 105:
                    raise
            self.sent += 1


def measure(case, settle, seconds):
    """Octets sent and frames dropped by each queue in so many seconds, after the first ones; and how many seconds."""
    classes = build(case)
    flows = [Flow(classes[flow.queue], flow) for flow in case.flows]
    started = time.monotonic()
    before = None
    while (now := time.monotonic() - started) < settle + seconds:
        if before is None and now >= settle:
            before, since = counted(classes), time.monotonic()
        for flow in flows:
            flow.send_due(time.monotonic() - started)
        time.sleep(0.0005)
    after, until = counted(classes), time.monotonic()
    for flow in flows:
        flow.socket.close()
    return {name: (after[name][0] - before[name][0], after[name][1] - before[name][1]) for name in classes}, until - since

