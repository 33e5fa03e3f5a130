#!/usr/bin/env python3
"""Validates JSON files against a JSON Schema; a line for each problem.

    validate_dumps.py SCHEMA FILE...
"""

import json
import sys

import jsonschema

MOST_PROBLEMS = 20


def main(arguments):
    if len(arguments) < 3:
        print(__doc__, file=sys.stderr)
        return 2
    with open(arguments[1], encoding="utf-8") as file:
        schema = json.load(file)
    dialect = jsonschema.validators.validator_for(schema)
    dialect.check_schema(schema)
    validator = dialect(schema)
    found = 0
    for path in arguments[2:]:
        with open(path, encoding="utf-8") as file:
            dump = json.load(file)
        for error in validator.iter_errors(dump):
            found += 1
            if found <= MOST_PROBLEMS:
                print(f"{path}: {error.json_path}: {error.message[:200]}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
