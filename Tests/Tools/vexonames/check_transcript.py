#!/usr/bin/env python3
"""Runs the commands of a transcript in an empty folder and compares what they print.

usage: check_transcript.py PROGRAM TRANSCRIPT [--record]

A line "$ ..." is a bash command, in which the program is called by its name; "> ..." continues it. Below stand the
lines that it writes to standard output, those to standard error after "! ", and, unless it is 0, the exit code as
"[1]". Lines that begin with "#" and empty lines are for the reader. With --record the transcript is rewritten.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile


def run(command, program, project, folder):
    environment = dict(os.environ, PATH=f"{program.parent}:{os.environ['PATH']}", PROJECT=str(project))
    done = subprocess.run(["bash", "-o", "pipefail", "-c", command], cwd=folder, env=environment, capture_output=True,
                          timeout=250, check=False)
    out = done.stdout.decode("utf-8", "backslashreplace").replace("\0", "\\x00")
    said = done.stderr.decode("utf-8", "backslashreplace")
    lines = out.removesuffix("\n").split("\n") if out else []
    lines += ["! " + line for line in said.removesuffix("\n").split("\n") if said]
    return lines + ([f"[{done.returncode}]"] if done.returncode else [])


def main():
    program, transcript = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    project = pathlib.Path(__file__).resolve().parents[3]
    text = transcript.read_text(encoding="utf-8")
    steps = re.split(r"^(?=\$ )", text, flags=re.MULTILINE)
    recorded, failed = [steps[0]], 0
    with tempfile.TemporaryDirectory() as folder:
        for step in steps[1:]:
            lines = step.rstrip("\n").split("\n")
            written = 1 + next((i for i, line in enumerate(lines[1:]) if not line.startswith("> ")), len(lines) - 1)
            command = "\n".join(line[2:] for line in lines[:written])
            remarks = re.search(r"\n(?:(?:#.*)?\n)*\Z", step)[0][1:]
            expected = step[: len(step) - len(remarks)].rstrip("\n").split("\n")[written:]
            got = run(command, program, project, folder)
            recorded.append("\n".join(lines[:written] + got) + "\n" + remarks)
            if got != expected:
                failed += 1
                print(f"$ {command}\nexpected:", *expected, "got:", *got, "", sep="\n")
    if "--record" in sys.argv:
        transcript.write_text("".join(recorded), encoding="utf-8")
    print(f"{len(steps) - 1} commands, {failed} not as expected")
    return 1 if failed or len(steps) < 2 else 0


if __name__ == "__main__":
    sys.exit(main())
