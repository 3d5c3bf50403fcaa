#!/usr/bin/env python3
# A host in another language: one verification by zuvi-verify, of the package zuvisdk-tools. Options
# of that program may follow, e.g. --full-screen.
import json
import subprocess
import sys

request = {"client-id": "demo", "metadata": {"booking": "77"}}
command = ["zuvi-verify", "--input", "-", *sys.argv[1:]]
with subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as program:
    with program.stdin as pipe:  # what is personal stays off the command line
        json.dump(request, pipe)
    outcome = {"result": "failed", "problem": "zuvi-verify ended without an outcome"}
    for line in program.stdout:
        event = json.loads(line)
        if event["event"] == "screen":
            print("now on", event["name"])
        elif event["event"] == "outcome":
            outcome = event
print(outcome["result"], outcome.get("identityId") or outcome.get("problem") or "")
sys.exit(program.returncode)
