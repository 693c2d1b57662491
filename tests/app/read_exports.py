"""What another program reads of exported logs: read_exports.py STORED TEXT JSON JSONL CSV, of which the first is what
Kestrin has stored.
"""

import csv, json, sys
stored, text, array, lines, table = sys.argv[1:]
events = json.load(open(stored, encoding="utf-8"))
assert json.load(open(array, encoding="utf-8")) == events
assert [json.loads(line) for line in open(lines, encoding="utf-8")] == events
rows = list(csv.DictReader(open(table, encoding="utf-8", newline="")))
assert len(rows) == len(events) == len(open(text, encoding="utf-8").readlines())
def shown(text):
    for hidden in "\t\r\n\u202e":
        text = text.replace(hidden, f"\\u{ord(hidden):04x}")
    return "'" + text if text.strip()[:1] in ("=", "+", "-", "@", "\uff1d") else text
for row, event in zip(rows, events):
    assert [row[key] for key in ("date", "kind", "id")] == [event[key] for key in ("date", "kind", "id")]
    assert [row["message"], row["application"]] == [shown(event["message"]), shown(event.get("appName", ""))], row
    assert row["identifier"] == event.get("bundleIdentifier", "")
