#!/usr/bin/python3
"""Validates the project files of folders against SCHEMA: BAD, of which none may pass, and each GOOD one."""

import json
import pathlib
import sys

import jsonschema


def load(path):
    return json.loads(pathlib.Path(path).read_text(encoding="utf-8"))


def projects(folders):
    found = [path for folder in folders for path in sorted(pathlib.Path(folder).glob("*.qrlproj"))]
    if not found:
        sys.exit(f"there are no projects in {folders}")
    return found


schema = load(sys.argv[1])
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)

failures = [f"{path}: passes, but must not" for path in projects(sys.argv[2:3]) if validator.is_valid(load(path))]
for path in projects(sys.argv[3:]):
    failures += [f"{path}: {error.json_path}: {error.message[:300]}" for error in validator.iter_errors(load(path))]
sys.exit("\n".join(failures) or 0)
