"""Waiting for something to become true, without sleeping for a time that somebody guessed."""

import time

# Long, because the machine may be busy; a test that passes never waits for it.
PATIENCE = 20
PAUSE = 0.02


class TooLate(AssertionError):
    """A condition did not come true in time."""


def wait_until(condition, what, seconds=PATIENCE):
    """What the condition answers once that counts as true. `what` names the condition, and may be a function."""
    deadline = time.monotonic() + seconds
    while True:
        begin = time.monotonic()
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise TooLate(f"waited {seconds} s in vain for {what() if callable(what) else what}")
        # A question that costs much is not asked all the time.
        time.sleep(max(PAUSE, time.monotonic() - begin))
