"""What a trial found wrong, and how it ends."""

import sys

QUICK = "--quick" in sys.argv[1:]
wrong = []


def require(holds, sentence):
    if not holds:
        wrong.append(sentence)


def end(summary):
    print(*wrong, sep="\n", end="\n" if wrong else "")
    print(f"{summary}, {len(wrong)} faults.")
    sys.exit(1 if wrong else 0)
