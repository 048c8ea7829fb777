"""A program whose clock is set.

The library that sets it is loaded without its wrapper: that one does not start where a program
that was killed left shared memory under the process number which the wrapper has now.
"""

# The loader itself puts the machine's library folder in place of $LIB.
LIBRARY = "/usr/$LIB/faketime/libfaketime.so.1"


def clock_at(moment):
    """The variables under which a program's clock stands still at a local time or, where it begins
    with `@`, starts there and runs on."""
    return {
        "LD_PRELOAD": LIBRARY,
        "FAKETIME": moment,
        "FAKETIME_DONT_FAKE_MONOTONIC": "1",
    }


def clocked(moment, program="kintar3", **settings):
    """A command for a shell that starts `program` so."""
    variables = {**clock_at(moment), **settings}
    words = " ".join(f"{name}='{value}'" for name, value in variables.items())
    return f"env {words} '{program}'"
