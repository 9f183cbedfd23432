"""Trees, what is offered to their queues, and nothing about what becomes of it. Rates in kbit/s, sizes in octets."""
from dataclasses import dataclass


@dataclass(frozen=True)
class Scheduler:
    below: str = None  # None: the root
    rate: int = 0  # 0: no limit
    burst: int = 3000


@dataclass(frozen=True)
class Queue:
    below: str
    rate: int = 0
    burst: int = 3000
    threshold: int = 60_000


@dataclass(frozen=True)
class Flow:
    queue: str
    octets: int
    rate: int


@dataclass(frozen=True)
class Case:
    name: str
    schedulers: dict
    queues: dict
    flows: list


def flows(**rates):
    return [Flow(queue, 1500, rate) for queue, rate in rates.items()]


CASES = [
    Case("each queue above its rate",
         {"root": Scheduler(rate=20_000), "unit": Scheduler("root")},
         {"a": Queue("unit", 4_000), "b": Queue("unit", 2_000)}, flows(a=6_000, b=6_000)),
    Case("one queue below its rate",
         {"root": Scheduler(rate=20_000), "unit": Scheduler("root")},
         {"a": Queue("unit", 4_000), "b": Queue("unit", 8_000)}, flows(a=6_000, b=3_000)),
    Case("a limit at the queues' scheduler",
         {"root": Scheduler(rate=20_000), "unit": Scheduler("root", 6_000)},
         {"a": Queue("unit"), "b": Queue("unit"), "c": Queue("unit", 1_000)}, flows(a=6_000, b=6_000, c=6_000)),
    Case("a limit one level up",
         {"root": Scheduler(rate=20_000), "middle": Scheduler("root", 10_000), "one": Scheduler("middle"),
          "two": Scheduler("middle")},
         {"a": Queue("one"), "b": Queue("two", 2_000), "c": Queue("two", 2_000)}, flows(a=9_000, b=6_000, c=6_000)),
    Case("a limit at the root",
         {"root": Scheduler(rate=10_000), "middle": Scheduler("root"), "unit": Scheduler("middle")},
         {"a": Queue("unit"), "b": Queue("unit"), "c": Queue("unit", 1_000)}, flows(a=9_000, b=9_000, c=6_000)),
    Case("unshaped queues, 1,500 beside 100 octets",
         {"root": Scheduler(rate=10_000), "unit": Scheduler("root")},
         {"a": Queue("unit"), "b": Queue("unit")}, [Flow("a", 1500, 9_000), Flow("b", 100, 9_000)]),
    Case("bursts of one frame",
         {"root": Scheduler(rate=20_000), "unit": Scheduler("root", 6_000)},
         {"a": Queue("unit", 4_000, 1500), "b": Queue("unit", 2_000, 1500)}, flows(a=6_000, b=6_000)),
    Case("thresholds of a few frames",
         {"root": Scheduler(rate=20_000), "unit": Scheduler("root")},
         {"a": Queue("unit", 4_000, threshold=15_360), "b": Queue("unit", 2_000, threshold=7_680)},
         flows(a=6_000, b=3_000)),
]
