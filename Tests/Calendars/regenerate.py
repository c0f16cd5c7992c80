#!/usr/bin/python3
"""Writes what the oracle sees into Cases/*.json. The difference to the committed files is for a person to judge."""

import json

import cases

for name in cases.names():
    case = cases.load(name)
    if not case.get("bounded"):
        case["occurrences"] = cases.seen_by_the_oracle(cases.calendar_file(name).read_bytes(), case)
    lines = [f"  {json.dumps(key)}: {json.dumps(value, ensure_ascii=False)}" for key, value in case.items() if key != "occurrences"]
    items = ",\n".join("    " + json.dumps(item, ensure_ascii=False) for item in case.get("occurrences", []))
    if "occurrences" in case:
        lines.append(f'  "occurrences": [\n{items}\n  ]' if items else '  "occurrences": []')
    (cases.FOLDER / f"{name}.json").write_text("{\n" + ",\n".join(lines) + "\n}\n")
