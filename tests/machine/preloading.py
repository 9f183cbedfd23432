"""Programs over failing_calls.c."""
import os

LIMIT = 15  # seconds that anything may take
ALLOCATIONS = 12  # of thousands, so many are tried


def environment(library, program, folder, counts, call):
    """Of a process whose call ("read:3") fails; None: none. `counts`: the file that shows what was called."""
    kept = {name: value for name, value in os.environ.items() if not name.startswith("KEL_")}
    return kept | {"LD_PRELOAD": library, "KEL_FAILING_PROGRAM": program, "KEL_FAILING_COUNTS": counts,
                   "LTTNG_UST_REGISTER_TIMEOUT": "0", "HOME": folder, "XDG_STATE_HOME": folder + "/state",
                   "TMPDIR": folder} | ({"KEL_FAILING_CALL": call} if call else {})


def counted(file):
    """How often each function was called."""
    with open(file, encoding="utf-8") as text:
        return {name: int(count) for name, count in map(str.split, text)}


def calls_to_fail(counts, every_allocation=False):
    for function, count in counts.items():
        step = 1 if function != "new" or every_allocation else max(1, count // ALLOCATIONS)
        yield from (f"{function}:{number}" for number in range(1, count + 1, step))
