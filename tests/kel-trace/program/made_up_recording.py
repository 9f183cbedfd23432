"""Recordings that are made up octet by octet, with times of one's choice."""
import pathlib
import struct

EVENTS = ["com_vantorix_ob_kel_ic:" + name
          for name in ("FN_ENTER", "FN_EXIT", "FN_PARAM", "API_CALL", "ERROR", "EXCEPTION", "INFO", "LAB", "OTHER")]
EVENTS += ["com_vantorix_ob_kel_init:EXCEPTION", "somebody_else:event"]
ENTER, EXIT, PARAM, CALL, ERROR, EXCEPTION, INFO, LAB, OTHER, INIT, FOREIGN = range(len(EVENTS))

METADATA = """/* CTF 1.8 */
typealias integer { size = 32; align = 8; signed = false; } := uint32_t;
typealias integer { size = 64; align = 8; signed = false; } := uint64_t;
trace { major = 1; minor = 8; byte_order = le; packet.header := struct { uint32_t magic; uint32_t stream_id; }; };
env { %(environment)s };
clock { name = "monotonic"; freq = 1000000000; };
typealias integer { size = 64; align = 8; signed = false; map = clock.monotonic.value; } := instant;
stream { id = 0;
    packet.context := struct { instant timestamp_begin; instant timestamp_end; uint64_t content_size;
                               uint64_t packet_size; uint64_t packet_seq_num; uint64_t events_discarded; };
    event.header := struct { uint32_t id; instant timestamp; };
    %(event_context)s };
"""
EVENT = """event { name = "%s"; id = %d; stream_id = 0;
    fields := struct { string _location; string _domain; string _message; }; };
"""
CONTEXTS = ("vpid", "vtid")

EBCOM = ("kel_ic_ebcom.cpp:214", "EBCOM")
PCEP = ("kel_ic_pcep.cpp:236", "PCEP")
GENERAL = ("kel_ic_pcep.cpp:7", "GENERAL")


def record(event, place, message, thread=1, process=1, time=None):
    """`time` in nanoseconds; without one, one more than that of the record before."""
    return {"event": event, "place": place, "message": message, "vtid": thread, "vpid": process, "time": time}


def with_times(records):
    time = -1
    for one in records:
        time = time + 1 if one["time"] is None else one["time"]
        yield {**one, "time": time}


def packet(records, contexts, number, discarded):
    body = b""
    for one in records:
        body += struct.pack("<IQ", one["event"], one["time"])
        if contexts is not None:
            body += struct.pack("<I", 0) + b"".join(struct.pack("<I", one[context]) for context in contexts)
        body += b"".join(text.encode() + b"\0" for text in (*one["place"], one["message"]))
    times = [one["time"] for one in records] or [0]
    octets = 8 + 6 * 8 + len(body)
    return struct.pack("<IIQQQQQQ", 0xC1FC1FC1, 0, times[0], times[-1], octets * 8, octets * 8, number, discarded) + body


def write_metadata(folder, contexts=CONTEXTS, host="node-1", environment=""):
    """`contexts`: None is none at all, not even another one."""
    fields = "".join(f" uint32_t _{context};" for context in contexts or ())
    metadata = METADATA % {"environment": environment or f'hostname = "{host}";',
                           "event_context": "" if contexts is None else f"event.context := struct {{ uint32_t _other;{fields} }};"}
    metadata += "".join(EVENT % (name, number) for number, name in enumerate(EVENTS))
    pathlib.Path(folder).mkdir(parents=True, exist_ok=True)
    pathlib.Path(folder, "metadata").write_text(metadata)


def write_stream(folder, records, contexts=CONTEXTS, name="stream", discarded=(), before=0, packets_lost=0):
    """The records are in the first packet. `before`: as many were discarded before it. `discarded`: before the second packet and so
    on, as many records as each says, and before the second as many packets as `packets_lost`."""
    data = packet(list(with_times(records)), contexts, 0, before)
    last = list(with_times(records))[-1:]
    total = before
    for number, count in enumerate(discarded, 1 + packets_lost):
        total += count
        data += packet(last, contexts, number, total)
    pathlib.Path(folder, name).write_bytes(data)


def made_up(folder, records, contexts=CONTEXTS, host="node-1", discarded=()):
    write_metadata(folder, contexts, host)
    write_stream(folder, records, contexts, discarded=discarded)
