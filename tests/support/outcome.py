"""Counts what holds and what does not, for checks that end with "N passed, N failed"."""
import sys

passed = failed = 0


def check(name, holds, details=""):
    global passed, failed
    if holds:
        passed += 1
    else:
        failed += 1
        print(f"not as it should be: {name} {details}", flush=True)


def end():
    print(f"{passed} passed, {failed} failed")
    sys.exit(failed != 0)
