# SPDX-License-Identifier: GPL-3.0-or-later
"""Waiting for what other programs do."""

import os
import subprocess
import time

# Seconds; a sanitized program on a busy machine is slow.
DEADLINE = int(os.environ.get("SPRIG_DEADLINE", "30"))


def pause():
    time.sleep(0.005)


def wait_for(question, what="it", between=pause, not_yet=()):
    """What `question` answers as soon as that is something. The exceptions `not_yet` count as nothing."""
    end = time.monotonic() + DEADLINE
    while True:
        try:
            if answer := question():
                return answer
        except not_yet:
            pass
        assert time.monotonic() < end, f"waited too long for {what}"
        between()


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False, timeout=DEADLINE).stdout.strip()


def settled(question, what="it", **options):
    """What `question` answers as soon as it answers the same twice."""
    answers = [None]

    def look():
        answers.append(question())
        return answers[-1] == answers[-2] and answers[-1]
    return wait_for(look, f"{what} to settle", **options)
